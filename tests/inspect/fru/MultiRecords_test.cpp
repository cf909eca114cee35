// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <gtest/gtest.h>
#include <numeric>

#include <recordkit/inspect/bytes/Hex.h>
#include <recordkit/inspect/fru/FruImage.h>
#include <recordkit/inspect/fru/MultiRecords.h>

#include "fru/MemoryDevice.h"

using namespace recordkit::inspect;
using namespace testing_support;

namespace {

constexpr unsigned int OFFSET = 100; // of the data in its image

Bytes fromHex(const std::string& text)
{
    Bytes bytes;
    EXPECT_EQ(parseHexDigits(text, bytes), std::string::npos) << text;
    return bytes;
}

MultiRecord decode(unsigned char type, const Bytes& bytes)
{
    return decodeMultiRecords({{type, OFFSET, bytes}}).at(0);
}

std::string lineOf(const MultiRecordField& field)
{
    return field.name + "=" + field.text + (field.unit[0] == '\0' ? "" : " ") + field.unit;
}

/// "name=text unit" for each field, after the record's name.
Lines linesOf(const MultiRecord& record)
{
    Lines lines = {record.name};
    for (const MultiRecordField& field : record.fields) {
        lines.push_back(lineOf(field));
    }
    return lines;
}

Lines decoded(unsigned char type, const std::string& hex)
{
    return linesOf(decode(type, fromHex(hex)));
}

/// The field as it is without its record's name; empty if it is missing.
std::string field(unsigned char type, const std::string& hex, const std::string& name)
{
    const MultiRecord record = decode(type, fromHex(hex));
    const MultiRecordField* const found = record.findField(name);
    return found == nullptr ? "" : lineOf(*found).substr(name.size() + 1);
}

/// Records of PICMG without their first five bytes.
Lines picmg(const std::string& id, const std::string& hex, const std::string& format = "00")
{
    Lines lines = decoded(0xC0, "5A3100" + id + format + hex);
    EXPECT_GE(lines.size(), 4U);
    lines.erase(lines.begin() + 1, lines.begin() + 4);
    return lines;
}

unsigned int missingOf(unsigned char type, const std::string& hex)
{
    return decode(type, fromHex(hex)).missing;
}

const std::string SUPPLY = "EE02"     // 750 W
                           "D006"     // 1744 VA
                           "37"       // 55 A
                           "05"       // 5 ms
                           "2823B036" // 90 to 140 V
                           "50462067" // 180 to 264 V
                           "2F3F"     // 47 to 63 Hz
                           "14"       // 20 ms
                           "1F"       // every flag
                           "52C3"     // 850 W for 12 s
                           "23E803"   // 5 V and 3.3 V, 1000 W
                           "85";      // 133 rotations a second

const std::string OUTPUT = "81"    // output 1, also on standby
                           "B004"  // 12 V
                           "7404"  // 11.4 V
                           "EC04"  // 12.6 V
                           "7800"  // 120 mV
                           "6400"  // 100 mA
                           "30F2"; // 62000 mA

}

TEST(MultiRecords, PowerSupplyInformation)
{
    EXPECT_EQ(decoded(0x00, SUPPLY), Lines({"power-supply1",
                                            "capacity=750 W",
                                            "peak-va=1744 VA",
                                            "inrush-current=55 A",
                                            "inrush-interval=5 ms",
                                            "input1-low=90.00 V",
                                            "input1-high=140.00 V",
                                            "input2-low=180.00 V",
                                            "input2-high=264.00 V",
                                            "frequency-low=47 Hz",
                                            "frequency-high=63 Hz",
                                            "dropout-tolerance=20 ms",
                                            "predictive-fail=yes",
                                            "power-factor-correction=yes",
                                            "autoswitch=yes",
                                            "hot-swap=yes",
                                            "fail-signal=two pulses per rotation",
                                            "peak-capacity=850 W",
                                            "hold-up-time=12 s",
                                            "combined-voltage2=3.3 V",
                                            "combined-voltage1=5 V",
                                            "combined-capacity=1000 W",
                                            "tachometer-threshold=133 /s"}));
}

TEST(MultiRecords, FieldsHaveTheirPlaceInTheImageAndANumber)
{
    const MultiRecord record = decode(0x00, fromHex(SUPPLY));
    const MultiRecordField* const holdUp = record.findField("hold-up-time");
    ASSERT_NE(holdUp, nullptr);
    EXPECT_EQ(holdUp->offset, OFFSET + 18);
    EXPECT_EQ(holdUp->width, 2U);
    EXPECT_EQ(holdUp->high, 15U);
    EXPECT_EQ(holdUp->low, 12U);
    EXPECT_TRUE(holdUp->isBits());
    EXPECT_EQ(holdUp->value, Value(12LL));
    EXPECT_FALSE(record.findField("peak-va")->isBits());
    EXPECT_EQ(record.findField("hot-swap")->value, Value(true));
    EXPECT_EQ(decode(0x0B, {0xCA}).findField("data")->value, Value(std::string("CA")));
    EXPECT_EQ(record.findField("input1-low")->value, Value(90.0));
    EXPECT_EQ(record.findField("combined-voltage1")->value, Value(2LL));
    EXPECT_EQ(record.findField("nothing"), nullptr);
    // The upper bits only: high is whole, low is not.
    EXPECT_TRUE(record.findField("combined-voltage1")->isBits());
}

/// The supply with other bytes from an offset on.
std::string supplyWith(std::size_t offset, const std::string& hex)
{
    std::string changed = SUPPLY;
    return changed.replace(2 * offset, hex.size(), hex);
}

TEST(MultiRecords, PowerSupplyValuesThatAreNotSpecified)
{
    const auto supply = [](std::size_t offset, const std::string& hex, const std::string& name) {
        return field(0x00, supplyWith(offset, hex), name);
    };
    EXPECT_EQ(supply(2, "FFFF", "peak-va"), "unspecified VA");
    EXPECT_EQ(supply(2, "FEFF", "peak-va"), "65534 VA");
    EXPECT_EQ(supply(4, "FF", "inrush-current"), "unspecified A");
    EXPECT_EQ(supply(4, "FE", "inrush-current"), "254 A");
    EXPECT_EQ(supply(18, "FF0F", "peak-capacity"), "unspecified W");
    EXPECT_EQ(supply(18, "FEFF", "peak-capacity"), "4094 W");
    EXPECT_EQ(supply(18, "FFFF", "hold-up-time"), "15 s");
    const MultiRecord record = decode(0x00, fromHex(supplyWith(2, "FFFF")));
    EXPECT_TRUE(isNone(record.findField("peak-va")->value));
}

TEST(MultiRecords, PowerSupplySignalsAFailureByItsPinOrItsTachometer)
{
    EXPECT_EQ(field(0x00, supplyWith(17, "0F"), "fail-signal"), "one pulse per rotation");
    EXPECT_EQ(field(0x00, supplyWith(23, "00"), "fail-signal"), "0 for a failure");
    EXPECT_EQ(field(0x00, supplyWith(17, "0052C323E80300"), "fail-signal"), "1 for a failure");
    EXPECT_EQ(field(0x00, supplyWith(17, "0E"), "predictive-fail"), "no");
    EXPECT_EQ(field(0x00, supplyWith(17, "01"), "autoswitch"), "no");
    // Without byte 23 it is not known what bit 4 means.
    EXPECT_EQ(field(0x00, SUPPLY.substr(0, 46), "fail-signal"), "");
    EXPECT_EQ(field(0x00, SUPPLY.substr(0, 46), "byte17"), "10");
}

