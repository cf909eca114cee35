// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_PLATFORM_MESSAGECATALOGUE_H
#define RECORDKIT_PLATFORM_MESSAGECATALOGUE_H

#include <recordkit/platform/Export.h>

/// Formats the catalogue message `messageNumber` with the arguments that follow.
///
/// Text arguments are const char*, every number is passed as long; share/recordkit/messages.tsv
/// lists the messages that the library asks for and what their arguments are. More arguments may
/// follow than a message has. Texts are shown as they are, whatever characters they contain;
/// numbers are shown in decimal.
///
/// Writes at most 120 bytes to `buffer`, including the terminating zero, whatever the arguments;
/// returns the length of the text written. A number without a message has a text, too, which uses
/// no arguments. Several threads may call it at once.
RECORDKIT_API int lmsg_getmsg(int messageNumber, char* buffer, ...);

#endif
