// SPDX-License-Identifier: Apache-2.0
// Templates of frugen, written here in the form that its documentation describes.
#include <filesystem>
#include <gtest/gtest.h>

#include <recordkit/inspect/fru/FruImage.h>

#include "support/Bytes.h"
#include "support/Process.h"
#include "support/ScratchRoot.h"
#include "tool/fru/FrugenJson.h"
#include "tool/print/JsonInput.h"

using namespace testing_support;
using namespace recordkit::tool;
using testing_support::Bytes;
namespace fs = std::filesystem;

namespace {

constexpr unsigned int NOW = 1730786820; // 2024-11-05 06:07

std::string imageOf(const std::string& json)
{
    const FruDescription description =
        fruFromFrugenJson(readJson(json, JsonComments::SKIPPED), NOW);
    return buildFruImage(description.content, description.size);
}

std::string refusal(const std::string& json)
{
    try {
        imageOf(json);
    } catch (const Error& e) {
        return e.what();
    }
    return "accepted";
}

std::string valueIn(const std::string& image, const std::string& name)
{
    const FruImage parsed = parseFruImage(image);
    const FruField* const field = parsed.findField(name);
    return field == nullptr ? "none" : field->value;
}

/// The type of a text and its value.
std::string custom(const std::string& json)
{
    const FruImage image = parseFruImage(imageOf(R"({"chassis": {"custom": [)" + json + "]}}"));
    const FruField* const field = image.findField("chassis.custom1");
    return field == nullptr ? "none" : std::string(field->typeName()) + " " + field->value;
}

}

TEST(FrugenJson, ReadsEveryKey)
{
    const std::string image = imageOf(R"({
        /* a comment */
        "internal": "0A0B0C",
        "chassis": {"type": 23, "pn": "CH-PN", "serial": {"type": "bcdplus", "data": "12345"},
                    "custom": [{"data": "first one"}, {"type": "binary", "data": "00FF"}]},
        "board": {"lang": 25, "date": "3/2/2020 4:05:06", "mfg": "A Maker", "pname": "A Board",
                  "serial": "s1", "pn": "p1", "file": "board.json",
                  "custom": [{"type": "auto", "data": "and this"}]},
        "product": {"lang": 1, "mfg": "B Maker", "pname": "B Product", "pn": "p2", "ver": "v1.2",
                    "serial": "s2", "atag": "Rack 7", "file": "product.json", "custom": []},
        "multirecord": [
            {"type": "management", "subtype": "uuid",
             "uuid": "00112233-4455-6677-8899-aabbccddeeff"},
            {"type": "management", "subtype": "sname", "sname": "node one"},
            {"type": "custom", "custom_type": 193, "data": "010203"}
        ]})");
    const FruImage parsed = parseFruImage(image);
    EXPECT_EQ(parsed.allProblems(), std::vector<std::string>());
    const std::map<std::string, std::string> expected = {
        {"chassis.type", "Rack Mount Chassis"},
        {"chassis.part-number", "CH-PN"},
        {"chassis.serial", "12345 "},
        {"chassis.custom1", "first one"},
        {"chassis.custom2", "00FF"},
        {"board.language", "25"},
        {"board.date", "2020-02-03 04:05"},
        {"board.manufacturer", "A Maker"},
        {"board.name", "A Board"},
        {"board.serial", "s1"},
        {"board.part-number", "p1"},
        {"board.file-id", "board.json"},
        {"board.custom1", "and this"},
        {"product.language", "25"},
        {"product.manufacturer", "B Maker"},
        {"product.name", "B Product"},
        {"product.part-number", "p2"},
        {"product.version", "v1.2"},
        {"product.serial", "s2"},
        {"product.asset-tag", "Rack 7"},
        {"product.file-id", "product.json"},
        {"product.custom1", "none"},
    };
    for (const auto& [name, value] : expected) {
        EXPECT_EQ(valueIn(image, name), value) << name;
    }
    EXPECT_EQ(image.substr(8, 8), std::string("\x0A\x0B\x0C\0\0\0\0\0", 8));
    ASSERT_EQ(parsed.records.size(), 3U);
    // The first three numbers of a GUID have their low byte first.
    EXPECT_EQ(
        parsed.records[0].bytes,
        std::string("\x07\x33\x22\x11\x00\x55\x44\x77\x66\x88\x99\xAA\xBB\xCC\xDD\xEE\xFF", 17));
    EXPECT_EQ(parsed.records[1].bytes, "\x02node one");
    EXPECT_EQ(parsed.records[2].type, 193);
    EXPECT_EQ(parsed.records[2].bytes, "\x01\x02\x03");
}

