// SPDX-License-Identifier: Apache-2.0
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <fmt/format.h>
#include <future>
#include <grp.h>
#include <sys/file.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include <recordkit/platform/LockedFile.h>

#include "SettingFixture.h"

using TAVLib::RecordKit::SettingEEPROMData;
using namespace testing_support;

TEST_F(Settings, EntriesLieOneBehindTheOther)
{
    EXPECT_EQ(settings.getIndexOffset(0), 512U);
    EXPECT_EQ(settings.getIndexOffset(26), 928U);
}

TEST_F(Settings, ValidAreaIsReadWhole)
{
    EXPECT_EQ(settings.read(3, nullptr), text(sequence(32, 3)));
    EXPECT_EQ(eeproms.takeAccesses(), Lines({"r4@560+16", "r5@4288+32"}));
    EXPECT_EQ(settings.read(6, nullptr), text(sequence(32, 6)));
    EXPECT_EQ(eeproms.takeAccesses(), Lines({"r4@608+16", "r4@4480+32"}));
}

TEST_F(Settings, AreaThatIsNotValidIsNotRead)
{
    EXPECT_EQ(thrownBy([&] { settings.read(4, nullptr); }),
              eepromError(1, 3, 20020, "checkIndexData: flag invalid.(area=0x4)"));
    EXPECT_EQ(eeproms.takeAccesses(), Lines({"r4@576+16"}));
}

TEST_F(Settings, DamagedEntriesAreRefused)
{
    eeproms.at(4)[entryPlace(3) + 9] ^= 1;
    const std::string checksum =
        eepromError(1, 3, 20020, "checkIndexData: checksum error.(area=0x3)");
    EXPECT_EQ(thrownBy([&] { settings.read(3, nullptr); }), checksum);
    std::string data = "x";
    EXPECT_EQ(thrownBy([&] { settings.write(3, data); }), checksum);
    EXPECT_FALSE(settings.isValid(3));
    eeproms.put(4, entryPlace(6), entry(7, true));
    EXPECT_EQ(
        thrownBy([&] { settings.read(6, nullptr); }),
        eepromError(1, 1, 20019, "checkIndexData: area number mismatch.(darea=0x7 area=0x6)"));
    EXPECT_FALSE(settings.isValid(6));
    EXPECT_TRUE(settings.isValid(9));
    EXPECT_FALSE(settings.isValid(10));
}

TEST_F(Settings, WritingMakesAnAreaValid)
{
    std::string data = "setting";
    EXPECT_EQ(settings.write(4, data), 7);
    EXPECT_EQ(eeproms.takeAccesses(), Lines({"r4@576+16", "w4@4352+7", "w4@576+16"}));
    EXPECT_EQ(entryOf(4), entry(4, true));
    // The bytes after the data stay.
    EXPECT_EQ(eeproms.get(4, 4352, 32), textBytes("setting") + sequence(25, 11));
    // The second time the entry is valid already.
    EXPECT_EQ(settings.write(4, data), 7);
    EXPECT_EQ(eeproms.takeAccesses(), Lines({"r4@576+16", "w4@4352+7"}));
    EXPECT_TRUE(settings.isValid(4));
}

TEST_F(Settings, DataMayFillTheAreaAndNotMore)
{
    std::string data(32, 'x');
    EXPECT_EQ(settings.write(3, data), 32);
    eeproms.takeAccesses();
    data += 'x';
    EXPECT_EQ(thrownBy([&] { settings.write(3, data); }),
              eepromError(1, 1, 20019, "writeArea: size error.(size=0x21 wsize=0x20)"));
    EXPECT_EQ(eeproms.takeAccesses(), Lines({"r4@560+16"}));
    std::string empty;
    EXPECT_EQ(settings.write(3, empty), 0);
}

