// SPDX-License-Identifier: Apache-2.0
// A neighbour who changes names as fast as it can while root works on them; and programs of root
// that change the same files at the same time. Nobody may win a round.
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <set>
#include <sys/stat.h>
#include <unistd.h>

#include <recordkit/host/TraceLog.h>
#include <recordkit/selfile/BMCSELDataFile.h>

#include "Neighbour.h"

using namespace testing_support;

namespace {

/// ./dev check asks for 10,000.
int rounds()
{
    const char* const given = std::getenv("RECORDKIT_ROUNDS");
    return given == nullptr ? 500 : std::atoi(given);
}

class Races : public HostileBoard {
protected:
    void SetUp() override
    {
        HostileBoard::SetUp();
        if (IsSkipped() || HasFatalFailure()) {
            return;
        }
        folder = root.at("/race");
        board = folder + "/board.bin";
        link = folder + "/link";
        std::filesystem::create_directory(folder);
        std::filesystem::permissions(folder, std::filesystem::perms(01777));
        // Its owner may rename every file in it, whoever owns that.
        ASSERT_EQ(::chown(folder.c_str(), NEIGHBOUR, NEIGHBOUR), 0);
        writeFile(board, readFile(RECORDKIT_EXAMPLE_DATA "/fru/mixed-encodings.bin"));
        ASSERT_EQ(asNeighbour([this] {
                      return ::symlink(secretFile().c_str(), link.c_str()) == 0 ? 0 : errno;
                  }),
                  0);
    }

    /// Exchanges two names without end.
    static void exchange(const std::string& one, const std::string& other)
    {
        for (;;) {
            ::renameat2(AT_FDCWD, one.c_str(), AT_FDCWD, other.c_str(), RENAME_EXCHANGE);
        }
    }
    /// `recordkit fru set` in this process, round after round; returns how many were done.
    int setSerial(const Arguments& options) const
    {
        Process victim(0, [&] {
            bool isAnyDone = false;
            for (int i = 0; i < rounds(); ++i) {
                Arguments words = {"fru", "set", board,
                                   "board.serial=SN" + std::to_string(1000 + i % 9000)};
                words.insert(words.end(), options.begin(), options.end());
                const int status = runQuietly(words);
                if (status != 0 && status != 1 && status != 3) {
                    ::_exit(2);
                }
                isAnyDone = isAnyDone || status == 0;
            }
            ::_exit(isAnyDone ? 0 : 1);
        });
        return victim.wait();
    }

    std::string folder;
    std::string board;
    std::string link;
};

}

TEST_F(Races, ALinkInThePlaceOfAnImageIsNeverWrittenThrough)
{
    const Process attack(NEIGHBOUR, [this] { exchange(board, link); });
    EXPECT_LE(setSerial({}), 1);
    EXPECT_TRUE(isSecretUnchanged());
}

TEST_F(Races, ALinkInThePlaceOfAnImageIsNeverWrittenThroughInPlace)
{
    const Process attack(NEIGHBOUR, [this] { exchange(board, link); });
    EXPECT_LE(setSerial({"--in-place"}), 1);
    EXPECT_TRUE(isSecretUnchanged());
}

TEST_F(Races, ALinkInThePlaceOfAWorkingFileIsNeverCopied)
{
    const std::string other = root.at("/tmp/other");
    plant(working(1), std::string(FULL_FILE, '\xFF'));
    ASSERT_EQ(asNeighbour(
                  [&] { return ::symlink(secretFile().c_str(), other.c_str()) == 0 ? 0 : errno; }),
              0);
    const Process attack(NEIGHBOUR, [&] { exchange(working(1), other); });
    const TAVLib::host::TraceSink silent = [](const TAVLib::host::TraceLine&) {};
    TAVLib::host::setTraceSink(silent);
    BMCSELDataFile store;
    for (int i = 0; i < rounds(); ++i) {
        EXPECT_EQ(store.backupTmpSel(1), 0);
    }
    TAVLib::host::setTraceSink(nullptr);
    EXPECT_FALSE(fileExists(kept(1, 0)));
    EXPECT_TRUE(isSecretUnchanged());
}

