// SPDX-License-Identifier: Apache-2.0
// A process that is killed at each of its device writes, before it or halfway through it. Another
// process then reads the images: what it may find, and what it must not.
#include <csignal>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <recordkit/eeprom/EFIBackupEEPROMData.h>
#include <recordkit/eeprom/SettingEEPROMData.h>
#include <recordkit/host/FileEEPROMRWif.h>

#include "MemoryEEPROMs.h"
#include "support/ScratchRoot.h"

using namespace TAVLib::RecordKit;
using namespace testing_support;

namespace {

const std::string SERIAL = "SERIAL-01234";

enum class Cut { BEFORE, HALFWAY };

/// Ends its process at the n-th write.
class CutDevice : public TAVLib::EEPROMRWif {
public:
    CutDevice(const std::string& folder, int n, Cut where) : files(folder), left(n), cut(where) {}

    int read(int select, unsigned long offset, unsigned char* buffer, unsigned int length) override
    {
        return files.read(select, offset, buffer, length);
    }
    int write(int select, unsigned long offset, const unsigned char* buffer,
              unsigned int length) override
    {
        if (--left == 0) {
            if (cut == Cut::HALFWAY) {
                files.write(select, offset, buffer, length / 2);
            }
            ::kill(::getpid(), SIGKILL);
        }
        return files.write(select, offset, buffer, length);
    }

private:
    TAVLib::host::FileEEPROMRWif files;
    int left;
    Cut cut;
};

class PowerCut : public testing::Test {
protected:
    std::string image(int select) const
    {
        return root.at("/eeprom" + std::to_string(select) + ".bin");
    }

    /// Runs the action in a process that is killed at its n-th write; false when it came to its
    /// end before.
    bool killedAt(int n, Cut cut, const std::function<void(TAVLib::EEPROMRWif&)>& action) const
    {
        const pid_t child = ::fork();
        if (child == 0) {
            CutDevice device(root.path(), n, cut);
            action(device);
            ::_exit(0);
        }
        int status = 0;
        ::waitpid(child, &status, 0);
        if (!WIFSIGNALED(status)) {
            EXPECT_EQ(status, 0);
            return false;
        }
        EXPECT_EQ(WTERMSIG(status), SIGKILL);
        return true;
    }

    /// Cuts the action at every one of its writes, each time from the same images.
    void atEveryWrite(const std::function<void()>& prepare,
                      const std::function<void(TAVLib::EEPROMRWif&)>& action,
                      const std::function<void()>& check, int expectedWrites) const
    {
        for (const Cut cut : {Cut::BEFORE, Cut::HALFWAY}) {
            int n = 1;
            for (;; ++n) {
                SCOPED_TRACE("write " + std::to_string(n) +
                             (cut == Cut::BEFORE ? ", before" : ", halfway"));
                prepare();
                const bool wasKilled = killedAt(n, cut, action);
                check();
                if (!wasKilled) {
                    break;
                }
            }
            EXPECT_EQ(n - 1, expectedWrites);
        }
    }

    const ScratchRoot root;
};

/// The entry of area 3, on EEPROM 5 from 256 on with 64 bytes.
Bytes entry(bool valid)
{
    return withSum(
        {static_cast<unsigned char>(valid ? 1 : 0), 0, 1, 3, 1, 0, 0, 64, 0, 0, 0, 0, 0, 0, 0, 0},
        15);
}

class SettingPowerCut : public PowerCut {
protected:
    void prepare(bool valid) const
    {
        Bytes index(65536, 0);
        const Bytes bytes = entry(valid);
        std::copy(bytes.begin(), bytes.end(), index.begin() + 512 + 3 * 16);
        writeFile(image(4), index);
        writeFile(image(5), Bytes(65536, 'o'));
    }
    Bytes entryNow() const { return part(readFile(image(4)), 512 + 3 * 16, 16); }
    Bytes areaNow() const { return part(readFile(image(5)), 256, 64); }
    bool isValid() const
    {
        TAVLib::host::FileEEPROMRWif files(root.path());
        return SettingEEPROMData(files).isValid(3);
    }
    static void write(TAVLib::EEPROMRWif& device)
    {
        std::string data(64, 'n');
        SettingEEPROMData(device).write(3, data);
    }
};

/// The record with blocks 0 and 15 of partition 1, bank 2 marked.
Bytes record()
{
    Bytes bytes(144, 0);
    std::copy(SERIAL.begin(), SERIAL.end(), bytes.begin() + 2);
    bytes[64] = 0x10;
    bytes[71] = 0x01;
    return withSum(bytes, 0);
}

class EFIPowerCut : public PowerCut {
protected:
    void prepare() const
    {
        Bytes index(65536, 0);
        const Bytes bytes = record();
        std::copy(bytes.begin(), bytes.end(), index.begin());
        writeFile(image(10), index);
        writeFile(image(17), Bytes(65536, 'o'));
    }
    Bytes recordNow() const { return part(readFile(image(10)), 0, 144); }

    /// Opens the store as a process that found the record.
    static void open(EFIBackupEEPROMData& backup)
    {
        EFIBackupEEPROMIndex().setIndexState(true);
        ASSERT_TRUE(backup.checkIndexData(SERIAL));
    }