TEST_F(Settings, FailedWriteOfAValidAreaInvalidatesItsEntry)
{
    std::string data = "setting";
    eeproms.failAt(2);
    EXPECT_EQ(thrownBy([&] { settings.write(3, data); }),
              eepromError(2, 3, 20031,
                          "writeArea: area write error.(ActCode=0x12 DetCode=0x0345 select=0x5 "
                          "offset=0x10c0 length=0x7 wLen=0x7)"));
    EXPECT_EQ(eeproms.takeAccesses(), Lines({"r4@560+16", "w5@4288+7", "w4@560+16"}));
    EXPECT_EQ(entryOf(3), entry(3, false));
    // An entry that was not valid stays as it was.
    eeproms.failAt(2);
    EXPECT_EQ(thrownBy([&] { settings.write(4, data); }).substr(0, 58),
              "1:128:0x000E act 2 det 0x0003 msg 20031 (writeArea: area w");
    EXPECT_EQ(eeproms.takeAccesses(), Lines({"r4@576+16", "w4@4352+7"}));
    EXPECT_EQ(entryOf(4), entry(4, false));
}

TEST_F(Settings, EveryDeviceFailureCarriesItsCodes)
{
    const auto failing = [&](std::size_t access, const std::function<void()>& action) {
        eeproms.failAt(access, true);
        const std::string thrown = thrownBy(action);
        eeproms.failNoMore();
        return thrown;
    };
    const std::string codes = "(ActCode=0x12 DetCode=0x0345 ";
    std::string data = "setting";
    EXPECT_EQ(failing(1, [&] { settings.readIndexData(2); }),
              eepromError(2, 3, 20031,
                          "readIndexData: read error." + codes +
                              "area=0x2 select=0x4 offset=0x220 length=0x10)"));
    EXPECT_EQ(failing(1, [&] { settings.writeIndexData(2); }),
              eepromError(2, 3, 20031,
                          "writeIndexData: write error." + codes +
                              "area=0x2 select=0x4 offset=0x220 length=0x10)"));
    EXPECT_EQ(failing(2, [&] { settings.read(3, nullptr); }),
              eepromError(2, 3, 20031,
                          "readArea: read error." + codes +
                              "select=0x5 offset=0x10c0 length=0x20 rLen=0x20)"));
    // The area fails, and so does the entry that is to be invalidated.
    EXPECT_EQ(failing(2, [&] { settings.write(3, data); }),
              eepromError(2, 3, 20031,
                          "writeIndexData: write error." + codes +
                              "area=0x3 select=0x4 offset=0x230 length=0x10)"));
    // The area is written, and its entry cannot be marked.
    EXPECT_EQ(failing(3, [&] { settings.write(4, data); }),
              eepromError(2, 3, 20031,
                          "writeIndexData: write error." + codes +
                              "area=0x4 select=0x4 offset=0x240 length=0x10)"));
    EXPECT_EQ(entryOf(4), entry(4, false));
    EXPECT_EQ(failing(1, [&] { settings.isValid(3); }).substr(41, 13), "readIndexData");
}

TEST_F(Settings, EveryAccessOfEveryOperationCanFail)
{
    writeIndexFile(27);
    std::string data = "setting";
    const std::function<void()> operations[] = {
        [&] { settings.read(3, nullptr); }, [&] { settings.write(3, data); },
        [&] { settings.write(4, data); },   [&] { settings.isValid(3); },
        [&] { settings.setAllInvalid(); },  [&] { settings.initializeIndexData(-1); },
    };
    const std::size_t accesses[] = {2, 2, 3, 1, 36, 27};
    for (std::size_t i = 0; i < std::size(operations); ++i) {
        for (std::size_t n = 1; n <= accesses[i] + 1; ++n) {
            SCOPED_TRACE("operation " + std::to_string(i) + ", access " + std::to_string(n));
            for (unsigned int each = 0; each <= 26; ++each) {
                eeproms.put(4, entryPlace(each), entry(each, each % 3 == 0));
            }
            eeproms.failAt(n);
            const std::string thrown = thrownBy(operations[i]);
            eeproms.failNoMore();
            if (n > accesses[i]) {
                EXPECT_EQ(thrown, "nothing");
                continue;
            }
            EXPECT_EQ(thrown.substr(0, 41), "1:128:0x000E act 2 det 0x0003 msg 20031 (");
            EXPECT_NE(thrown.find("(ActCode=0x12 DetCode=0x0345 "), std::string::npos);
            // Each entry is an old one or a new one, whole.
            for (unsigned int each = 0; each <= 26; ++each) {
                EXPECT_TRUE(entryOf(each) == entry(each, true) ||
                            entryOf(each) == entry(each, false));
            }
        }
    }
}

