// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/fru/MultiRecordEdit.h>

#include <gtest/gtest.h>

#include <recordkit/inspect/bytes/Error.h>
#include <recordkit/inspect/fru/MultiRecords.h>

#include "fru/MemoryDevice.h"

using namespace recordkit::inspect;
using namespace testing_support;

namespace {

FruRecordContent recordOf(unsigned char type, const Bytes& data)
{
    return {type, 2, text(data)};
}

/// The record's data after a change, in bytes; empty after a refusal, which `why` has.
Bytes changed(FruRecordContent record, const std::string& field, const std::string& value,
              RecordSize size = RecordSize::KEPT, std::string* why = nullptr)
{
    const FruRecordContent before = record;
    try {
        setRecordField("r1", record, field, value, size);
    } catch (const DataError& e) {
        EXPECT_EQ(record.data, before.data) << "refused, and changed";
        if (why != nullptr) {
            *why = e.what();
        }
        return {};
    }
    EXPECT_EQ(record.type, before.type);
    EXPECT_EQ(record.format, before.format);
    return {record.data.begin(), record.data.end()};
}

std::string refusal(const FruRecordContent& record, const std::string& field,
                    const std::string& value, RecordSize size = RecordSize::KEPT)
{
    std::string why = "none";
    changed(record, field, value, size, &why);
    return why;
}

/// A load: output 2, 12 V, 11.4 V to 12.6 V, 120 mV, 100 mA to 3000 mA, with its reserved bits.
const FruRecordContent LOAD =
    recordOf(2, {0xF2, 0xB0, 0x04, 0x74, 0x04, 0xEC, 0x04, 0x78, 0x00, 0x64, 0x00, 0xB8, 0x0B});
const FruRecordContent SUPPLY =
    recordOf(0, {0x20, 0x93, 0x00, 0x05, 0x1E, 0x0A, 0x28, 0x23, 0x90, 0x33, 0x50, 0x46,
                 0x20, 0x67, 0x2F, 0x3F, 0x0C, 0x1B, 0x20, 0x53, 0x23, 0x0A, 0x00, 0x05});

}

TEST(MultiRecordEdit, NumberChangesItsBitsOnly)
{
    EXPECT_EQ(changed(LOAD, "max-current", "4000"), (Bytes{0xF2, 0xB0, 0x04, 0x74, 0x04, 0xEC, 0x04,
                                                           0x78, 0x00, 0x64, 0x00, 0xA0, 0x0F}));
    EXPECT_EQ(changed(LOAD, "output", "15")[0], 0xFF);
    EXPECT_EQ(changed(LOAD, "output", "0")[0], 0xF0);
    const Bytes voltage = changed(LOAD, "nominal-voltage", "-12.05 V");
    EXPECT_EQ(voltage[1], 0x4B);
    EXPECT_EQ(voltage[2], 0xFB);
    EXPECT_EQ(part(voltage, 3, 10), part(changed(LOAD, "output", "2"), 3, 10));
    // The capacity has 12 bits; the four above it are reserved.
    const Bytes supply = changed(SUPPLY, "capacity", "0x5A5 W");
    EXPECT_EQ(supply[0], 0xA5);
    EXPECT_EQ(supply[1], 0x95);
    EXPECT_EQ(part(supply, 2, 22), part(changed(SUPPLY, "capacity", "1"), 2, 22));
    EXPECT_EQ(changed(SUPPLY, "hold-up-time", "9")[19], 0x93);
    EXPECT_EQ(changed(SUPPLY, "combined-voltage1", "3.3 V")[20], 0x33);
    EXPECT_EQ(changed(SUPPLY, "hot-swap", "no")[17], 0x13);
    EXPECT_EQ(changed(SUPPLY, "autoswitch", "yes")[17], 0x1F);
    EXPECT_EQ(changed(SUPPLY, "peak-va", "unspecified")[2], 0xFF);
    EXPECT_EQ(changed(SUPPLY, "peak-va", "unspecified")[3], 0xFF);
}

TEST(MultiRecordEdit, RangeIsCheckedFromBothSides)
{
    for (const char* const good : {"-327.68", "327.67", "0", "-0.01", "12.5", "12.00"}) {
        EXPECT_NE(changed(LOAD, "nominal-voltage", good), Bytes()) << good;
    }
    for (const char* const bad : {"-327.69", "327.68", "12.001", "", "V", "12,5", "1e3", "--1",
                                  ".5", "5.", "0x10", "12 mV", "99999999999"}) {
        EXPECT_EQ(refusal(LOAD, "nominal-voltage", bad),
                  std::string("r1.nominal-voltage: \"") + bad +
                      "\", expected -327.68 to 327.67 V in steps of 0.01");
    }
    EXPECT_EQ(changed(LOAD, "max-current", "65535")[12], 0xFF);
    EXPECT_EQ(refusal(LOAD, "max-current", "65536"),
              "r1.max-current: \"65536\", expected 0 to 65535 mA");
    EXPECT_EQ(refusal(LOAD, "max-current", "-1"), "r1.max-current: \"-1\", expected 0 to 65535 mA");
    EXPECT_EQ(refusal(SUPPLY, "capacity", "4096"), "r1.capacity: \"4096\", expected 0 to 4095 W");
    EXPECT_EQ(refusal(SUPPLY, "inrush-current", "none"),
              "r1.inrush-current: \"none\", expected 0 to 255 A, \"unspecified\"");
    EXPECT_EQ(refusal(SUPPLY, "combined-voltage1", "16"),
              "r1.combined-voltage1: \"16\", expected 0 to 15, \"12 V\", \"-12 V\", \"5 V\", \"3.3 "
              "V\"");
    EXPECT_EQ(refusal(SUPPLY, "hot-swap", "maybe"),
              "r1.hot-swap: \"maybe\", expected \"yes\" or \"no\"");
    EXPECT_EQ(refusal(LOAD, "maximum", "1"), "r1.maximum: the record has no such field");
    // Reserved bits are shown as "byte0"; they are no field to set.
    EXPECT_EQ(refusal(LOAD, "byte0", "00"), "r1.byte0: the record has no such field");
}