    /// No block reads as clear if its erase did not finish; flags are old or new, and a record
    /// whose checksum does not match its flags is detected.
    void checkFlags() const
    {
        const Bytes now = recordNow();
        const Bytes blocks = readFile(image(17));
        const bool isFirstClear = now[64] == 0;
        const bool isLastClear = now[71] == 0;
        EXPECT_TRUE(isFirstClear || now[64] == 0x10);
        EXPECT_TRUE(isLastClear || now[71] == 0x01);
        if (isFirstClear) {
            EXPECT_EQ(part(blocks, 0, 4096), Bytes(4096, 0xFF));
        }
        if (isLastClear) {
            EXPECT_EQ(part(blocks, 61440, 4096), Bytes(4096, 0xFF));
        }
        EXPECT_EQ(part(blocks, 4096, 57344), Bytes(57344, 'o'));
        TAVLib::host::FileEEPROMRWif files(root.path());
        EXPECT_EQ(EFIBackupEEPROMData(files).checkIndexData(SERIAL), now == withSum(now, 0));
        // The rest of the record is never touched.
        Bytes rest = now;
        rest[0] = rest[64] = rest[71] = 0;
        Bytes expected = record();
        expected[0] = expected[64] = expected[71] = 0;
        EXPECT_EQ(rest, expected);
    }
};

}

TEST_F(SettingPowerCut, WriteOfAnAreaThatWasNotValid)
{
    atEveryWrite([this] { prepare(false); }, write,
                 [this] {
                     // It is valid only with all of its data.
                     if (isValid()) {
                         EXPECT_EQ(areaNow(), Bytes(64, 'n'));
                         EXPECT_EQ(entryNow(), entry(true));
                     } else if (entryNow() != entry(false)) {
                         // Torn: its checksum shows it.
                         EXPECT_NE(entryNow(), withSum(entryNow(), 15));
                     }
                 },
                 2);
}

TEST_F(SettingPowerCut, WriteOfAValidArea)
{
    atEveryWrite([this] { prepare(true); }, write,
                 [this] {
                     // The entry is not touched. What a cut leaves of the area is not detected:
                     // old, new, or new bytes first and old ones after them.
                     EXPECT_EQ(entryNow(), entry(true));
                     const Bytes area = areaNow();
                     const auto news = std::count(area.begin(), area.end(), 'n');
                     EXPECT_EQ(area, Bytes(static_cast<std::size_t>(news), 'n') +
                                         Bytes(static_cast<std::size_t>(64 - news), 'o'));
                 },
                 1);
}

TEST_F(SettingPowerCut, InvalidatingEverything)
{
    atEveryWrite([this] { prepare(true); },
                 [](TAVLib::EEPROMRWif& device) { SettingEEPROMData(device).setAllInvalid(); },
                 [this] {
                     // Old or new; a torn one is not valid and its checksum is wrong.
                     const Bytes now = entryNow();
                     EXPECT_EQ(isValid(), now == entry(true));
                     if (now != entry(true) && now != entry(false)) {
                         EXPECT_NE(now, withSum(now, 15));
                     }
                     EXPECT_EQ(areaNow(), Bytes(64, 'o'));
                 },
                 1);
}

TEST_F(EFIPowerCut, ClearingAFlag)
{
    atEveryWrite(
        [this] {
            prepare();
            // The block was erased before.
            Bytes blocks(65536, 'o');
            std::fill_n(blocks.begin(), 4096, static_cast<unsigned char>(0xFF));
            writeFile(image(17), blocks);
        },
        [](TAVLib::EEPROMRWif& device) {
            EFIBackupEEPROMData backup(device);
            open(backup);
            backup.resetClearFlag(1, 2, 0);
        },
        [this] { checkFlags(); }, 2);
}

TEST_F(EFIPowerCut, MarkingABlock)
{
    atEveryWrite([this] { prepare(); },
                 [](TAVLib::EEPROMRWif& device) {
                     EFIBackupEEPROMData backup(device);
                     open(backup);
                     backup.markBlock(1, 2, 4096);
                 },
                 [this] {
                     const Bytes now = recordNow();
                     Bytes marked = record();
                     marked[64] = 0x11;
                     marked = withSum(marked, 0);
                     // Between checksum and flag: its checksum shows it.
                     Bytes between = record();
                     between[0] = marked[0];
                     EXPECT_TRUE(now == record() || now == between || now == marked);
                     EXPECT_EQ(readFile(image(17)), Bytes(65536, 'o'));
                 },
                 2);
}

TEST_F(EFIPowerCut, ErasingBlocks)
{
    atEveryWrite([this] { prepare(); },
                 [](TAVLib::EEPROMRWif& device) {
                     EFIBackupEEPROMData backup(device);
                     open(backup);
                     backup.clearExecute(1, 2);
                 },
                 [this] { checkFlags(); }, 6);
}

TEST_F(EFIPowerCut, RecordCutBetweenChecksumAndFlagIsMendedByTheNextChange)
{
    prepare();
    ASSERT_TRUE(killedAt(3, Cut::BEFORE, [](TAVLib::EEPROMRWif& device) {
        EFIBackupEEPROMData backup(device);
        open(backup);
        backup.clearExecute(1, 2);
    }));
    TAVLib::host::FileEEPROMRWif files(root.path());
    EFIBackupEEPROMData backup(files);
    EXPECT_FALSE(backup.checkIndexData(SERIAL));
    EXPECT_EQ(backup.resetClearFlag(0, 0, 0), 0);
    EXPECT_TRUE(backup.checkIndexData(SERIAL));
    // The block is erased again.
    EFIBackupEEPROMIndex().setIndexState(true);
    EXPECT_EQ(backup.clearExecute(1, 2), 0);
    EXPECT_EQ(part(recordNow(), 64, 8), Bytes(8, 0));
}
