// SPDX-License-Identifier: Apache-2.0
// The sub-commands that change FRU images, as a user runs them.
#include <ctime>
#include <filesystem>
#include <gtest/gtest.h>

#include <recordkit/inspect/bytes/Time.h>
#include <recordkit/inspect/fru/FruImage.h>

#include "support/Process.h"
#include "support/ScratchRoot.h"

using namespace testing_support;
namespace fs = std::filesystem;

namespace {

const std::string SAMPLES = RECORDKIT_EXAMPLE_DATA "/fru/";

class FruChange : public testing::Test {
protected:
    static Outcome fru(const Arguments& arguments)
    {
        Arguments words = {"fru"};
        words.insert(words.end(), arguments.begin(), arguments.end());
        return run(ourCommand(words));
    }
    /// A copy of a sample, of this size.
    std::string copy(const std::string& sample, std::size_t size = 0) const
    {
        std::string path = root.at("/" + sample);
        fs::copy_file(SAMPLES + sample, path, fs::copy_options::overwrite_existing);
        if (size != 0) {
            fs::resize_file(path, size);
        }
        return path;
    }
    static std::string get(const std::string& path, const std::string& field)
    {
        const Outcome outcome = fru({"get", path, field});
        EXPECT_EQ(outcome.status, 0) << outcome.err;
        return outcome.out;
    }
    /// Expects that words are refused, with this text, and change nothing.
    static void expectRefused(const std::string& path, const Arguments& words, int status,
                              const std::string& text)
    {
        const Bytes before = readFile(path);
        const Outcome outcome = fru(words);
        EXPECT_EQ(outcome.status, status);
        EXPECT_EQ(outcome.out, "");
        EXPECT_EQ(outcome.err, "recordkit: " + text + "\n");
        EXPECT_EQ(readFile(path), before);
    }

    ScratchRoot root;
};

}

TEST_F(FruChange, SetKeepsTheCodingOrTakesTheOneThatIsAskedFor)
{
    const std::string path = copy("mixed-encodings.bin");
    Outcome outcome = fru({"set", path, "board.serial=998-878"});
    EXPECT_EQ(outcome.out,
              "board.serial: \"998-877 \" -> \"998-878 \"\nboard area: 5 bytes free\n");
    outcome = fru({"set", path, "board.name=Board", "board.serial=99A"});
    EXPECT_EQ(outcome.out, "board.name: \"SYSTEM BOARD\" -> \"Board\"\n"
                           "board.serial: \"998-878 \" -> \"99A\"\n"
                           "board area: 10 bytes free\n"
                           "board.name: stored as text, it was 6-bit\n"
                           "board.serial: stored as text, it was BCD plus\n");
    outcome = fru({"set", path, "board.name=BOARD", "--coding", "6-bit", "--dry-run"});
    EXPECT_EQ(outcome.out, "board.name: \"Board\" -> \"BOARD\"\n"
                           "board area: 11 bytes free\n"
                           "board.name: stored as 6-bit, it was text\n"
                           "nothing was written\n");
    EXPECT_EQ(get(path, "board.name"), "Board\n");
    EXPECT_EQ(fru({"set", path, "board.serial=99", "--coding", "bcd"}).status, 0);
    EXPECT_EQ(fru({"set", path, "board.file-id=C0DE", "--coding", "binary"}).status, 0);
    EXPECT_EQ(get(path, "board.file-id"), "C0DE\n");
    EXPECT_EQ(readFile(path)[8 + 32 + 3 + 20], readFile(path)[63]); // still one image
    expectRefused(path, {"set", path, "board.name=board", "--coding", "6-bit"}, 1,
                  path + ": board.name: \"board\" has characters that 6-bit text does not have, "
                         "such as small letters");
    EXPECT_EQ(fru({"verify", path}).status, 0);
}

TEST_F(FruChange, DateOfNowIsThisMinute)
{
    const std::string path = copy("ascii-all.bin");
    const auto before = static_cast<unsigned int>(std::time(nullptr));
    ASSERT_EQ(fru({"set", path, "board.date=now"}).status, 0);
    const auto after = static_cast<unsigned int>(std::time(nullptr));
    const std::string text = get(path, "board.date");
    const auto date = recordkit::inspect::parseTime(text.substr(0, text.size() - 1));
    ASSERT_TRUE(date);
    EXPECT_GE(*date, before - before % 60);
    EXPECT_LE(*date, after);
    ASSERT_EQ(fru({"set", path, "board.date=2026-11-21T08:00"}).status, 0);
    EXPECT_EQ(get(path, "board.date"), "2026-11-21 08:00\n");
}

TEST_F(FruChange, LanguageIsSetWithTheTextsThatDependOnIt)
{
    const std::string path = copy("binary-custom.bin");
    const Outcome list = fru({"get", path, "board.language"});
    EXPECT_EQ(fru({"set", path, "board.language=en"}).status, 0);
    EXPECT_EQ(get(path, "board.language"), "25\n");
    expectRefused(path, {"set", path, "board.language=de"}, 1,
                  path + ": board.language: board.manufacturer would be read with 16 bits a "
                         "character, it must be set at the same time");
}