TEST(MultiRecords, CombinedVoltagesHaveNames)
{
    const auto voltages = [](const std::string& hex) {
        return field(0x00, supplyWith(20, hex), "combined-voltage1") + ", " +
               field(0x00, supplyWith(20, hex), "combined-voltage2");
    };
    EXPECT_EQ(voltages("01"), "12 V, -12 V");
    EXPECT_EQ(voltages("23"), "5 V, 3.3 V");
    EXPECT_EQ(voltages("4F"), "4, 15");
}

TEST(MultiRecords, BitsThatNoFieldCoversAreShown)
{
    EXPECT_EQ(field(0x00, supplyWith(0, "EEF2"), "byte1"), "F0");
    EXPECT_EQ(field(0x00, supplyWith(0, "EE02"), "byte1"), "");
    EXPECT_EQ(field(0x00, supplyWith(17, "FF"), "byte17"), "E0");
    EXPECT_EQ(field(0x00, SUPPLY + "0007", "byte24"), "0007");
    EXPECT_EQ(field(0x00, SUPPLY + "00", "byte24"), "00");
    EXPECT_EQ(field(0x01, "F1" + OUTPUT.substr(2), "byte0"), "70");
    EXPECT_EQ(field(0x05, "000000000080", "byte5"), "80");
    // From the highest to the lowest of these bits.
    const MultiRecord bits = decode(0x01, fromHex("F1" + OUTPUT.substr(2)));
    EXPECT_EQ(bits.findField("byte0")->high, 6U);
    EXPECT_EQ(bits.findField("byte0")->low, 4U);
    const MultiRecord record = decode(0x00, fromHex(SUPPLY + "0007"));
    EXPECT_EQ(record.fields.back().offset, OFFSET + 24);
    EXPECT_EQ(record.fields.back().width, 2U);
    EXPECT_FALSE(record.fields.back().isBits());
}

TEST(MultiRecords, DcOutput)
{
    EXPECT_EQ(decoded(0x01, OUTPUT),
              Lines({"dc-output1", "output=1", "standby=yes", "nominal-voltage=12.00 V",
                     "negative-deviation=11.40 V", "positive-deviation=12.60 V", "ripple=120 mV",
                     "min-current=100 mA", "max-current=62000 mA"}));
    EXPECT_EQ(field(0x01, "0FFFFF" + OUTPUT.substr(6), "output"), "15");
    EXPECT_EQ(field(0x01, "0FFFFF" + OUTPUT.substr(6), "standby"), "no");
    EXPECT_EQ(field(0x01, "0FFFFF" + OUTPUT.substr(6), "nominal-voltage"), "-0.01 V");
    EXPECT_EQ(field(0x01, "0F0080" + OUTPUT.substr(6), "nominal-voltage"), "-327.68 V");
    EXPECT_EQ(field(0x01, "0FFF7F" + OUTPUT.substr(6), "nominal-voltage"), "327.67 V");
    // Currents and noise are not signed.
    EXPECT_EQ(field(0x01, OUTPUT.substr(0, 14) + "FFFFFFFFFFFF", "ripple"), "65535 mV");
    EXPECT_EQ(field(0x01, OUTPUT.substr(0, 14) + "FFFFFFFFFFFF", "max-current"), "65535 mA");
}

TEST(MultiRecords, DcLoad)
{
    EXPECT_EQ(
        decoded(0x02, "02"
                      "4A01"
                      "2901"
                      "6B01"
                      "3200"
                      "0A00"
                      "E803"),
        Lines({"dc-load1", "output=2", "nominal-voltage=3.30 V", "min-voltage=2.97 V",
               "max-voltage=3.63 V", "ripple=50 mV", "min-current=10 mA", "max-current=1000 mA"}));
    EXPECT_EQ(field(0x02, "824A0129016B0132000A00E803", "byte0"), "80");
}

TEST(MultiRecords, ExtendedRecordsCountTensOrHundredsOfMilliamperes)
{
    EXPECT_EQ(decoded(0x09, "82" + OUTPUT.substr(2)),
              Lines({"extended-dc-output1", "output=2", "current-unit=10 mA", "standby=yes",
                     "nominal-voltage=12.00 V", "negative-deviation=11.40 V",
                     "positive-deviation=12.60 V", "ripple=120 mV", "min-current=1000 mA",
                     "max-current=620000 mA"}));
    EXPECT_EQ(field(0x09, "12" + OUTPUT.substr(2), "current-unit"), "100 mA");
    EXPECT_EQ(field(0x09, "12" + OUTPUT.substr(2), "standby"), "no");
    EXPECT_EQ(field(0x09, "12" + OUTPUT.substr(2), "max-current"), "6200000 mA");
    EXPECT_EQ(field(0x09, "72" + OUTPUT.substr(2), "byte0"), "60");
    EXPECT_EQ(decoded(0x0A, "82" + OUTPUT.substr(2)),
              Lines({"extended-dc-load1", "output=2", "current-unit=100 mA",
                     "nominal-voltage=12.00 V", "min-voltage=11.40 V", "max-voltage=12.60 V",
                     "ripple=120 mV", "min-current=10000 mA", "max-current=6200000 mA"}));
    EXPECT_EQ(field(0x0A, "12" + OUTPUT.substr(2), "current-unit"), "10 mA");
    EXPECT_EQ(field(0x0A, "12" + OUTPUT.substr(2), "max-current"), "620000 mA");
    EXPECT_EQ(field(0x0A, "12" + OUTPUT.substr(2), "byte0"), "10");
}

TEST(MultiRecords, ManagementAccess)
{
    const auto text = [](const std::string& type) {
        return decoded(0x03, type + "48E9"); // in Latin-1
    };
    EXPECT_EQ(text("01"), Lines({"management-access1", "type=system-url", "system-url=H\xC3\xA9"}));
    EXPECT_EQ(text("02"),
              Lines({"management-access1", "type=system-name", "system-name=H\xC3\xA9"}));
    EXPECT_EQ(text("03"), Lines({"management-access1", "type=system-ping-address",
                                 "system-ping-address=H\xC3\xA9"}));
    EXPECT_EQ(text("04"),
              Lines({"management-access1", "type=component-url", "component-url=H\xC3\xA9"}));
    EXPECT_EQ(text("05"),
              Lines({"management-access1", "type=component-name", "component-name=H\xC3\xA9"}));
    EXPECT_EQ(text("06"), Lines({"management-access1", "type=component-ping-address",
                                 "component-ping-address=H\xC3\xA9"}));
    EXPECT_EQ(text("08"), Lines({"management-access1", "type=8", "byte1=48E9"}));
    EXPECT_EQ(text("00"), Lines({"management-access1", "type=0", "byte1=48E9"}));
    EXPECT_EQ(decoded(0x03, "02410042"),
              Lines({"management-access1", "type=system-name", "system-name=A"}));
    EXPECT_EQ(decoded(0x03, "02"), Lines({"management-access1", "type=system-name"}));
    EXPECT_EQ(decoded(0x03, "07"
                            "9907D79BF0CC1549A7F97CE7D64385CF"),
              Lines({"management-access1", "type=system-guid",
                     "system-guid=9BD70799-CCF0-4915-A7F9-7CE7D64385CF"}));
    EXPECT_EQ(missingOf(0x03, ""), 1U);
    EXPECT_EQ(missingOf(0x03, "01"), 0U);
}

