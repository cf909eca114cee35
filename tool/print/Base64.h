// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_PRINT_BASE64_H
#define RECORDKIT_TOOL_PRINT_BASE64_H

#include <string>

#include <recordkit/inspect/bytes/ByteView.h>

namespace recordkit::tool {

/// Bytes in base64 (RFC 4648, section 4).
std::string base64(inspect::ByteView bytes);

}

#endif
