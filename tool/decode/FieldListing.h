// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_DECODE_FIELDLISTING_H
#define RECORDKIT_TOOL_DECODE_FIELDLISTING_H

#include <recordkit/inspect/fields/RecordClass.h>

#include "../print/Listing.h"

namespace recordkit::tool {

/// Every class that can be decoded: those with a table, and FRU images.
std::vector<const inspect::RecordClass*> decodableClasses();

/// The class with that name, in any case; nullptr if there is none.
const inspect::RecordClass* findRecordClass(const std::string& name);

/// Lists every field of an image. Throws DataError for one that the class refuses.
void printFields(const inspect::RecordClass& recordClass, inspect::ByteView image,
                 const Layout& layout);

}

#endif