TEST(MultiRecords, Compatibility)
{
    EXPECT_EQ(decoded(0x04, "5A3100"
                            "0A"
                            "07"
                            "15"
                            "03FF"),
              Lines({"base-compatibility1", "manufacturer=12634", "entity=power supply", "base=7",
                     "code-start=21", "code-mask=03FF"}));
    EXPECT_EQ(decode(0x04, fromHex("5A31000A0715")).findField("entity")->value, Value(10LL));
    EXPECT_EQ(decoded(0x05, "FFFFFF0AFFFF"),
              Lines({"extended-compatibility1", "manufacturer=16777215", "entity=power supply",
                     "base=255", "code-start=127", "byte5=80"}));
}

TEST(MultiRecords, MezzanineCard)
{
    EXPECT_EQ(decoded(0xFA, "A21200"
                            "00"
                            "5E"
                            "44152A07"
                            "3A"
                            "80"),
              Lines({"fmc1", "manufacturer=4770", "version=0", "subtype=0",
                     "clock-direction=carrier to mezzanine", "p2-connector=not fitted",
                     "p1-connector=HPC", "module-size=double width", "p1-bank-a-signals=68",
                     "p1-bank-b-signals=21", "p2-bank-a-signals=42", "p2-bank-b-signals=7",
                     "p2-transceivers=10", "p1-transceivers=3", "tck-max=128 MHz"}));
    const auto card = [](const std::string& hex, const std::string& name) {
        return field(0xFA, "A2120000" + hex + "441500003A80", name);
    };
    EXPECT_EQ(card("00", "clock-direction"), "mezzanine to carrier");
    EXPECT_EQ(card("00", "p1-connector"), "LPC");
    EXPECT_EQ(card("04", "p2-connector"), "HPC");
    EXPECT_EQ(card("08", "p2-connector"), "2");
    EXPECT_EQ(card("00", "module-size"), "single width");
    EXPECT_EQ(card("C0", "module-size"), "3");
    EXPECT_EQ(card("01", "byte4"), "01");
}

TEST(MultiRecords, MezzanineCardPlus)
{
    // 48 = 110000b and 9 = 001001b signals, 24 = 011000b and 37 = 100101b transceivers.
    EXPECT_EQ(decoded(0xFA, "A21200"
                            "01"
                            "2E"
                            "7005"
                            "708295"
                            "80"),
              Lines({"fmc1", "manufacturer=4770", "version=1", "subtype=0",
                     "clock-direction=mezzanine to carrier", "p2-connector=not fitted",
                     "p1-connector=HSPC", "module-size=single width", "p1-bank-a-signals=112",
                     "p2-bank-a-signals=5", "p1-bank-b-signals=48", "p2-bank-b-signals=9",
                     "p1-transceivers=24", "p2-transceivers=37", "tck-max=128 MHz"}));
    const auto card = [](const std::string& hex, const std::string& name) {
        return field(0xFA, "A2120001" + hex + "441500003A80", name);
    };
    EXPECT_EQ(card("01", "clock-direction"), "carrier to mezzanine");
    EXPECT_EQ(card("06", "p2-connector"), "P2 HSPC, P4 HSPCe");
    EXPECT_EQ(card("04", "p2-connector"), "HSPC");
    EXPECT_EQ(card("30", "p1-connector"), "P1 HSPC, P3 HSPCe");
    EXPECT_EQ(card("10", "p1-connector"), "HPC");
}

TEST(MultiRecords, OtherRecordsOfVita)
{
    EXPECT_EQ(
        decoded(0xFA, "A21200"
                      "10"
                      "42485E521601"),
        Lines({"fmc-i2c1", "manufacturer=4770", "version=0", "subtype=1", "devices=\"AD7291 "}));
    EXPECT_EQ(decoded(0xFA, "A21200"
                            "21"
                            "CAFE"),
              Lines({"vita1", "manufacturer=4770", "version=1", "subtype=2", "data=CAFE"}));
    // Of another manufacturer, of another type, and too short for a subtype.
    EXPECT_EQ(decoded(0xFA, "A3120000CAFE"), Lines({"oem1", "manufacturer=4771", "data=00CAFE"}));
    EXPECT_EQ(decoded(0xFB, "A2120000CAFE"), Lines({"oem1", "manufacturer=4770", "data=00CAFE"}));
    EXPECT_EQ(decoded(0xFA, "A21200"), Lines({"oem1", "manufacturer=4770"}));
}

TEST(MultiRecords, OutputsHaveTheNamesOfVitaInItsImages)
{
    const Bytes load = fromHex("024A0129016B0132000A00E803");
    const Bytes last = fromHex("0B" + OUTPUT.substr(2));
    const Bytes beyond = fromHex("0C" + OUTPUT.substr(2));
    const Bytes card = fromHex("A21200000C44000000000A");
    const std::vector<MultiRecord> named =
        decodeMultiRecords({{2, 0, load}, {1, 0, last}, {9, 0, beyond}, {0xFA, 0, card}});
    EXPECT_EQ(named[0].findField("output")->text, "P1 12P0V");
    EXPECT_EQ(named[0].findField("output")->value, Value(2LL));
    EXPECT_EQ(named[1].findField("output")->text, "P2 VREF_B_M2C");
    EXPECT_EQ(named[2].findField("output")->text, "12");
    EXPECT_EQ(decodeMultiRecords({{2, 0, load}})[0].findField("output")->text, "2");
    for (const char* const other : {"A212001042", "A2120020"}) {
        const Bytes vita = fromHex(other);
        EXPECT_EQ(decodeMultiRecords({{2, 0, load}, {0xFA, 0, vita}})[0].findField("output")->text,
                  "P1 12P0V");
    }
}

TEST(MultiRecords, OtherTypesAreBytes)
{
    EXPECT_EQ(decoded(0x06, "CAFE"), Lines({"other1", "data=CAFE"}));
    EXPECT_EQ(decoded(0x08, ""), Lines({"other1"}));
    EXPECT_EQ(decoded(0x0B, "01"), Lines({"other1", "data=01"}));
    EXPECT_EQ(decoded(0xBF, "01020304"), Lines({"other1", "data=01020304"}));
    EXPECT_EQ(decoded(0xC0, "01020304"), Lines({"oem1", "manufacturer=197121", "data=04"}));
    EXPECT_EQ(decoded(0xFF, "0102"), Lines({"oem1", "byte0=0102"}));
    EXPECT_EQ(missingOf(0xFF, "0102"), 3U);
    EXPECT_EQ(missingOf(0xFF, "010203"), 0U);
}

TEST(MultiRecords, EachKindIsNumbered)
{
    const Bytes output = fromHex(OUTPUT);
    const Bytes load = fromHex("024A0129016B0132000A00E803");
    Lines names;
    for (const MultiRecord& each :
         decodeMultiRecords({{1, 0, output}, {2, 0, load}, {1, 0, output}, {7, 0, output}})) {
        names.push_back(each.name);
    }
    EXPECT_EQ(names, Lines({"dc-output1", "dc-load1", "dc-output2", "other1"}));
}

