// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/bytes/Hex.h>
#include <recordkit/inspect/bytes/Text.h>
#include <recordkit/inspect/bytes/Time.h>
#include <recordkit/sel/BMCLog.h>
#include <recordkit/sel/BMCMemoryImage.h>
#include <recordkit/sel/BMCSELEntryMessage.h>
#include <recordkit/sel/SELEntryLongText.h>

#include "FieldTable.h"

namespace recordkit::tool {

using namespace TAVLib::RecordKit;

namespace {

std::string timeMeaning(const Json& seconds)
{
    return Timestamp(seconds.get<unsigned int>()).toText();
}

std::string recordTypeMeaning(const Json& type)
{
    const auto number = type.get<unsigned int>();
    if (number == SELEntry::SYSTEM_EVENT_RECORD) {
        return "system event";
    }
    if (number >= SELEntry::FIRST_OEM_UNTIMESTAMPED_RECORD) {
        return "OEM without a timestamp";
    }
    return number >= SELEntry::FIRST_OEM_TIMESTAMPED_RECORD ? "OEM with a timestamp" : "";
}

std::string directionMeaning(const Json& isDeassertion)
{
    return isDeassertion.get<bool>() ? "deasserted" : "asserted";
}

/// Record bytes, low byte first; their offset is their IPMI number plus one.
template <typename Entry>
Row<Entry> recordBytes(const char* name, int first, unsigned int width, Meaning meaning = nullptr)
{
    const Place place = {static_cast<unsigned int>(first + 1), width};
    return field<Entry>(
        name, place,
        [=](Entry& entry) {
            unsigned int value = 0;
            for (unsigned int i = 0; i < width; ++i) {
                const unsigned int byte =
                    entry.getSpecifiedBytePosData(first + static_cast<int>(i));
                value |= byte << 8 * i;
            }
            return value;
        },
        meaning);
}

/// Some bits of a record byte.
template <typename Entry> Row<Entry> recordBits(const char* name, int byte, const char* bits,
                                                unsigned int first, unsigned int width,
                                                Meaning meaning)
{
    const Place place = {static_cast<unsigned int>(byte + 1), 1, bits};
    return field<Entry>(
        name, place,
        [=](Entry& entry) {
            return entry.getSpecifiedBytePosData(byte) >> first & ((1U << width) - 1U);
        },
        meaning);
}

// clang-format off
template <typename Entry> Rows<Entry> selEntry()
{
    return {
        recordBytes<Entry>("next_record_id", -1, 2, hexMeaning),
        recordBytes<Entry>("record_id", SELEntry::RECORD_ID, 2, hexMeaning),
        recordBytes<Entry>("record_type", SELEntry::RECORD_TYPE, 1, recordTypeMeaning),
        recordBytes<Entry>("timestamp", SELEntry::TIMESTAMP, 4, timeMeaning),
        recordBytes<Entry>("generator_id_1", SELEntry::GENERATOR_ID_1, 1, hexMeaning),
        recordBytes<Entry>("generator_id_2", SELEntry::GENERATOR_ID_2, 1, hexMeaning),
        field<Entry>("slave_address", {9, 1}, &Entry::getSlaveAddress, hexMeaning),
        field<Entry>("lun", {10, 1, "1..0"}, &Entry::getLUN),
        recordBytes<Entry>("evm_revision", SELEntry::EVM_REVISION, 1),
        recordBytes<Entry>("sensor_type", SELEntry::SENSOR_TYPE, 1, sensorTypeMeaning),
        recordBytes<Entry>("sensor_number", SELEntry::SENSOR_NUMBER, 1, hexMeaning),
        field<Entry>("deassertion", {14, 1, "7"}, [](Entry& entry) {
            return (entry.getSpecifiedBytePosData(SELEntry::EVENT_TYPE) & 0x80) != 0;
        }, directionMeaning),
        recordBits<Entry>("event_type", SELEntry::EVENT_TYPE, "6..0", 0, 7, eventTypeMeaning),
        recordBytes<Entry>("event_data_1", SELEntry::EVENT_DATA_1, 1, hexMeaning),
        recordBytes<Entry>("event_data_2", SELEntry::EVENT_DATA_1 + 1, 1, hexMeaning),
        recordBytes<Entry>("event_data_3", SELEntry::EVENT_DATA_1 + 2, 1, hexMeaning),
        field<Entry>("record", {2, 16}, &Entry::printSELData),
    };
    // The analyzer believes that std::function leaks its target.
    // NOLINTNEXTLINE(clang-analyzer-cplusplus.NewDeleteLeaks)
}

/// The extended fields, which have different offsets in each of the wider entries.
template <typename Entry>
Rows<Entry> extended(unsigned int bitmask, unsigned int partNumber, unsigned int serialNumber)
{
    return {
        field<Entry>("partition_bitmask", {bitmask, 2}, [](Entry& entry) { return static_cast<unsigned int>(entry.getPartitionBitmask()); }, hexMeaning),
        field<Entry>("part_number", {partNumber, 19}, [](Entry& entry) { return entry.getPartNo(); }),
        field<Entry>("serial_number", {serialNumber, 13}, [](Entry& entry) {
            if constexpr (std::is_same_v<Entry, BMCSELEntry>) {
                return entry.getSerialNo(OEMSELEntry::SERIAL_NUMBER_SIZE);
            } else {
                return entry.getSerialNo();
            }
        }),
    };
}

Rows<OEMSELEntry> oemEventData()
{
    Rows<OEMSELEntry> rows;
    for (unsigned int n = 1; n <= OEMSELEntry::EVENT_DATA_SIZE; ++n) {
        rows.push_back(field<OEMSELEntry>("oem_event_data_" + std::to_string(n), {17 + n, 1},
                                          [n](OEMSELEntry& entry) {
            return static_cast<unsigned int>(entry.getSpecifiedEventData(static_cast<int>(n)));
        }, hexMeaning));
    }
    return rows;
}

const Rows<OEMSELEntry> OEM_SEL_ENTRY =
    selEntry<OEMSELEntry>() + oemEventData() + extended<OEMSELEntry>(31, 33, 52);
const Rows<BMCSELEntry> BMC_SEL_ENTRY = selEntry<BMCSELEntry>() + extended<BMCSELEntry>(87, 89, 108);
const Rows<BMCSELEntryMessage> BMC_SEL_ENTRY_MESSAGE =
    selEntry<BMCSELEntryMessage>() + extended<BMCSELEntryMessage>(87, 89, 108);

const Rows<SELEntryLongText> SEL_ENTRY_LONG_TEXT = {
    field<SELEntryLongText>("text", {14, 65}, &SELEntryLongText::getLongText),
};

template <typename Raw> Rows<Raw> rawImage()
{
    return {
        [](Raw& raw, DecodedFields& fields) {
            std::string bytes(raw.getSerializedSize(), '\0');
            std::vector<unsigned char> image(bytes.size());
            raw.getSerialized(image.data(), static_cast<unsigned int>(image.size()));
            bytes.assign(image.begin(), image.end());
            fields.push_back({"bytes", {0, static_cast<unsigned int>(image.size())}, toHex(bytes), ""});
        },
    };
}
// clang-format on

}

std::vector<RecordClass> selClasses()
{
    return {
        describe("SELEntry", "2 to 18", "event record as Get SEL Entry answers it",
                 selEntry<SELEntry>()),
        describe("OEMSELEntry", "2 to 74", "event record with extended data", OEM_SEL_ENTRY),
        describe("BMCSELEntry", "2 to 130", "event record of the management board", BMC_SEL_ENTRY),
        describe("BMCSELEntryMessage", "2 to 138", "slot of an event log file",
                 BMC_SEL_ENTRY_MESSAGE),
        describe("SELEntryLongText", "15 to 79", "long text of an event", SEL_ENTRY_LONG_TEXT),
        describe("BMCLog", "0 to 135", "raw log of a management controller", rawImage<BMCLog>()),
        describe("BMCMemoryImage", "0 to 131", "raw memory of a management controller",
                 rawImage<BMCMemoryImage>()),
    };
}

}
