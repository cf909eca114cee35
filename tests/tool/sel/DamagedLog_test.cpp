// SPDX-License-Identifier: Apache-2.0
#include "support/EventFiles.h"
#include "tool/sel/SelTest.h"

using namespace testing_support;

namespace {

/// Board 1 with seven rotated files and 362 events in the working file: ids 1 to 5962.
class DamagedLog : public SelTest {
protected:
    DamagedLog()
    {
        for (int index = 1; index <= 7; ++index) {
            writeFile(kept(1, index),
                      eventFile(800, static_cast<unsigned int>(7 - index) * 800 + 1));
        }
        writeFile(working(1), eventFile(362, 5601));
    }

    std::string remedy() const { return "; run \"recordkit sel check --recover --board 1\"\n"; }
    /// The objects of a listing that reports `err` and is status 1.
    std::vector<Json> listedWith(const std::string& err, const Arguments& options = {}) const
    {
        Arguments words = {"list", "--board", "1", "--ndjson"};
        words.insert(words.end(), options.begin(), options.end());
        const Outcome outcome = sel(words);
        EXPECT_EQ(outcome.status, err.empty() ? 0 : 1);
        EXPECT_EQ(outcome.err, err);
        std::vector<Json> objects;
        std::istringstream lines(outcome.out);
        for (std::string line; std::getline(lines, line);) {
            objects.push_back(Json::parse(line));
        }
        return objects;
    }
    static std::vector<int> idsOf(const std::vector<Json>& events)
    {
        std::vector<int> ids;
        for (const Json& event : events) {
            ids.push_back(event["id"].get<int>());
        }
        return ids;
    }
    static std::vector<int> range(int from, int to)
    {
        std::vector<int> ids;
        for (int id = from; id <= to; ++id) {
            ids.push_back(id);
        }
        return ids;
    }
    static std::size_t countOf(const std::vector<Json>& events, const std::string& state)
    {
        return static_cast<std::size_t>(
            std::count_if(events.begin(), events.end(),
                          [&state](const Json& event) { return event["state"] == state; }));
    }
    Json status(const std::string& err) const
    {
        const Outcome outcome = sel({"status", "--board", "1", "--ndjson"});
        EXPECT_EQ(outcome.status, err.empty() ? 0 : 1);
        EXPECT_EQ(outcome.err, err);
        return Json::parse(outcome.out);
    }
};

}

TEST_F(DamagedLog, IsListedInOrderWhileItIsSound)
{
    const std::vector<Json> events = listedWith("");
    EXPECT_EQ(idsOf(events), range(1, 5962));
    EXPECT_EQ(countOf(events, "regular"), 5962U);
    const Json all = status("");
    EXPECT_EQ(all["events"], 5962);
    EXPECT_EQ(all["events_counted"], 5962);
}

TEST_F(DamagedLog, GapInTheChainHidesNoEvent)
{
    std::filesystem::remove(kept(1, 3));
    const std::string problem = "recordkit: " + kept(1, 3) +
                                ": missing, so that the store does not reach the files after it";
    const std::string shown =
        problem + "; 3200 events that the store does not count are shown" + remedy();
    const std::vector<Json> events = listedWith(shown);
    Ids expected = range(1, 3200);
    const Ids rest = range(4001, 5962);
    expected.insert(expected.end(), rest.begin(), rest.end());
    EXPECT_EQ(idsOf(events), expected);
    EXPECT_EQ(countOf(events, "unreachable"), 3200U);
    EXPECT_EQ(countOf(events, "regular"), 1962U);
    EXPECT_EQ(events[0]["file"], 7);
    EXPECT_EQ(events[0]["log"], nullptr);
    EXPECT_EQ(events[3200]["log"], 1);

    const Outcome one = sel({"show", "1", "--board", "1"});
    EXPECT_EQ(one.status, 1);
    EXPECT_EQ(one.err, shown);
    EXPECT_NE(one.out.find("stored in         sel7, slot 0 (unreachable)\n"), std::string::npos);

    const Json all = status(shown);
    EXPECT_EQ(all["events"], 5162);
    EXPECT_EQ(all["events_counted"], 1962);
    EXPECT_EQ(all["rotated_files"], 6);

    const std::string hidden =
        problem + "; 3200 events that the store does not count are not shown" + remedy();
    EXPECT_EQ(idsOf(listedWith(hidden, {"--strict"})), rest);
    const Outcome strict = sel({"show", "1", "--board", "1", "--strict"});
    EXPECT_EQ(strict.status, 1);
    EXPECT_EQ(strict.err, hidden + "recordkit: board 1 has no event with record id 0001h\n");
}

