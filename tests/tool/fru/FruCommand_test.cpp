// SPDX-License-Identifier: Apache-2.0
// fru as a user runs it.
#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <sys/stat.h>
#include <unistd.h>

#include "support/Process.h"
#include "support/ScratchRoot.h"

using namespace testing_support;
using Json = nlohmann::json;
namespace fs = std::filesystem;

namespace {

const std::string SAMPLES = RECORDKIT_EXAMPLE_DATA "/fru/";

class FruCommand : public testing::Test {
protected:
    static Outcome fru(const Arguments& arguments, const std::string& input = "")
    {
        Arguments words = {"fru"};
        words.insert(words.end(), arguments.begin(), arguments.end());
        return run(ourCommand(words), input);
    }
    /// A copy of a sample.
    std::string copy(const std::string& sample) const
    {
        const std::string path = root.at("/" + sample);
        fs::copy_file(SAMPLES + sample, path, fs::copy_options::overwrite_existing);
        return path;
    }
    static std::string get(const std::string& path, const std::string& field)
    {
        const Outcome outcome = fru({"get", path, field});
        EXPECT_EQ(outcome.status, 0) << outcome.err;
        return outcome.out;
    }

    ScratchRoot root;
};

}

TEST_F(FruCommand, ShowsFieldsChecksumsAndPlaces)
{
    const Outcome outcome = fru({"show", SAMPLES + "mixed-encodings.bin"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.out, "FIELD                     TYPE      LENGTH  VALUE\n"
                           "chassis.type              number    1       Rack Mount Chassis\n"
                           "chassis.part-number       BCD plus  5       12345-678 \n"
                           "chassis.serial            BCD plus  5       0098.776-5\n"
                           "chassis unused                      7       \n"
                           "chassis checksum                    1       7Eh\n"
                           "board.language            number    1       25\n"
                           "board.date                date      3       2020-02-01 00:00\n"
                           "board.manufacturer        6-bit     6       EXAMPLE \n"
                           "board.name                6-bit     9       SYSTEM BOARD\n"
                           "board.serial              BCD plus  4       998-877 \n"
                           "board.part-number         BCD plus  3       112233\n"
                           "board.file-id             text      0       \n"
                           "board unused                        5       \n"
                           "board checksum                      1       E7h\n"
                           "product.language          number    1       25\n"
                           "product.manufacturer      6-bit     6       EXAMPLE \n"
                           "product.name              6-bit     6       IO UNIT \n"
                           "product.part-number       BCD plus  3       0001-2\n"
                           "product.version           BCD plus  2       2.0 \n"
                           "product.serial            BCD plus  1       42\n"
                           "product.asset-tag         text      0       \n"
                           "product.file-id           text      0       \n"
                           "product unused                      2       \n"
                           "product checksum                    1       9Bh\n"
                           "header checksum                     1       F1h\n"
                           "\n"
                           "BYTES         SIZE   CONTENT\n"
                           "0 to 7        8      header\n"
                           "8 to 31       24     chassis\n"
                           "32 to 71      40     board\n"
                           "72 to 103     32     product\n");
}

TEST_F(FruCommand, ShowsJson)
{
    const Outcome outcome = fru({"show", SAMPLES + "example-json.bin", "--json"});
    ASSERT_EQ(outcome.status, 0) << outcome.err;
    const Json all = Json::parse(outcome.out);
    ASSERT_EQ(all.size(), 1U);
    const Json& json = all[0];
    EXPECT_EQ(json["file"], SAMPLES + "example-json.bin");
    EXPECT_EQ(json["size"], 392);
    EXPECT_EQ(json["header_checksum"]["right"], true);
    const Json& board = json["areas"][1];
    EXPECT_EQ(board["name"], "board");
    EXPECT_EQ(board["unused"], 6);
    EXPECT_EQ(board["fields"][1]["name"], "date");
    EXPECT_EQ(board["fields"][1]["minutes"].get<unsigned int>() > 5260320U, true);
    EXPECT_EQ(board["fields"][7]["value"], "0123DEADBABE");
    EXPECT_EQ(board["fields"][7]["type"], "binary");
    EXPECT_EQ(board["fields"][7]["type_length"], 6);
    EXPECT_EQ(json["multirecords"][0]["type"], 3);
    EXPECT_EQ(json["internal_use"][0]["bytes"], "01010203040A0B0C0D00000000000000");
    EXPECT_EQ(json["map"].size(), 7U);
    EXPECT_EQ(json["problems"], Json::array());
    const Outcome several =
        fru({"show", SAMPLES + "ascii-all.bin", SAMPLES + "binary-custom.bin", "--json"});
    EXPECT_EQ(Json::parse(several.out).size(), 2U);
}

namespace {

/// A supply of 12 W at 12 V, whose output supplies 1 A, and a load of 2 A; their data begin at
/// offsets 13, 42 and 60.
std::string supplyAndLoad()
{
    const auto record = [](unsigned char type, unsigned char format, const Bytes& data) {
        unsigned char sum = 0;
        for (const unsigned char byte : data) {
            sum = static_cast<unsigned char>(sum - byte);
        }
        Bytes bytes = {type, format, static_cast<unsigned char>(data.size()), sum};
        unsigned char header = 0;
        for (const unsigned char byte : bytes) {
            header = static_cast<unsigned char>(header - byte);
        }
        bytes.push_back(header);
        return bytes + data;
    };
    Bytes supply(24, 0);
    supply[0] = 12;
    supply[2] = supply[3] = 0xFF;
    const Bytes bytes = Bytes({1, 0, 0, 0, 0, 1, 0, 0xFE}) + record(0x00, 0x02, supply) +
                        record(0x01, 0x02, {1, 0xB0, 4, 0, 0, 0, 0, 0, 0, 0, 0, 0xE8, 3}) +
                        record(0x02, 0x82, {0x81, 0xB0, 4, 0, 0, 0, 0, 0, 0, 0, 0, 0xD0, 7});
    return {bytes.begin(), bytes.end()};
}

}

TEST_F(FruCommand, ShowsMultirecords)
{
    const Outcome outcome = fru({"show", "-"}, supplyAndLoad());
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    const std::string expected =
        "MULTIRECORD  NAME                      OFFSET  LENGTH  CHECKSUM\n"
        "type 00h     power-supply1             8       29      F6h\n"
        "type 01h     dc-output1                37      18      60h\n"
        "type 02h     dc-load1                  55      18      F4h\n"
        "\n"
        "FIELD                                         BYTES                   VALUE\n"
        "power-supply1.capacity                        13 to 14 bit 11..0      12 W\n"
        "power-supply1.peak-va                         15 to 16                unspecified\n"
        "power-supply1.inrush-current                  17                      0 A\n";
    EXPECT_NE(outcome.out.find(expected), std::string::npos) << outcome.out;
    const std::string load =
        "dc-load1.output                               60 bit 3..0             1\n"
        "dc-load1.byte0                                60 bit 7..4             80\n"
        "dc-load1.nominal-voltage                      61 to 62                12.00 V\n";
    EXPECT_NE(outcome.out.find(load), std::string::npos) << outcome.out;
    EXPECT_NE(outcome.out.find("note: standard input: sums of load and supply: loads of output 1 "
                               "take up to 2000 mA, it supplies 1000 mA\n"
                               "note: standard input: sums of load and supply: loads take up to "
                               "24.000 W, the capacity is 12 W\n"),
              std::string::npos)
        << outcome.out;
    const Outcome raw = fru({"show", "-", "--raw"}, supplyAndLoad());
    EXPECT_NE(raw.out.find("dc-load1.nominal-voltage                      61 to 62                "
                           "B004\n"),
              std::string::npos)
        << raw.out;
}

TEST_F(FruCommand, ShowsMultirecordsInJsonAndCsv)
{
    const Json image = Json::parse(fru({"show", "-", "--json"}, supplyAndLoad()).out)[0];
    const Json& supply = image["multirecords"][0];
    EXPECT_EQ(supply["name"], "power-supply1");
    EXPECT_EQ(supply["type"], 0);
    EXPECT_EQ(supply["fields"][1], Json({{"name", "peak-va"},
                                         {"offset", 15},
                                         {"length", 2},
                                         {"bits", nullptr},
                                         {"type", "number"},
                                         {"value", nullptr},
                                         {"unit", "VA"},
                                         {"text", "unspecified"},
                                         {"bytes", "FFFF"}}));
    const Json& load = image["multirecords"][2];
    EXPECT_EQ(load["bytes"], "81B0040000000000000000D007");
    EXPECT_EQ(load["fields"][0]["bits"], "3..0");
    EXPECT_EQ(load["fields"][0]["value"], 1);
    EXPECT_EQ(load["fields"][0]["unit"], nullptr);
    EXPECT_EQ(load["fields"][2]["value"], 12.0);
    EXPECT_EQ(image["multirecords"][1]["fields"][1]["bits"], "7");
    EXPECT_EQ(image["multirecords"][1]["fields"][1]["type"], "flag");
    EXPECT_EQ(image["multirecords"][1]["fields"][1]["value"], false);
    EXPECT_EQ(image["problems"], Json::array());
    EXPECT_EQ(image["notes"].size(), 2U);
    const std::string csv = fru({"show", "-", "--csv"}, supplyAndLoad()).out;
    EXPECT_NE(csv.find("standard input,dc-load1,nominal-voltage,61,number,2,12.0,B004,V\r\n"),
              std::string::npos)
        << csv;
    EXPECT_NE(csv.find("standard input,dc-load1,byte0,60,text,1,80,81,\r\n"), std::string::npos)
        << csv;
}

TEST_F(FruCommand, GetsFieldsOfMultirecords)
{
    EXPECT_EQ(
        fru({"get", "-", "dc-load1.nominal-voltage", "dc-output1.standby", "power-supply1.peak-va"},
            supplyAndLoad())
            .out,
        "12.00\nno\nunspecified\n");
    EXPECT_EQ(fru({"get", "-", "--raw", "dc-load1.max-current"}, supplyAndLoad()).out, "\xD0\x07");
    const Outcome unknown = fru({"get", "-", "dc-load1.capacity"}, supplyAndLoad());
    EXPECT_EQ(unknown.status, 1);
    EXPECT_EQ(unknown.err, "recordkit: standard input: there is no field dc-load1.capacity\n");
    for (const char* const name : {"dc-load2.output", "dc-load1"}) {
        EXPECT_EQ(fru({"get", "-", name}, supplyAndLoad()).err,
                  "recordkit: standard input: there is no field " + std::string(name) + "\n");
    }
    std::string damaged = supplyAndLoad();
    damaged[60] = '\x02';
    const Outcome refused = fru({"get", "-", "dc-load1.output"}, damaged);
    EXPECT_EQ(refused.status, 1);
    EXPECT_EQ(refused.err, "recordkit: standard input: multirecord 3: wrong data checksum\n");
    EXPECT_EQ(fru({"get", "-", "--ignore-checksum", "dc-load1.output"}, damaged).out, "2\n");
    EXPECT_EQ(fru({"get", "-", "dc-output1.output"}, damaged).out, "1\n");
}

TEST_F(FruCommand, VerifyNotesWhatMayBeRight)
{
    const Outcome outcome = fru({"verify", "-"}, supplyAndLoad());
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.out, "STATE    FILE\n"
                           "good     standard input\n"
                           "note: standard input: sums of load and supply: loads of output 1 take "
                           "up to 2000 mA, it supplies 1000 mA\n"
                           "note: standard input: sums of load and supply: loads take up to 24.000 "
                           "W, the capacity is 12 W\n");
    const Outcome json = fru({"verify", "-", "--json"}, supplyAndLoad());
    EXPECT_EQ(Json::parse(json.out)[0]["good"], true);
    EXPECT_EQ(Json::parse(json.out)[0]["notes"].size(), 2U);
}

