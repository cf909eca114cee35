// SPDX-License-Identifier: Apache-2.0
// The sub-commands that change something, with every system call going wrong once.
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <regex>
#include <sys/mount.h>

#include "FaultFixture.h"

using namespace testing_support;
namespace fs = std::filesystem;

namespace {

struct SubCommand {
    const char* name;
    Arguments words; ///< after --root; ROOT is replaced by the root's path
};

void PrintTo(const SubCommand& command, std::ostream* out)
{
    *out << command.name;
}

const std::string EVENTS = RECORDKIT_EXAMPLE_DATA "/sel/events.raw";

// clang-format off
const SubCommand COMMANDS[] = {
    {"SelInit",           {"sel", "init"}},
    {"SelAdd",            {"sel", "add", "ROOT/one.hex", "--board", "1"}},
    {"SelRotate",         {"sel", "rotate", "--board", "1"}},
    {"SelBackup",         {"sel", "backup", "--board", "1"}},
    {"SelRestore",        {"sel", "restore", "--board", "1", "--yes"}},
    {"SelRecover",        {"sel", "check", "--board", "1", "--recover"}},
    {"SelRepair",         {"sel", "check", "--board", "1", "--recover"}},
    {"SelRescue",         {"sel", "rescue", "ROOT/event.bin", "-o", "ROOT/rescued"}},
    {"SelClear",          {"sel", "clear", "--board", "1", "--yes"}},
    {"FruSet",            {"fru", "set", "ROOT/board.bin", "board.serial=SN4711"}},
    {"FruSetInPlace",     {"fru", "set", "ROOT/board.bin", "board.serial=SN4711", "--in-place"}},
    {"FruSetPaged",       {"fru", "set", "ROOT/board.bin", "board.serial=SN4711", "--page", "8"}},
    {"FruAdd",            {"fru", "add", "ROOT/board.bin", "board.custom=4711"}},
    {"FruCreate",         {"fru", "create", "--from", "ROOT/board.json", "-o", "ROOT/created.bin"}},
    {"Report",            {"report", "ROOT", "-o", "ROOT/report.html"}},
    {"EepromCreate",      {"eeprom", "create", "ROOT/new"}},
    {"SettingInit",       {"eeprom", "setting", "init", "--images", "ROOT/images"}},
    {"SettingWrite",      {"eeprom", "setting", "write", "0", "ROOT/one.hex", "--images", "ROOT/images"}},
    {"SettingRead",       {"eeprom", "setting", "read", "0", "--images", "ROOT/images", "ROOT/out"}},
    {"SettingInvalidate", {"eeprom", "setting", "invalidate", "--yes", "--images", "ROOT/images"}},
    {"EfiInit",           {"eeprom", "efi", "init", "--serial", "SN", "--images", "ROOT/images"}},
    {"EfiWrite",          {"eeprom", "efi", "write", "0", "0", "16", "ROOT/one.hex", "--images", "ROOT/images"}},
    {"EfiMark",           {"eeprom", "efi", "mark", "0", "0", "3", "--images", "ROOT/images"}},
    {"EfiClear",          {"eeprom", "efi", "clear", "0", "0", "--images", "ROOT/images"}},
};
// clang-format on

Arguments wordsOf(const SubCommand& command, const FaultWorld& world)
{
    Arguments words = {"--root", world.path()};
    for (std::string word : command.words) {
        if (word.compare(0, 4, "ROOT") == 0) {
            word.replace(0, 4, world.path());
        }
        words.push_back(word);
    }
    return ourCommand(words);
}

/// By the names that the library's and the command's temporaries have.
bool isTemporary(const std::string& path)
{
    static const std::regex names(R"(.*\.(new|[A-Za-z0-9]{6}))");
    return std::regex_match(path, names);
}

class CommandFaults : public testing::TestWithParam<SubCommand> {
protected:
    /// A page says when it was made.
    void SetUp() override { ::setenv("SOURCE_DATE_EPOCH", "1795211546", 1); }
    void TearDown() override { ::unsetenv("SOURCE_DATE_EPOCH"); }
    void reset()
    {
        world.reset();
        // Three bytes more than its old content keep what `fru set` and others make of it apart.
        if (GetParam().name == std::string("SelRepair")) {
            fs::resize_file(world.at("/var/tav/fmem/ipmi/sb1_bmc_sel2"), 50000);
        }
        writeFile(world.at("/board.json"), R"({"board": {"serial": "SN4711"}})");
        writeFile(world.at("/one.hex"), "0100027856341220000404010157a16c\n");
        Bytes event = {0xFF, 0xFF, 0x01, 0x00, 0x02, 0x78, 0x56, 0x34, 0x12, 0x20,
                       0x00, 0x04, 0x04, 0x01, 0x01, 0x57, 0xA1, 0x6C, 0x0D};
        event.resize(138, 0);
        writeFile(world.at("/event.bin"), event);
    }
    FaultRun runCommand(const std::string& fault)
    {
        reset();
        return runWithFault(world, wordsOf(GetParam(), world), fault);
    }

