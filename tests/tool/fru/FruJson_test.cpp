// SPDX-License-Identifier: Apache-2.0
// FRU images as JSON: what is created of it byte by byte, what is refused, and what comes back.
#include <filesystem>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <random>

#include <recordkit/inspect/fru/FruImage.h>
#include <recordkit/inspect/fru/MultiRecordEdit.h>

#include "support/Bytes.h"
#include "support/Process.h"
#include "support/RecordFields.h"
#include "support/SampleImages.h"
#include "support/ScratchRoot.h"
#include "tool/fru/FruJson.h"
#include "tool/print/Json.h"
#include "tool/print/JsonInput.h"

using namespace testing_support;
using namespace recordkit::tool;
using testing_support::Bytes;
namespace fs = std::filesystem;

namespace {

constexpr unsigned int NOW = 1730786820; // 2024-11-05 06:07

Bytes created(const std::string& json)
{
    const FruDescription description = fruFromJson(readJson(json), NOW);
    const std::string image = buildFruImage(description.content, description.size);
    return {image.begin(), image.end()};
}

std::string refusal(const std::string& json)
{
    try {
        created(json);
    } catch (const Error& e) {
        return e.what();
    }
    return "accepted";
}

/// The JSON of an image, and the image that is created of it.
std::string exported(const std::string& image)
{
    return jsonText(jsonOfFru({contentOf(parseFruImage(image), image), image.size()}));
}

std::string text(const Bytes& bytes)
{
    return {bytes.begin(), bytes.end()};
}

const std::string WHOLE = R"({
    "size": 192,
    "internal": "01 02 03 04 05",
    "chassis": {
        "type": "Rack Mount Chassis",
        "part-number": "C-1",
        "serial": {"value": "0042", "coding": "BCD plus"}
    },
    "board": {
        "language": "en",
        "date": "2024-11-05 06:07",
        "manufacturer": "ACME",
        "name": "Board",
        "serial": "SN1",
        "part-number": {"value": "ABC-", "coding": "6-bit"},
        "file-id": {"value": "C1", "coding": "binary"},
        "custom": ["one"]
    },
    "product": {"language": "is", "manufacturer": "Þór"},
    "multirecords": [
        {"record": "dc-load", "output": 1, "nominal-voltage": 12, "min-voltage": 11.4,
         "max-voltage": 12.6, "ripple": 120, "max-current": 5000},
        {"type": 193, "data": "0A0B"}
    ]})";

// clang-format off
const Bytes WHOLE_IMAGE = Bytes{
    // header
    0x01, 0x01, 0x02, 0x04, 0x09, 0x0C, 0x00, 0xE3,
    // internal use
    0x01, 0x02, 0x03, 0x04, 0x05, 0x00, 0x00, 0x00,
    // chassis
    0x01, 0x02, 0x17, 0xC3, 0x43, 0x2D, 0x31, 0x42, 0x00, 0x42, 0xC1, 0x00, 0x00, 0x00, 0x00, 0x3D,
    // board
    0x01, 0x05, 0x19, 0x6F, 0x82, 0xE7, 0xC4, 0x41, 0x43, 0x4D, 0x45, 0xC5, 0x42, 0x6F, 0x61, 0x72,
    0x64, 0xC3, 0x53, 0x4E, 0x31, 0x83, 0xA1, 0x38, 0x36, 0x01, 0xC1, 0xC3, 0x6F, 0x6E, 0x65, 0xC1,
    0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0xD3,
    // product
    0x01, 0x03, 0x32, 0xC6, 0xDE, 0x00, 0xF3, 0x00, 0x72, 0x00, 0xC0, 0xC0, 0xC0, 0xC0, 0xC0, 0xC0,
    0xC1, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x80,
    // a DC load
    0x02, 0x02, 0x0D, 0xD0, 0x1F, 0x01, 0xB0, 0x04, 0x74, 0x04, 0xEC, 0x04, 0x78, 0x00, 0x00, 0x00,
    0x88, 0x13,
    // the last record
    0xC1, 0x82, 0x02, 0xEB, 0xD0, 0x0A, 0x0B,
} + Bytes(71, 0x00);
// clang-format on

}

TEST(FruJson, CreatesAWholeImage)
{
    EXPECT_EQ(created(WHOLE), WHOLE_IMAGE);
}