TEST(MultiRecords, ARecordThatIsTooShortHasTheFieldsBeforeItsEnd)
{
    struct Layout {
        unsigned char type;
        std::string hex;
    };
    // Each with the last byte that its fields need.
    const Layout layouts[] = {
        {0x00, SUPPLY},
        {0x01, OUTPUT},
        {0x02, OUTPUT},
        {0x09, OUTPUT},
        {0x0A, OUTPUT},
        {0x03, "079907D79BF0CC1549A7F97CE7D64385CF"},
        {0x04, "5A31000A0715"},
        {0x05, "5A31000A0715"},
        {0xFA, "A21200005E44152A073A80"},
        {0xFA, "A21200012E700570829580"},
        {0xC0, "5A310010"
               "00"
               "C6"
               "5368656C66310000000000000000000000000000"
               "01"
               "080102"},
        {0xC0, "5A31001100"
               "01"
               "0001E0004001"
               "3020"},
        {0xC0, "5A31001200"
               "2701"
               "1024000447"},
        {0xC0, "5A31001300"
               "C0A81924"},
        {0xC0, "5A31001301"
               "C0A81924"
               "C0A81901"
               "FFFFFF00"},
        {0xC0, "5A31001400"
               "01"
               "112233445566778899AABBCCDDEEFFFE"},
        {0xC0, "5A31001500"
               "11223344550120"
               "0101"
               "3010"},
        {0xC0, "5A31001600"
               "4B"},
        {0xC0, "5A31001700"
               "C80005"
               "01"
               "7248FF"},
        {0xC0, "5A31001A00"
               "1201"
               "05"},
        {0xC0, "5A31001B00"
               "01"
               "20100102"},
        {0xC0, "5A31002C00"
               "01"
               "4501"
               "010203"},
    };
    for (const Layout& layout : layouts) {
        const Bytes whole = fromHex(layout.hex);
        SCOPED_TRACE(layout.hex);
        const auto size = static_cast<unsigned int>(whole.size());
        EXPECT_EQ(decode(layout.type, whole).missing, 0U);
        const Bytes cut(whole.begin(), whole.end() - 1);
        const MultiRecord record = decode(layout.type, cut);
        EXPECT_EQ(record.missing, size);
        EXPECT_LT(record.fields.size(), decode(layout.type, whole).fields.size() + 1);
        const std::string last = decode(layout.type, whole).fields.back().name;
        EXPECT_EQ(record.findField(last), nullptr) << last;
        // Every byte is in a field, also those of a field that is cut off.
        // Only the standard's records say from their type on how long they are.
        const bool isFixed = layout.type != 0x03 && layout.type < 0xC0;
        for (std::size_t length = 0; length <= whole.size(); ++length) {
            Bytes ones(whole.begin(), whole.begin() + static_cast<long>(length));
            const MultiRecord part = decode(layout.type, ones);
            if (isFixed && length < whole.size()) {
                EXPECT_EQ(part.missing, size) << length;
            }
            std::vector<bool> isShown(length, false);
            for (const MultiRecordField& each : part.fields) {
                ASSERT_LE(each.offset - OFFSET + each.width, length) << each.name;
                for (unsigned int i = 0; i < each.width; ++i) {
                    isShown[each.offset - OFFSET + i] = true;
                }
            }
            EXPECT_EQ(std::count(isShown.begin(), isShown.end(), false), 0) << length;
        }
    }
}

TEST(MultiRecords, BackplaneLinks)
{
    // Channel 2 here to channel 17 of slot 44h: 44h + 17 * 100h + 2 * 2000h.
    EXPECT_EQ(picmg("04", "094201"
                          "445100"
                          "0D4300"),
              Lines({"backplane-links1", "slot1.channel-type=double port fabric",
                     "slot1.address=66", "slot1.channel-count=1", "slot1.channel1.remote-slot=68",
                     "slot1.channel1.remote-channel=17", "slot1.channel1.local-channel=2",
                     "slot2.channel-type=shelf manager cross-connect", "slot2.address=67",
                     "slot2.channel-count=0"}));
    EXPECT_EQ(picmg("04", ""), Lines({"backplane-links1"}));
    EXPECT_EQ(picmg("04", "0E4201FFFFFF"),
              Lines({"backplane-links1", "slot1.channel-type=14", "slot1.address=66",
                     "slot1.channel-count=1", "slot1.channel1.remote-slot=255",
                     "slot1.channel1.remote-channel=31", "slot1.channel1.local-channel=31",
                     "byte10=FC"}));
    EXPECT_EQ(missingOf(0xC0, "5A31000400"
                              "0942"),
              8U);
    EXPECT_EQ(missingOf(0xC0, "5A31000400"
                              "094202"
                              "445100"),
              14U);
}

TEST(MultiRecords, AddressTable)
{
    EXPECT_EQ(picmg("10", "C6"
                          "5368656C66310000000000000000000000000000"
                          "02"
                          "080103"
                          "410209"),
              Lines({"address-table1", "shelf-address-type=C6",
                     "shelf-address=5368656C66310000000000000000000000000000", "entry-count=2",
                     "entry1.address=8", "entry1.site-number=1", "entry1.site-type=shelf manager",
                     "entry2.address=65", "entry2.site-number=2",
                     "entry2.site-type=rear transition module"}));
}

TEST(MultiRecords, PowerDistribution)
{
    EXPECT_EQ(picmg("11", "02"
                          "0001FFFF4102"
                          "3020"
                          "4021"
                          "0A00FEFF0000"),
              Lines({"power-distribution1", "feed-count=2", "feed1.max-external-current=25.6 A",
                     "feed1.max-internal-current=unspecified A", "feed1.min-voltage=32.5 V",
                     "feed1.fru-count=2", "feed1.fru1.address=48", "feed1.fru1.id=32",
                     "feed1.fru2.address=64", "feed1.fru2.id=33",
                     "feed2.max-external-current=1.0 A", "feed2.max-internal-current=6553.4 A",
                     "feed2.min-voltage=0.0 V", "feed2.fru-count=0"}));
}

TEST(MultiRecords, ShelfActivation)
{
    EXPECT_EQ(
        picmg("12", "27"
                    "02"
                    "1024000447"
                    "20FE0A00BF"),
        Lines({"shelf-activation1", "readiness=39 s", "fru-count=2", "fru1.address=16",
               "fru1.id=36", "fru1.max-power=1024 W", "fru1.delay=0.7 s", "fru1.activation=yes",
               "fru1.deactivation=no", "fru2.address=32", "fru2.id=254", "fru2.max-power=10 W",
               "fru2.delay=6.3 s", "fru2.activation=no", "fru2.deactivation=yes"}));
}

TEST(MultiRecords, ShelfManagerIp)
{
    EXPECT_EQ(picmg("13", "C0A81924"), Lines({"shelf-manager-ip1", "address=192.168.25.36"}));
    EXPECT_EQ(picmg("13", "C0A81924C0A81901FFFFFF00", "01"),
              Lines({"shelf-manager-ip1", "address=192.168.25.36", "gateway=192.168.25.1",
                     "mask=255.255.255.0"}));
    EXPECT_EQ(picmg("13", "C0A81924", "02"), Lines({"picmg1", "data=C0A81924"}));
}

