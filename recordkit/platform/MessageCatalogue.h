// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_PLATFORM_MESSAGECATALOGUE_H
#define RECORDKIT_PLATFORM_MESSAGECATALOGUE_H

#include <recordkit/platform/Export.h>

/// Formats the catalogue message `messageNumber` with the arguments that follow.
///
/// Text arguments are const char*, every number is passed as long. Writes at most 120 bytes to
/// `buffer`, including the terminating zero, whatever the arguments; returns the length of the text
/// written.
RECORDKIT_API int lmsg_getmsg(int messageNumber, char* buffer, ...);

#endif