TEST_F(DamagedLog, CutOffRotationHidesNoEvent)
{
    std::filesystem::rename(working(1), kept(1, 0));
    writeFile(working(1), Bytes(FULL_FILE, 0xFF));
    const std::string err =
        "recordkit: " + kept(1, 0) +
        ": contains events that the working file does not: a rotation was cut off; 362 events that "
        "the store does not count are shown" +
        remedy();
    const std::vector<Json> events = listedWith(err);
    EXPECT_EQ(idsOf(events), range(1, 5962));
    EXPECT_EQ(countOf(events, "backup"), 362U);
    EXPECT_EQ(events[5600]["file"], 0);
    EXPECT_EQ(idsOf(listedWith(err, {"--since", "2024-11-04T18:49:44Z"})), range(5960, 5962));
    EXPECT_EQ(status(err)["events"], 5962);
}

TEST_F(DamagedLog, BackupThatRepeatsTheWorkingFileIsNotListed)
{
    ASSERT_EQ(sel({"backup", "--board", "1"}).status, 0);
    EXPECT_EQ(idsOf(listedWith("")), range(1, 5962));
    patchFile(working(1), 2, {0xA5, 0xA5}); // id 5601 becomes A5A5h
    const std::vector<Json> events =
        listedWith("recordkit: " + kept(1, 0) +
                   ": contains events that the working file does not: a rotation was cut off; 1 "
                   "event that the store does not count is shown" +
                   remedy());
    ASSERT_EQ(events.size(), 5963U);
    EXPECT_EQ(events[5600]["id"], 5601);
    EXPECT_EQ(events[5600]["state"], "backup");
    EXPECT_EQ(events[5601]["id"], 0xA5A5);
}

TEST_F(DamagedLog, EmptyRotatedFileHidesNoOlderEvent)
{
    std::filesystem::resize_file(kept(1, 2), 0);
    const std::vector<Json> events =
        listedWith("recordkit: " + kept(1, 2) +
                   ": 0 bytes long, expected 110400; 4000 events that the store does not count are "
                   "shown" +
                   remedy());
    EXPECT_EQ(events.size(), 5162U);
    EXPECT_EQ(countOf(events, "unreachable"), 4000U);
}

TEST_F(DamagedLog, ShortRotatedFileIsShownAsFarAsItsWholeSlots)
{
    std::filesystem::resize_file(kept(1, 5), 50000);
    const std::string err = "recordkit: " + kept(1, 5) +
                            ": 50000 bytes long, expected 110400; 1962 events that the store does "
                            "not count are shown" +
                            remedy();
    const std::vector<Json> events = listedWith(err);
    EXPECT_EQ(events.size(), 5962U - 438);
    EXPECT_EQ(countOf(events, "damaged"), 362U);
    EXPECT_EQ(countOf(events, "unreachable"), 1600U);
    EXPECT_EQ(status(err)["events"], 5524);
    EXPECT_EQ(status(err)["events_counted"], 3562);
}

TEST_F(DamagedLog, BadSlotHidesNothingAfterIt)
{
    patchFile(kept(1, 5), 400 * SLOT + 2, {0xFF, 0xFF});
    const std::vector<Json> events =
        listedWith("recordkit: " + kept(1, 5) +
                   ": slot 400 (offset 55200) has record id FFFFh but is not empty; 399 slots used "
                   "behind the tail, from slot 401 (offset 55338) on; 799 events that the store "
                   "does not count are shown" +
                   remedy());
    EXPECT_EQ(events.size(), 5961U);
    EXPECT_EQ(countOf(events, "damaged"), 799U);
    EXPECT_EQ(events[2000]["id"], 2002);
    EXPECT_EQ(events[2000]["slot"], 401);
}

