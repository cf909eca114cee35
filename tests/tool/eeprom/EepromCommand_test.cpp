// SPDX-License-Identifier: Apache-2.0
// eeprom as a user runs it.
#include <filesystem>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "support/Process.h"
#include "support/ScratchRoot.h"
#include "tool/Errors.h"
#include "tool/eeprom/SettingJson.h"

using namespace testing_support;
using Json = nlohmann::json;
using ::recordkit::inspect::Error;
using ::recordkit::tool::settingIndexFrom;

namespace {

const std::string AREAS = R"([
    {"number": 0, "eeprom": 4, "offset": 1024, "size": 256},
    {"number": 3, "eeprom": 5, "offset": 0, "size": 64},
    {"number": 26, "eeprom": 5, "offset": 65280, "size": 256}])";

class EepromCommand : public testing::Test {
protected:
    Outcome eeprom(const Arguments& arguments, const std::string& input = "") const
    {
        Arguments words = {"--root", root.path(), "eeprom"};
        words.insert(words.end(), arguments.begin(), arguments.end());
        if (arguments[0] != "create") {
            words.insert(words.end(), {"--images", images});
        }
        return run(ourCommand(words), input);
    }
    void create() const { ASSERT_EQ(eeprom({"create", images}).status, 0); }
    void createIndex() const
    {
        create();
        ASSERT_EQ(eeprom({"setting", "index", "--from", "-"}, AREAS).status, 0);
        ASSERT_EQ(eeprom({"setting", "init"}).status, 0);
    }
    Json list(int status) const
    {
        const Outcome outcome = eeprom({"setting", "list", "--json"});
        EXPECT_EQ(outcome.status, status) << outcome.err;
        return Json::parse(outcome.out);
    }
    std::string image(int select) const
    {
        return images + "/eeprom" + std::to_string(select) + ".bin";
    }

    const ScratchRoot root;
    const std::string images = root.at("/images");
};

std::string indexRefusal(const std::string& json)
{
    try {
        settingIndexFrom(json);
        return "none";
    } catch (const Error& e) {
        return e.what();
    }
}

}

TEST_F(EepromCommand, CreatesBlankImagesAndNeverTouchesOldOnes)
{
    const Outcome outcome = eeprom({"create", images});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.out, images + ": 19 images of 65536 bytes\n");
    EXPECT_EQ(readFile(image(4)), Bytes(65536, 0));
    EXPECT_EQ(readFile(image(10)), Bytes(65536, 0));
    EXPECT_EQ(readFile(image(26)), Bytes(65536, 0xFF));
    EXPECT_FALSE(fileExists(image(6)));
    writeFile(image(26), Bytes({1}));
    std::filesystem::remove(image(4));
    EXPECT_EQ(eeprom({"create", images}).status, 3);
    EXPECT_EQ(readFile(image(26)), Bytes({1}));
    EXPECT_FALSE(fileExists(image(4)));
}

TEST_F(EepromCommand, MakesAnIndexAndInitialisesFromIt)
{
    createIndex();
    const Bytes file = readFile(root.at("/etc/default/config/panelindex.dat"));
    EXPECT_EQ(file.size(), 432U);
    EXPECT_EQ(part(file, 48, 16), Bytes({0, 0, 1, 3, 0, 0, 0, 64, 0, 0, 0, 0, 0, 0, 0, 0xBC}));
    EXPECT_EQ(part(readFile(image(4)), 512, 432), file);
    const Json json = list(0);
    EXPECT_EQ(json.size(), 27U);
    EXPECT_EQ(json[3]["eeprom"], 5);
    EXPECT_EQ(json[3]["index_file"], "same");
    // What is exported makes the same index.
    const Outcome exported = eeprom({"setting", "index", "--json"});
    ASSERT_EQ(exported.status, 0);
    const std::vector<unsigned char> again = settingIndexFrom(exported.out);
    EXPECT_EQ(Bytes(again.begin(), again.end()), file);
}