TEST(FruJson, AnEmptyObjectIsAHeader)
{
    EXPECT_EQ(created("{}"), (Bytes{1, 0, 0, 0, 0, 0, 0, 0xFF}));
    EXPECT_EQ(created(R"({"size": 10, "fill": 255})"),
              (Bytes{1, 0, 0, 0, 0, 0, 0, 0xFF, 0xFF, 0xFF}));
    EXPECT_EQ(created(R"({"$schema": "fru.schema.json", "multirecords": []})").size(), 8U);
}

TEST(FruJson, MissingFieldsAreEmptyTextsInEnglishWithoutADate)
{
    EXPECT_EQ(created(R"({"chassis": {}})"),
              (Bytes{1, 0, 1, 0, 0, 0, 0, 0xFE, 1, 1, 2, 0xC0, 0xC0, 0xC1, 0, 0xBB}));
    EXPECT_EQ(created(R"({"board": {}})"),
              (Bytes{1, 0, 0,    1,    0,    0,    0,    0xFE, 1, 2, 25, 0,
                     0, 0, 0xC0, 0xC0, 0xC0, 0xC0, 0xC0, 0xC1, 0, 0, 0,  0x63}));
    EXPECT_EQ(created(R"({"product": {}})"),
              (Bytes{1,    0,    0,    0,    1,    0,    0,    0xFE, 1, 2, 25, 0xC0,
                     0xC0, 0xC0, 0xC0, 0xC0, 0xC0, 0xC0, 0xC1, 0,    0, 0, 0,  0xE3}));
}

TEST(FruJson, NullEndsAnAreaBeforeTheField)
{
    EXPECT_EQ(created(R"({"product": {"name": null}})"),
              (Bytes{1, 0, 0, 0, 1, 0, 0, 0xFE, 1, 1, 25, 0xC0, 0xC1, 0, 0, 0x64}));
    EXPECT_EQ(refusal(R"({"product": {"name": null, "serial": "S1"}})"),
              "product.serial: name is null: the area ends before it");
    EXPECT_EQ(refusal(R"({"product": {"name": null, "custom": [""]}})"),
              "product.custom[0]: name is null: the area ends before it");
    EXPECT_EQ(refusal(R"({"product": {"name": null, "serial": null, "custom": []}})"), "accepted");
}

TEST(FruJson, DatesMayBeNow)
{
    const Bytes image = created(R"({"board": {"date": "now"}})");
    EXPECT_EQ(part(image, 11, 3), (Bytes{0x6F, 0x82, 0xE7}));
}

TEST(FruJson, TextsHaveTheirCoding)
{
    const auto custom = [](const std::string& json) {
        const Bytes image = created(R"({"chassis": {"custom": [)" + json + "]}}");
        return part(image, 13, 1 + (image[13] & 0x3FU));
    };
    EXPECT_EQ(custom(R"("Ab\u00e9\u0000")"), (Bytes{0xC4, 'A', 'b', 0xE9, 0}));
    EXPECT_EQ(custom(R"({"value": "Ab", "coding": "text"})"), (Bytes{0xC2, 'A', 'b'}));
    EXPECT_EQ(custom(R"({"value": "A", "coding": "6-bit"})"), (Bytes{0x81, 0x21}));
    EXPECT_EQ(custom(R"({"value": "1-2.", "coding": "BCD plus"})"), (Bytes{0x42, 0x1B, 0x2C}));
    EXPECT_EQ(custom(R"({"value": "00fF", "coding": "binary"})"), (Bytes{0x02, 0, 0xFF}));
    EXPECT_EQ(custom(R"({"value": "", "coding": "binary"})"), (Bytes{0x00}));
    EXPECT_EQ(custom(R"({"bytes": "DEF0", "coding": "BCD plus"})"), (Bytes{0x42, 0xDE, 0xF0}));
    // What would be no pair of bytes as 16-bit text.
    const Bytes image =
        created(R"({"product": {"language": "de", "name": {"bytes": "414243", "coding": "text"},
                                "version": "ab"}})");
    EXPECT_EQ(part(image, 10, 11),
              (Bytes{26 - 4, 0xC0, 0xC3, 0x41, 0x42, 0x43, 0xC0, 0xC4, 'a', 0, 'b'}));
}