TEST(MultiRecords, BoardLinks)
{
    EXPECT_EQ(picmg("14", "01"
                          "112233445566778899AABBCCDDEEFFFE"
                          "42130003"
                          "BF025F0A"),
              Lines({"board-links1", "guid-count=1", "guid1=44332211-6655-8877-99AA-BBCCDDEEFFFE",
                     "link1.channel=2", "link1.interface=fabric", "link1.ports=3",
                     "link1.type=PICMG 3.0 base interface", "link1.extension=0", "link1.group=3",
                     "link2.channel=63", "link2.interface=update channel", "link2.ports=2",
                     "link2.type=240", "link2.extension=5", "link2.group=10"}));
}

TEST(MultiRecords, RadialIpmb)
{
    EXPECT_EQ(picmg("15", "112233"
                          "4455"
                          "02"
                          "2002013010"
                          "300700"),
              Lines({"radial-ipmb1", "connector-definer=3351057", "connector-version=21828",
                     "hub-count=2", "hub1.address=32", "hub1.buses=IPMB-B", "hub1.link-count=1",
                     "hub1.link1.address=48", "hub1.link1.entry=16", "hub2.address=48",
                     "hub2.buses=IPMB-A and IPMB-B", "byte17=04", "hub2.link-count=0"}));
}

TEST(MultiRecords, ModuleCurrentAndCarrierActivation)
{
    EXPECT_EQ(picmg("16", "4B"), Lines({"module-current1", "current=7.5 A"}));
    EXPECT_EQ(picmg("17", "C80105"
                          "02"
                          "7248FF"
                          "740100"),
              Lines({"carrier-activation1", "max-internal-current=45.6 A", "readiness=5 s",
                     "module-count=2", "module1.address=114", "module1.max-current=7.2 A",
                     "module1.reserved=FF", "module2.address=116", "module2.max-current=0.1 A",
                     "module2.reserved=00"}));
}

TEST(MultiRecords, CarrierLinks)
{
    // Port 9 here to port 4 of AMC module 5: 85h + 4 * 100h + 9 * 2000h.
    EXPECT_EQ(picmg("18", "8501"
                          "852401"
                          "0300"),
              Lines({"carrier-links1", "resource1.id=5", "resource1.type=AMC module",
                     "resource1.port-count=1", "resource1.port1.remote-id=5",
                     "resource1.port1.remote-type=AMC module", "resource1.port1.remote=4",
                     "resource1.port1.local=9", "resource2.id=3", "resource2.type=on the carrier",
                     "resource2.port-count=0"}));
}

TEST(MultiRecords, AmcLinks)
{
    // Lanes 4, 5, 31 (none) and 7: 4 + 5 * 20h + 31 * 400h + 7 * 8000h; reserved bits are ones.
    EXPECT_EQ(picmg("19", "00"
                          "83"
                          "01"
                          "A4FCF3"
                          "00F10001FD"
                          "0152F0FFFE"),
              Lines({"amc-links1",
                     "guid-count=0",
                     "device-id=3",
                     "device-type=AMC module",
                     "channel-count=1",
                     "channel1.lane0-port=4",
                     "channel1.lane1-port=5",
                     "channel1.lane2-port=unspecified",
                     "channel1.lane3-port=7",
                     "byte10=F0",
                     "link1.channel=0",
                     "link1.lanes=1",
                     "link1.type=15",
                     "link1.extension=0",
                     "link1.group=1",
                     "link1.match=10b",
                     "byte15=FC",
                     "link2.channel=1",
                     "link2.lanes=2",
                     "link2.type=AMC.2 Ethernet",
                     "link2.extension=15",
                     "link2.group=255",
                     "link2.match=01b",
                     "byte20=FC"}));
    EXPECT_EQ(field(0xC0,
                    "5A31001900"
                    "000000"
                    "0F21000000",
                    "link1.type"),
              "AMC.1 PCI Express");
    EXPECT_EQ(field(0xC0,
                    "5A31001900"
                    "000000"
                    "0F21000000",
                    "link1.match"),
              "exact");
    EXPECT_EQ(missingOf(0xC0, "5A31001900"
                              "000000"
                              "0F210000"),
              13U);
    EXPECT_EQ(missingOf(0xC0, "5A31001900"
                              "0000"),
              8U);
}

TEST(MultiRecords, CarrierAndFans)
{
    EXPECT_EQ(picmg("1A", "02"
                          "03"
                          "050607"),
              Lines({"carrier1", "version-major=2", "version-minor=0", "site-count=3", "site1=5",
                     "site2=6", "site3=7"}));
    EXPECT_EQ(picmg("1A", "1200")[2], "version-minor=1");
    EXPECT_EQ(picmg("1B", "01"
                          "20100104"),
              Lines({"fan-geography1", "fan-count=1", "fan1.address=32", "fan1.id=16",
                     "fan1.site-number=1", "fan1.site-type=fan tray"}));
}

TEST(MultiRecords, Clocks)
{
    EXPECT_EQ(
        picmg("2C", "01"
                    "4501"
                    "010283"),
        Lines({"carrier-clock-links1", "resource-count=1", "resource1.id=5",
               "resource1.type=AMC module", "resource1.channel-count=1",
               "resource1.channel1.local=1", "resource1.channel1.remote=2",
               "resource1.channel1.remote-id=3", "resource1.channel1.remote-type=backplane"}));
    EXPECT_EQ(
        picmg("2D", "40"
                    "01"
                    "05010101"
                    "0204"
                    "03010A00E1F50500C2EB0B00E40B54"),
        Lines({"clock-configuration1", "device-id=0", "device-type=AMC module", "clock-count=1",
               "clock1.id=5", "clock1.activation=by the application", "clock1.indirect-count=1",
               "clock1.direct-count=1", "clock1.indirect1.source=no", "clock1.indirect1.pll=yes",
               "clock1.indirect1.depends-on=4", "clock1.direct1.source=yes",
               "clock1.direct1.pll=yes", "clock1.direct1.family=SONET, SDH or PDH",
               "clock1.direct1.accuracy=10", "clock1.direct1.frequency=100000000 Hz",
               "clock1.direct1.min-frequency=200000000 Hz",
               "clock1.direct1.max-frequency=1410065408 Hz"}));
    EXPECT_EQ(missingOf(0xC0, "5A31002D00"
                              "4001"
                              "05000001"),
              26U);
    EXPECT_EQ(missingOf(0xC0, "5A31002D00"
                              "4001"
                              "05000100"),
              13U);
}

TEST(MultiRecords, FormatsOfPicmgThatAreNotKnownAreBytes)
{
    for (const char* const id :
         {"04", "10", "11", "12", "14", "15", "16", "17", "18", "19", "1A", "1B", "2C", "2D"}) {
        EXPECT_EQ(picmg(id, "00", "01"), Lines({"picmg1", "data=00"})) << id;
    }
    EXPECT_EQ(picmg("0F", "00"), Lines({"picmg1", "data=00"}));
    EXPECT_EQ(picmg("1C", "00"), Lines({"picmg1", "data=00"}));
}

