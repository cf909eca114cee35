// SPDX-License-Identifier: Apache-2.0
// The stores on a LockedFile that reads or writes fewer bytes than requested, reports another
// place, or lets another process in before the lock.
#include "LockedFile.h"

#include "eeprom/SettingFixture.h"
#include "selfile/StoreFixture.h"

using namespace testing_support;

namespace {

class ShortSettings : public Settings {
protected:
    ~ShortSettings() override { lockedFileAnswers = {}; }

    static std::string mismatch(const std::string& text) { return eepromError(2, 5, 20032, text); }
    std::string area() const { return root.at("/area"); }
};

class ShortStore : public StoreTest {
protected:
    ~ShortStore() override { lockedFileAnswers = {}; }

    Message record = fromBytes<Message>(slotOf(77));
};

}

TEST_F(ShortSettings, IndexFileIsReadWithoutALockedFileWhichWouldCreateIt)
{
    writeIndexFile(27);
    lockedFileAnswers.beforeOpen = [] { throw OtherFailure(); };
    settings.initializeIndexData(5);
    EXPECT_EQ(entryOf(5), entry(5, true));
}

TEST_F(ShortSettings, AreaThatDoesNotFitItsFileWholeIsSaid)
{
    std::string path = area();
    lockedFileAnswers.bytesLess = 2;
    EXPECT_EQ(thrownBy([&] { settings.read(3, path.data()); }),
              mismatch("read: file write size mismatch.(area=0x3 path=" + path +
                       " count=0x20 scount=0x1e)"));
    EXPECT_EQ(readFile(path), sequence(30, 3));
}

TEST_F(ShortSettings, FileIsReadFromItsStartOrNotAtAll)
{
    std::string path = area();
    writeFile(path, sequence(32, 0x80));
    lockedFileAnswers.placesOff = 7;
    EXPECT_EQ(thrownBy([&] { settings.write(4, path.data()); }),
              mismatch("write: seek offset mismatch.(area=0x4 path=" + path +
                       " offset=0x0 setOffset=0x7)"));
    EXPECT_EQ(entryOf(4), entry(4, false));
    EXPECT_EQ(eeproms.get(4, 4352, 32), sequence(32, 4));
}

TEST_F(ShortSettings, FileThatGivesFewerBytesThanItHasIsNotWritten)
{
    std::string path = area();
    writeFile(path, sequence(32, 0x80));
    lockedFileAnswers.bytesLess = 31;
    EXPECT_EQ(thrownBy([&] { settings.write(4, path.data()); }),
              mismatch("write: file read size mismatch.(area=0x4 path=" + path +
                       " count=0x20 scount=0x1)"));
    EXPECT_EQ(entryOf(4), entry(4, false));
    EXPECT_EQ(eeproms.get(4, 4352, 32), sequence(32, 4));
}

TEST_F(ShortSettings, FileThatIsGoneBeforeItIsOpenedIsNamed)
{
    std::string path = area();
    writeFile(path, sequence(32, 0x80));
    lockedFileAnswers.beforeOpen = [] {
        throw TAVLib::PException(1, 9, 9, 0x12, 0x345, 20031, 0, 0, 0, 0, 0, 0, 0, 0);
    };
    EXPECT_EQ(thrownBy([&] { settings.write(4, path.data()); }),
              eepromError(2, 3, 20031,
                          "write: file read error.(ActCode=0x12 DetCode=0x0345 area=0x4 path=" +
                              path + ")"));
    EXPECT_EQ(entryOf(4), entry(4, false));
}

TEST_F(ShortSettings, OtherExceptionsOfAFilePassThrough)
{
    std::string path = area();
    writeFile(path, sequence(32, 0x80));
    lockedFileAnswers.beforeOpen = [] { throw OtherFailure(); };
    EXPECT_THROW(settings.read(3, path.data()), OtherFailure);
    EXPECT_THROW(settings.write(4, path.data()), OtherFailure);
    EXPECT_EQ(entryOf(4), entry(4, false));
}

TEST_F(ShortStore, OtherExceptionsOfAFilePassThrough)
{
    writeFile(working(), fileOf(2));
    lockedFileAnswers.beforeOpen = [] { throw OtherFailure(); };
    EXPECT_THROW(store.writeRecord(SB, record), OtherFailure);
    EXPECT_THROW(store.truncate(SB, 0, 0), OtherFailure);
    EXPECT_EQ(trace.lines(), Lines());
    EXPECT_EQ(readFile(working()), fileOf(2));
}

TEST_F(ShortStore, RecordThatIsWrittenInPartIsNotAnswered)
{
    writeFile(working(), fileOf(2));
    lockedFileAnswers.bytesLess = 1;
    EXPECT_EQ(store.writeRecord(SB, record), 0);
    EXPECT_EQ(trace.lines(), Lines({line("writeRecord")}));
}

TEST_F(ShortStore, FileThatIsCutInPartIsNotAnswered)
{
    lockedFileAnswers.bytesLess = 138;
    EXPECT_EQ(store.truncate(SB, 0, 0), 6U);
    EXPECT_EQ(trace.lines(), Lines({cut("BMCSELDataFile::truncate " + working() + " ")}));
    EXPECT_EQ(readFile(working()), Bytes(FULL_FILE - 138, 0xFF));
}

TEST_F(ShortStore, FilesAreCutToNothingBeforeTheyAreRewritten)
{
    EXPECT_EQ(store.truncate(SB, 3, 1), 0U);
    EXPECT_EQ(lockedFileAnswers.truncations, std::vector<long>({0}));
    EXPECT_EQ(readFile(kept(3)), Bytes(FULL_FILE, 0xFF));
}

TEST_F(ShortStore, FileThatIsCutAndNotWrittenIsEmpty)
{
    writeFile(working(), fileOf(2));
    lockedFileAnswers.bytesLess = FULL_FILE;
    EXPECT_EQ(store.truncate(SB, 0, 0), 6U);
    EXPECT_EQ(readFile(working()), Bytes());
}

TEST_F(ShortStore, RecordGoesBehindOneThatCameBeforeTheLock)
{
    writeFile(working(), fileOf(2));
    lockedFileAnswers.beforeOpen = [&] { writeFile(working(), fileOf(5)); };
    EXPECT_EQ(store.writeRecord(SB, record), 1);
    Bytes expected = fileOf(5);
    const Bytes slot = slotOf(77);
    std::copy(slot.begin(), slot.end(), expected.begin() + 5 * 138);
    EXPECT_EQ(readFile(working()), expected);
    EXPECT_EQ(trace.lines(), Lines());
}

TEST_F(ShortStore, FileThatIsFilledBeforeTheLockTakesNoMore)
{
    writeFile(working(), fileOf(799));
    lockedFileAnswers.beforeOpen = [&] { writeFile(working(), fileOf(800)); };
    EXPECT_EQ(store.writeRecord(SB, record), 0);
    EXPECT_EQ(readFile(working()), fileOf(800));
    EXPECT_EQ(trace.lines(), Lines());
}