TEST(FruJson, TextsThatNoValueStandsForAreExportedAsBytes)
{
    const std::string json =
        R"({"size":40,"product":{"language":"de","manufacturer":"",)"
        R"("name":{"bytes":"414243","coding":"text"},"part-number":{"bytes":"DEF0","coding":"BCD plus"},)"
        R"("version":"ab","serial":"","asset-tag":"","file-id":{"value":"AB","coding":"binary"}}})";
    EXPECT_EQ(exported(text(created(json))), json);
}

TEST(FruJson, AreasHaveTheirSizeAndUnusedBytes)
{
    const Bytes small = created(R"({"chassis": {"unused": "0A0B"}})");
    EXPECT_EQ(part(small, 8, 16),
              (Bytes{1, 2, 2, 0xC0, 0xC0, 0xC1, 0x0A, 0x0B, 0, 0, 0, 0, 0, 0, 0, 0xA5}));
    const Bytes large = created(R"({"chassis": {"size": 24}})");
    EXPECT_EQ(large.size(), 32U);
    EXPECT_EQ(part(large, 8, 7), (Bytes{1, 3, 2, 0xC0, 0xC0, 0xC1, 0}));
    EXPECT_EQ(large.back(), 0xB9);
    EXPECT_EQ(exported(text(large)),
              R"({"size":32,"chassis":{"type":"Unknown","part-number":"","serial":"","size":24}})");
}

TEST(FruJson, AreasHaveAnotherOrder)
{
    const Bytes image = created(R"({"order": ["board", "internal"], "internal": "0102",
                                    "chassis": {}, "board": {"name": null}, "fill": 255})");
    EXPECT_EQ(part(image, 0, 8), (Bytes{1, 3, 4, 1, 0, 0, 0, 0xF7}));
    EXPECT_EQ(part(image, 24, 8), (Bytes{1, 2, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}));
    EXPECT_EQ(image.size(), 40U);
}

