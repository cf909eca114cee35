// SPDX-License-Identifier: Apache-2.0
// Every operation of the stores, with every system call failing once: the result is a documented
// one, the failure is reported, no descriptor stays open and no event gets lost.
#include <algorithm>
#include <cerrno>
#include <filesystem>

#include <recordkit/eeprom/SettingEEPROMData.h>
#include <recordkit/host/FileEEPROMRWif.h>

#include "FaultFixture.h"

using namespace testing_support;
namespace fs = std::filesystem;

namespace {

/// What an operation may cost by its documentation.
enum Cost { NOTHING, WORKING_FILE, LOG };

struct Operation {
    const char* name;
    std::set<int> codes;  ///< documented
    bool mayThrow;        ///< PException
    std::set<int> silent; ///< codes that identify the failure by themselves
    Cost cost;
};

void PrintTo(const Operation& operation, std::ostream* out)
{
    *out << operation.name;
}

// clang-format off
const Operation OPERATIONS[] = {
    {"writeRecord",          {0, 1},                    false, {},   NOTHING},
    {"readRecord",           {0, 1, 4, 8, 10, 15},      false, {10, 15}, NOTHING},
    {"readStoredRecord",     {0, 4, 8, 10, 14, 15},     false, {},   NOTHING},
    {"readFirstRecord",      {0, 1},                    false, {0},  NOTHING},
    {"readLastRecord",       {0, 1},                    false, {0},  NOTHING},
    {"fullEntryCheck",       {0, 2, 3, 4, 6, 8, 10, 14, 15}, false, {14}, NOTHING},
    {"getEntryNum",          {0, 14},                   false, {},   NOTHING},
    {"truncate",             {0, 6},                    false, {},   WORKING_FILE},
    {"clearAllRecord",       {0, 6},                    false, {},   LOG},
    {"makeCopySELFile",      {0, 6, 7, 8, 14},          false, {},   NOTHING},
    {"shiftSelFile",         {-1, 0, 6, 7, 8, 14},      false, {},   NOTHING},
    {"backupTmpSel",         {0, 1},                    false, {},   NOTHING},
    {"restoreTmpSel",        {0, 1},                    false, {},   WORKING_FILE},
    {"initialTruncate",      {4},                       false, {},   WORKING_FILE},
    {"walk",                 {1605, -1},                false, {-1}, NOTHING},
    {"recover",              {0, 1},                    false, {0},  NOTHING},
    {"setPowerSupplyMode",   {1},                       false, {},   NOTHING},
    {"getSeverity",          {0, 1},                    false, {0},  NOTHING},
    {"convertCPUPartNumber", {0, -1},                   false, {-1}, NOTHING},
    {"settingRead",          {64},                      true,  {},   NOTHING},
    {"settingWrite",         {64},                      true,  {},   NOTHING},
    {"settingInit",          {1},                       true,  {},   NOTHING},
    {"settingInvalidate",    {1},                       true,  {},   NOTHING},
    {"efiInit",              {1},                       true,  {},   NOTHING},
    {"efiWrite",             {16},                      true,  {},   NOTHING},
    {"efiMark",              {0},                       true,  {},   NOTHING},
    {"editFru",              {1},                       true,  {},   NOTHING},
};
// clang-format on

class StoreFaults : public testing::TestWithParam<Operation> {
protected:
    FaultRun runVictim(const std::string& fault)
    {
        world.reset();
        return runWithFault(world, {FAULT_VICTIM, world.path(), GetParam().name}, fault);
    }

    void checkAnswer(const FaultRun& faulty, const FaultRun& sound) const
    {
        const std::string& out = faulty.outcome.out;
        if (out.compare(0, 7, "thrown ") == 0) {
            EXPECT_TRUE(GetParam().mayThrow) << out;
            // The text after the codes names what failed.
            EXPECT_GT(out.size(), std::string("thrown act 2 det 0x0003 \n").size()) << out;
            return;
        }
        ASSERT_EQ(out.compare(0, 7, "result "), 0) << out;
        const int code = std::stoi(out.substr(7));
        EXPECT_EQ(GetParam().codes.count(code), 1U) << out;
        const bool isSuccess = code == std::stoi(sound.outcome.out.substr(7));
        EXPECT_TRUE(isSuccess || faulty.isTraced() || GetParam().silent.count(code) != 0) << out;
    }