TEST(MultiRecords, AListNamesTheSizeOfAllItsElements)
{
    const auto missing = [](const std::string& hex) { return missingOf(0xC0, "5A3100" + hex); };
    const std::string shelf(2 * 21, '0');
    EXPECT_EQ(missing("0400"
                      "094203"),
              8U + 3 * 3);
    EXPECT_EQ(missing("1000" + shelf + "03"), 27U + 3 * 3);
    EXPECT_EQ(missing("1100"
                      "03"),
              6U + 3 * 6);
    EXPECT_EQ(missing("1100"
                      "01"
                      "000000000003"),
              12U + 3 * 2);
    EXPECT_EQ(missing("1200"
                      "0003"),
              7U + 3 * 5);
    EXPECT_EQ(missing("1400"
                      "03"),
              6U + 3 * 16);
    EXPECT_EQ(missing("1500"
                      "0000000000"
                      "03"),
              11U + 3 * 3);
    EXPECT_EQ(missing("1500"
                      "0000000000"
                      "01"
                      "000003"),
              14U + 3 * 2);
    EXPECT_EQ(missing("1700"
                      "00000003"),
              9U + 3 * 3);
    EXPECT_EQ(missing("1800"
                      "0003"),
              7U + 3 * 3);
    EXPECT_EQ(missing("1900"
                      "000003"),
              8U + 3 * 3);
    EXPECT_EQ(missing("1A00"
                      "0003"),
              7U + 3);
    EXPECT_EQ(missing("1B00"
                      "03"),
              6U + 3 * 4);
    EXPECT_EQ(missing("2C00"
                      "03"),
              6U + 3 * 2);
    EXPECT_EQ(missing("2C00"
                      "01"
                      "0003"),
              8U + 3 * 3);
    EXPECT_EQ(missing("2D00"
                      "0003"),
              7U + 3 * 4);
    // What follows a part that is cut off counts from nowhere.
    EXPECT_EQ(missing("1301"
                      "C0A8"),
              9U);
    EXPECT_EQ(missing("1301"
                      "C0A81924"),
              17U);
}

TEST(MultiRecords, NamesOfValues)
{
    const auto words = [](const std::string& before, const std::string& after,
                          const std::string& name, unsigned int count, unsigned int first = 0) {
        std::string all;
        for (unsigned int value = first; value < first + count; ++value) {
            const Bytes byte = {static_cast<unsigned char>(value)};
            all += (all.empty() ? "" : ", ") +
                   field(0xC0, "5A3100" + before + toHex(byte) + after, name);
        }
        return all;
    };
    EXPECT_EQ(words("1B00"
                    "01"
                    "000000",
                    "", "fan1.site-type", 11),
              "board, power entry module, shelf FRU information, shelf manager, fan tray, fan "
              "filter tray, alarm, AMC module, PMC, rear transition module, 10");
    EXPECT_EQ(words("0400", "0000", "slot1.channel-type", 9, 6),
              "6, PICMG 2.9, single port fabric, double port fabric, full channel fabric, base "
              "interface, update channel, shelf manager cross-connect, 14");
    EXPECT_EQ(words("1500"
                    "0000000000"
                    "01"
                    "00",
                    "00", "hub1.buses", 4),
              "0, IPMB-A, IPMB-B, IPMB-A and IPMB-B");
    EXPECT_EQ(words("2D00"
                    "0001"
                    "00000001"
                    "00",
                    "00"
                    "000000000000000000000000",
                    "clock1.direct1.family", 4),
              "unspecified, SONET, SDH or PDH, reserved for PCI Express, 3");
    EXPECT_EQ(words("2D00"
                    "0001"
                    "00",
                    "0000", "clock1.activation", 2),
              "by the carrier, by the application");
    // Types of links begin at bit 12.
    const auto links = [&](const std::string& before, const std::string& after,
                           const std::string& name) {
        std::string all;
        for (unsigned int type = 0; type < 9; ++type) {
            const Bytes byte = {static_cast<unsigned char>(type << 4)};
            all += (all.empty() ? "" : ", ") +
                   field(0xC0, "5A3100" + before + "00" + toHex(byte) + after, name);
        }
        return all;
    };
    EXPECT_EQ(links("1400"
                    "00",
                    "0000", "link1.type"),
              "0, PICMG 3.0 base interface, PICMG 3.1 Ethernet, PICMG 3.2 InfiniBand, PICMG 3.3 "
              "StarFabric, PICMG 3.4 PCI Express, 6, 7, 8");
    EXPECT_EQ(links("1900"
                    "000000",
                    "000000", "link1.type"),
              "0, 1, AMC.1 PCI Express, AMC.1 PCI Express Advanced Switching, AMC.1 PCI Express "
              "Advanced Switching, AMC.2 Ethernet, AMC.4 Serial RapidIO, AMC.3 storage, 8");
    const auto resource = [](const std::string& id, const std::string& hex,
                             const std::string& name) {
        return field(0xC0, "5A3100" + id + "00" + hex, name);
    };
    for (const std::string id : {"18", "19"}) {
        const std::string name = id == "18" ? "resource1.type" : "device-type";
        EXPECT_EQ(resource(id, id == "18" ? "0F00" : "000F00", name), "on the carrier");
        EXPECT_EQ(resource(id, id == "18" ? "8000" : "008000", name), "AMC module");
    }
    const auto connectors = [](const std::string& version, const std::string& name) {
        std::string all;
        for (unsigned int bits = 0; bits < 0x40; bits += name == "p1-connector" ? 0x10 : 2) {
            const Bytes byte = {static_cast<unsigned char>(bits)};
            const std::string word =
                field(0xFA, "A21200" + version + toHex(byte) + "000000000000", name);
            all += (all.empty() ? "" : ", ") + word;
            if (name == "p2-connector" && bits == 0x0E) {
                break;
            }
        }
        return all;
    };
    EXPECT_EQ(connectors("00", "p1-connector"), "LPC, HPC, 2, not fitted");
    EXPECT_EQ(connectors("01", "p1-connector"), "LPC, HPC, HSPC, P1 HSPC, P3 HSPCe");
    EXPECT_EQ(connectors("01", "p2-connector"),
              "LPC, HPC, HSPC, P2 HSPC, P4 HSPCe, 4, 5, 6, not fitted");
    EXPECT_EQ(resource("2D", "0000", "device-type"), "on the carrier");
    EXPECT_EQ(resource("2D", "8000", "device-type"), "backplane");
    EXPECT_EQ(resource("2D", "C000", "device-type"), "3");
}

namespace {

/// The place of each field in the data: "name 1-2:11..0".
std::string placesOf(unsigned char type, const std::string& hex)
{
    std::string all;
    for (const MultiRecordField& each : decode(type, fromHex(hex)).fields) {
        const unsigned int at = each.offset - OFFSET;
        all += (all.empty() ? "" : ", ") + each.name + " " + std::to_string(at);
        all += each.width == 1 ? "" : "-" + std::to_string(at + each.width - 1);
        if (each.isBits()) {
            all += ":" + std::to_string(each.high) + ".." + std::to_string(each.low);
        }
    }
    return all;
}

}

