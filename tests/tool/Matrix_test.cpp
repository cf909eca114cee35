// SPDX-License-Identifier: Apache-2.0
// Every sub-command with every odd input and output: exit status, message and memory.
#include <filesystem>
#include <gtest/gtest.h>
#include <map>
#include <sstream>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

#include "support/Process.h"
#include "support/ScratchRoot.h"
#include "support/SdrRecords.h"
#include "tool/Commands.h"
#include "tool/ExitCases.h"

using namespace testing_support;
using recordkit::tool::EXIT_CASES;

namespace {

const std::string DATA = RECORDKIT_EXAMPLE_DATA;
const std::string ROM = DATA + "/cpu/sample.bin";
const std::string FRU = DATA + "/fru/ascii-all.bin";
const std::string SDR = DATA + "/sdr/repository.sdr";
const std::string SEL = DATA + "/sel/events.raw";
const std::string SPD = DATA + "/spd/dimm.bin";

/// How a sub-command is run here: INPUT stands for the input, ROOT for a root with logs, EEPROM
/// images and an index. Those that only read work in a folder that cannot be written.
struct Row {
    const char* path;
    Arguments words;
    std::string input = {}; ///< a file with a good input; empty: the sub-command reads none
    bool writes = false;
    bool takesText = false; ///< any bytes are a good input
    bool takesFolder = false;
    bool changesInput = false;
};

void PrintTo(const Row& row, std::ostream* stream)
{
    *stream << row.path;
}

const std::vector<Row> ROWS = {
    {"report", {"INPUT", "-o", "ROOT/report.html"}, FRU, true, false, true},
    {"sel init", {}}, // keeps what is there
    {"sel add", {"INPUT", "--board", "1"}, SEL, true},
    {"sel list", {"INPUT"}, SEL},
    {"sel show", {"INPUT", "1"}, SEL},
    {"sel status", {}},
    {"sel summary", {"INPUT"}, SEL},
    {"sel diff", {"INPUT", "0"}, SEL, false, false, true},
    {"sel check", {}},
    {"sel rescue", {"INPUT", "-o", "ROOT/rescued"}, "EVENTS", true},
    {"sel rotate", {}, "", true},
    {"sel backup", {}, "", true},
    {"sel restore", {"--yes"}, "", true},
    {"sel clear", {"--yes"}, "", true},
    {"severity", {"0x6F", "processor", "0"}},
    {"fru show", {"INPUT"}, FRU},
    {"fru list", {"INPUT"}, FRU},
    {"fru get", {"INPUT", "board.serial"}, FRU},
    {"fru verify", {"INPUT"}, FRU},
    {"fru diff", {"INPUT", FRU}, FRU},
    {"fru audit", {"INPUT"}, DATA + "/fru/binary-custom.bin"},
    {"fru set", {"INPUT", "board.serial=AB"}, FRU, true, false, false, true},
    {"fru add", {"INPUT", "board.custom=AB"}, FRU, true, false, false, true},
    {"fru remove", {"INPUT", "product"}, FRU, true, false, false, true},
    {"fru repair", {"INPUT"}, "DAMAGED FRU", true, false, false, true},
    {"fru resize", {"INPUT", "--size", "512"}, FRU, true, false, false, true},
    {"fru create", {"--from", "INPUT", "-o", "ROOT/created"}, "FRU JSON", true},
    {"fru export", {"INPUT"}, FRU},
    {"cpu", {"INPUT"}, ROM},
    {"node", {}},
    {"decode", {"PSUStatus", "INPUT"}, "TWO BYTES"},
    {"sdr list", {"INPUT"}, SDR},
    {"sdr show", {"INPUT", "1"}, SDR},
    {"sdr events", {"INPUT"}, SDR},
    {"sdr check", {"INPUT"}, "SENSOR RECORD"},
    {"spd show", {"INPUT"}, SPD},
    {"spd diff", {"INPUT", SPD}, SPD},
    {"spd audit", {"INPUT"}, SPD},
    {"eeprom create", {"ROOT/more"}, "", true},
    {"eeprom setting list", {"--images", "ROOT/images"}},
    {"eeprom setting read", {"0", "--images", "ROOT/images"}},
    {"eeprom setting write", {"0", "INPUT", "--images", "ROOT/images"}, "TWO BYTES", true, true},
    {"eeprom setting init", {"--images", "ROOT/images"}, "", true},
    {"eeprom setting index", {"--from", "INPUT", "--images", "ROOT/images"}, "INDEX", true},
    {"eeprom setting invalidate", {"--yes", "--images", "ROOT/images"}, "", true},
    {"eeprom efi status", {"--images", "ROOT/images"}},
    {"eeprom efi init", {"--serial", "SYSTEM000001", "--images", "ROOT/images"}, "", true},
    {"eeprom efi read", {"0", "0", "0", "--length", "4", "--images", "ROOT/images"}},
    {"eeprom efi write",
     {"0", "0", "0", "INPUT", "--images", "ROOT/images"},
     "TWO BYTES",
     true,
     true},
    {"eeprom efi mark", {"0", "0", "1", "--images", "ROOT/images"}, "", true},
    {"eeprom efi clear", {"--images", "ROOT/images"}, "", true},
};

int statusOf(const std::string& name)
{
    for (const auto& each : EXIT_CASES) {
        if (each.name == name) {
            return each.status;
        }
    }
    ADD_FAILURE() << "no case " << name;
    return -1;
}

class Matrix : public testing::TestWithParam<Row> {
protected:
    void SetUp() override
    {
        const std::string at = root.path();
        writeFile(at + "/index.json",
                  R"([{"number": 0, "eeprom": 4, "offset": 1024, "size": 256}])");
        writeFile(at + "/two-bytes", Bytes{1, 3});
        writeFile(at + "/fru.json", R"({"board": {"serial": "SN1"}})");
        Bytes record = compactSdr(1, "PS1");
        record[8] = 10; // its entity
        writeFile(at + "/one.sdr", record);
        Bytes image = readFile(FRU);
        image[7] ^= 1; // the checksum of its header
        writeFile(at + "/damaged.bin", image);
        // Only what the sub-command needs: there are hundreds of tests.
        const std::string path = GetParam().path;
        if (path.compare(0, 4, "sel ") == 0) {
            prepare({{"sel", "init"}, {"sel", "add", SEL}, {"sel", "backup"}});
        } else if (path.compare(0, 7, "eeprom ") == 0) {
            const std::string images = at + "/images";
            prepare(
                {{"eeprom", "create", images},
                 {"eeprom", "setting", "index", "--from", at + "/index.json", "--images", images},
                 {"eeprom", "setting", "init", "--images", images},
                 {"eeprom", "setting", "write", "0", at + "/two-bytes", "--images", images},
                 {"eeprom", "efi", "init", "--serial", "SYSTEM000001", "--images", images},
                 {"eeprom", "efi", "mark", "0", "0", "2", "--images", images}});
        }
    }
    void prepare(const std::vector<Arguments>& commands) const
    {
        for (const Arguments& words : commands) {
            Arguments all = {"--root", root.path()};
            all.insert(all.end(), words.begin(), words.end());
            const Outcome outcome = run(ourCommand(all));
            ASSERT_EQ(outcome.status, 0) << words[1] << outcome.err;
        }
    }