    /// Events that were stored and are in no file, but for those an operation may cost.
    std::vector<unsigned int> lostEvents(const std::multiset<unsigned int>& before) const
    {
        std::vector<unsigned int> lost;
        const std::multiset<unsigned int> after = world.events();
        for (const unsigned int id : std::set<unsigned int>(before.begin(), before.end())) {
            const bool isWorking = id < 1000;
            if (after.count(id) == 0 && GetParam().cost != LOG &&
                !(GetParam().cost == WORKING_FILE && isWorking)) {
                lost.push_back(id);
            }
        }
        return lost;
    }

    FaultWorld world;
};

}

TEST_P(StoreFaults, EveryCallOnce)
{
    const std::multiset<unsigned int> before = world.events();
    unsigned int runs = 0;
    for (const std::string& call : FAULTY_CALLS) {
        const FaultRun sound = runVictim(call + ":0:5");
        ASSERT_EQ(sound.descriptorsLeft, 0);
        const auto soundFiles = world.files();
        for (const std::string& fault : faultsOf(call, sound.calls)) {
            SCOPED_TRACE(fault);
            const FaultRun faulty = runVictim(fault);
            ++runs;
            EXPECT_EQ(faulty.outcome.status, 0) << faulty.outcome.err;
            EXPECT_TRUE(faulty.wasHit);
            EXPECT_EQ(faulty.descriptorsLeft, 0);
            checkAnswer(faulty, sound);
            EXPECT_EQ(lostEvents(before), std::vector<unsigned int>());
            if (isInterruption(fault)) {
                // A signal changes nothing: the call is made again.
                EXPECT_EQ(faulty.outcome.out, sound.outcome.out);
                EXPECT_TRUE(world.files() == soundFiles);
            }
            if (HasFailure()) {
                return;
            }
        }
    }
    EXPECT_GT(runs, 0U);
}

TEST_P(StoreFaults, FoldersThatVanished)
{
    for (const char* folder : {"/tmp", "/var", "/images", "/etc"}) {
        SCOPED_TRACE(folder);
        world.reset();
        const FaultRun sound = runVictim("open:0:5");
        world.reset();
        fs::remove_all(world.at(folder));
        const FaultRun faulty =
            runWithFault(world, {FAULT_VICTIM, world.path(), GetParam().name}, "open:0:5");
        EXPECT_EQ(faulty.outcome.status, 0) << faulty.outcome.err;
        EXPECT_EQ(faulty.descriptorsLeft, 0);
        // Some codes say a folder less than they say a failure: a board without files is new.
        if (faulty.outcome.out.compare(0, 7, "thrown ") == 0) {
            EXPECT_TRUE(GetParam().mayThrow) << faulty.outcome.out;
        } else {
            EXPECT_EQ(faulty.outcome.out.compare(0, 7, "result "), 0) << faulty.outcome.out;
        }
        fs::create_directories(world.at("/tmp"));
    }
    world.reset();
}

INSTANTIATE_TEST_SUITE_P(All, StoreFaults, testing::ValuesIn(OPERATIONS),
                         [](const auto& each) { return std::string(each.param.name); });

// What only one operation can be asked.

TEST(StoreFaultsOf, WriteRecordThatAnsweredOneHasStoredItOnce)
{
    const FaultWorld world;
    constexpr unsigned int NEW_ID = 0x7777;
    for (const std::string& call : FAULTY_CALLS) {
        for (const std::string& fault : faultsOf(call, 4)) {
            SCOPED_TRACE(fault);
            world.reset();
            const FaultRun faulty =
                runWithFault(world, {FAULT_VICTIM, world.path(), "writeRecord"}, fault);
            const bool isWritten = faulty.outcome.out.compare(0, 8, "result 1") == 0;
            const std::size_t count = world.events().count(NEW_ID);
            // Half a record agrees with the refusal: it was not written.
            EXPECT_TRUE(isWritten ? count == 1 : count <= 1) << faulty.outcome.out;
        }
    }
}