TEST_F(Races, ALinkInThePlaceOfAWorkingFileIsNeverRestoredThrough)
{
    const std::string other = root.at("/tmp/other");
    writeFile(kept(1, 0), Bytes(FULL_FILE, 0xFF));
    plant(working(1), "");
    ASSERT_EQ(asNeighbour(
                  [&] { return ::symlink(secretFile().c_str(), other.c_str()) == 0 ? 0 : errno; }),
              0);
    const Process attack(NEIGHBOUR, [&] { exchange(working(1), other); });
    TAVLib::host::setTraceSink([](const TAVLib::host::TraceLine&) {});
    BMCSELDataFile store;
    for (int i = 0; i < rounds(); ++i) {
        store.restoreTmpSel(1);
        store.truncate(1, 0, 0);
    }
    TAVLib::host::setTraceSink(nullptr);
    EXPECT_TRUE(isSecretUnchanged());
}

TEST_F(Races, NoEditOfAnImageIsLost)
{
    // Each program edits a field of its own; what it was told is done must be there at the end.
    constexpr int EDITS = 50;
    const std::string image = root.at("/board.bin");
    writeFile(image, readFile(RECORDKIT_EXAMPLE_DATA "/fru/mixed-encodings.bin"));
    std::string serial = "SN1000";
    std::string part = "PN1000";
    ASSERT_EQ(run(ourCommand(
                      {"fru", "set", image, "board.serial=" + serial, "board.part-number=" + part}))
                  .status,
              0);
    const auto edit = [&image](const std::string& field) {
        return [&image, field] {
            int last = EDITS;
            for (int i = 0; i < EDITS; ++i) {
                const Arguments words = {"fru", "set", image, field + std::to_string(1000 + i)};
                last = runQuietly(words) == 0 ? i : last;
            }
            ::_exit(last);
        };
    };
    for (int batch = 0; batch < rounds() / (2 * EDITS); ++batch) {
        Process one(0, edit("board.serial=SN"));
        Process other(0, edit("board.part-number=PN"));
        // One whose edits were all refused has changed nothing.
        const int lastSerial = one.wait();
        const int lastPart = other.wait();
        ASSERT_TRUE(lastSerial != EDITS || lastPart != EDITS);
        serial = lastSerial == EDITS ? serial : "SN" + std::to_string(1000 + lastSerial);
        part = lastPart == EDITS ? part : "PN" + std::to_string(1000 + lastPart);
        const Outcome shown =
            run(ourCommand({"fru", "get", image, "board.serial", "board.part-number"}));
        ASSERT_EQ(shown.out, serial + "\n" + part + "\n") << "batch " << batch;
    }
}

TEST_F(Races, NoEventIsLostWhenARepairMeetsRotations)
{
    constexpr unsigned int FILES = 7;
    constexpr unsigned int PER_FILE = 800;
    ASSERT_EQ(command({"sel", "init"}).status, 0);
    for (unsigned int file = 0; file < FILES; ++file) {
        std::string lines;
        for (unsigned int i = 1; i <= PER_FILE; ++i) {
            lines += eventAt(file * PER_FILE + i, TIME_1, THERMAL_TRIP);
        }
        writeFile(root.at("/events") + std::to_string(file), lines);
    }
    Process firmware(0, [this] {
        for (unsigned int file = 0; file < FILES; ++file) {
            const std::string events = root.at("/events") + std::to_string(file);
            if (runQuietly(ownWords({"sel", "add", events, "--board", "1"})) != 0 ||
                runQuietly(ownWords({"sel", "rotate", "--board", "1"})) != 0) {
                ::_exit(1);
            }
        }
        ::_exit(0);
    });
    const Process repairs(0, [this] {
        for (;;) {
            runQuietly(ownWords({"sel", "check", "--recover", "--board", "1"}));
        }
    });
    EXPECT_EQ(firmware.wait(), 0);
    std::set<int> ids;
    for (const int id : listedIds({"--board", "1"})) {
        EXPECT_TRUE(ids.insert(id).second) << id;
    }
    EXPECT_EQ(ids.size(), FILES * PER_FILE);
}