TEST_F(FruCommand, ShowsALineForEachFieldInCsv)
{
    const Outcome outcome = fru({"show", SAMPLES + "binary-custom.bin", "--csv"});
    ASSERT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(outcome.out.find("file,area,field,offset,type,length,value,bytes,unit\r\n" + SAMPLES +
                               "binary-custom.bin,"),
              0U)
        << outcome.out;
}

TEST_F(FruCommand, ShowsWhatIsLeftOfADamagedImage)
{
    const std::string path = copy("ascii-all.bin");
    patchFile(path, 127, {0x00});
    const Outcome outcome = fru({"show", path});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_NE(outcome.out.find("board checksum                      1       00h WRONG, expected "),
              std::string::npos);
    EXPECT_NE(outcome.out.find("board.serial              text      11      SBS00998877"),
              std::string::npos);
    EXPECT_EQ(outcome.err,
              "recordkit: " + path + ": board area: checksum 00h at offset 127, expected 9Ch\n");
    const Outcome json = fru({"show", path, "--json"});
    EXPECT_EQ(json.status, 1);
    EXPECT_EQ(Json::parse(json.out)[0]["areas"][1]["checksum"]["right"], false);
    EXPECT_EQ(Json::parse(json.out)[0]["problems"].size(), 1U);
    EXPECT_EQ(fru({"show", root.at("/nowhere")}).status, 3);
    EXPECT_EQ(fru({"show"}).status, 2);
}