TEST_F(Settings, OtherExceptionsPassThrough)
{
    std::string data = "setting";
    const std::function<void()> operations[] = {
        [&] { settings.read(3, nullptr); }, [&] { settings.write(3, data); },
        [&] { settings.write(4, data); },   [&] { settings.isValid(3); },
        [&] { settings.setAllInvalid(); },
    };
    const std::size_t accesses[] = {2, 2, 3, 1, 36};
    for (std::size_t i = 0; i < std::size(operations); ++i) {
        for (std::size_t n = 1; n <= accesses[i]; ++n) {
            SCOPED_TRACE("operation " + std::to_string(i) + ", access " + std::to_string(n));
            for (unsigned int each = 0; each <= 26; ++each) {
                eeproms.put(4, entryPlace(each), entry(each, each % 3 == 0));
            }
            eeproms.failOtherwiseAt(n);
            EXPECT_THROW(operations[i](), OtherFailure);
            eeproms.failNoMore();
        }
    }
}

TEST_F(Settings, AllEntriesInUseAreInvalidated)
{
    settings.setAllInvalid();
    for (unsigned int n = 0; n <= 26; ++n) {
        EXPECT_EQ(entryOf(n), entry(n, false));
    }
    // Only those in use were written.
    const Lines accesses = eeproms.takeAccesses();
    EXPECT_EQ(std::count_if(accesses.begin(), accesses.end(),
                            [](const std::string& each) { return each[0] == 'w'; }),
              9);
}

TEST_F(Settings, InvalidatingStopsAtTheFirstFailure)
{
    eeproms.at(4)[entryPlace(6) + 15] ^= 1;
    EXPECT_EQ(thrownBy([&] { settings.setAllInvalid(); }),
              eepromError(1, 3, 20020, "checkIndexData: checksum error.(area=0x6)"));
    EXPECT_EQ(entryOf(0), entry(0, false));
    EXPECT_EQ(entryOf(3), entry(3, false));
    EXPECT_EQ(entryOf(9), entry(9, true));
    // A damaged entry that is not in use does not matter.
    eeproms.put(4, entryPlace(6), Bytes(16, 0x77));
    EXPECT_EQ(thrownBy([&] { settings.setAllInvalid(); }), "nothing");
}

TEST_F(Settings, IndexIsTakenFromItsFile)
{
    writeIndexFile(27);
    settings.initializeIndexData(-1);
    for (unsigned int n = 0; n <= 26; ++n) {
        EXPECT_EQ(entryOf(n), entry(n, n % 5 == 0));
    }
    EXPECT_EQ(eeproms.takeAccesses().size(), 27U);
    eeproms.put(4, entryPlace(7), Bytes(16, 0));
    eeproms.put(4, entryPlace(8), Bytes(16, 0));
    settings.initializeIndexData(7);
    EXPECT_EQ(entryOf(7), entry(7, false));
    EXPECT_EQ(entryOf(8), Bytes(16, 0));
}

TEST_F(Settings, ShortIndexFileStopsAtItsEnd)
{
    writeIndexFile(5);
    const Bytes whole = readFile(indexFile);
    writeFile(indexFile, part(whole, 0, 70));
    EXPECT_EQ(thrownBy([&] { settings.initializeIndexData(-1); }),
              eepromError(2, 5, 20032,
                          "rfIndexData: file read size mismatch.(area=0x4 path=" + indexFile +
                              " count=0x10 scount=0x6)"));
    for (unsigned int n = 0; n < 4; ++n) {
        EXPECT_EQ(entryOf(n), entry(n, n % 5 == 0));
    }
    EXPECT_EQ(entryOf(4), entry(4, false));
    EXPECT_EQ(entryOf(6), entry(6, true));
}