TEST(MultiRecords, PlacesOfFields)
{
    const std::string zeroes(2 * 40, '0');
    const auto zero = [&](unsigned char type, const std::string& start, std::size_t size) {
        return placesOf(type, (start + zeroes).substr(0, 2 * size));
    };
    EXPECT_EQ(zero(0x00, "", 24),
              "capacity 0-1:11..0, peak-va 2-3, inrush-current 4, inrush-interval 5, "
              "input1-low 6-7, input1-high 8-9, input2-low 10-11, input2-high 12-13, "
              "frequency-low 14, frequency-high 15, dropout-tolerance 16, "
              "predictive-fail 17:0..0, power-factor-correction 17:1..1, autoswitch 17:2..2, "
              "hot-swap 17:3..3, fail-signal 17:4..4, peak-capacity 18-19:11..0, "
              "hold-up-time 18-19:15..12, combined-voltage2 20:3..0, "
              "combined-voltage1 20:7..4, combined-capacity 21-22, tachometer-threshold 23");
    EXPECT_EQ(zero(0x01, "", 13),
              "output 0:3..0, standby 0:7..7, nominal-voltage 1-2, negative-deviation 3-4, "
              "positive-deviation 5-6, ripple 7-8, min-current 9-10, max-current 11-12");
    EXPECT_EQ(zero(0x02, "", 13),
              "output 0:3..0, nominal-voltage 1-2, min-voltage 3-4, max-voltage 5-6, "
              "ripple 7-8, min-current 9-10, max-current 11-12");
    EXPECT_EQ(zero(0x09, "", 13),
              "output 0:3..0, current-unit 0:4..4, standby 0:7..7, nominal-voltage 1-2, "
              "negative-deviation 3-4, positive-deviation 5-6, ripple 7-8, min-current 9-10, "
              "max-current 11-12");
    EXPECT_EQ(zero(0x0A, "", 13),
              "output 0:3..0, current-unit 0:7..7, nominal-voltage 1-2, min-voltage 3-4, "
              "max-voltage 5-6, ripple 7-8, min-current 9-10, max-current 11-12");
    EXPECT_EQ(zero(0x03, "07", 17), "type 0, system-guid 1-16");
    EXPECT_EQ(zero(0x03, "0141", 3), "type 0, system-url 1-2");
    EXPECT_EQ(zero(0x04, "", 8),
              "manufacturer 0-2, entity 3, base 4, code-start 5:6..0, code-mask 6-7");
    EXPECT_EQ(zero(0xFA, "A21200", 11),
              "manufacturer 0-2, version 3:3..0, subtype 3:7..4, clock-direction 4:1..1, "
              "p2-connector 4:3..2, p1-connector 4:5..4, module-size 4:7..6, "
              "p1-bank-a-signals 5, p1-bank-b-signals 6, p2-bank-a-signals 7, "
              "p2-bank-b-signals 8, p2-transceivers 9:3..0, p1-transceivers 9:7..4, tck-max 10");
    EXPECT_EQ(zero(0xFA, "A2120001", 11),
              "manufacturer 0-2, version 3:3..0, subtype 3:7..4, clock-direction 4:0..0, "
              "p2-connector 4:3..1, p1-connector 4:5..4, module-size 4:7..6, "
              "p1-bank-a-signals 5, p2-bank-a-signals 6, p1-bank-b-signals 7-9:5..0, "
              "p2-bank-b-signals 7-9:11..6, p1-transceivers 7-9:17..12, "
              "p2-transceivers 7-9:23..18, tck-max 10");
    EXPECT_EQ(zero(0xFA, "A2120010", 7),
              "manufacturer 0-2, version 3:3..0, subtype 3:7..4, devices 4-6");
    EXPECT_EQ(zero(0xFA, "A2120020", 6),
              "manufacturer 0-2, version 3:3..0, subtype 3:7..4, data 4-5");
    EXPECT_EQ(zero(0xC7, "", 5), "manufacturer 0-2, data 3-4");
    EXPECT_EQ(zero(0x0B, "", 2), "data 0-1");
    EXPECT_EQ(zero(0xC0, "5A31000400000001", 11),
              "manufacturer 0-2, record-id 3, format 4, slot1.channel-type 5, slot1.address 6, "
              "slot1.channel-count 7, slot1.channel1.remote-slot 8-10:7..0, "
              "slot1.channel1.remote-channel 8-10:12..8, "
              "slot1.channel1.local-channel 8-10:17..13");
    EXPECT_EQ(zero(0xC0, "5A31001000" + zeroes.substr(0, 42) + "01", 30),
              "manufacturer 0-2, record-id 3, format 4, shelf-address-type 5, "
              "shelf-address 6-25, entry-count 26, entry1.address 27, entry1.site-number 28, "
              "entry1.site-type 29");
    EXPECT_EQ(zero(0xC0,
                   "5A310011000100000000"
                   "0001",
                   14),
              "manufacturer 0-2, record-id 3, format 4, feed-count 5, "
              "feed1.max-external-current 6-7, feed1.max-internal-current 8-9, "
              "feed1.min-voltage 10, feed1.fru-count 11, feed1.fru1.address 12, "
              "feed1.fru1.id 13");
    EXPECT_EQ(zero(0xC0, "5A310012000001", 12),
              "manufacturer 0-2, record-id 3, format 4, readiness 5, fru-count 6, "
              "fru1.address 7, fru1.id 8, fru1.max-power 9-10, fru1.delay 11:5..0, "
              "fru1.activation 11:6..6, fru1.deactivation 11:7..7");
    EXPECT_EQ(zero(0xC0, "5A31001301", 17),
              "manufacturer 0-2, record-id 3, format 4, address 5-8, gateway 9-12, mask 13-16");
    EXPECT_EQ(zero(0xC0, "5A3100140001", 26),
              "manufacturer 0-2, record-id 3, format 4, guid-count 5, guid1 6-21, "
              "link1.channel 22-25:5..0, link1.interface 22-25:7..6, link1.ports 22-25:11..8, "
              "link1.type 22-25:19..12, link1.extension 22-25:23..20, link1.group 22-25:31..24");
    EXPECT_EQ(zero(0xC0,
                   "5A31001500"
                   "0000000000"
                   "01"
                   "000001",
                   16),
              "manufacturer 0-2, record-id 3, format 4, connector-definer 5-7, "
              "connector-version 8-9, hub-count 10, hub1.address 11, hub1.buses 12:1..0, "
              "hub1.link-count 13, hub1.link1.address 14, hub1.link1.entry 15");
    EXPECT_EQ(zero(0xC0, "5A31001600", 6), "manufacturer 0-2, record-id 3, format 4, current 5");
    EXPECT_EQ(zero(0xC0,
                   "5A31001700"
                   "000000"
                   "01",
                   12),
              "manufacturer 0-2, record-id 3, format 4, max-internal-current 5-6, readiness 7, "
              "module-count 8, module1.address 9, module1.max-current 10, module1.reserved 11");
    EXPECT_EQ(zero(0xC0,
                   "5A31001800"
                   "0001",
                   10),
              "manufacturer 0-2, record-id 3, format 4, resource1.id 5:3..0, "
              "resource1.type 5:7..7, resource1.port-count 6, "
              "resource1.port1.remote-id 7-9:3..0, resource1.port1.remote-type 7-9:7..7, "
              "resource1.port1.remote 7-9:12..8, resource1.port1.local 7-9:17..13");
    EXPECT_EQ(zero(0xC0,
                   "5A31001900"
                   "000001",
                   16),
              "manufacturer 0-2, record-id 3, format 4, guid-count 5, device-id 6:3..0, "
              "device-type 6:7..7, channel-count 7, channel1.lane0-port 8-10:4..0, "
              "channel1.lane1-port 8-10:9..5, channel1.lane2-port 8-10:14..10, "
              "channel1.lane3-port 8-10:19..15, link1.channel 11-15:7..0, "
              "link1.lanes 11-15:11..8, link1.type 11-15:19..12, link1.extension 11-15:23..20, "
              "link1.group 11-15:31..24, link1.match 11-15:33..32");
    EXPECT_EQ(zero(0xC0,
                   "5A31001A00"
                   "0001",
                   8),
              "manufacturer 0-2, record-id 3, format 4, version-major 5:3..0, "
              "version-minor 5:7..4, site-count 6, site1 7");
    EXPECT_EQ(zero(0xC0,
                   "5A31001B00"
                   "01",
                   10),
              "manufacturer 0-2, record-id 3, format 4, fan-count 5, fan1.address 6, "
              "fan1.id 7, fan1.site-number 8, fan1.site-type 9");
    EXPECT_EQ(zero(0xC0,
                   "5A31002C00"
                   "01"
                   "0001",
                   11),
              "manufacturer 0-2, record-id 3, format 4, resource-count 5, resource1.id 6:3..0, "
              "resource1.type 6:7..6, resource1.channel-count 7, resource1.channel1.local 8, "
              "resource1.channel1.remote 9, resource1.channel1.remote-id 10:3..0, "
              "resource1.channel1.remote-type 10:7..6");
    EXPECT_EQ(zero(0xC0,
                   "5A31002D00"
                   "0001"
                   "00000101",
                   28),
              "manufacturer 0-2, record-id 3, format 4, device-id 5:3..0, device-type 5:7..6, "
              "clock-count 6, clock1.id 7, clock1.activation 8:0..0, clock1.indirect-count 9, "
              "clock1.direct-count 10, clock1.indirect1.source 11:0..0, "
              "clock1.indirect1.pll 11:1..1, clock1.indirect1.depends-on 12, "
              "clock1.direct1.source 13:0..0, clock1.direct1.pll 13:1..1, "
              "clock1.direct1.family 14, clock1.direct1.accuracy 15, "
              "clock1.direct1.frequency 16-19, clock1.direct1.min-frequency 20-23, "
              "clock1.direct1.max-frequency 24-27");
}