    /// A file with a good input, which may be changed.
    std::string good(const std::string& name = "/good") const
    {
        const std::map<std::string, std::string> made = {
            {"TWO BYTES", "/two-bytes"},     {"INDEX", "/index.json"},
            {"EVENTS", "/tmp/sb0_bmc_sel0"}, {"SENSOR RECORD", "/one.sdr"},
            {"DAMAGED FRU", "/damaged.bin"}, {"FRU JSON", "/fru.json"}};
        const auto found = made.find(GetParam().input);
        const std::string from = found == made.end() ? GetParam().input : root.at(found->second);
        writeFile(root.at(name), readFile(from));
        return root.at(name);
    }
    Arguments wordsFor(const std::string& input) const
    {
        Arguments words = {"--root", root.path()};
        std::istringstream path(GetParam().path);
        for (std::string word; path >> word;) {
            words.push_back(word);
        }
        for (const std::string& word : GetParam().words) {
            const bool isBelowRoot = word.compare(0, 4, "ROOT") == 0;
            words.push_back(word == "INPUT" ? input
                            : isBelowRoot   ? root.path() + word.substr(4)
                                            : word);
        }
        return ourCommand(words);
    }
    bool readsInput() const { return !GetParam().input.empty(); }

    /// With an input that makes `name` a case, the sub-command says so, with the input and
    /// `reason`.
    void expectCase(const std::string& name, const std::string& input,
                    const std::string& reason) const
    {
        const Outcome outcome = run(wordsFor(input));
        EXPECT_EQ(outcome.status, statusOf(name)) << name << ": " << outcome.out << outcome.err;
        EXPECT_NE(outcome.err.find(input), std::string::npos) << name << ": " << outcome.err;
        EXPECT_NE(outcome.err.find(reason), std::string::npos) << name << ": " << outcome.err;
        EXPECT_EQ(outcome.err.compare(0, 11, "recordkit: "), 0) << name << ": " << outcome.err;
    }
    /// The sub-command does its work, in little memory.
    void expectDone(const std::string& input) const
    {
        const Outcome outcome = run(wordsFor(input));
        EXPECT_EQ(outcome.status, statusOf("done")) << outcome.err;
        EXPECT_EQ(outcome.err, "");
        EXPECT_NE(outcome.out, "");
    }
    /// With a shell's redirection of standard output.
    void expectOutputCase(const std::string& name, const std::string& redirection) const
    {
        Arguments words = {"sh", "-c", "exec \"$@\" " + redirection, "sh"};
        const Arguments own = wordsFor(readsInput() ? good() : "");
        words.insert(words.end(), own.begin(), own.end());
        const Outcome outcome = run(words);
        EXPECT_EQ(outcome.status, statusOf(name)) << outcome.err;
        EXPECT_EQ(outcome.err, "recordkit: standard output cannot be written\n");
    }