TEST_F(FruCommand, ShowsAnImageFromStandardInput)
{
    const Bytes bytes = readFile(SAMPLES + "binary-custom.bin");
    const Outcome outcome = fru({"show", "-"}, std::string(bytes.begin(), bytes.end()));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.out, fru({"show", SAMPLES + "binary-custom.bin"}).out);
    EXPECT_EQ(fru({"show", "-"}, "").status, 1);
}

TEST_F(FruCommand, TerminalSequencesOfAnImageAreNotPassedOn)
{
    const std::string path = copy("ascii-all.bin");
    ASSERT_EQ(fru({"set", path,
                   "board.serial=\x1B[2J\xC2\x9B"
                   "31m"})
                  .status,
              0);
    const Outcome outcome = fru({"show", path});
    EXPECT_EQ(outcome.out.find('\x1B'), std::string::npos);
    EXPECT_NE(outcome.out.find("\\x1B[2J\\x9B31m"), std::string::npos);
}

TEST_F(FruCommand, GetsBareValues)
{
    EXPECT_EQ(get(SAMPLES + "ascii-all.bin", "board.serial"), "SBS00998877\n");
    EXPECT_EQ(get(SAMPLES + "mixed-encodings.bin", "product.version"), "2.0 \n");
    const Outcome two = fru({"get", SAMPLES + "ascii-all.bin", "board.serial", "board.name"});
    EXPECT_EQ(two.out, "SBS00998877\nSystem Board\n");
    const Outcome none = fru({"get", SAMPLES + "ascii-all.bin", "board.serial", "board.custom7"});
    EXPECT_EQ(none.status, 1);
    EXPECT_EQ(none.out, "");
    EXPECT_EQ(none.err,
              "recordkit: " + SAMPLES + "ascii-all.bin: there is no field board.custom7\n");
    const std::string path = copy("ascii-all.bin");
    patchFile(path, 127, {0x00});
    EXPECT_EQ(fru({"get", path, "board.serial"}).status, 1);
    EXPECT_EQ(get(path, "product.serial"), "PRD000777\n");
    EXPECT_EQ(fru({"get", path, "board.serial", "--ignore-checksum"}).out, "SBS00998877\n");
}

