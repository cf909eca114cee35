// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_FRU_MULTIRECORDEDIT_H
#define RECORDKIT_INSPECT_FRU_MULTIRECORDEDIT_H

#include <optional>
#include <string>
#include <vector>

#include <recordkit/inspect/fields/Value.h>
#include <recordkit/inspect/fru/FruContent.h>

namespace recordkit::inspect {

/// Whether a value may need more bytes than the record has, as a number of elements does.
enum class RecordSize { KEPT, EXTENDED };

/// Sets a field of a record to a value as fru show prints it: a number with or without its unit, a
/// word, "yes" or "no", hex digits, "unspecified" where a field has a number for it. A field that
/// extends to the end of the record, such as a text, may change its length. Every other bit stays
/// as it is; EXTENDED adds the zero bytes that the record then lacks.
///
/// `name` is the record's in the text of errors. Throws DataError for a field that the record does
/// not have, a value that it cannot have (the text says which it can), a record that would be
/// incomplete or longer than 255 bytes.
void setRecordField(const std::string& name, FruRecordContent& record, const std::string& field,
                    const std::string& value, RecordSize size = RecordSize::KEPT);

/// A record of a kind, such as "dc-output", with zero bytes in all fields; nothing for other kinds.
std::optional<FruRecordContent> newRecord(const std::string& kind);

/// The kinds that newRecord knows.
std::vector<std::string> multiRecordKinds();

/// A field of a record and its value: a number, yes or no, none for "unspecified", or a text as
/// setRecordField reads it.
struct FruRecordValue {
    std::string field;
    Value value;
};

/// A record of a kind with these values, in any order, and zero bytes in all other fields; it is as
/// large as they need. Elements of a list with a count exist as the count says, those of a list up
/// to the end of the record one after another from the first.
///
/// Throws DataError as setRecordField does, for a kind that newRecord does not know, and for values
/// that make it a record of another kind.
FruRecordContent newRecord(const std::string& name, const std::string& kind,
                           const std::vector<FruRecordValue>& values);

}

#endif