TEST(FrugenJson, EverySubtypeIsAManagementAccessRecord)
{
    const char* const names[] = {"surl", "sname", "spingaddr", "curl", "cname", "cpingaddr"};
    char type = 1;
    for (const std::string name : names) {
        const std::string image =
            imageOf(R"({"multirecord": [{"type": "management", "subtype": ")" + name + R"(", ")" +
                    name + R"(": "abc"}]})");
        const FruImage parsed = parseFruImage(image);
        ASSERT_EQ(parsed.records.size(), 1U);
        EXPECT_EQ(parsed.records[0].type, 3);
        EXPECT_EQ(parsed.records[0].bytes, std::string(1, type++) + "abc");
    }
}

TEST(FrugenJson, TextsHaveTheCodingThatIsAskedForOrFits)
{
    EXPECT_EQ(custom(R"("12-34.")"), "BCD plus 12-34.");
    EXPECT_EQ(custom(R"("123")"), "text 123"); // BCD plus would read back with a blank
    EXPECT_EQ(custom(R"("1")"), "6-bit 1");
    EXPECT_EQ(custom(R"("ABC-")"), "6-bit ABC-");
    EXPECT_EQ(custom(R"("ABC")"), "text ABC"); // and so would 6-bit text
    EXPECT_EQ(custom(R"("A")"), "6-bit A");
    EXPECT_EQ(custom(R"("abcd")"), "text abcd");
    EXPECT_EQ(custom(R"("")"), "text ");
    EXPECT_EQ(custom(R"({"data": "1234"})"), "BCD plus 1234");
    EXPECT_EQ(custom(R"({"type": "text", "data": "1234"})"), "text 1234");
    EXPECT_EQ(custom(R"({"type": "6bitascii", "data": "1234"})"), "6-bit 1234");
    EXPECT_EQ(custom(R"({"type": "bcdplus", "data": "123"})"), "BCD plus 123 ");
    EXPECT_EQ(custom(R"({"type": "binary", "data": "1234"})"), "binary 1234");
}

TEST(FrugenJson, WhatIsMissingHasItsDefault)
{
    const std::string image = imageOf(R"({"chassis": {}, "board": {}, "product": {}})");
    EXPECT_EQ(valueIn(image, "chassis.type"), "Unknown");
    EXPECT_EQ(valueIn(image, "board.date"), "2024-11-05 06:07");
    EXPECT_EQ(valueIn(image, "board.serial"), "");
    EXPECT_EQ(valueIn(imageOf(R"({"board": {"date": "auto"}})"), "board.date"), "2024-11-05 06:07");
    EXPECT_EQ(valueIn(imageOf(R"({"board": {"date": "31/12/2017 23:59"}})"), "board.date"),
              "2017-12-31 23:59");
}

