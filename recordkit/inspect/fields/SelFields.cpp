// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/bytes/Time.h>
#include <recordkit/inspect/fields/Registry.h>
#include <recordkit/inspect/words/EventKinds.h>
#include <recordkit/sel/BMCLog.h>
#include <recordkit/sel/BMCMemoryImage.h>
#include <recordkit/sel/BMCSELEntryMessage.h>
#include <recordkit/sel/SELEntryLongText.h>

#include "Accessors.h"

namespace recordkit::inspect {

using namespace TAVLib::RecordKit;

namespace {

using S = SELEntry;
using O = OEMSELEntry;
using B = BMCSELEntry;
using M = BMCSELEntryMessage;

// Image offsets of record bytes, extended bytes, block bytes and trailer bytes.
constexpr unsigned int ofRecord(int byte)
{
    return static_cast<unsigned int>(byte) + S::HEADER_SIZE - 1;
}
constexpr unsigned int ofExtended(unsigned int byte)
{
    return S::IMAGE_SIZE + byte;
}
constexpr unsigned int ofBlock(unsigned int byte)
{
    return S::IMAGE_SIZE + byte;
}
constexpr unsigned int ofTrailer(unsigned int byte)
{
    return B::BMC_IMAGE_SIZE + byte;
}

constexpr unsigned int TYPE = ofRecord(S::RECORD_TYPE);

/// Whether an image has a record type, and one of a kind.
template <EventKind KIND> bool isOf(const Record& record)
{
    return record.image.size() > TYPE && eventKind(record.image[TYPE]) == KIND;
}

bool hasTimestamp(const Record& record)
{
    return record.image.size() > TYPE &&
           eventKind(record.image[TYPE]) != EventKind::OEM_UNTIMESTAMPED;
}

constexpr Condition SYSTEM = {bytesAt(TYPE), isOf<EventKind::SYSTEM_EVENT>, "of system events"};
constexpr Condition TIMED = {bitsAt(TYPE, 7, 5), hasTimestamp, "of records with a timestamp"};
constexpr Condition OEM_TIMED = {bitsAt(TYPE, 7, 5), isOf<EventKind::OEM_TIMESTAMPED>,
                                 "of OEM records with a timestamp"};
constexpr Condition OEM_UNTIMED = {bitsAt(TYPE, 7, 5), isOf<EventKind::OEM_UNTIMESTAMPED>,
                                   "of OEM records without a timestamp"};
constexpr Condition OTHER = {bytesAt(TYPE), isOf<EventKind::OTHER>, "of other records"};

std::string asTime(const Value& seconds)
{
    return Timestamp(numberOf(seconds)).toText();
}

std::string asRecordType(const Value& type)
{
    switch (eventKind(static_cast<unsigned char>(numberOf(type)))) {
    case EventKind::SYSTEM_EVENT:
        return "system event";
    case EventKind::OEM_TIMESTAMPED:
        return "OEM with a timestamp";
    case EventKind::OEM_UNTIMESTAMPED:
        return "OEM without a timestamp";
    case EventKind::OTHER:
        break;
    }
    return "";
}

std::string asDirection(const Value& isDeassertion)
{
    return std::get<bool>(isDeassertion) ? "deasserted" : "asserted";
}

Value serialNumber(const Record& record, const Spot&)
{
    return toValue(objectOf<B>(record).B::getSerialNo(M::LONG_SERIAL_NUMBER_SIZE));
}

// clang-format off
constexpr List EVENT_DATA = {nullptr, ofRecord(S::EVENT_DATA_1), 1, always<3>, 1};
constexpr Field SEL_ENTRY[] = {
    {"next_record_id", bytesAt(0, S::HEADER_SIZE), number, asHex},
    {"record_id", bytesAt(ofRecord(S::RECORD_ID), 2), number, asHex},
    {"record_type", bytesAt(TYPE), number, asRecordType},
    Field{"timestamp", bytesAt(ofRecord(S::TIMESTAMP), 4), number, asTime}.only(TIMED),
    Field{"generator_id_1", bytesAt(ofRecord(S::GENERATOR_ID_1)), number, asHex}.only(SYSTEM),
    Field{"generator_id_2", bytesAt(ofRecord(S::GENERATOR_ID_2)), number, asHex}.only(SYSTEM),
    Field{"slave_address", bytesAt(ofRecord(S::GENERATOR_ID_1)), ask<&S::getSlaveAddress>, asHex}.only(SYSTEM),
    Field{"lun", bitsAt(ofRecord(S::GENERATOR_ID_2), 1, 0), ask<&S::getLUN>}.with(bytesAt(ofRecord(S::GENERATOR_ID_1))).only(SYSTEM),
    Field{"evm_revision", bytesAt(ofRecord(S::EVM_REVISION)), number}.only(SYSTEM).says("event message format revision"),
    Field{"sensor_type", bytesAt(ofRecord(S::SENSOR_TYPE)), number, asSensorType}.only(SYSTEM),
    Field{"sensor_number", bytesAt(ofRecord(S::SENSOR_NUMBER)), number, asHex}.only(SYSTEM),
    Field{"deassertion", bitAt(ofRecord(S::EVENT_TYPE), 7), flag, asDirection}.only(SYSTEM),
    Field{"event_type", bitsAt(ofRecord(S::EVENT_TYPE), 6, 0), number, asEventType}.only(SYSTEM),
    Field{"event_data_{}", bytesAt(0), number, asHex}.in(EVENT_DATA).only(SYSTEM),
    Field{"manufacturer_id", bytesAt(ofRecord(S::OEM_MANUFACTURER_ID), 3), number}.only(OEM_TIMED),
    Field{"oem_data", bytesAt(ofRecord(S::OEM_TIMESTAMPED_DATA), 6), hexDigits}.only(OEM_TIMED),
    Field{"oem_data", bytesAt(ofRecord(S::OEM_UNTIMESTAMPED_DATA), 13), hexDigits}.only(OEM_UNTIMED),
    Field{"data", bytesAt(ofRecord(S::GENERATOR_ID_1), 9), hexDigits}.only(OTHER),
    Field{"record", bytesAt(S::HEADER_SIZE, S::RECORD_SIZE), ask<&S::printSELData>}.says("the whole record"),
};

constexpr List OEM_EVENT_DATA = {nullptr, ofExtended(O::EXTENDED_EVENT_DATA), 1, always<O::EVENT_DATA_SIZE>, 1};
constexpr Field OEM_EXTENSION[] = {
    Field{"oem_event_data_{}", bytesAt(0), number, asHex}.in(OEM_EVENT_DATA),
    {"partition_bitmask", bytesAt(ofExtended(O::EXTENDED_PARTITION_BITMASK), 2), ask<&O::getPartitionBitmask>, asHex},
    {"part_number", bytesAt(ofExtended(O::EXTENDED_PART_NUMBER_TYPE_LENGTH), 1 + O::PART_NUMBER_SIZE), ask<&O::getPartNo>},
    Field{"serial_number", bytesAt(ofExtended(O::EXTENDED_SERIAL_NUMBER_TYPE_LENGTH), 1 + O::SERIAL_NUMBER_SIZE), ask<&O::getSerialNo>}.cut(),
};

constexpr Place BITMASK = bytesAt(ofBlock(B::BLOCK_PARTITION_BITMASK), 2);
constexpr Place SERIAL_NUMBER = bytesAt(ofBlock(B::BLOCK_SERIAL_NUMBER_TYPE_LENGTH), 1 + M::LONG_SERIAL_NUMBER_SIZE);
constexpr Field OEM_COUNT = {"oem_event_data_count", bytesAt(ofBlock(B::BLOCK_EVENT_DATA_COUNT)), number};
constexpr Field OEM_DATA = {"oem_event_data", bytesAt(ofBlock(B::BLOCK_EVENT_DATA), B::EVENT_DATA_SIZE), hexDigits};
constexpr Field PART_NUMBER = {"part_number", bytesAt(ofBlock(B::BLOCK_PART_NUMBER_TYPE_LENGTH), 1 + B::PART_NUMBER_SIZE), ask<&B::getPartNo>};
constexpr Field BMC_BLOCK[] = {
    OEM_COUNT,
    OEM_DATA,
    {"partition_bitmask", BITMASK, ask<&B::getPartitionBitmask>, asHex},
    PART_NUMBER,
    Field{"serial_number", SERIAL_NUMBER, serialNumber}.cut(),
};

constexpr Place KIND = bytesAt(ofTrailer(M::TRAILER_KIND));
constexpr Place OWN_BITMASK = bytesAt(ofTrailer(M::TRAILER_PARTITION_BITMASK), 2);
constexpr Field MESSAGE[] = {
    OEM_COUNT,
    OEM_DATA,
    Field{"partition_bitmask", BITMASK, ask<&M::getPartitionBitmask>, asHex}.with(KIND).with(OWN_BITMASK),
    PART_NUMBER,
    Field{"serial_number", SERIAL_NUMBER, ask<&M::getSerialNo>}.with(KIND).cut(),
    Field{"trailer_kind", KIND, number}.says("trailer kind; 1: the trailer has its own partition bitmask"),
    {"trailer_partition_bitmask", OWN_BITMASK, number, asHex},
};

constexpr Field LONG_TEXT[] = {
    Field{"text", bytesAt(SELEntryLongText::TEXT_OFFSET, SELEntryLongText::MAX_SIZE - SELEntryLongText::TEXT_OFFSET), ask<&SELEntryLongText::getLongText>}.cut(),
};

template <typename Raw> constexpr Field RAW[] = {
    Field{"bytes", bytesAt(0, Raw::MAX_SIZE), hexDigits}.cut(),
};

constexpr RecordClass CLASSES[] = {
    describe<S>("SELEntry", {2, 18}, "event record as Get SEL Entry answers it", SEL_ENTRY),
    describe<O>("OEMSELEntry", {2, 74}, "event record with extended data", SEL_ENTRY, OEM_EXTENSION),
    describe<B>("BMCSELEntry", {2, 130}, "event record of the management board", SEL_ENTRY, BMC_BLOCK),
    describe<M>("BMCSELEntryMessage", {2, 138}, "slot of an event log file", SEL_ENTRY, MESSAGE),
    describe<SELEntryLongText>("SELEntryLongText", {15, 79}, "long text of an event", LONG_TEXT),
    describe<BMCLog>("BMCLog", {0, 135}, "raw log of a management controller", RAW<BMCLog>),
    describe<BMCMemoryImage>("BMCMemoryImage", {0, 131}, "raw memory of a management controller", RAW<BMCMemoryImage>),
};
// clang-format on

}

constexpr RecordClasses SEL_CLASSES = CLASSES;

}
