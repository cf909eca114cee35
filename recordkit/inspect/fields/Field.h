// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_FIELDS_FIELD_H
#define RECORDKIT_INSPECT_FIELDS_FIELD_H

#include <cstddef>
#include <string>

#include <recordkit/inspect/bytes/ByteView.h>
#include <recordkit/inspect/fields/Place.h>
#include <recordkit/inspect/fields/Value.h>
#include <recordkit/serial/SerializableObject.h>

namespace recordkit::inspect {

/// A loaded record, and the image that it gives back. Accessors of some classes are not const.
struct Record {
    TAVLib::SerializableObject& object;
    ByteView image;
};

/// Where a field is in a certain image, and its numbers if it belongs to a list.
struct Spot {
    Place place;
    unsigned int index = 0; ///< in its list, from 0
    unsigned int outer = 0; ///< of the block that contains the list
};

/// Reads a field. Returns no value, or throws PException, if the record does not contain it.
using Accessor = Value (*)(const Record& record, const Spot& spot);

/// What a value means; empty if there is nothing to add.
using Meaning = std::string (*)(const Value& value);

/// Equal elements one after another, as many as the image says. Lists that follow each other move
/// whatever comes after them.
struct List {
    const char* letter; ///< the number of elements in offsets; nullptr if it is always the same
    unsigned int start; ///< of the first element while all lists before it are empty; in a block
                        ///< if the list is in one
    unsigned int size;  ///< bytes of an element, or of the fixed part of a block
    unsigned int (*count)(const Record& record, unsigned int outer);
    unsigned int firstNumber = 0;
    const List* after = nullptr;  ///< the list before this one
    const List* within = nullptr; ///< the list of blocks whose elements end with this list
    const List* last = nullptr;   ///< the list that ends each block, the other way round
};

/// When a record contains a field.
struct Condition {
    Place place; ///< what decides it
    bool (*holds)(const Record& record);
    const char* text; ///< "of system events"
};

/// A row of a class's table. Names of a list's fields contain {} for their numbers. A place in a
/// list counts from the element's first byte.
struct Field {
    static constexpr unsigned int MAX_ALSO = 3;

    constexpr Field(const char* fieldName, Place fieldPlace, Accessor accessor,
                    Meaning valueMeaning = nullptr)
        : name(fieldName), place(fieldPlace), get(accessor), meaning(valueMeaning)
    {
    }

    // Each returns a copy that also has what it says.

    /// What the field is, if its name does not say it.
    constexpr Field says(const char* what) const
    {
        Field copy = *this;
        copy.text = what;
        return copy;
    }
    /// A place outside the field that its value depends on too.
    constexpr Field with(Place other) const
    {
        Field copy = *this;
        copy.also[copy.alsoCount++] = other;
        return copy;
    }
    constexpr Field in(const List& elements) const
    {
        Field copy = *this;
        copy.list = &elements;
        return copy;
    }
    constexpr Field following(const List& elements) const
    {
        Field copy = *this;
        copy.after = &elements;
        return copy;
    }
    constexpr Field only(const Condition& when) const
    {
        Field copy = *this;
        copy.condition = &when;
        return copy;
    }
    /// The field ends with the image if the image ends before it.
    constexpr Field cut() const
    {
        Field copy = *this;
        copy.isCut = true;
        return copy;
    }

    const char* name;
    Place place;
    Accessor get;
    Meaning meaning;
    const char* text = nullptr;
    Place also[MAX_ALSO] = {};
    unsigned int alsoCount = 0;
    const List* list = nullptr;
    const List* after = nullptr; ///< the list before it, for a field between lists
    const Condition* condition = nullptr;
    bool isCut = false;
};

/// Rows in image order.
class FieldTable {
public:
    constexpr FieldTable() = default;
    template <std::size_t Count> constexpr FieldTable(const Field (&fields)[Count])
        : rows(fields), length(Count)
    {
    }

    constexpr const Field* begin() const { return rows; }
    constexpr const Field* end() const { return rows + length; }

private:
    const Field* rows = nullptr;
    std::size_t length = 0;
};

}

#endif
