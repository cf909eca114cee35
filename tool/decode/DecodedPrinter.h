// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_DECODE_DECODEDPRINTER_H
#define RECORDKIT_TOOL_DECODE_DECODEDPRINTER_H

#include "RecordClass.h"

namespace recordkit::tool {

/// Prints every field of an image. Throws CommandError (data) for one that the class refuses.
void printDecoded(const RecordClass& recordClass, const Image& image, bool isJson, bool hasColour);

}

#endif