TEST(MultiRecordEdit, CurrentsOfExtendedRecordsHaveTheStepOfTheirUnit)
{
    Bytes data(13, 0);
    data[0] = 0x10; // 100 mA
    const FruRecordContent output = recordOf(9, data);
    EXPECT_EQ(changed(output, "max-current", "150000")[11], 0xDC);
    EXPECT_EQ(changed(output, "max-current", "150000")[12], 0x05);
    EXPECT_EQ(refusal(output, "max-current", "150050"),
              "r1.max-current: \"150050\", expected 0 to 6553500 mA in steps of 100");
    EXPECT_EQ(changed(output, "current-unit", "10 mA")[0], 0x00);
}

TEST(MultiRecordEdit, TextMayHaveAnotherLength)
{
    const FruRecordContent name = recordOf(3, {2, 'r', 'a', 'c', 'k'});
    EXPECT_EQ(changed(name, "system-name", "no. 7\xC3\xA9"),
              (Bytes{2, 'n', 'o', '.', ' ', '7', 0xE9}));
    EXPECT_EQ(changed(name, "system-name", ""), Bytes({2}));
    EXPECT_EQ(refusal(name, "system-url", "x"), "r1.system-url: the record has no such field");
    EXPECT_EQ(refusal(name, "system-name", "\xE2\x82\xAC"),
              "r1.system-name: \"\xE2\x82\xAC\", expected characters of Latin-1");
    // One that ended with a zero byte does so again.
    EXPECT_EQ(changed(recordOf(3, {2, 'r', 0, 0}), "system-name", "abc"),
              (Bytes{2, 'a', 'b', 'c', 0}));
    EXPECT_EQ(changed(name, "system-name", std::string(254, 'x')).size(), 255U);
    EXPECT_EQ(refusal(name, "system-name", std::string(255, 'x')),
              "r1.system-name: the record would have 256 bytes, it can have 255");
}

TEST(MultiRecordEdit, BytesWithoutAFieldAfterThemMayHaveAnotherLength)
{
    const FruRecordContent oem = recordOf(0xC5, {0x5A, 0x31, 0x00, 0x11, 0x22});
    EXPECT_EQ(changed(oem, "data", "33"), (Bytes{0x5A, 0x31, 0x00, 0x33}));
    EXPECT_EQ(changed(oem, "data", ""), (Bytes{0x5A, 0x31, 0x00}));
    EXPECT_EQ(changed(recordOf(0xC5, {1, 2, 3}), "data", "4455"), (Bytes{1, 2, 3, 0x44, 0x55}));
    EXPECT_EQ(refusal(oem, "data", "3"), "r1.data: \"3\", expected pairs of hex digits");
    EXPECT_EQ(changed(oem, "manufacturer", "0x123456"), (Bytes{0x56, 0x34, 0x12, 0x11, 0x22}));
    EXPECT_EQ(refusal(oem, "manufacturer", "16777216"),
              "r1.manufacturer: \"16777216\", expected 0 to 16777215");
    const FruRecordContent devices = recordOf(0xFA, {0xA2, 0x12, 0x00, 0x10, 0x29, 0xDC, 0xA6});
    EXPECT_EQ(changed(devices, "devices", "IPM"),
              (Bytes{0xA2, 0x12, 0x00, 0x10, 0x29, 0xDC, 0x02}));
    EXPECT_EQ(refusal(devices, "devices", "ipm"),
              "r1.devices: \"ipm\", expected the characters 20h to 5Fh");
}

