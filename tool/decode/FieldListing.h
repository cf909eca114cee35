// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_DECODE_FIELDLISTING_H
#define RECORDKIT_TOOL_DECODE_FIELDLISTING_H

#include <recordkit/inspect/fields/RecordClass.h>

#include "../print/Listing.h"

namespace recordkit::tool {

/// Lists every field of an image. Throws DataError for one that the class refuses.
void printFields(const inspect::RecordClass& recordClass, inspect::ByteView image, Format format);

}

#endif