TEST_F(EepromCommand, IndexesThatCannotBeAreRefused)
{
    EXPECT_EQ(indexRefusal("nonsense"), "not JSON of up to 64 levels");
    EXPECT_EQ(indexRefusal(std::string(100000, '[') + std::string(100000, ']')),
              "not JSON of up to 64 levels");
    EXPECT_EQ(indexRefusal("[" + std::string(63, '[') + std::string(63, ']') + "]"),
              "expected an object, not " + std::string(63, '[') + std::string(17, ']'));
    EXPECT_EQ(indexRefusal("[" + std::string(64, '[') + std::string(64, ']') + "]"),
              "not JSON of up to 64 levels");
    EXPECT_EQ(indexRefusal("{}"), "expected an array of entries");
    EXPECT_EQ(indexRefusal("[1]"), "expected an object, not 1");
    EXPECT_EQ(
        indexRefusal(R"([{"number": 27, "eeprom": 4, "offset": 0, "size": 1}])").substr(0, 43),
        "\"number\": expected a number from 0 to 26 in");
    EXPECT_EQ(indexRefusal(R"([{"number": 1, "eeprom": 6, "offset": 0, "size": 1}])").substr(0, 42),
              "\"eeprom\": expected a number from 4 to 5 in");
    EXPECT_EQ(indexRefusal(R"([{"number": 1, "eeprom": 4, "offset": -1, "size": 1}])").substr(0, 8),
              "\"offset\"");
    EXPECT_EQ(indexRefusal(R"([{"number": 1, "eeprom": 4, "offset": 0}])").substr(0, 6),
              "\"size\"");
    EXPECT_EQ(indexRefusal(R"([{"number": 1, "eeprom": 5, "offset": 65535, "size": 2}])"),
              "area 1 (2 bytes at offset 65535) reaches beyond the 65536 bytes of EEPROM 5");
    EXPECT_EQ(indexRefusal(R"([{"number": 1, "eeprom": 5, "offset": 0, "size": 10},
                               {"number": 2, "eeprom": 5, "offset": 9, "size": 1}])"),
              "areas 1 and 2 overlap");
    EXPECT_EQ(indexRefusal(R"([{"number": 1, "eeprom": 4, "offset": 943, "size": 1}])"),
              "area 1 overlaps the index (512 to 943)");
    EXPECT_EQ(indexRefusal(R"([{"number": 1, "eeprom": 4, "offset": 944, "size": 1},
                               {"number": 2, "eeprom": 5, "offset": 944, "size": 1}])"),
              "none");
    EXPECT_EQ(indexRefusal(R"([{"number": 1, "eeprom": 4, "offset": 0, "size": 1},
                               {"number": 1, "eeprom": 5, "offset": 0, "size": 1}])"),
              "entry 1 is specified more than once");
    create();
    EXPECT_EQ(eeprom({"setting", "index", "--from", "-"}, "x").status, 1);
    EXPECT_FALSE(fileExists(root.at("/etc/default/config/panelindex.dat")));
    EXPECT_EQ(eeprom({"setting", "index"}).status, 0);
}

TEST_F(EepromCommand, WritesAndReadsAreas)
{
    createIndex();
    const Outcome written = eeprom({"setting", "write", "3", "-"}, "hello");
    EXPECT_EQ(written.status, 0);
    EXPECT_EQ(written.out, "area 3: 5 bytes of standard input written, valid\n");
    EXPECT_EQ(eeprom({"setting", "read", "3"}).out.substr(0, 5), "hello");
    EXPECT_EQ(eeprom({"setting", "read", "3"}).out.size(), 64U);
    const std::string file = root.at("/area");
    EXPECT_EQ(eeprom({"setting", "read", "3", file}).status, 0);
    EXPECT_EQ(readFile(file).size(), 64U);
    const Outcome refused = eeprom({"setting", "read", "0"});
    EXPECT_EQ(refused.status, 1);
    EXPECT_EQ(refused.err, "recordkit: checkIndexData: flag invalid.(area=0x0)\n");
    EXPECT_EQ(eeprom({"setting", "write", "3", "-"}, std::string(65, 'x')).status, 1);
    EXPECT_EQ(eeprom({"setting", "write", "27", "-"}, "x").status, 2);
    const Outcome refusedAll = eeprom({"setting", "invalidate"});
    EXPECT_EQ(refusedAll.status, 2);
    EXPECT_EQ(eeprom({"setting", "invalidate", "--yes"}).out, "area 3: invalidated\n");
    EXPECT_EQ(eeprom({"setting", "read", "3"}).status, 1);
    std::filesystem::remove(image(5));
    EXPECT_EQ(eeprom({"setting", "write", "3", "-"}, "x").status, 3);
}

TEST_F(EepromCommand, ListNamesDamageAndDifferences)
{
    createIndex();
    ASSERT_EQ(eeprom({"setting", "write", "3", "-"}, "hello").status, 0);
    EXPECT_EQ(list(0)[3]["index_file"], "same");
    patchFile(image(4), 512 + 3 * 16 + 5, {9});
    const Json json = list(1);
    EXPECT_EQ(json[3]["checksum_right"], false);
    EXPECT_EQ(json[3]["index_file"], "DIFFERS");
    EXPECT_EQ(eeprom({"setting", "list"}).err, "recordkit: index of the setting areas: entry 3 is "
                                               "damaged: its checksum is wrong\n");
    EXPECT_EQ(eeprom({"setting", "init", "3"}).status, 0);
    EXPECT_EQ(list(0)[3]["checksum_right"], true);
    std::filesystem::remove(root.at("/etc/default/config/panelindex.dat"));
    EXPECT_EQ(list(0)[3]["index_file"], "no file");
    EXPECT_EQ(eeprom({"setting", "init"}).status, 3);
    EXPECT_FALSE(fileExists(root.at("/etc/default/config/panelindex.dat")));
    EXPECT_EQ(eeprom({"setting", "list"}).out.substr(0, 17), "AREA  VALID  EEPR");
}