TEST(FrugenJson, SaysWhatIsWrongAndWhere)
{
    const std::string noDate = ", expected a date from 1/1/2006 to 23/11/2037, as \"31/12/2017 "
                               "12:58:00\", or \"auto\"";
    const std::vector<std::pair<std::string, std::string>> rows = {
        {"[]", "[], expected an object"},
        {R"({"multirecords": []})", "multirecords: unknown key, expected one of internal, chassis, "
                                    "board, product, multirecord"},
        {R"({"chassis": {"name": "x"}})",
         "chassis.name: unknown key, expected one of type, pn, serial, custom"},
        {R"({"chassis": {"type": "23"}})", "chassis.type: \"23\", expected a number from 0 to 255"},
        {R"({"board": {"lang": 256}})", "board.lang: 256, expected a number from 0 to 255"},
        {R"({"board": {"serial": {"type": "ascii", "data": "x"}}})",
         "board.serial.type: \"ascii\", expected \"auto\", \"text\", \"6bitascii\", \"bcdplus\", "
         "\"binary\""},
        {R"({"board": {"serial": {"type": "text"}}})", "board.serial.data: null, expected a text"},
        {R"({"board": {"serial": 5}})", "board.serial: 5, expected a text"},
        {R"({"board": {"serial": "x"}})",
         "board.serial: a value of one character cannot be stored, its type/length byte would end "
         "the fields"},
        {R"({"internal": "xy"})", "internal: \"xy\", expected pairs of hex digits"},
        {R"({"multirecord": [{"type": "psu"}]})",
         "multirecord[0].type: \"psu\", expected \"management\" or \"custom\""},
        {R"({"multirecord": [{"type": "management", "subtype": "guid"}]})",
         "multirecord[0].subtype: \"guid\", expected one of uuid, surl, sname, spingaddr, curl, "
         "cname, cpingaddr"},
        {R"({"multirecord": [{"type": "management", "subtype": "uuid", "uuid": "12"}]})",
         "multirecord[0].system-guid: \"12\", expected a GUID, such as "
         "00112233-4455-6677-8899-AABBCCDDEEFF"},
        {R"({"multirecord": [{"type": "management", "subtype": "uuid", "surl": "12"}]})",
         "multirecord[0].surl: unknown key, expected one of type, subtype, uuid"},
        {R"({"board": {"date": "2017-12-31"}})", "board.date: \"2017-12-31\"" + noDate},
        {R"({"board": {"date": "31/13/2017 1:00"}})", "board.date: \"31/13/2017 1:00\"" + noDate},
        {R"({"board": {"date": "1/1/2017"}})", "board.date: \"1/1/2017\"" + noDate},
        {R"({"board": {"date": "1/1/2017 1:00:99"}})", "board.date: \"1/1/2017 1:00:99\"" + noDate},
        {R"({"board": {"date": null}})", "board.date: null, expected a text"},
        {R"({"board": {"date": "1/1/2017 "}})", "board.date: \"1/1/2017 \"" + noDate},
        {R"({"board": {"date": "/1/2017 1:00"}})", "board.date: \"/1/2017 1:00\"" + noDate},
        {R"({"board": {"date": "1/1/2017 x"}})", "board.date: \"1/1/2017 x\"" + noDate},
    };
    for (const auto& [json, expected] : rows) {
        EXPECT_EQ(refusal(json), expected) << json;
    }
}

TEST(FrugenJson, IsReadWithItsFormatOnly)
{
    const ScratchRoot root;
    const std::string json = R"({"board": {"pname": "A Board"} /* comment */})";
    const std::string path = root.at("/image");
    const Outcome refused = run(ourCommand({"fru", "create", "--from", "-", "-o", path}), json);
    EXPECT_EQ(refused.status, 1);
    const Outcome done =
        run(ourCommand({"fru", "create", "--from", "-", "-o", path, "--format", "frugen"}), json);
    EXPECT_EQ(done.status, 0) << done.err;
    EXPECT_EQ(run(ourCommand({"fru", "get", path, "board.name"})).out, "A Board\n");
}

/// Images that frugen made, with their templates: every field has the same value here, except for
/// the blank that 6-bit text may end with.
TEST(FrugenJson, GivesWhatFrugenGives)
{
    const std::string folder = RECORDKIT_PUBLIC_DATA "/fru";
    std::size_t compared = 0;
    if (fs::exists(folder + "/ref-source")) {
        for (const auto& entry : fs::directory_iterator(folder + "/ref-source")) {
            const std::string name = entry.path().stem().string();
            if (entry.path().extension() != ".json" || name.find("gen-frugen__") != 0) {
                continue;
            }
            const Bytes json = readFile(entry.path().string());
            const std::string ours = imageOf({json.begin(), json.end()});
            const FruImage theirs = parseFruImage(readFile(folder + "/" + name + ".bin"));
            const FruImage image = parseFruImage(ours);
            for (const FruAreaImage& area : theirs.areas) {
                for (const FruField& field : area.fields) {
                    std::string value = field.value;
                    value.erase(value.find_last_not_of(' ') + 1);
                    EXPECT_EQ(valueIn(ours, area.extent.name + "." + field.name), value)
                        << name << " " << field.name;
                    ++compared;
                }
            }
            ASSERT_EQ(image.records.size(), theirs.records.size()) << name;
            for (std::size_t i = 0; i < image.records.size(); ++i) {
                EXPECT_EQ(image.records[i].bytes, theirs.records[i].bytes) << name;
            }
        }
    }
    if (compared == 0) {
        GTEST_SKIP() << "frugen's images are not at " << folder;
    }
    EXPECT_GT(compared, 50U);
}
