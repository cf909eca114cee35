// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_PLATFORM_EXPORT_H
#define RECORDKIT_PLATFORM_EXPORT_H

/// Marks what programs link against; everything else stays inside its library.
#define RECORDKIT_API __attribute__((visibility("default")))

#endif