    FaultWorld world;
};

}

TEST_P(CommandFaults, EveryCallOnce)
{
    reset();
    const auto before = world.files();
    unsigned int runs = 0;
    for (const std::string& call : FAULTY_CALLS) {
        const FaultRun sound = runCommand(call + ":0:5");
        ASSERT_EQ(sound.outcome.status, 0) << sound.outcome.err;
        ASSERT_EQ(sound.descriptorsLeft, 0);
        const auto done = world.files();
        for (const std::string& fault : faultsOf(call, sound.calls)) {
            SCOPED_TRACE(fault);
            const FaultRun faulty = runCommand(fault);
            ++runs;
            const int status = faulty.outcome.status;
            EXPECT_TRUE(status == 0 || status == 1 || status == 3) << status;
            EXPECT_EQ(status == 0, faulty.outcome.err.empty()) << faulty.outcome.err;
            EXPECT_TRUE(faulty.wasHit);
            EXPECT_EQ(faulty.descriptorsLeft, 0);
            const auto after = world.files();
            for (const auto& [path, bytes] : after) {
                // Only a temporary that cannot be removed stays.
                EXPECT_TRUE(!isTemporary(path) || call == "remove") << path;
            }
            const std::string name = GetParam().name;
            const bool isInPlace = name == "FruSetInPlace" || name == "FruSetPaged";
            const bool canRestore = fault.find(":always") == std::string::npos;
            if (name.compare(0, 3, "Fru") == 0 && (!isInPlace || canRestore)) {
                const std::string board = world.at("/board.bin");
                EXPECT_TRUE(after.at(board) == before.at(board) ||
                            after.at(board) == done.at(board));
            }
            if (isInterruption(fault)) {
                EXPECT_EQ(status, 0) << faulty.outcome.err;
                EXPECT_TRUE(after == done);
            }
            if (HasFailure()) {
                return;
            }
        }
    }
    EXPECT_GT(runs, 0U);
    fs::remove_all(world.at("/new"));
}

INSTANTIATE_TEST_SUITE_P(All, CommandFaults, testing::ValuesIn(COMMANDS),
                         [](const auto& each) { return std::string(each.param.name); });

TEST(FullDisk, NothingIsLostAndTheCommandSaysSo)
{
    const FaultWorld world;
    const std::string disk = world.at("/disk");
    fs::create_directories(disk);
    // Room for the image and a page: a temporary file of 64 KB in addition does not fit.
    if (::mount("none", disk.c_str(), "tmpfs", 0, "size=72k") != 0) {
        GTEST_SKIP() << "no tmpfs can be mounted here; the shim's ENOSPC stands for it";
    }
    const std::string image = disk + "/board.bin";
    Bytes bytes = readFile(world.at("/board.bin"));
    bytes.resize(60000, 0xFF);
    writeFile(image, bytes);
    const Outcome outcome = run(ourCommand({"fru", "set", image, "board.serial=SN4711"}));
    EXPECT_EQ(outcome.status, 3);
    EXPECT_NE(outcome.err.find("No space left on device"), std::string::npos) << outcome.err;
    EXPECT_EQ(readFile(image), bytes);
    EXPECT_EQ(listFolder(disk), std::vector<std::string>({"board.bin"}));
    ::umount(disk.c_str());
}

TEST(ReadOnlyFolders, AreSaidAndLeftAsTheyWere)
{
    const FaultWorld world;
    const auto before = world.files();
    // Also root meets EROFS, where permissions would not stop it.
    for (const char* call : {"open", "rename"}) {
        const FaultRun faulty = runWithFault(
            world, ourCommand({"--root", world.path(), "sel", "rotate", "--board", "1"}),
            std::string(call) + ":1:always:" + std::to_string(EROFS));
        EXPECT_NE(faulty.outcome.status, 0);
        EXPECT_NE(faulty.outcome.err, "");
        for (const unsigned int id : {1U, 5U, 1000U, 2799U}) {
            EXPECT_GE(world.events().count(id), 1U) << call << " " << id;
        }
    }
}