TEST(FruJson, SaysWhatIsWrongAndWhere)
{
    const struct {
        const char* json;
        const char* refusal;
    } rows[] = {
        {"5", "5, expected an object"},
        {R"({"bord": {}})",
         "bord: unknown key, expected one of $schema, size, fill, order, internal, chassis, board, "
         "product, multirecords"},
        {R"({"board": {"serail": "SN1"}})",
         "board.serail: unknown key, expected one of language, date, manufacturer, name, serial, "
         "part-number, file-id, custom, size, unused"},
        {R"({"$schema": 1})", "$schema: 1, expected a text"},
        {R"({"size": 7})", "size: 7, expected a number from 8 to 65536"},
        {R"({"size": "64"})", "size: \"64\", expected a number from 8 to 65536"},
        {R"({"size": 8, "chassis": {}})", "the areas would take 16 bytes, the image has 8"},
        {R"({"fill": 1})", "fill: 1, expected 0 or 255"},
        {R"({"fill": "FF"})", "fill: \"FF\", expected 0 or 255"},
        {R"({"order": ["bord"]})",
         "order[0]: \"bord\", expected one of internal, chassis, board, product, multirecords"},
        {R"({"order": ["board", "board"]})", "order[1]: board is there twice"},
        {R"({"order": "board"})", "order: \"board\", expected a list"},
        {R"({"internal": "0"})", "internal: \"0\", expected pairs of hex digits"},
        {R"({"internal": ""})", "internal: \"\", expected at least one byte in hex digits"},
        {R"({"internal": [1]})", "internal: [1], expected pairs of hex digits"},
        {R"({"board": null})", "board: null, expected an object"},
        {R"({"chassis": {"type": "Rack"}})",
         "chassis.type: \"Rack\" is neither the name nor the number of a chassis type"},
        {R"({"chassis": {"type": 256}})",
         "chassis.type: \"256\" is neither the name nor the number of a chassis type"},
        {R"({"chassis": {"type": null}})", "chassis.type: null, expected a text or a number"},
        {R"({"board": {"language": "xx"}})", "board.language: \"xx\" is neither a language such as "
                                             "\"en\" nor a number from 0 to 255"},
        {R"({"board": {"date": "2024-13-01"}})",
         "board.date: \"2024-13-01\" is not a date from 2006-01-01 to 2037-11-23, as 2024-11-05 or "
         "2024-11-05 06:07, nor \"now\" or \"unspecified\""},
        {R"({"board": {"date": 5}})", "board.date: 5, expected a text"},
        {R"({"board": {"serial": 4711}})", "board.serial: 4711, expected a text or an object"},
        {R"({"board": {"serial": "5"}})",
         "board.serial: a value of one character cannot be stored, its type/length byte would end "
         "the fields (6-bit text can have one)"},
        {R"({"board": {"serial": "\u20ac1"}})",
         "board.serial: \"€1\" has characters outside Latin-1"},
        {R"({"board": {"serial": {"value": "abc", "coding": "6-bit"}}})",
         "board.serial: \"abc\" has characters that 6-bit text does not have, such as small "
         "letters"},
        {R"({"board": {"serial": {"value": "abc"}}})",
         "board.serial.coding: null, expected a text"},
        {R"({"board": {"serial": {"value": "abc", "coding": "8-bit"}}})",
         "board.serial.coding: \"8-bit\", expected \"binary\", \"BCD plus\", \"6-bit\", \"text\""},
        {R"({"board": {"serial": {"coding": "text"}}})",
         "board.serial: expected either \"value\" or \"bytes\""},
        {R"({"board": {"serial": {"coding": "text", "value": "ab", "bytes": "4142"}}})",
         "board.serial: expected either \"value\" or \"bytes\""},
        {R"({"board": {"serial": {"coding": "text", "bytes": "41"}}})",
         "board.serial: a text of one byte cannot be stored, its type/length byte would end the "
         "fields"},
        {R"({"board": {"serial": {"coding": "text", "vale": "ab"}}})",
         "board.serial.vale: unknown key, expected one of value, bytes, coding"},
        {R"({"board": {"custom": "abc"}})", "board.custom: \"abc\", expected a list"},
        {R"({"board": {"custom": ["ab", null]}})",
         "board.custom[1]: null, expected a text or an object"},
        {R"({"chassis": {"size": 20}})", "chassis.size: 20, expected a multiple of 8"},
        {R"({"board": {"size": 8}})", "board.size: 8, expected a number from 16 to 2040"},
        {R"({"board": {"size": 2048}})", "board.size: 2048, expected a number from 16 to 2040"},
        {R"({"multirecords": {}})", "multirecords: {}, expected a list"},
        {R"({"multirecords": [7]})", "multirecords[0]: 7, expected an object"},
        {R"({"multirecords": [{}]})",
         "multirecords[0].type: null, expected a number from 0 to 255"},
        {R"({"multirecords": [{"type": 192}]})",
         "multirecords[0].data: null, expected pairs of hex digits"},
        {R"({"multirecords": [{"type": 192, "data": "", "x": 1}]})",
         "multirecords[0].x: unknown key, expected one of type, data"},
        {R"({"multirecords": [{"record": "dc-output", "ouput": 1}]})",
         "multirecords[0].ouput: the record has no such field"},
        {R"({"multirecords": [{"record": "dc-output", "output": 16}]})",
         "multirecords[0].output: \"16\", expected 0 to 15"},
        {R"({"multirecords": [{"record": "dc-output", "output": true}]})",
         "multirecords[0].output: a value of another type, expected 0 to 15"},
        {R"({"multirecords": [{"record": "dc-output", "output": [1]}]})",
         "multirecords[0].output: [1], expected a number, true, false, a text or null"},
        {R"({"multirecords": [{"record": "dc-output", "standby": 1}]})",
         "multirecords[0].standby: a value of another type, expected true or false"},
        {R"({"multirecords": [{"record": "dc-output", "ripple": null}]})",
         "multirecords[0].ripple: a value of another type, expected 0 to 65535 mV"},
        {R"({"multirecords": [{"record": "dc-output", "nominal-voltage": 1.005}]})",
         "multirecords[0].nominal-voltage: \"1.005\", expected -327.68 to 327.67 V in steps of "
         "0.01"},
        {R"({"multirecords": [{"record": "shelf-manager-ip", "address": 1}]})",
         "multirecords[0].address: a value of another type, expected an address such as "
         "192.168.0.1"},
        {R"({"multirecords": [{"record": "fmc", "manufacturer": 5}]})",
         "multirecords[0]: with these values it is not a record of the kind fmc"},
        {R"({"multirecords": [{"record": "power-distribution", "feed-count": 100}]})",
         "multirecords[0]: the record would have 606 bytes, it can have 255"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(refusal(row.json), row.refusal) << row.json;
    }
    EXPECT_EQ(refusal(R"({"multirecords": [{"record": "oem"}]})").substr(0, 80),
              "multirecords[0].record: \"oem\", expected one of power-supply, dc-output, dc-load,");
    EXPECT_EQ(
        refusal(R"({"multirecords": [{"type": 1, "data": ")" + std::string(512, '0') + R"("}]})"),
        "multirecords[0].data: 256 bytes, a record has at most 255");
    EXPECT_EQ(refusal(R"({"board": {"serial": {"coding": "text", "bytes": ")" +
                      std::string(128, '0') + R"("}}})"),
              "board.serial: 64 bytes, a field has at most 63");
    EXPECT_EQ(refusal(R"({"board": {"serial": ")" + std::string(64, 'x') + R"("}})"),
              "board.serial: 64 bytes needed, a field has at most 63");
    EXPECT_EQ(refusal(R"({"board": {"unused": ")" + std::string(4096, '0') + R"("}})"),
              "board: 2064 bytes needed, an area has at most 2040");
    EXPECT_EQ(refusal(R"({"chassis": {}, "internal": ")" + std::string(4096, '0') + R"("})"),
              "chassis area: it would begin at offset 2056, the header can say 2040 at most");
}