TEST(StoreFaultsOf, AnswerToARotationRequestIsNotWrittenThroughALinkThatCannotBeRemoved)
{
    const FaultWorld world;
    const std::string request = world.at("/var/tmp/shift_sel_sync");
    writeFile(world.at("/target"), "precious");
    fs::remove(request);
    fs::create_symlink(world.at("/target"), request);
    const FaultRun faulty = runWithFault(world, {FAULT_VICTIM, world.path(), "shiftSelFile"},
                                         "remove:1:" + std::to_string(EPERM));
    EXPECT_EQ(faulty.outcome.out.compare(0, 8, "result 6"), 0) << faulty.outcome.out;
    EXPECT_EQ(readFile(world.at("/target")), textBytes("precious"));
}

TEST(StoreFaultsOf, SettingAreaIsOldOrNewOrNotValid)
{
    const FaultWorld world;
    for (const char* call : {"open", "read", "write", "fsync", "close"}) {
        world.reset();
        const long calls = runWithFault(world, {FAULT_VICTIM, world.path(), "settingWrite"},
                                        call + std::string(":0:5"))
                               .calls;
        for (const std::string& fault : faultsOf(call, calls)) {
            SCOPED_TRACE(fault);
            world.reset();
            const FaultRun faulty =
                runWithFault(world, {FAULT_VICTIM, world.path(), "settingWrite"}, fault);
            TAVLib::host::FileEEPROMRWif device(world.at("/images"));
            TAVLib::RecordKit::SettingEEPROMData settings(device);
            std::string content = "not valid";
            if (faulty.outcome.out.compare(0, 9, "result 64") == 0) {
                content = settings.read(0, nullptr);
                EXPECT_EQ(content, std::string(64, 'n'));
            } else if (thrownBy([&] { content = settings.read(0, nullptr); }) == "nothing") {
                EXPECT_TRUE(content == std::string(64, 'o') || content == std::string(64, 'n'))
                    << content;
            }
        }
    }
}

TEST(StoreFaultsOf, ReadersAnswerTheCodeOfTheCallThatFailed)
{
    const FaultWorld world;
    const struct {
        const char* operation;
        const char* fault;
        int code;
    } rows[] = {
        // The working file, its first slot, the place of its last one, and that slot.
        {"readRecord", "open:1:13", 4},
        {"readRecord", "read:1:5", 10},
        {"readRecord", "lseek:1:5", 8},
        {"readRecord", "read:3:5", 10},
        {"readRecord", "read:3:short", 10},
        // The search for the tail of the working file (its end is then not known), and for the id.
        {"readRecord", "open:2:13", 15},
        {"readRecord", "open:3:13", 4},
        {"readFirstRecord", "open:1:13", 1},
        {"readFirstRecord", "read:1:5", 0},
        {"readFirstRecord", "read:1:short", 0},
        // Three files are counted first: each is opened; full ones take more than one read.
        {"readStoredRecord", "stat:1:13", 14},
        {"readStoredRecord", "open:4:13", 4},
        {"readStoredRecord", "lseek:3:5", 8},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(std::string(row.operation) + " " + row.fault);
        world.reset();
        const FaultRun faulty =
            runWithFault(world, {FAULT_VICTIM, world.path(), row.operation}, row.fault);
        EXPECT_TRUE(faulty.wasHit);
        const std::string expected = "result " + std::to_string(row.code) + "\n";
        EXPECT_EQ(faulty.outcome.out.substr(0, expected.size()), expected) << faulty.outcome.out;
    }
}