    const ScratchRoot root;
};

std::string rowName(const testing::TestParamInfo<Row>& info)
{
    std::string name;
    for (const char character : std::string(info.param.path)) {
        name += character == ' ' ? '_' : character;
    }
    return name;
}

}

INSTANTIATE_TEST_SUITE_P(Commands, Matrix, testing::ValuesIn(ROWS), rowName);

TEST(MatrixRows, EverySubCommandHasOne)
{
    std::vector<std::string> expected;
    for (const recordkit::tool::Command& command : recordkit::tool::commands()) {
        expected.push_back(command.path);
    }
    std::vector<std::string> actual;
    for (const Row& row : ROWS) {
        actual.emplace_back(row.path);
    }
    EXPECT_EQ(actual, expected);
}

TEST_P(Matrix, GoodInputIsDone)
{
    expectDone(readsInput() ? good() : "");
}

TEST_P(Matrix, OddInputHasItsStatusAndMessage)
{
    if (!readsInput()) {
        GTEST_SKIP() << "reads no input";
    }
    const std::string empty = root.at("/empty");
    writeFile(empty, "");
    expectCase("empty", empty, "");
    const std::string text = root.at("/text");
    writeFile(text, "hello\nworld\n");
    if (GetParam().takesText) {
        EXPECT_EQ(run(wordsFor(text)).status, 0);
    } else {
        expectCase("text", text, "");
    }
    if (!GetParam().takesFolder) {
        expectCase("directory", root.at("/tmp"), "Is a directory");
    }
    expectCase("missing", root.at("/nowhere"), "No such file or directory");
    // Opened, but reading fails, for whomever runs the test.
    expectCase("unreadable", "/proc/self/mem", "Input/output error");
}

TEST_P(Matrix, EndlessAndHugeInputEndsAtItsLimit)
{
    if (!readsInput()) {
        GTEST_SKIP() << "reads no input";
    }
    expectCase("endless", "/dev/zero", "more than ");
    const std::string message = run(wordsFor("/dev/zero")).err;
    const std::string huge = root.at("/huge");
    writeFile(huge, "");
    ASSERT_EQ(::truncate(huge.c_str(), 1L << 30), 0);
    expectCase("huge", huge, "1073741824 bytes, expected at most ");
#ifndef RECORDKIT_SANITIZED
    if (std::string(RECORDKIT_EMULATOR).empty()) {
        const long limit = std::stol(message.substr(message.find("more than ") + 10));
        const long kilobytes = 64L * 1024 + 3 * limit / 1024;
        Arguments words = {"sh", "-c", "ulimit -v " + std::to_string(kilobytes) + "; exec \"$@\"",
                           "sh"};
        const Arguments own = wordsFor("/dev/zero");
        words.insert(words.end(), own.begin(), own.end());
        EXPECT_EQ(run(words).err, message);
    }
#endif
}

TEST_P(Matrix, AFifoIsReadToItsEnd)
{
    if (!readsInput() || GetParam().changesInput) {
        GTEST_SKIP() << "reads no input, or changes it";
    }
    const Bytes content = readFile(good());
    const std::string fifo = root.at("/fifo");
    ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
    std::thread writer([&] { writeFile(fifo, content); });
    expectDone(fifo);
    writer.join();
}