namespace {

/// The data of the only record.
Bytes recordOf(const std::string& json)
{
    const FruDescription description =
        fruFromJson(readJson(R"({"multirecords": [)" + json + "]}"), NOW);
    const std::string& data = description.content.records.at(0).data;
    return {data.begin(), data.end()};
}

}

TEST(FruJson, CreatesRecordsOfTheirFields)
{
    EXPECT_EQ(recordOf(R"({"record": "extended-dc-output", "max-current": 6500,
                           "current-unit": "100 mA", "output": 2, "standby": true})"),
              (Bytes{0x92, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 65, 0}));
    EXPECT_EQ(recordOf(R"({"record": "power-supply", "fail-signal": "two pulses per rotation",
                           "capacity": 750, "peak-va": null, "inrush-current": 30,
                           "input1-low": 90, "tachometer-threshold": 7, "hot-swap": true,
                           "peak-capacity": 800, "hold-up-time": 2, "combined-voltage1": "5 V"})"),
              (Bytes{0xEE, 0x02, 0xFF, 0xFF, 30, 0,    0x28, 0x23, 0,    0, 0, 0,
                     0,    0,    0,    0,    0,  0x18, 0x20, 0x23, 0x20, 0, 0, 7}));
    EXPECT_EQ(recordOf(R"({"record": "management-access", "system-name": "node1",
                           "type": "system-name"})"),
              (Bytes{2, 'n', 'o', 'd', 'e', '1'}));
    EXPECT_EQ(recordOf(R"({"record": "management-access", "type": "system-url",
                           "system-url": "ab\u0000"})"),
              (Bytes{1, 'a', 'b', 0}));
    EXPECT_EQ(recordOf(R"({"record": "shelf-manager-ip", "address": "10.0.0.1", "format": 0})"),
              (Bytes{0x5A, 0x31, 0x00, 0x13, 0, 10, 0, 0, 1}));
    EXPECT_EQ(recordOf(R"({"record": "base-compatibility", "manufacturer": 10297, "code-start": 3,
                           "entity": "power supply", "code-mask": "0F"})"),
              (Bytes{0x39, 0x28, 0, 10, 0, 3, 0x0F}));
    // Lists: with a count, and up to the end of the record.
    EXPECT_EQ(recordOf(R"({"record": "power-distribution", "feed1.fru1.id": 9, "feed1.fru-count": 1,
                           "feed-count": 1, "feed1.min-voltage": 40.5})"),
              (Bytes{0x5A, 0x31, 0x00, 0x11, 0, 1, 0, 0, 0, 0, 81, 1, 0, 9}));
    EXPECT_EQ(recordOf(R"({"record": "backplane-links", "slot2.address": 3, "slot1.address": 1,
                           "slot2.channel-count": 1, "slot2.channel1.remote-slot": 5})"),
              (Bytes{0x5A, 0x31, 0x00, 0x04, 0, 0, 1, 0, 0, 3, 1, 5, 0, 0}));
    EXPECT_EQ(recordOf(R"({"record": "carrier", "site-count": 2, "site2": 7})"),
              (Bytes{0x5A, 0x31, 0x00, 0x1A, 0, 0, 2, 0, 7}));
}

TEST(FruJson, ElementsThatTheListLacksAreRefused)
{
    EXPECT_EQ(refusal(R"({"multirecords": [{"record": "carrier", "site-count": 1, "site2": 7}]})"),
              "multirecords[0].site2: the record has no such field");
    EXPECT_EQ(refusal(R"({"multirecords": [{"record": "backplane-links", "slot2.address": 1}]})"),
              "multirecords[0].slot2.address: the record has no such field");
}

