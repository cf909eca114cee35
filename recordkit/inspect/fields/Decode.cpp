// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/fields/RecordClass.h>

#include <algorithm>
#include <fmt/format.h>

#include <recordkit/inspect/bytes/Error.h>
#include <recordkit/platform/PException.h>
#include <recordkit/serial/PaddedImage.h>

namespace recordkit::inspect {

namespace {

unsigned int lengthOf(const Record& record, const List& list, unsigned int outer);

/// Bytes of one element.
unsigned int sizeOf(const Record& record, const List& list, unsigned int index)
{
    return list.size + (list.last == nullptr ? 0 : lengthOf(record, *list.last, index));
}

/// Bytes of all elements.
unsigned int lengthOf(const Record& record, const List& list, unsigned int outer)
{
    unsigned int length = 0;
    const unsigned int count = list.count(record, outer);
    for (unsigned int i = 0; i < count; ++i) {
        length += sizeOf(record, list, i);
    }
    return length;
}

/// How far a list and those before it move what comes after them.
unsigned int shiftBy(const Record& record, const List* list)
{
    return list == nullptr ? 0 : lengthOf(record, *list, 0) + shiftBy(record, list->after);
}

/// The elements of a list whose first one is at `at`; `spots` have their first bytes.
void appendElements(const Record& record, const List& list, unsigned int at, unsigned int outer,
                    std::vector<Spot>& spots)
{
    const unsigned int count = list.count(record, outer);
    for (unsigned int i = 0; i < count; ++i) {
        spots.push_back({bytesAt(at), i, outer});
        at += sizeOf(record, list, i);
    }
}

/// Where each occurrence of a field begins.
std::vector<Spot> spotsOf(const Record& record, const Field& field)
{
    std::vector<Spot> spots;
    if (field.list == nullptr) {
        spots.push_back({bytesAt(shiftBy(record, field.after))});
        return spots;
    }
    const List& list = *field.list;
    if (list.within == nullptr) {
        appendElements(record, list, list.start + shiftBy(record, list.after), 0, spots);
        return spots;
    }
    std::vector<Spot> blocks;
    appendElements(record, *list.within, list.within->start + shiftBy(record, list.within->after),
                   0, blocks);
    for (const Spot& block : blocks) {
        appendElements(record, list, block.place.offset + list.start, block.index, spots);
    }
    return spots;
}

std::string nameOf(const Field& field, const Spot& spot)
{
    if (field.list == nullptr) {
        return field.name;
    }
    const unsigned int number = spot.index + field.list->firstNumber;
    return field.list->within == nullptr
               ? fmt::format(fmt::runtime(field.name), number)
               : fmt::format(fmt::runtime(field.name), spot.outer, number);
}

DecodedField decodeField(const Record& record, const Field& field, Spot spot)
{
    const unsigned int shift = spot.place.offset;
    spot.place = field.place.movedBy(shift);
    if (field.isCut) {
        const auto size = static_cast<unsigned int>(record.image.size());
        spot.place.width = std::min(spot.place.width, size - std::min(size, spot.place.offset));
    }
    DecodedField decoded = {nameOf(field, spot), spot.place, {}, {}, "", &field};
    for (unsigned int i = 0; i < field.alsoCount; ++i) {
        decoded.also.push_back(field.also[i].movedBy(shift));
    }
    try {
        decoded.value = field.get(record, spot);
    } catch (const TAVLib::PException&) {
        decoded.value = {};
    }
    if (isNone(decoded.value)) {
        decoded.meaning = "not in this record";
    } else if (field.meaning != nullptr) {
        decoded.meaning = field.meaning(decoded.value);
    }
    return decoded;
}

void appendField(const Record& record, const Field& field, DecodedFields& fields)
{
    if (field.condition != nullptr && !field.condition->holds(record)) {
        return;
    }
    for (const Spot& spot : spotsOf(record, field)) {
        fields.push_back(decodeField(record, field, spot));
    }
}

/// The list whose elements a field belongs to, directly or in a list of theirs. The fields of an
/// element stay together.
const List* blocksOf(const Field& field)
{
    return field.list == nullptr || field.list->within == nullptr ? field.list : field.list->within;
}

bool isBefore(const DecodedField& left, const DecodedField& right)
{
    return left.place.offset < right.place.offset;
}

bool isTaken(TAVLib::SerializableObject& object, ByteView image)
{
    try {
        return TAVLib::setSerializedPadded(object, image.copy());
    } catch (const TAVLib::PException&) {
        return false;
    }
}

/// An object with the image; throws DataError if the class refuses it.
std::unique_ptr<TAVLib::SerializableObject> load(const RecordClass& recordClass, ByteView image)
{
    auto object = recordClass.create();
    if (!isTaken(*object, image)) {
        throw DataError(fmt::format("not an image of {}: size {}, expected {}", recordClass.name,
                                    image.size(), recordClass.sizes.text()));
    }
    // Some classes take what an image promises for zeroes.
    if (object->getSerializedSize() > image.size()) {
        throw DataError(fmt::format("not a whole image of {}: size {}, expected {} by its counts",
                                    recordClass.name, image.size(), object->getSerializedSize()));
    }
    return object;
}

}

std::string ImageSizes::text() const
{
    if (more != nullptr) {
        return fmt::format("{} {}", least, more);
    }
    return least == most ? std::to_string(least) : fmt::format("{} to {}", least, most);
}

std::size_t takenSize(const RecordClass& recordClass, ByteView image)
{
    return recordClass.decode != nullptr ? image.size()
                                         : load(recordClass, image)->getSerializedSize();
}

DecodedFields decodeRecord(const RecordClass& recordClass, ByteView image)
{
    if (recordClass.decode != nullptr) {
        return recordClass.decode(image);
    }
    const auto object = load(recordClass, image);
    Bytes stored(object->getSerializedSize());
    object->getSerialized(stored.data(), static_cast<unsigned int>(stored.size()));
    const Record record = {*object, stored};
    DecodedFields fields;
    for (const FieldTable& table : recordClass.tables) {
        const List* blocks = nullptr;
        std::ptrdiff_t first = 0;
        for (const Field& field : table) {
            if (blocks == nullptr || blocksOf(field) != blocks) {
                blocks = blocksOf(field);
                first = static_cast<std::ptrdiff_t>(fields.size());
            }
            appendField(record, field, fields);
            if (blocks != nullptr) {
                std::stable_sort(fields.begin() + first, fields.end(), isBefore);
            }
        }
    }
    return fields;
}

}
