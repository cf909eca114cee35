// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_FIELDS_RECORDCLASS_H
#define RECORDKIT_INSPECT_FIELDS_RECORDCLASS_H

#include <memory>
#include <string>
#include <vector>

#include <recordkit/inspect/fields/Field.h>

namespace recordkit::inspect {

/// A field of a certain image.
struct DecodedField {
    std::string name;
    Place place;
    std::vector<Place> also;    ///< other places that decide its value
    Value value;                ///< none for a field that this record does not contain
    std::string meaning;        ///< empty if there is nothing to add
    const Field* row = nullptr; ///< of its table; nullptr where the image has fields of its own
};
using DecodedFields = std::vector<DecodedField>;

/// How many bytes an image of a class has.
struct ImageSizes {
    unsigned int least;
    unsigned int most;
    const char* more = nullptr; ///< what they depend on, such as "+ 2 a slot"

    /// "12", "2 to 14" or "9 + 2 a slot".
    std::string text() const;
};

/// A class of records with an image, and its fields.
struct RecordClass {
    static constexpr unsigned int MAX_TABLES = 3;

    const char* name;
    ImageSizes sizes;
    const char* description;
    /// An object without contents; nullptr for what reads a device instead of an image.
    std::unique_ptr<TAVLib::SerializableObject> (*create)();
    FieldTable tables[MAX_TABLES];
    /// Reads an image where there are no tables, because every image has fields of its own.
    DecodedFields (*decode)(ByteView image) = nullptr;
};

/// The classes of a subsystem.
class RecordClasses {
public:
    template <std::size_t Count> constexpr RecordClasses(const RecordClass (&classes)[Count])
        : first(classes), length(Count)
    {
    }

    constexpr const RecordClass* begin() const { return first; }
    constexpr const RecordClass* end() const { return first + length; }

private:
    const RecordClass* first;
    std::size_t length;
};

/// All classes with tables, by subsystem.
std::vector<const RecordClass*> recordClasses();

/// The bytes at the beginning of an image that the class takes; the others are no part of the
/// record. Throws DataError for an image that the class refuses.
std::size_t takenSize(const RecordClass& recordClass, ByteView image);

/// Every field of an image, lists element by element. Throws DataError for an image that the class
/// refuses.
DecodedFields decodeRecord(const RecordClass& recordClass, ByteView image);

}

#endif