/// Every field of every kind, with random bits: its JSON has all fields, and creates the same data.
TEST(FruJson, EveryRecordKindComesBackWithAllFields)
{
    std::mt19937 random(1);
    std::size_t fields = 0;
    for (const std::string& kind : multiRecordKinds()) {
        for (FruRecordContent record : fullRecords(kind)) {
            for (const MultiRecordField& field : decoded(record).fields) {
                const bool isChosen = field.name.find("-count") != std::string::npos ||
                                      field.name == "manufacturer" || field.name == "record-id" ||
                                      field.name == "format" || field.name == "subtype" ||
                                      (field.name == "version" && kind == "fmc-i2c") ||
                                      (field.name == "version" && kind == "fmc") ||
                                      (field.name == "type" && kind == "management-access");
                for (unsigned int bit = field.low; bit <= field.high && !isChosen; ++bit) {
                    char& byte = record.data[field.offset + bit / 8];
                    byte = static_cast<char>(byte ^ (random() % 2) << bit % 8);
                }
            }
            const recordkit::tool::Value json = jsonOfFru({{std::nullopt, {}, {record}}, 0});
            const auto* const records = json.find("multirecords")->as<List>();
            ASSERT_NE(records, nullptr);
            ASSERT_NE(records->at(0).find("record"), nullptr) << jsonText(json);
            for (const MultiRecordField& field : decoded(record).fields) {
                EXPECT_NE(records->at(0).find(field.name), nullptr) << kind << " " << field.name;
                ++fields;
            }
            const FruDescription again = fruFromJson(json, NOW);
            EXPECT_EQ(again.content.records.at(0).data, record.data) << jsonText(json);
            EXPECT_EQ(again.content.records.at(0).type, record.type);
        }
    }
    EXPECT_EQ(multiRecordKinds().size(), 25U);
    EXPECT_GT(fields, 200U);
}

TEST(FruJson, FieldsInAnyOrderAreTheSameRecord)
{
    std::mt19937 random(2);
    for (const std::string& kind : multiRecordKinds()) {
        for (const FruRecordContent& record : fullRecords(kind)) {
            std::vector<FruRecordValue> values;
            for (const MultiRecordField& field : decoded(record).fields) {
                values.push_back({field.name, field.value});
            }
            for (int i = 0; i < 5; ++i) {
                std::shuffle(values.begin(), values.end(), random);
                EXPECT_EQ(newRecord("record", kind, values).data, record.data) << kind;
            }
        }
    }
}

TEST(FruJson, WhatFieldsDoNotExpressIsData)
{
    // A reserved bit; a record that ends too early; a zero byte after a text.
    EXPECT_EQ(exported(text(created(R"({"multirecords": [
                  {"type": 1, "data": "21000000000000000000000000"}]})"))),
              R"({"size":32,"multirecords":[{"type":1,"data":"21000000000000000000000000"}]})");
    EXPECT_EQ(exported(text(created(R"({"multirecords": [{"type": 1, "data": "0100"}]})"))),
              R"({"size":16,"multirecords":[{"type":1,"data":"0100"}]})");
    EXPECT_EQ(exported(text(created(R"({"multirecords": [{"type": 3, "data": "02616200"}]})"))),
              R"({"size":24,"multirecords":[{"record":"management-access","type":"system-name",)"
              R"("system-name":"ab\u0000"}]})");
    // Not by its fields, although it has such a name.
    EXPECT_EQ(exported(text(created(R"({"multirecords": [{"type": 192, "data": "01020304"}]})"))),
              R"({"size":24,"multirecords":[{"type":192,"data":"01020304"}]})");
}

TEST(FruJson, ExportIsStable)
{
    const std::string image = text(WHOLE_IMAGE);
    EXPECT_EQ(exported(image),
              R"({"size":192,"internal":"0102030405000000","chassis":{"type":"Rack Mount Chassis",)"
              R"("part-number":"C-1","serial":{"value":"0042","coding":"BCD plus"}},)"
              R"("board":{"language":"en","date":"2024-11-05 06:07","manufacturer":"ACME",)"
              R"("name":"Board","serial":"SN1","part-number":{"value":"ABC-","coding":"6-bit"},)"
              R"("file-id":{"value":"C1","coding":"binary"},"custom":["one"]},)"
              R"("product":{"language":"is","manufacturer":"Þór","name":"","part-number":"",)"
              R"("version":"","serial":"","asset-tag":"","file-id":""},)"
              R"("multirecords":[{"record":"dc-load","output":1,"nominal-voltage":12.0,)"
              R"("min-voltage":11.4,"max-voltage":12.6,"ripple":120,"min-current":0,)"
              R"("max-current":5000},{"type":193,"data":"0A0B"}]})");
}

