// SPDX-License-Identifier: Apache-2.0
// The modules of a board: compared, audited.
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "support/HexDumps.h"
#include "support/Process.h"
#include "support/ScratchRoot.h"
#include "support/SpdImage.h"

using namespace testing_support;
using Json = nlohmann::json;

namespace {

class SpdBoard : public testing::Test {
protected:
    void SetUp() override
    {
        writeFile(one(), ddr4Module());
        Bytes other = ddr4Module();
        other[328] = 0x79;
        writeFile(two(), other);
        other[328] = 0x7A;
        other[12] = 0x01; // one rank
        writeSpdCrc(other, 0, 126, 126);
        writeFile(small(), other);
        other[126] ^= 1;
        writeFile(damaged(), other);
        writeFile(text(), textBytes("this is not a module at all"));
    }
    static Outcome spd(const Arguments& arguments, const std::string& input = "")
    {
        Arguments words = {"spd"};
        words.insert(words.end(), arguments.begin(), arguments.end());
        return run(ourCommand(words), input);
    }
    std::string one() const { return root.at("/one.bin"); }
    std::string two() const { return root.at("/two.bin"); }
    std::string small() const { return root.at("/small.bin"); }
    std::string damaged() const { return root.at("/damaged.bin"); }
    std::string text() const { return root.at("/text"); }

    ScratchRoot root;
};

}

TEST_F(SpdBoard, DiffersInWhatModulesSay)
{
    const Outcome same = spd({"diff", one(), one()});
    EXPECT_EQ(same.status, 0) << same.err;
    EXPECT_EQ(same.out, "FIELD                 A                                 B\n");
    const Outcome outcome = spd({"diff", one(), two()});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.out, "FIELD                 A                                 B\n"
                           "serial_number         12345678                          12345679\n");
    const Outcome csv = spd({"diff", two(), small(), "--csv", "--fields", "field,a,b"});
    EXPECT_EQ(csv.out.find("field,a,b\r\ncapacity_mb,16384,8192\r\nranks,2,1\r\n"
                           "serial_number,12345679,1234567A\r\ncrc_stored,"),
              0U)
        << csv.out;
    const Json json = Json::parse(spd({"diff", two(), small(), "--json"}).out);
    EXPECT_EQ(json[0], Json::parse(R"({"field": "capacity_mb", "a": 16384, "b": 8192})"));
    const std::string lines = spd({"diff", two(), small(), "--ndjson"}).out;
    EXPECT_EQ(lines.substr(0, lines.find('\n')), R"({"field":"capacity_mb","a":16384,"b":8192})");
}

TEST_F(SpdBoard, DiffReadsStandardInputAndHexDumps)
{
    const Bytes image = readFile(one());
    EXPECT_EQ(spd({"diff", one(), "-"}, std::string(image.begin(), image.end())).status, 0);
    EXPECT_EQ(spd({"diff", "-", one()}, xxd(image)).status, 0);
    EXPECT_EQ(spd({"diff", "-", two()}, xxd(image)).status, 1);
}

TEST_F(SpdBoard, DiffReportsDamage)
{
    const Outcome both = spd({"diff", damaged(), damaged()});
    EXPECT_EQ(both.status, 1) << "both are damaged";
    EXPECT_NE(both.err.find(damaged() + ": the CRC is "), std::string::npos) << both.err;
    EXPECT_EQ(std::count(both.out.begin(), both.out.end(), '\n'), 1);
    const Outcome crc = spd({"diff", small(), damaged(), "--csv"});
    EXPECT_EQ(crc.status, 1);
    EXPECT_NE(crc.out.find("crc_right,true,false"), std::string::npos) << crc.out;
    for (const Outcome& none : {spd({"diff", one(), text()}), spd({"diff", text(), one()})}) {
        EXPECT_EQ(none.status, 1);
        EXPECT_EQ(none.out, "") << "there is nothing to compare with";
        EXPECT_NE(none.err.find(text() + ": neither "), std::string::npos) << none.err;
    }
    EXPECT_EQ(spd({"diff", one(), root.at("/none")}).status, 3);
    EXPECT_EQ(spd({"diff", root.at("/none"), one()}).status, 3);
    EXPECT_EQ(spd({"diff", one()}).status, 2);
}