TEST_F(Settings, DamagedIndexFileIsNotTaken)
{
    writeIndexFile(27);
    patchFile(indexFile, 3 * 16 + 9, {0xEE});
    EXPECT_EQ(thrownBy([&] { settings.initializeIndexData(-1); }),
              eepromError(1, 3, 20020, "checkIndexData: checksum error.(area=0x3)"));
    EXPECT_EQ(entryOf(3), entry(3, true));
    EXPECT_EQ(eeproms.takeAccesses().size(), 3U);
}

TEST_F(Settings, IndexFileThatCannotBeReadIsNamed)
{
    const auto failure = [this](int error) {
        return eepromError(2, 3, 20031,
                           fmt::format("rfIndexData: file read error.(ActCode=0x02 "
                                       "DetCode=0x{:04x} area=0x0 path={})",
                                       error, indexFile));
    };
    const auto thrown = [this] { return thrownBy([&] { settings.initializeIndexData(0); }); };
    EXPECT_EQ(thrown(), failure(ENOENT));
    writeIndexFile(0);
    ::unlink(indexFile.c_str());
    EXPECT_EQ(thrown(), failure(ENOENT));
    EXPECT_FALSE(fileExists(indexFile));
    ::mkdir(indexFile.c_str(), 0755);
    EXPECT_EQ(thrown(), failure(EISDIR));
    ::rmdir(indexFile.c_str());
    writeFile(root.at("/target"), entry(0, true));
    ASSERT_EQ(::symlink(root.at("/target").c_str(), indexFile.c_str()), 0);
    EXPECT_EQ(thrown(), failure(ELOOP));
    ::unlink(indexFile.c_str());
    // Nobody writes to the pipe.
    ASSERT_EQ(::mkfifo(indexFile.c_str(), 0644), 0);
    EXPECT_EQ(thrown(), failure(ESPIPE));
    EXPECT_EQ(eeproms.takeAccesses(), Lines());
}

TEST_F(Settings, EntriesBeforeTheFirstAreNotInTheIndexFile)
{
    writeIndexFile(27);
    EXPECT_EQ(thrownBy([&] { settings.initializeIndexData(-2); }),
              eepromError(2, 3, 20031,
                          "rfIndexData: file read error.(ActCode=0x02 DetCode=0x0016 "
                          "area=0xfffffffe path=" +
                              indexFile + ")"));
}