TEST(MultiRecordEdit, GuidAddressAndEntityAreReadAsTheyAreShown)
{
    Bytes data(17, 0);
    data[0] = 7;
    const FruRecordContent guid = recordOf(3, data);
    EXPECT_EQ(changed(guid, "system-guid", "00112233-4455-6677-8899-AABBCCDDEEFF"),
              (Bytes{7, 0x33, 0x22, 0x11, 0x00, 0x55, 0x44, 0x77, 0x66, 0x88, 0x99, 0xAA, 0xBB,
                     0xCC, 0xDD, 0xEE, 0xFF}));
    for (const char* const bad :
         {"", "00112233-4455-6677-8899-AABBCCDDEEF", "00112233-4455-6677-8899-AABBCCDDEEFF0",
          "0011223-34455-6677-8899-AABBCCDDEEFF", "00112233445566778899AABBCCDDEEFF",
          "0011223g-4455-6677-8899-AABBCCDDEEFF", "0 112233-4455-6677-8899-AABBCCDDEEFF"}) {
        EXPECT_EQ(refusal(guid, "system-guid", bad),
                  std::string("r1.system-guid: \"") + bad +
                      "\", expected a GUID, such as 00112233-4455-6677-8899-AABBCCDDEEFF");
    }
    const FruRecordContent manager = recordOf(0xC0, {0x5A, 0x31, 0, 0x13, 0, 10, 0, 0, 1});
    EXPECT_EQ(changed(manager, "address", "192.168.0.255"),
              (Bytes{0x5A, 0x31, 0, 0x13, 0, 192, 168, 0, 255}));
    for (const char* const bad : {"192.168.0", "192.168.0.256", "192.168.0.1.2", "a.b.c.d", ""}) {
        EXPECT_EQ(refusal(manager, "address", bad),
                  std::string("r1.address: \"") + bad +
                      "\", expected an address such as 192.168.0.1");
    }
    const FruRecordContent base = recordOf(4, {1, 0, 0, 7, 1, 0x80});
    EXPECT_EQ(changed(base, "entity", "power supply")[3], 10);
    EXPECT_EQ(changed(base, "entity", "19")[3], 19);
    EXPECT_EQ(refusal(base, "entity", "thing"),
              "r1.entity: \"thing\", expected 0 to 255, an entity's name");
    EXPECT_EQ(changed(base, "code-start", "127"), (Bytes{1, 0, 0, 7, 1, 0xFF}));
    EXPECT_EQ(changed(base, "code-mask", "0102"), (Bytes{1, 0, 0, 7, 1, 0x80, 1, 2}));
}

TEST(MultiRecordEdit, RecordIsExtendedOnRequestOnly)
{
    const FruRecordContent access = *newRecord("management-access");
    EXPECT_EQ(text(Bytes({0})), access.data);
    EXPECT_EQ(refusal(access, "type", "system-guid"),
              "r1.type: the record has 1 byte, with \"system-guid\" it needs 17");
    EXPECT_EQ(changed(access, "type", "system-guid", RecordSize::EXTENDED).size(), 17U);
    EXPECT_EQ(changed(access, "type", "system-name"), Bytes({2}));
    // Counts, then elements.
    FruRecordContent power = *newRecord("power-distribution");
    EXPECT_EQ(power.type, 0xC0);
    EXPECT_EQ(power.data, text(Bytes({0x5A, 0x31, 0, 0x11, 0, 0})));
    EXPECT_EQ(refusal(power, "feed-count", "2").substr(0, 49),
              "r1.feed-count: the record has 6 bytes, with \"2\" i");
    setRecordField("r1", power, "feed-count", "2", RecordSize::EXTENDED);
    setRecordField("r1", power, "feed2.fru-count", "1", RecordSize::EXTENDED);
    setRecordField("r1", power, "feed2.fru1.address", "0x82", RecordSize::EXTENDED);
    EXPECT_EQ(power.data, text(Bytes({0x5A, 0x31, 0, 0x11, 0, 2}) + Bytes(6, 0) + Bytes(5, 0) +
                               Bytes({1, 0x82, 0})));
}

TEST(MultiRecordEdit, NewRecordsHaveEveryFieldOfTheirKind)
{
    const struct {
        const char* kind;
        unsigned char type;
        std::size_t size;
    } KINDS[] = {{"power-supply", 0x00, 24},
                 {"dc-output", 0x01, 13},
                 {"dc-load", 0x02, 13},
                 {"management-access", 0x03, 1},
                 {"base-compatibility", 0x04, 6},
                 {"extended-compatibility", 0x05, 6},
                 {"extended-dc-output", 0x09, 13},
                 {"extended-dc-load", 0x0A, 13},
                 {"fmc", 0xFA, 11},
                 {"fmc-i2c", 0xFA, 4},
                 {"module-current", 0xC0, 6},
                 {"shelf-manager-ip", 0xC0, 17}};
    for (const auto& each : KINDS) {
        const auto record = newRecord(each.kind);
        ASSERT_TRUE(record) << each.kind;
        EXPECT_EQ(record->type, each.type) << each.kind;
        EXPECT_EQ(record->data.size(), each.size) << each.kind;
        EXPECT_EQ(record->format, 2);
        const MultiRecord decoded = decodeMultiRecords({{record->type, 0, record->data}}).front();
        EXPECT_EQ(kindOf(decoded), each.kind);
        EXPECT_EQ(decoded.missing, 0U);
    }
    for (const char* const none : {"", "oem", "picmg", "vita", "other", "dc-output1", "board"}) {
        EXPECT_FALSE(newRecord(none)) << none;
    }
}