TEST_F(FruChange, InternalUseAreaIsSetFromAFile)
{
    const std::string path = copy("ascii-all.bin", 512);
    writeFile(root.at("/use"), Bytes{1, 0xCA, 0xFE});
    Outcome outcome = fru({"add", path, "internal=@" + root.at("/use")});
    EXPECT_EQ(
        outcome.out,
        "internal: \"3 bytes\" added\n"
        "internal area: extends 317 bytes further, to the next area or the end of the image\n");
    EXPECT_EQ(part(readFile(path), 192, 4), (Bytes{1, 0xCA, 0xFE, 0}));
    writeFile(root.at("/use"), sequence(320, 1));
    outcome = fru({"set", path, "internal=@" + root.at("/use")});
    EXPECT_EQ(outcome.out, "internal: \"320 bytes\" -> \"320 bytes\"\n");
    EXPECT_EQ(part(readFile(path), 192, 320), sequence(320, 1));
    writeFile(root.at("/use"), sequence(321, 1));
    expectRefused(path, {"set", path, "internal=@" + root.at("/use")}, 1,
                  path + ": internal area: 321 bytes needed, it has 320 (--grow makes room where "
                         "the image has some)");
    expectRefused(path, {"set", path, "internal=@" + root.at("/use"), "--grow"}, 1,
                  path + ": the areas would take 513 bytes, the image has 512");
    expectRefused(path, {"set", path, "internal=CAFE"}, 2,
                  "internal: expected internal=@FILE, a file with the bytes of the area");
    expectRefused(path, {"set", path, "internal=@" + root.at("/none")}, 3,
                  root.at("/none") + " cannot be opened: No such file or directory");
    outcome = fru({"remove", path, "internal"});
    EXPECT_EQ(outcome.out, "internal removed\n");
    const std::string plain = copy("mixed-encodings.bin");
    expectRefused(plain, {"set", plain, "internal=@" + root.at("/use")}, 1,
                  plain + ": internal: the image has no internal use area (fru add adds one)");
}

TEST_F(FruChange, RecordsAreAddedChangedAndRemoved)
{
    const std::string path = copy("ascii-all.bin", 256);
    const Bytes before = readFile(path);
    Outcome outcome =
        fru({"add", path, "dc-load", "dc-load.nominal-voltage=12 V",
             "management-access.type=system-name", "management-access.system-name=rack7"});
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.out, "dc-load added\n"
                           "dc-load.nominal-voltage: \"12 V\" added\n"
                           "management-access.type: \"system-name\" added\n"
                           "management-access.system-name: \"rack7\" added\n");
    EXPECT_EQ(fru({"verify", path}).status, 0);
    EXPECT_EQ(
        part(readFile(path), 192, 29),
        (Bytes{0x02, 0x02, 0x0D, 0x4C, 0xA3, 0,    0xB0, 0x04, 0,    0,   0,   0,   0,   0,  0,
               0,    0,    0,    0x03, 0x82, 0x06, 0x26, 0x4F, 0x02, 'r', 'a', 'c', 'k', '7'}));
    outcome =
        fru({"set", path, "dc-load1.max-current=3000", "management-access1.system-name=rack8"});
    EXPECT_EQ(outcome.out, "dc-load1.max-current: \"0\" -> \"3000\"\n"
                           "management-access1.system-name: \"rack7\" -> \"rack8\"\n");
    EXPECT_EQ(get(path, "dc-load1.max-current"), "3000\n");
    expectRefused(path, {"set", path, "dc-load1.max-current=3001", "dc-load2.output=1"}, 1,
                  path + ": dc-load2.output: the image has no record dc-load2");
    expectRefused(path, {"set", path, "management-access1.system-name=rack88"}, 1,
                  path + ": multirecord area: 30 bytes needed, it has 29 (--grow makes room where "
                         "the image has some)");
    EXPECT_EQ(fru({"set", path, "management-access1.system-name=rack88", "--grow"}).status, 0);
    outcome = fru({"remove", path, "dc-load1", "management-access1"});
    EXPECT_EQ(outcome.out,
              "dc-load1: \"13 bytes\" removed\nmanagement-access1: \"7 bytes\" removed\n");
    EXPECT_EQ(readFile(path), before);
}