TEST_F(FruCommand, VerifiesManyImages)
{
    const std::string damaged = copy("ascii-all.bin");
    patchFile(damaged, 7, {0x00});
    const std::string good = SAMPLES + "binary-custom.bin";
    const Outcome outcome = fru({"verify", good, damaged, root.at("/nowhere"), good});
    EXPECT_EQ(outcome.status, 3);
    EXPECT_EQ(outcome.out, "STATE    FILE\ngood     " + good + "\ndamaged  " + damaged +
                               "\ngood     " + good + "\n");
    EXPECT_EQ(outcome.err,
              "recordkit: " + damaged +
                  ": common header: checksum 00h at offset 7, expected E8h\nrecordkit: " +
                  root.at("/nowhere") +
                  " cannot be opened: No such file or directory\n"
                  "recordkit: 2 of 4 files are unreadable or damaged\n");
    EXPECT_EQ(fru({"verify", good, damaged}).status, 1);
    EXPECT_EQ(fru({"verify", good}).status, 0);
}

TEST_F(FruCommand, SetsFieldsAndNothingElse)
{
    const std::string path = copy("ascii-all.bin");
    ASSERT_EQ(::chmod(path.c_str(), 0640), 0);
    const Bytes before = readFile(path);
    const Outcome outcome =
        fru({"set", path, "board.serial=NEW-0001", "product.asset-tag=T1", "chassis.type=17"});
    ASSERT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(outcome.out, "board.serial: \"SBS00998877\" -> \"NEW-0001\"\n"
                           "product.asset-tag: \"\" -> \"T1\"\n"
                           "chassis.type: \"Rack Mount Chassis\" -> \"Main Server Chassis\"\n"
                           "chassis area: 5 bytes free\n"
                           "board area: 10 bytes free\n"
                           "product area: 0 bytes free\n");
    EXPECT_EQ(get(path, "board.serial"), "NEW-0001\n");
    EXPECT_EQ(get(path, "product.asset-tag"), "T1\n");
    const Bytes after = readFile(path);
    EXPECT_EQ(after.size(), before.size());
    EXPECT_EQ(part(after, 0, 8), part(before, 0, 8));
    struct stat status = {};
    ASSERT_EQ(::stat(path.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0640U);
    EXPECT_EQ(fru({"verify", path}).status, 0);
    for (const std::string& name : listFolder(root.path())) {
        EXPECT_EQ(name.find("ascii-all.bin."), std::string::npos) << "a temporary is left";
    }
}

TEST_F(FruCommand, SetIsAllOrNothing)
{
    const std::string path = copy("ascii-all.bin");
    const Bytes before = readFile(path);
    const Outcome outcome = fru({"set", path, "board.serial=GOOD-1", "board.name=X"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err, "recordkit: " + path +
                               ": board.name: a value of one character cannot be stored, its "
                               "type/length byte would end the fields (6-bit text can have "
                               "one)\n");
    EXPECT_EQ(readFile(path), before);
    EXPECT_EQ(fru({"set", path, "board.colour=red"}).status, 2);
    EXPECT_EQ(fru({"set", path, "board.serial"}).status, 2);
    EXPECT_EQ(fru({"set", path}).status, 2);
    EXPECT_EQ(fru({"set", root.at("/nowhere"), "board.serial=AB"}).status, 3);
    const Outcome dry = fru({"set", path, "board.serial=GOOD-1", "--dry-run"});
    EXPECT_EQ(dry.status, 0);
    EXPECT_NE(dry.out.find("nothing was written"), std::string::npos);
    EXPECT_EQ(readFile(path), before);
}

TEST_F(FruCommand, SetReplacesTheFileButNotALink)
{
    const std::string path = copy("ascii-all.bin");
    const std::string link = root.at("/link.bin");
    const std::string second = root.at("/second.bin");
    fs::create_symlink(path, link);
    fs::create_hard_link(path, second);
    ASSERT_EQ(fru({"set", link, "board.serial=LINKED"}).status, 0);
    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_EQ(get(path, "board.serial"), "LINKED\n");
    // It was renamed over: the other name has the old file.
    EXPECT_EQ(get(second, "board.serial"), "SBS00998877\n");
}

TEST_F(FruCommand, SetInPlaceWritesTheSameFile)
{
    const std::string path = copy("ascii-all.bin");
    const std::string second = root.at("/second.bin");
    fs::create_hard_link(path, second);
    ASSERT_EQ(fru({"set", "--in-place", path, "board.serial=IN-PLACE"}).status, 0);
    EXPECT_EQ(get(second, "board.serial"), "IN-PLACE\n");
    EXPECT_EQ(readFile(second), readFile(path));
    // The bytes are those of a file that is replaced.
    const std::string replaced = root.at("/replaced.bin");
    fs::copy_file(SAMPLES + "ascii-all.bin", replaced);
    ASSERT_EQ(fru({"set", replaced, "board.serial=IN-PLACE"}).status, 0);
    EXPECT_EQ(readFile(replaced), readFile(path));
}

TEST_F(FruCommand, SetGrowsOnRequest)
{
    const std::string path = copy("ascii-all.bin");
    Bytes larger = readFile(path);
    larger.resize(256, 0xFF);
    writeFile(path, larger);
    const std::string serial(40, 'S');
    const Outcome refused = fru({"set", path, "board.serial=" + serial});
    EXPECT_EQ(refused.status, 1);
    EXPECT_EQ(refused.err, "recordkit: " + path +
                               ": board area: 29 more bytes needed, 7 free (--grow makes room "
                               "where the image has some)\n");
    EXPECT_EQ(readFile(path), larger);
    const Outcome outcome = fru({"set", "--grow", path, "board.serial=" + serial});
    ASSERT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(get(path, "board.serial"), serial + "\n");
    EXPECT_EQ(get(path, "product.serial"), "PRD000777\n");
    EXPECT_EQ(readFile(path).size(), 256U);
    EXPECT_EQ(fru({"verify", path}).status, 0);
}

TEST_F(FruCommand, SetRepairsChecksumsOnRequest)
{
    const std::string path = copy("ascii-all.bin");
    patchFile(path, 7, {0x00});
    EXPECT_EQ(fru({"set", path, "board.serial=AB"}).status, 1);
    const Outcome outcome = fru({"set", "--ignore-checksum", path, "board.serial=AB"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_NE(outcome.out.find("common header: checksum at offset 7 repaired, 00h to E8h"),
              std::string::npos);
    EXPECT_EQ(fru({"verify", path}).status, 0);
}

TEST_F(FruCommand, SetSaysWhatCannotBeWritten)
{
    if (::geteuid() == 0) {
        // Root writes everywhere; a folder in the place of the temporary's folder is enough.
        const Outcome outcome = fru({"set", root.path(), "board.serial=AB"});
        EXPECT_EQ(outcome.status, 3);
        return;
    }
    const std::string path = copy("ascii-all.bin");
    ASSERT_EQ(::chmod(root.path().c_str(), 0555), 0);
    const Outcome outcome = fru({"set", path, "board.serial=AB"});
    ASSERT_EQ(::chmod(root.path().c_str(), 0755), 0);
    EXPECT_EQ(outcome.status, 3);
    EXPECT_EQ(get(path, "board.serial"), "SBS00998877\n");
}