TEST_P(StoreFaults, DescriptorsAreClosedInProgramsThatAreStarted)
{
    // The shim reports calls that open a file for programs started later, too.
    const FaultRun sound = runVictim("open:0:5");
    EXPECT_EQ(sound.inherited, 0) << GetParam().name;
}

TEST(StoreFaultsOf, RecoveryMovesNothingWhenAFileCannotBeRead)
{
    // The backup is part of the working file. Were the two compared without one of them, the
    // rotation would look cut off.
    const FaultWorld world;
    const auto before = world.files();
    for (const std::string call : {"open", "read"}) {
        const Arguments recover = {FAULT_VICTIM, world.path(), "recover"};
        const long calls = runWithFault(world, recover, call + ":0:5").calls;
        ASSERT_GT(calls, 0);
        for (long n = 1; n <= calls; ++n) {
            runWithFault(world, recover, call + ":" + std::to_string(n) + ":5");
            auto after = world.files();
            after.erase(world.at("/var/tav/fmem/ipmi/sb1_bmc_sel.lock"));
            EXPECT_EQ(after, before) << call << " " << n;
            world.reset();
        }
    }
}

TEST(StoreFaultsOf, RecoveryNamesTheRenameThatFailed)
{
    const FaultWorld world;
    const std::string kept = world.at("/var/tav/fmem/ipmi/sb1_bmc_sel");
    const Arguments recover = {FAULT_VICTIM, world.path(), "recover"};
    // A rotation that was cut off: every file of the chain moves up.
    writeFile(world.at("/tmp/sb1_bmc_sel0"), fileOf(0));
    FaultRun faulty = runWithFault(world, recover, "rename:2:5");
    EXPECT_TRUE(faulty.wasHit);
    EXPECT_EQ(faulty.outcome.out.substr(0, 9), "result 0\n");
    EXPECT_EQ(faulty.outcome.err, "sel2 renamed to sel3\n" + kept + "1 could not be renamed to " +
                                      kept + "2: Input/output error\n");
    EXPECT_EQ(readFile(kept + "0"), fileOf(3));
    EXPECT_EQ(readFile(kept + "1"), fileOf(800, 1000));
    world.reset();
    // A gap in the chain.
    std::filesystem::remove(kept + "1");
    faulty = runWithFault(world, recover, "rename:1:5");
    EXPECT_EQ(faulty.outcome.out.substr(0, 9), "result 0\n");
    EXPECT_EQ(faulty.outcome.err,
              kept + "2 could not be renamed to " + kept + "1: Input/output error\n");
    EXPECT_EQ(readFile(kept + "2"), fileOf(800, 2000));
}

TEST(StoreFaultsOf, AnswerToAShiftRequestIsWrittenToItsEnd)
{
    const FaultWorld world;
    const Arguments shift = {FAULT_VICTIM, world.path(), "shiftSelFile"};
    const long lastWrite = runWithFault(world, shift, "write:0:5").calls;
    world.reset();
    const FaultRun faulty =
        runWithFault(world, shift, "write:" + std::to_string(lastWrite) + ":short");
    EXPECT_TRUE(faulty.wasHit);
    EXPECT_EQ(readFile(BMCSELDataFile::getShiftRequestFile()),
              textBytes(std::string("0") + std::string(15, '\0')));
}

TEST(StoreFaultsOf, FileThatCannotBeMeasuredIsDamaged)
{
    const FaultWorld world;
    EXPECT_EQ(runWithFault(world, {FAULT_VICTIM, world.path(), "walk"}, "stat:0:5")
                  .outcome.out.substr(0, 12),
              "result 1605\n");
    const FaultRun faulty = runWithFault(world, {FAULT_VICTIM, world.path(), "walk"}, "stat:2:5");
    EXPECT_TRUE(faulty.wasHit);
    EXPECT_EQ(faulty.outcome.out.substr(0, 10), "result -1\n");
    EXPECT_EQ(faulty.outcome.err, "cannot be read: Input/output error\n");
}