TEST_F(EepromCommand, BackupIsInitialisedMarkedAndCleared)
{
    create();
    EXPECT_EQ(eeprom({"efi", "mark", "1", "2", "3"}).status, 1);
    EXPECT_EQ(eeprom({"efi", "init", "--serial", "SN-4711"}).out,
              "EEPROM 10: new index record for SN-4711, no block is pending erasure\n");
    EXPECT_EQ(eeprom({"efi", "mark", "1", "2", "3"}).out,
              "EEPROM 17: block 3 is marked for erasure\n");
    EXPECT_EQ(eeprom({"efi", "mark", "1", "2", "15"}).status, 0);
    EXPECT_EQ(eeprom({"efi", "mark", "3", "3", "0"}).status, 0);
    const Outcome status = eeprom({"efi", "status"});
    EXPECT_EQ(status.status, 0);
    EXPECT_NE(status.out.find("owner     SN-4711\nchecksum  right\n"), std::string::npos);
    EXPECT_NE(status.out.find("17      1          2     ...#...........#\n"), std::string::npos);
    EXPECT_NE(status.out.find("3 blocks pending erasure (#)\n"), std::string::npos);
    writeFile(image(17), Bytes(65536, 0x77));
    const Outcome one = eeprom({"efi", "clear", "1", "2"});
    EXPECT_EQ(one.out, "[1/1] EEPROM 17: 2 blocks erased\n");
    EXPECT_EQ(part(readFile(image(17)), 12288, 4096), Bytes(4096, 0xFF));
    EXPECT_EQ(part(readFile(image(17)), 0, 4096), Bytes(4096, 0x77));
    const Json json = Json::parse(eeprom({"efi", "status", "--json"}).out);
    EXPECT_EQ(json[6]["pending"], Json::array());
    EXPECT_EQ(json[15]["pending"], Json::array({0}));
    EXPECT_EQ(eeprom({"efi", "clear"}).out, "[1/1] EEPROM 26: 1 block erased\n");
    EXPECT_EQ(eeprom({"efi", "clear"}).out, "no block is pending erasure\n");
}

TEST_F(EepromCommand, AllEEPROMsAreClearedAtOnce)
{
    create();
    ASSERT_EQ(eeprom({"efi", "init", "--serial", "SN-4711"}).status, 0);
    // Every flag, with the checksum that belongs to it.
    Bytes record = part(readFile(image(10)), 0, 144);
    std::fill(record.begin() + 16, record.end(), static_cast<unsigned char>(0x11));
    unsigned int sum = 0;
    for (const unsigned char byte : part(record, 1, 143)) {
        sum += byte;
    }
    record[0] = static_cast<unsigned char>(0U - sum);
    patchFile(image(10), 0, record);
    const Outcome outcome = eeprom({"efi", "clear"});
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(std::count(outcome.out.begin(), outcome.out.end(), '\n'), 16);
    EXPECT_NE(outcome.out.find("[16/16]"), std::string::npos);
    EXPECT_NE(eeprom({"efi", "status"}).out.find("0 blocks pending erasure"), std::string::npos);
}

TEST_F(EepromCommand, BackupBytesAreMoved)
{
    create();
    EXPECT_EQ(eeprom({"efi", "write", "0", "1", "0x1000"}, "data").status, 1);
    ASSERT_EQ(eeprom({"efi", "init", "--serial", "SN-4711"}).status, 0);
    EXPECT_EQ(eeprom({"efi", "write", "0", "1", "0x1000"}, "data").out,
              "EEPROM 12: 4 bytes written at offset 4096\n");
    EXPECT_EQ(eeprom({"efi", "read", "0", "1", "4096", "--length", "4"}).out, "data");
    EXPECT_EQ(eeprom({"efi", "read", "0", "1", "65533", "--length", "4"}).status, 2);
    EXPECT_EQ(eeprom({"efi", "read", "4", "1", "0"}).status, 2);
    EXPECT_EQ(eeprom({"efi", "init", "--serial", "LONGER-THAN-TWELVE"}).status, 2);
    patchFile(image(10), 5, {1});
    EXPECT_EQ(eeprom({"efi", "status"}).status, 1);
    EXPECT_EQ(eeprom({"efi", "read", "0", "1", "0"}).status, 1);
    std::filesystem::remove(image(10));
    EXPECT_EQ(eeprom({"efi", "status"}).status, 3);
}

TEST_F(EepromCommand, MissingImagesAreNamedWithTheReason)
{
    const std::string expected =
        "recordkit: open " + image(10) + ": No such file or directory (errno 2)\n";
    EXPECT_EQ(eeprom({"efi", "status"}).err, expected);
    EXPECT_EQ(eeprom({"efi", "status"}).status, 3);
    EXPECT_EQ(eeprom({"setting", "list"}).err,
              "recordkit: open " + image(4) + ": No such file or directory (errno 2)\n");
}
