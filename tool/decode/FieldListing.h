// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_DECODE_FIELDLISTING_H
#define RECORDKIT_TOOL_DECODE_FIELDLISTING_H

#include <string>
#include <vector>

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

/// The fields of one of several records.
struct RecordListing {
    unsigned int id = 0;
    std::string title; ///< in a table with several records
    inspect::DecodedFields fields;
};

/// Lists the fields of records: a table for each of them, or all fields in one answer, each with
/// the id of its record.
void printRecords(const std::vector<RecordListing>& records, const Layout& layout);

}

#endif