namespace {

struct Counts {
    int same = 0;
    int lost = 0;
    int refused = 0;
};

class FruExport : public testing::Test {
protected:
    Outcome fru(const Arguments& arguments, const std::string& input = "") const
    {
        Arguments words = {"fru"};
        words.insert(words.end(), arguments.begin(), arguments.end());
        return run(ourCommand(words), input);
    }

    /// Exports the image and creates one of what is printed.
    void pass(const std::string& path, Counts& counts) const
    {
        const Outcome json = fru({"export", path});
        const Bytes image = readFile(path);
        if (json.out.empty()) {
            EXPECT_EQ(json.status, 1) << path;
            EXPECT_NE(json.err.find(path + ": "), std::string::npos) << json.err;
            EXPECT_NE(json.err.find("offset"), std::string::npos) << json.err;
            ++counts.refused;
            return;
        }
        const Outcome outcome = fru({"create", "--from", "-", "-o", root.at("/again")}, json.out);
        ASSERT_EQ(outcome.status, 0) << path << outcome.err;
        const Bytes again = readFile(root.at("/again"));
        // Whatever is lost is reported.
        EXPECT_EQ(json.status, again == image ? 0 : 1) << path << json.err;
        EXPECT_EQ(json.err.empty(), again == image) << path << json.err;
        EXPECT_EQ(fru({"export", root.at("/again")}).out, json.out) << path;
        ++(again == image ? counts.same : counts.lost);
        expectSameContent(image, again, path);
    }

    static void expectSameContent(const Bytes& image, const Bytes& again, const std::string& path)
    {
        const FruImage before = parseFruImage(image);
        const FruImage after = parseFruImage(again);
        ASSERT_EQ(before.areas.size(), after.areas.size()) << path;
        for (std::size_t i = 0; i < before.areas.size(); ++i) {
            const auto& fields = before.areas[i].fields;
            for (const FruField& field : after.areas[i].fields) {
                const auto index = static_cast<std::size_t>(&field - &after.areas[i].fields[0]);
                ASSERT_LT(index, fields.size()) << path;
                EXPECT_EQ(field.typeLength, fields[index].typeLength) << path << field.name;
                EXPECT_EQ(field.bytes, fields[index].bytes) << path << field.name;
            }
            EXPECT_EQ(fields.size(), after.areas[i].fields.size()) << path;
        }
        ASSERT_EQ(before.records.size(), after.records.size()) << path;
        for (std::size_t i = 0; i < before.records.size(); ++i) {
            EXPECT_EQ(before.records[i].type, after.records[i].type) << path;
            EXPECT_EQ(before.records[i].bytes, after.records[i].bytes) << path;
        }
        ASSERT_EQ(before.internalUse.size(), after.internalUse.size()) << path;
        for (std::size_t i = 0; i < before.internalUse.size(); ++i) {
            EXPECT_EQ(before.internalUse[i].bytes, after.internalUse[i].bytes) << path;
        }
    }

    ScratchRoot root;
};

}

TEST_F(FruExport, EverySampleComesBack)
{
    Counts own;
    Counts others;
    for (const std::string& path : sampleImages()) {
        const bool isOwn = path.find(RECORDKIT_EXAMPLE_DATA) == 0;
        pass(path, isOwn ? own : others);
    }
    EXPECT_EQ(own.same, 5);
    EXPECT_EQ(own.lost, 0);
    EXPECT_EQ(own.refused, 0);
    if (others.same + others.lost + others.refused == 0) {
        GTEST_SKIP() << "the public samples are not at " RECORDKIT_PUBLIC_DATA;
    }
    EXPECT_EQ(others.same, 65);
    EXPECT_EQ(others.lost, 5);
    EXPECT_EQ(others.refused, 22);
}