namespace {

constexpr int DONE = 0;
constexpr int CANNOT_CHANGE_USER = 1;
constexpr int CAN_WRITE = 2;
constexpr int HAS_FAILED = 3;
constexpr int CANNOT_REACH = 4;

/// Runs the action in a process whose user may not write to the file; how that ended.
int asUserWhoMayNotWrite(const std::string& file, const std::function<void()>& action)
{
    constexpr unsigned int NOBODY = 65534;
    const pid_t child = ::fork();
    if (child == 0) {
        if (::geteuid() == 0 &&
            (::setgroups(0, nullptr) != 0 || ::setgid(NOBODY) != 0 || ::setuid(NOBODY) != 0)) {
            ::_exit(CANNOT_CHANGE_USER);
        }
        if (::access(file.c_str(), W_OK) == 0) {
            ::_exit(CAN_WRITE);
        }
        if (::access(file.substr(0, file.rfind('/')).c_str(), X_OK) != 0) {
            ::_exit(CANNOT_REACH);
        }
        try {
            action();
        } catch (const TAVLib::PException& e) {
            std::fprintf(stderr, "%s\n", describe(e).c_str());
            ::_exit(HAS_FAILED);
        }
        ::_exit(testing::Test::HasFailure() ? HAS_FAILED : DONE);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

/// Why the action could not be tried; nullptr if it was.
const char* obstacleOf(int ended)
{
    return ended == CANNOT_CHANGE_USER ? "root may do anything, and cannot become another user here"
           : ended == CANNOT_REACH     ? "TMPDIR is in a folder that other users cannot enter"
                                       : nullptr;
}

}

TEST_F(Settings, IndexFileIsReadByAUserWhoMayNotWriteIt)
{
    writeIndexFile(27);
    const std::string folder = root.at("/etc/default/config");
    ASSERT_EQ(::chmod(root.path().c_str(), 0755), 0);
    ASSERT_EQ(::chmod(indexFile.c_str(), 0444), 0);
    ASSERT_EQ(::chmod(folder.c_str(), 0555), 0);
    const int ended = asUserWhoMayNotWrite(indexFile, [&] {
        settings.initializeIndexData(-1);
        for (unsigned int n = 0; n <= 26; ++n) {
            EXPECT_EQ(entryOf(n), entry(n, n % 5 == 0));
        }
    });
    ::chmod(folder.c_str(), 0755);
    if (const char* const obstacle = obstacleOf(ended)) {
        GTEST_SKIP() << obstacle;
    }
    EXPECT_EQ(ended, DONE);
}

TEST_F(Settings, IndexFileWithoutPermissionToReadIsNamed)
{
    writeIndexFile(27);
    ASSERT_EQ(::chmod(root.path().c_str(), 0755), 0);
    ASSERT_EQ(::chmod(indexFile.c_str(), 0), 0);
    const int ended = asUserWhoMayNotWrite(indexFile, [&] {
        EXPECT_EQ(thrownBy([&] { settings.initializeIndexData(1); }),
                  eepromError(2, 3, 20031,
                              "rfIndexData: file read error.(ActCode=0x02 DetCode=0x000d "
                              "area=0x1 path=" +
                                  indexFile + ")"));
    });
    if (const char* const obstacle = obstacleOf(ended)) {
        GTEST_SKIP() << obstacle;
    }
    EXPECT_EQ(ended, DONE);
}

TEST_F(Settings, ReadersOfTheIndexFileDoNotWaitForEachOther)
{
    writeIndexFile(27);
    const int fd = ::open(indexFile.c_str(), O_RDONLY);
    ASSERT_NE(fd, -1);
    ASSERT_EQ(::flock(fd, LOCK_SH), 0);
    settings.initializeIndexData(-1);
    EXPECT_EQ(entryOf(26), entry(26, false));
    ::close(fd);
}

TEST_F(Settings, IndexFileThatStaysLockedIsNamed)
{
    writeIndexFile(27);
    const TAVLib::LockedFile file(indexFile);
    EXPECT_EQ(thrownBy([&] { settings.initializeIndexData(1); }),
              eepromError(2, 3, 20031,
                          "rfIndexData: file read error.(ActCode=0x02 DetCode=0x000b "
                          "area=0x1 path=" +
                              indexFile + ")"));
    EXPECT_EQ(eeproms.takeAccesses(), Lines());
}

TEST_F(Settings, IndexFileIsNotReadWhileItIsWritten)
{
    constexpr int ROUNDS = 100;
    writeIndexFile(27);
    const Bytes whole = readFile(indexFile);
    for (int round = 0; round < ROUNDS; ++round) {
        std::thread reading;
        {
            TAVLib::LockedFile file(indexFile);
            file.truncFile(0);
            std::promise<void> begun;
            reading = std::thread([&] {
                begun.set_value();
                EXPECT_EQ(thrownBy([&] { settings.readIndexDataFile(26); }), "nothing");
            });
            begun.get_future().wait();
            std::this_thread::yield();
            file.write(whole.data(), static_cast<unsigned int>(whole.size()));
        }
        reading.join();
        ASSERT_FALSE(HasFailure()) << "round " << round;
    }
}

TEST_F(Settings, AreaIsReadIntoAFile)
{
    std::string path = root.at("/area");
    writeFile(path, std::string(100, 'o'));
    EXPECT_EQ(settings.read(3, path.data()), text(sequence(32, 3)));
    EXPECT_EQ(readFile(path), sequence(32, 3));
    std::string folder = root.path();
    EXPECT_EQ(thrownBy([&] { settings.read(3, folder.data()); }),
              eepromError(2, 3, 20031,
                          "read: file write error.(ActCode=0x02 DetCode=0x0015 area=0x3 path=" +
                              folder + ")"));
    std::string full = "/dev/full";
    if (::access(full.c_str(), W_OK) == 0) {
        EXPECT_EQ(thrownBy([&] { settings.read(3, full.data()); }).substr(41, 22),
                  "read: file write error");
    }
}

TEST_F(Settings, AreaIsWrittenFromAFile)
{
    std::string path = root.at("/area");
    writeFile(path, sequence(32, 0x80));
    EXPECT_EQ(settings.write(4, path.data()), 32);
    EXPECT_EQ(eeproms.get(4, 4352, 32), sequence(32, 0x80));
    EXPECT_EQ(entryOf(4), entry(4, true));
    eeproms.takeAccesses();
    writeFile(path, sequence(33));
    EXPECT_EQ(thrownBy([&] { settings.write(4, path.data()); }),
              eepromError(2, 3, 20031,
                          "write: file size.(area=0x4 path=" + path + " size=0x20 st_size=0x21)"));
    std::string nowhere = root.at("/nowhere");
    EXPECT_EQ(thrownBy([&] { settings.write(4, nowhere.data()); }),
              eepromError(2, 3, 20031, "write: stat error. area=0x4 path=" + nowhere + " ret=-1"));
    EXPECT_FALSE(fileExists(nowhere));
    EXPECT_EQ(eeproms.takeAccesses(), Lines({"r4@576+16", "r4@576+16"}));
    writeFile(path, Bytes());
    EXPECT_EQ(settings.write(4, path.data()), 0);
}

TEST_F(Settings, FolderInThePlaceOfAFileIsNamed)
{
    // Small enough for the area by its size in some file systems, too large in others.
    std::string folder = root.path();
    const std::string thrown = thrownBy([&] { settings.write(4, folder.data()); });
    EXPECT_EQ(thrown.substr(0, 47), "1:128:0x000E act 2 det 0x0003 msg 20031 (write:");
    EXPECT_EQ(entryOf(4), entry(4, false));
}

TEST_F(Settings, EveryKindHasItsCodes)
{
    struct Codes {
        int kind, action, detail, message;
    };
    constexpr Codes ALL[] = {{0, 1, 3, 20020},  {1, 1, 3, 20020},  {2, 1, 1, 20019},
                             {3, 1, 1, 20019},  {4, 2, 3, 20031},  {5, 2, 3, 20031},
                             {6, 2, 3, 20031},  {7, 2, 5, 20032},  {8, 2, 3, 20031},
                             {9, 2, 5, 20032},  {10, 2, 5, 20032}, {11, 2, 3, 20031},
                             {12, 2, 0, 20003}, {-1, 2, 0, 20003}, {99, 2, 0, 20003}};
    for (const Codes& codes : ALL) {
        EXPECT_EQ(thrownBy([&] { settings.setThrow(codes.kind, "n=%d %s", 7, "text"); }),
                  eepromError(codes.action, codes.detail, codes.message, "n=7 text"))
            << codes.kind;
    }
    EXPECT_EQ(thrownBy([&] { settings.setThrow(0, "%s", std::string(400, 'x').c_str()); }),
              eepromError(1, 3, 20020, std::string(255, 'x')));
    EXPECT_EQ(thrownBy([&] { settings.setThrow(0, "%s", ""); }), eepromError(1, 3, 20020, ""));
}

TEST_F(Settings, CheckAnswersTheAreaNumber)
{
    for (const int n : {0, 7, 26}) {
        settings.readIndexData(n);
        EXPECT_EQ(settings.checkIndexData(n), n);
    }
    EXPECT_EQ(
        thrownBy([&] { settings.checkIndexData(25); }),
        eepromError(1, 1, 20019, "checkIndexData: area number mismatch.(darea=0x1a area=0x19)"));
}