TEST_F(DamagedLog, IsRepairedSoThatTheStoreCountsEveryWholeEvent)
{
    std::filesystem::remove(kept(1, 3));
    std::filesystem::resize_file(kept(1, 5), 50000);
    patchFile(kept(1, 2), 10 * SLOT + 2, {0xFF, 0xFF});
    std::filesystem::resize_file(working(1), 300 * SLOT);
    const Outcome outcome = sel({"check", "--recover", "--board", "1"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.out.substr(0, outcome.out.find("board 1: sound\n")),
              "board 1: sel4 renamed to sel3\n"
              "board 1: sel5 renamed to sel4\n"
              "board 1: sel6 renamed to sel5\n"
              "board 1: sel7 renamed to sel6\n"
              "board 1: " +
                  working(1) +
                  " written again with 300 events\n"
                  "board 1: " +
                  kept(1, 2) + " written again with 799 events, as it was in " + kept(1, 2) +
                  ".damaged-1\n"
                  "board 1: " +
                  kept(1, 4) + " written again with 362 events, as it was in " + kept(1, 4) +
                  ".damaged-1\n");
    const std::vector<Json> events = listedWith("");
    EXPECT_EQ(events.size(), 4U * 800 + 362 + 799 + 300);
    EXPECT_EQ(countOf(events, "regular"), events.size());
    EXPECT_EQ(readFile(kept(1, 4) + ".damaged-1").size(), 50000U);
    // Nothing is left to do.
    const auto before = snapshot();
    EXPECT_EQ(sel({"check", "--recover", "--board", "1"}).out.find("board 1: sound\n"), 0U);
    EXPECT_EQ(snapshot(), before);
}

TEST_F(DamagedLog, UnreadableFileIsMovedAside)
{
    std::filesystem::remove(kept(1, 7));
    std::filesystem::create_directory(kept(1, 7));
    const Outcome outcome = sel({"check", "--recover", "--board", "1"});
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(outcome.out.find("board 1: " + kept(1, 7) + " renamed to " + kept(1, 7) +
                               ".damaged-1: Is a directory\nboard 1: sound\n"),
              0U)
        << outcome.out;
}

TEST_F(DamagedLog, FullChainLosesNoFileToARotationThatWasCutOff)
{
    std::filesystem::rename(working(1), kept(1, 0));
    writeFile(working(1), Bytes(FULL_FILE, 0xFF));
    const Outcome outcome = sel({"check", "--recover", "--board", "1"});
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(outcome.out.find("board 1: " + kept(1, 7) + " renamed to " + kept(1, 7) +
                               ".damaged-1: the chain has no room for it\nboard 1: sel6 renamed to "
                               "sel7\n"),
              0U)
        << outcome.out;
    EXPECT_EQ(idsOf(listedWith("")), range(801, 5962));
    EXPECT_EQ(sel({"rescue", kept(1, 7) + ".damaged-1", "-o", root.at("/rescued")}).out,
              kept(1, 7) + ".damaged-1: 800 events\n800 events written to " + root.at("/rescued") +
                  "\n");
}

TEST_F(DamagedLog, ShortBackupIsRepairedWithoutLoss)
{
    // As a rotation leaves it that had no space for the copy.
    writeFile(working(1), eventFile(800, 5601));
    Bytes copied = eventFile(800, 5601);
    copied.resize(40000);
    writeFile(kept(1, 0), copied);
    EXPECT_EQ(idsOf(listedWith("recordkit: " + kept(1, 0) + ": 40000 bytes long, expected 110400" +
                               remedy())),
              range(1, 6400));
    const Outcome outcome = sel({"check", "--recover", "--board", "1"});
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(outcome.out.find("board 1: " + kept(1, 0) + " renamed to " + kept(1, 0) +
                               ".damaged-1: other files contain all of its events\nboard 1: "
                               "sound\n"),
              0U)
        << outcome.out;
    EXPECT_EQ(idsOf(listedWith("")), range(1, 6400));
}

TEST_F(DamagedLog, MissingWorkingFileIsRestoredFromItsBackup)
{
    std::filesystem::rename(working(1), kept(1, 0));
    EXPECT_EQ(idsOf(listedWith("recordkit: " + working(1) +
                               ": cannot be read: No such file or directory; 362 events that the "
                               "store does not count are shown" +
                               remedy())),
              range(1, 5962));
    const Outcome outcome = sel({"check", "--recover", "--board", "1"});
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(
        outcome.out.find("board 1: " + working(1) + " restored from its backup\nboard 1: sound\n"),
        0U)
        << outcome.out;
    EXPECT_EQ(idsOf(listedWith("")), range(1, 5962));
}

TEST_F(DamagedLog, FileThatIsMuchTooLongIsKeptAsItIs)
{
    const std::uintmax_t size = std::uintmax_t{65537} * SLOT;
    std::filesystem::resize_file(kept(1, 7), size);
    const Outcome outcome = sel({"check", "--recover", "--board", "1"});
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(std::filesystem::file_size(kept(1, 7) + ".damaged-1"), size);
    EXPECT_EQ(readFile(kept(1, 7)).size(), FULL_FILE);
}
