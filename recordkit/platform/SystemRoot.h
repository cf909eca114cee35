// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_PLATFORM_SYSTEMROOT_H
#define RECORDKIT_PLATFORM_SYSTEMROOT_H

#include <string>

#include <recordkit/platform/Export.h>

namespace TAVLib {

/// Prefix of every compiled-in path; "" on the management board. **The library's copy commands give
/// it to a shell**, and are refused for a name with other characters than letters, digits and
/// . _ / + -.
RECORDKIT_API std::string systemRoot();

}

#endif