TEST_F(FruChange, CustomFieldsAreAddedAndRemoved)
{
    const std::string path = copy("ascii-all.bin");
    const Bytes before = readFile(path);
    Outcome outcome = fru({"add", path, "board.custom=Rev C", "--dry-run"});
    EXPECT_EQ(outcome.out, "board.custom: \"Rev C\" added\n"
                           "board area: 1 byte free\nnothing was written\n");
    EXPECT_EQ(readFile(path), before);
    ASSERT_EQ(fru({"add", path, "board.custom=Rev C"}).status, 0);
    EXPECT_EQ(get(path, "board.custom1"), "Rev C\n");
    outcome = fru({"remove", path, "board.custom1"});
    EXPECT_EQ(outcome.out, "board.custom1: \"Rev C\" removed\nboard area: 7 bytes free\n");
    EXPECT_EQ(readFile(path), before);
    expectRefused(path, {"add", path, "board.custom=" + std::string(60, 'x')}, 1,
                  path + ": the areas would take 248 bytes, the image has 192");
    expectRefused(path, {"remove", path, "board.serial"}, 2,
                  path + ": \"board.serial\" cannot be removed, only areas, records and custom "
                         "fields can (fru set FIELD= empties a text)");
}

TEST_F(FruChange, RepairSaysWhatItChanges)
{
    const std::string path = copy("ascii-all.bin");
    const Bytes good = readFile(path);
    EXPECT_EQ(fru({"repair", path}).out, "nothing to repair\n");
    patchFile(path, 7, {0});
    const Bytes broken = readFile(path);
    const std::string line = "common header: checksum at offset 7: 00h to E8h\n";
    EXPECT_EQ(fru({"repair", path, "--dry-run"}).out, line + "nothing was written\n");
    EXPECT_EQ(readFile(path), broken);
    EXPECT_EQ(fru({"repair", path}).out, line);
    EXPECT_EQ(readFile(path), good);
}

TEST_F(FruChange, RepairIsAllOrNothingUnlessAskedOtherwise)
{
    const std::string path = copy("ascii-all.bin");
    patchFile(path, 127, {0});                 // the board's checksum
    patchFile(path, 128 + 3, Bytes(60, 0xC2)); // the product's fields run out of the area
    const Bytes broken = readFile(path);
    const Outcome refused = fru({"repair", path});
    EXPECT_EQ(refused.status, 1);
    EXPECT_EQ(refused.out, "");
    EXPECT_NE(refused.err.find("(this cannot be repaired; --partly repairs the rest)"),
              std::string::npos);
    EXPECT_EQ(readFile(path), broken);
    const Outcome partly = fru({"repair", path, "--partly"});
    EXPECT_EQ(partly.status, 1);
    EXPECT_NE(partly.out.find("board area: checksum at offset 127: 00h to "), std::string::npos);
    EXPECT_NE(partly.err.find(path + ": product area: "), std::string::npos);
    EXPECT_EQ(part(readFile(path), 128, 64), part(broken, 128, 64));
    EXPECT_NE(readFile(path)[127], 0);
}

TEST_F(FruChange, ResizeAddsAndTakesBlankBytes)
{
    const std::string path = copy("ascii-all.bin");
    const Bytes before = readFile(path);
    EXPECT_EQ(fru({"resize", path, "--size", "2048"}).out, "2048 bytes, 192 before\n");
    EXPECT_EQ(readFile(path), before + Bytes(1856, 0));
    EXPECT_EQ(fru({"verify", path}).status, 0);
    EXPECT_EQ(fru({"resize", path, "--size", "192", "--dry-run"}).out,
              "192 bytes, 2048 before\nnothing was written\n");
    EXPECT_EQ(fru({"resize", path, "--size", "192"}).status, 0);
    EXPECT_EQ(readFile(path), before);
    expectRefused(path, {"resize", path, "--size", "191"}, 1,
                  path + ": product (128 to 191) would be cut off at 191 bytes");
    EXPECT_EQ(fru({"resize", path, "--size", "7"}).status, 2);
    EXPECT_EQ(fru({"resize", path, "--size", "65537"}).status, 2);
    EXPECT_EQ(fru({"resize", path}).status, 2);
    expectRefused(SAMPLES + "ascii-all.bin", {"resize", "/dev/null", "--size", "64"}, 1,
                  "/dev/null: no FRU image: 0 bytes, expected a common header of 8 at offset 0");
}

TEST_F(FruChange, PagesAreWrittenInPlace)
{
    const std::string path = copy("ascii-all.bin");
    const std::string second = root.at("/second.bin");
    fs::create_hard_link(path, second);
    const std::string replaced = root.at("/replaced.bin");
    fs::copy_file(path, replaced);
    ASSERT_EQ(fru({"set", replaced, "board.serial=PAGED", "product.serial=TOO"}).status, 0);
    for (const char* const page : {"8", "16", "32", "64"}) {
        fs::copy_file(SAMPLES + "ascii-all.bin", root.at("/fresh.bin"),
                      fs::copy_options::overwrite_existing);
        const Bytes fresh = readFile(root.at("/fresh.bin"));
        writeFile(path, fresh);
        ASSERT_EQ(
            fru({"set", path, "board.serial=PAGED", "product.serial=TOO", "--page", page}).status,
            0);
        EXPECT_EQ(readFile(second), readFile(replaced)) << page;
    }
    EXPECT_EQ(fru({"set", path, "board.serial=AB", "--page", "4"}).status, 2);
    EXPECT_EQ(fru({"set", path, "board.serial=AB", "--page", "128"}).status, 2);
}
