// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_DECODE_DECODEDPRINTER_H
#define RECORDKIT_TOOL_DECODE_DECODEDPRINTER_H

#include <string>

#include <recordkit/inspect/fields/RecordClass.h>

#include "../Errors.h"

namespace recordkit::tool {

/// Every class that can be decoded: those with a table, and FRU images.
std::vector<const RecordClass*> decodableClasses();

/// The class with that name, in any case; nullptr if there is none.
const RecordClass* findRecordClass(const std::string& name);

/// Prints every field of an image. Throws DataError for one that the class refuses.
void printDecoded(const RecordClass& recordClass, ByteView image, bool isJson, bool hasColour);

}

#endif