TEST_F(FruExport, SaysWhatTheJsonDoesNotHave)
{
    Bytes image = created(R"({"chassis": {}, "board": {}, "size": 64})");
    const std::string path = root.at("/image");
    const auto lines = [&](const Bytes& bytes) {
        writeFile(path, bytes);
        const Outcome outcome = fru({"export", path});
        EXPECT_EQ(outcome.status, outcome.err.empty() ? 0 : 1);
        EXPECT_FALSE(outcome.out.empty());
        return outcome.err;
    };
    const std::string start = "recordkit: " + path + ": not in the JSON: ";
    EXPECT_EQ(lines(image), "");
    image[50] = 7;
    EXPECT_EQ(lines(image), start + "bytes 32 to 63: in no area, but not blank\n");
    image[50] = 0xFF;
    EXPECT_EQ(lines(image), start + "bytes 32 to 63: blank, in another way than the image's end\n");
    image[50] = 0;
    // Reserved bits.
    image[8] = 0x31;
    image[15] = static_cast<unsigned char>(image[15] - 0x30);
    EXPECT_EQ(lines(image), start + "chassis: 31h at offset 8 becomes 01h\n");
    Bytes gap = created(R"({"chassis": {"size": 24}, "board": {}, "size": 64})");
    // The chassis becomes smaller: a gap of 16 bytes before the board.
    gap[9] = 1;
    std::fill(gap.begin() + 14, gap.begin() + 32, static_cast<unsigned char>(0));
    gap[15] = 0xBB;
    EXPECT_EQ(lines(gap), start + "board: at offset 16, not 32\n");
}

TEST_F(FruExport, RefusesDamage)
{
    Bytes image = created(WHOLE);
    image[30] = 1;
    writeFile(root.at("/image"), image);
    const Outcome outcome = fru({"export", root.at("/image")});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err, "recordkit: " + root.at("/image") +
                               ": chassis area: checksum 3Dh at offset 31, expected 3Ch\n");
}

TEST_F(FruExport, IsIndented)
{
    writeFile(root.at("/image"), created(R"({"chassis": {"part-number": "PN\u009b\u0000"}})"));
    EXPECT_EQ(fru({"export", root.at("/image")}).out, "{\n"
                                                      "  \"size\": 24,\n"
                                                      "  \"chassis\": {\n"
                                                      "    \"type\": \"Unknown\",\n"
                                                      "    \"part-number\": \"PN\\u009b\\u0000\",\n"
                                                      "    \"serial\": \"\"\n"
                                                      "  }\n"
                                                      "}\n");
}

TEST_F(FruExport, CreateWritesAndReportsTheSize)
{
    writeFile(root.at("/board.json"), WHOLE);
    const std::string path = root.at("/image");
    Outcome outcome = fru({"create", "--from", root.at("/board.json"), "-o", path});
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(outcome.out, "192 bytes written to " + path + "\n");
    EXPECT_EQ(readFile(path), WHOLE_IMAGE);
    outcome = fru({"create", "--from", root.at("/board.json"), "-o", path, "--size", "256"});
    EXPECT_EQ(outcome.out, "256 bytes written to " + path + "\n");
    EXPECT_EQ(readFile(path), WHOLE_IMAGE + Bytes(64, 0));
}

TEST_F(FruExport, CreateWritesNothingOnAnError)
{
    const std::string path = root.at("/image");
    const std::string json = root.at("/board.json");
    writeFile(json, R"({"board": {"serail": "SN1"}})");
    Outcome outcome = fru({"create", "--from", json, "-o", path});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err, "recordkit: " + json +
                               ": board.serail: unknown key, expected one of language, date, "
                               "manufacturer, name, serial, part-number, file-id, custom, size, "
                               "unused\n");
    EXPECT_FALSE(fileExists(path));
    writeFile(json, "{\n  \"board\": {,}\n}\n");
    outcome = fru({"create", "--from", json, "-o", path});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err, "recordkit: " + json +
                               ": line 2, column 13: syntax error while parsing object key - "
                               "unexpected ','; expected string literal\n");
    EXPECT_FALSE(fileExists(path));
    outcome = fru({"create", "--from", json, "-o", json});
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.err, "recordkit: -o: " + json + " is the input and would be replaced\n");
    EXPECT_EQ(fru({"create", "--from", json}).status, 2);
    EXPECT_EQ(fru({"create", "-o", path}).status, 2);
    EXPECT_EQ(fru({"create", "--from", json, "-o", path, "--size", "7"}).status, 2);
}