TEST(MultiRecords, OtherRecordsOfPicmgAreBytes)
{
    EXPECT_EQ(decoded(0xC0, "5A310030"
                            "01"
                            "CAFE"),
              Lines({"picmg1", "manufacturer=12634", "record-id=48", "format=1", "data=CAFE"}));
    EXPECT_EQ(picmg("16", "4B", "01"), Lines({"picmg1", "data=4B"}));
    EXPECT_EQ(decoded(0xC1, "5A3100160000"), Lines({"oem1", "manufacturer=12634", "data=160000"}));
    EXPECT_EQ(decoded(0xC0, "5B3100160000"), Lines({"oem1", "manufacturer=12635", "data=160000"}));
    EXPECT_EQ(decoded(0xC0, "5A310016"), Lines({"oem1", "manufacturer=12634", "data=16"}));
}

namespace {

/// An output or a load with its number, voltage (12 V) and largest current.
Bytes rail(unsigned char output, unsigned int milliamperes)
{
    return {output,
            0xB0,
            0x04,
            0,
            0,
            0,
            0,
            0,
            0,
            0,
            0,
            static_cast<unsigned char>(milliamperes & 0xFF),
            static_cast<unsigned char>(milliamperes >> 8)};
}

Lines notesOf(const std::vector<std::pair<unsigned char, Bytes>>& records)
{
    std::vector<MultiRecordData> data;
    for (const auto& [type, bytes] : records) {
        data.push_back({type, 0, bytes});
    }
    return compareLoadAndSupply(decodeMultiRecords(data));
}

}

TEST(MultiRecords, LoadsThatTakeMoreThanAnOutputSuppliesAreNoted)
{
    const Lines note = {
        "sums of load and supply: loads of output 1 take up to 3001 mA, it supplies 3000 mA"};
    EXPECT_EQ(notesOf({{1, rail(1, 3000)}, {2, rail(1, 2000)}, {2, rail(1, 1001)}}), note);
    EXPECT_EQ(notesOf({{1, rail(1, 3000)}, {2, rail(1, 2000)}, {2, rail(1, 1000)}}), Lines());
    EXPECT_EQ(notesOf({{1, rail(1, 1000)}, {1, rail(1, 2000)}, {2, rail(1, 3001)}}), note);
    // Of another output, of no output, without loads.
    EXPECT_EQ(notesOf({{1, rail(1, 3000)}, {2, rail(2, 3001)}}), Lines());
    EXPECT_EQ(notesOf({{2, rail(2, 3001)}}), Lines());
    EXPECT_EQ(notesOf({{1, rail(2, 0)}}), Lines());
    EXPECT_EQ(notesOf({}), Lines());
    // 10 mA each.
    EXPECT_EQ(notesOf({{9, rail(1, 300)}, {0x0A, rail(1, 301)}}),
              Lines({"sums of load and supply: loads of output 1 take up to 3010 mA, it supplies "
                     "3000 mA"}));
}

TEST(MultiRecords, LoadsThatTakeMoreThanTheCapacityAreNoted)
{
    const Bytes supply = fromHex(supplyWith(0, "2400")); // 36 W
    EXPECT_EQ(notesOf({{0, supply}, {2, rail(1, 2000)}, {2, rail(2, 1000)}}), Lines());
    EXPECT_EQ(notesOf({{0, supply}, {2, rail(1, 2000)}, {2, rail(2, 1001)}}),
              Lines({"sums of load and supply: loads take up to 36.012 W, the capacity is 36 W"}));
    EXPECT_EQ(notesOf({{0, supply}, {0, supply}, {2, rail(1, 6000)}}), Lines());
    // Outputs are not loads; the sign of a voltage does not matter.
    EXPECT_EQ(notesOf({{0, supply}, {1, rail(1, 60000)}}), Lines());
    Bytes negative = rail(1, 3001);
    negative[1] = 0x50; // -12 V
    negative[2] = 0xFB;
    EXPECT_EQ(notesOf({{0, supply}, {2, negative}}).size(), 1U);
}

TEST(MultiRecords, AreAPartOfTheirImage)
{
    // Header, then a load and a supply of 23 bytes.
    const auto record = [](unsigned char type, unsigned char format, const Bytes& data) {
        const auto sum =
            static_cast<unsigned char>(0U - std::accumulate(data.begin(), data.end(), 0U));
        return withChecksum({type, format, static_cast<unsigned char>(data.size()), sum}) + data;
    };
    const Bytes cut = fromHex(SUPPLY.substr(0, 46));
    const FruImage image =
        parseFruImage(text(withChecksum({1, 0, 0, 0, 0, 1, 0}) + record(0x02, 0x02, rail(1, 2)) +
                           record(0x00, 0x82, cut)));
    ASSERT_EQ(image.records.size(), 2U);
    EXPECT_EQ(image.records[0].content.name, "dc-load1");
    EXPECT_EQ(image.records[0].bytes, text(rail(1, 2)));
    EXPECT_EQ(image.records[1].content.fields[0].offset, 31U);
    EXPECT_EQ(image.allProblems(),
              Lines({"multirecord 2: 23 bytes of power-supply1 at offset 31, expected at least "
                     "24"}));
    EXPECT_EQ(image.problems, Lines());
    EXPECT_EQ(image.notes, Lines());
    ASSERT_NE(image.findRecord("power-supply1"), nullptr);
    EXPECT_EQ(image.findRecord("power-supply1")->extent.offset, 26U);
    EXPECT_EQ(image.findRecord("power-supply2"), nullptr);
}