TEST_F(SpdBoard, DiffListsEveryValueOfShowThatDiffers)
{
    const std::vector<Bytes> modules = {
        spdModule(),    ddr3Module(),   part(ddr4Module(), 0, 128), ddr4Module(), ddr5Module(),
        lpddr4Module(), lpddr5Module(), readFile(damaged())};
    std::vector<Json> shown;
    for (std::size_t i = 0; i < modules.size(); ++i) {
        writeFile(root.at("/m" + std::to_string(i)), modules[i]);
        shown.push_back(
            Json::parse(spd({"show", root.at("/m" + std::to_string(i)), "--json"}).out)[0]);
    }
    for (std::size_t i = 0; i < modules.size(); ++i) {
        for (std::size_t k = 0; k < modules.size(); ++k) {
            const Json listed = Json::parse(spd({"diff", root.at("/m" + std::to_string(i)),
                                                 root.at("/m" + std::to_string(k)), "--json"})
                                                .out);
            std::map<std::string, std::pair<Json, Json>> found;
            for (const Json& each : listed) {
                found[each["field"]] = {each["a"], each["b"]};
            }
            EXPECT_EQ(found.size(), listed.size());
            std::map<std::string, std::pair<Json, Json>> expected;
            for (const auto& [key, value] : shown[i].items()) {
                // The file, and what follows from the other values of a CRC.
                if (key != "file" && key != "file_bytes" && key != "crc_expected" &&
                    key != "module_crc_expected" && value != shown[k][key]) {
                    expected[key] = {value, shown[k][key]};
                }
            }
            EXPECT_EQ(found, expected) << i << " and " << k;
        }
    }
}

TEST_F(SpdBoard, AuditListsFindings)
{
    const Outcome sound = spd({"audit", one(), two()});
    EXPECT_EQ(sound.status, 0) << sound.err;
    EXPECT_EQ(sound.out, "FILE                              SEVERITY  FIELD             FINDING\n");
    const Outcome outcome = spd({"audit", one(), two(), small(), "--csv"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err, "recordkit: 2 findings in 3 modules\n");
    EXPECT_EQ(outcome.out,
              "file,severity,field,finding\r\n" + small() +
                  ",warning,capacity_mb,\"is 8192 MB, 16384 MB in 2 of 3 modules\"\r\n" + small() +
                  ",warning,ranks,\"is 1, 2 in 2 of 3 modules\"\r\n");
    const Json json = Json::parse(spd({"audit", damaged(), "--json"}).out);
    ASSERT_EQ(json.size(), 1U);
    EXPECT_EQ(json[0]["file"], damaged());
    EXPECT_EQ(json[0]["severity"], "error");
    EXPECT_EQ(json[0]["field"], nullptr);
    EXPECT_EQ(json[0]["finding"].get<std::string>().find("the CRC is "), 0U);
    EXPECT_EQ(spd({"audit", one(), one()}).err, "recordkit: 2 findings in 2 modules\n")
        << "the same serial number";
}

TEST_F(SpdBoard, AuditFindsADateInTheFuture)
{
    Bytes image = ddr4Module();
    image[323] = 0x99;
    writeFile(root.at("/late"), image);
    EXPECT_NE(
        spd({"audit", root.at("/late")}).out.find("made              2099-W27 is in the future"),
        std::string::npos);
}

TEST_F(SpdBoard, AuditGoesOnAfterWhatIsNotAModule)
{
    const Outcome outcome = spd({"audit", text(), root.at("/none"), one(), small()});
    EXPECT_EQ(outcome.status, 3);
    EXPECT_NE(outcome.err.find(text() + ": "), std::string::npos) << outcome.err;
    EXPECT_NE(outcome.err.find(root.at("/none")), std::string::npos) << outcome.err;
    EXPECT_NE(outcome.out.find(small()), std::string::npos) << outcome.out;
    EXPECT_EQ(outcome.out.find(one()), std::string::npos) << "it is sound";
}

TEST_F(SpdBoard, FilesThatAreTooLongAreRefused)
{
    Bytes image = ddr4Module();
    image.resize(4096, 0);
    writeFile(root.at("/long"), image);
    image.push_back(0);
    writeFile(root.at("/longer"), image);
    EXPECT_EQ(spd({"show", root.at("/long")}).status, 0);
    for (const Arguments& words : {Arguments{"show", root.at("/longer")},
                                   {"audit", root.at("/longer")},
                                   {"diff", root.at("/longer"), one()}}) {
        const Outcome outcome = spd(words);
        EXPECT_EQ(outcome.status, 1);
        EXPECT_NE(outcome.err.find("/longer: 4097 bytes, expected at most 4096"), std::string::npos)
            << outcome.err;
    }
}