TEST_P(Matrix, NamesOfAnyBytesAreShownEscaped)
{
    if (!readsInput()) {
        GTEST_SKIP() << "reads no input";
    }
    for (const auto& [name, shown] : std::map<std::string, std::string>{
             {"/two\nlines", "/two\\x0Alines"}, {"/not\xFFUTF-8", "/not\\xFFUTF-8"}}) {
        expectDone(good(name));
        writeFile(root.at(name), "");
        const Outcome outcome = run(wordsFor(root.at(name)));
        EXPECT_EQ(outcome.status, statusOf("empty"));
        EXPECT_NE(outcome.err.find(root.at(shown)), std::string::npos) << outcome.err;
        EXPECT_EQ(outcome.err.find(name), std::string::npos) << outcome.err;
    }
}

TEST_P(Matrix, ClosedOutputIsSaid)
{
    expectOutputCase("closed", ">&-");
}

TEST_P(Matrix, FullOutputIsSaid)
{
    expectOutputCase("full", ">/dev/full");
}

TEST_P(Matrix, AFolderThatCannotBeWrittenStopsOnlyWriters)
{
    const Arguments own = wordsFor(readsInput() ? good() : "");
    Arguments words = {"unshare",
                       "-rm",
                       "sh",
                       "-c",
                       "mount --bind \"$1\" \"$1\" && mount -o remount,bind,ro \"$1\" || exit 77\n"
                       "shift\nexec \"$@\"",
                       "sh",
                       root.path()};
    words.insert(words.end(), own.begin(), own.end());
    const Outcome outcome = run(words);
    if (outcome.status == 77 || outcome.err.find("unshare") != std::string::npos) {
        GTEST_SKIP() << "no folder can be mounted here";
    }
    EXPECT_EQ(outcome.status, statusOf(GetParam().writes ? "read-only" : "done")) << outcome.err;
    const bool hasReason = outcome.err.find("Read-only file system") != std::string::npos;
    EXPECT_EQ(hasReason, GetParam().writes) << outcome.err;
}

#ifndef RECORDKIT_SANITIZED // which needs /proc
TEST_P(Matrix, WorksWhereProcIsNotMounted)
{
    if (!std::string(RECORDKIT_EMULATOR).empty()) {
        GTEST_SKIP() << "the emulator needs /proc";
    }
    const Arguments own = wordsFor(readsInput() ? good() : "");
    // The loader finds what lies beside a program by /proc.
    const std::string libraries =
        std::filesystem::path(RECORDKIT_COMMAND).parent_path().parent_path().string();
    Arguments words = {"unshare",
                       "-rm",
                       "sh",
                       "-c",
                       "mount -t tmpfs none /proc || exit 77\n"
                       "LD_LIBRARY_PATH=$1\nexport LD_LIBRARY_PATH\nshift\nexec \"$@\"",
                       "sh",
                       libraries};
    words.insert(words.end(), own.begin(), own.end());
    const Outcome outcome = run(words);
    if (outcome.status == 77 || outcome.err.find("unshare") != std::string::npos) {
        GTEST_SKIP() << "nothing can be mounted here";
    }
    EXPECT_EQ(outcome.status, statusOf("done")) << outcome.err;
}
#endif

TEST(ExitCases, EachHasItsStatus)
{
    const ScratchRoot root;
    const auto status = [&](const Arguments& words) {
        Arguments all = {"--root", root.path()};
        all.insert(all.end(), words.begin(), words.end());
        return run(ourCommand(all)).status;
    };
    ASSERT_EQ(status({"sel", "init"}), statusOf("done"));
    writeFile(root.at("/damaged"), "damaged");
    EXPECT_EQ(status({"fru", "show", FRU, root.at("/damaged")}), statusOf("partly"));
    EXPECT_EQ(status({"sel", "show", "7"}), statusOf("absent"));
    EXPECT_EQ(status({"fru", "get", FRU, "board.custom9"}), statusOf("absent"));
    for (const Arguments& words : {Arguments{"sel", "lst"},
                                   {"sel", "list", "--last", "0"},
                                   {"sel", "list", "--toast"},
                                   {"fru", "show"}}) {
        EXPECT_EQ(status(words), statusOf("usage"));
    }
    EXPECT_EQ(run(ourCommand({"--root", root.at("/none"), "sel", "list"})).status,
              statusOf("missing"));
    // The worst of several cases counts.
    EXPECT_EQ(status({"fru", "show", root.at("/damaged"), root.at("/missing")}),
              statusOf("missing"));
    Arguments words = {"sh", "-c", "exec \"$@\" >/dev/full", "sh"};
    for (const std::string& word : ourCommand({"fru", "show", FRU, root.at("/damaged")})) {
        words.push_back(word);
    }
    EXPECT_EQ(run(words).status, statusOf("full"));
}
