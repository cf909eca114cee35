// SPDX-License-Identifier: Apache-2.0
#include "support/Bytes.h"
#include "support/Terminal.h"
#include "tool/sel/SelTest.h"

using namespace testing_support;

namespace {

class SelDiff : public SelTest {
protected:
    void SetUp() override
    {
        writeFile(root.at("/monday"),
                  eventAt(1, TIME_1, THERMAL_TRIP) + eventAt(2, TIME_1, FAN_WARNING));
        writeFile(root.at("/tuesday"),
                  eventAt(7, TIME_1, FAN_WARNING) + eventAt(8, TIME_2, FAN_INSERTED));
    }
    /// The differences as "ID of FILE".
    std::vector<std::string> different(const Arguments& options) const
    {
        Arguments words = {"diff", "--ndjson"};
        words.insert(words.end(), options.begin(), options.end());
        const Outcome outcome = sel(words);
        EXPECT_EQ(outcome.status, outcome.out.empty() ? 0 : 1) << outcome.err;
        EXPECT_EQ(outcome.err, "");
        std::vector<std::string> found;
        std::istringstream lines(outcome.out);
        for (std::string line; std::getline(lines, line);) {
            const Json event = Json::parse(line);
            std::string side = event["only_in"];
            side = side.substr(side.rfind('/') + 1);
            found.push_back(std::to_string(event["id"].get<int>()) + " of " + side);
        }
        return found;
    }
    std::string monday() const { return root.at("/monday"); }
    std::string tuesday() const { return root.at("/tuesday"); }
};

using Differences = std::vector<std::string>;

}

TEST_F(SelDiff, ComparesFiles)
{
    EXPECT_EQ(different({monday(), tuesday()}), (Differences{"1 of monday", "8 of tuesday"}));
    EXPECT_EQ(different({monday(), monday()}), Differences());
    EXPECT_EQ(different({monday(), tuesday(), "--severity", "critical"}),
              Differences{"1 of monday"});
    EXPECT_EQ(different({monday(), tuesday(), "--event", "insert"}), Differences{"8 of tuesday"});
    const Outcome table = sel({"diff", monday(), tuesday(), "--columns", "only_in,id"});
    EXPECT_EQ(table.status, 1);
    EXPECT_EQ(table.out,
              "ONLY IN           ID\n" + monday() + "  0001h\n" + tuesday() + "  0008h\n");
}

TEST_F(SelDiff, ReadsStandardInput)
{
    const Outcome outcome = sel({"diff", monday(), "-", "--csv", "--fields", "only_in,id"},
                                eventAt(1, TIME_1, THERMAL_TRIP));
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, "only_in,id\r\n" + monday() + ",2\r\n");
}

TEST_F(SelDiff, ComparesBoardsFilesAndRoots)
{
    initialise();
    ASSERT_EQ(sel({"add", monday(), "--board", "1"}).status, 0);
    ASSERT_EQ(sel({"add", tuesday(), "--board", "2", "--part-number", "CA1"}).status, 0);
    EXPECT_EQ(different({"1", monday()}), Differences());
    EXPECT_EQ(different({"1", "2"}), (Differences{"1 of board 1", "8 of board 2"}))
        << "the fan's warnings with and without a part number";
    EXPECT_EQ(different({"1", "1"}), Differences());
    EXPECT_EQ(different({root.path(), root.path()}), Differences());

    const ScratchRoot copy;
    std::filesystem::copy(root.path(), copy.path(),
                          std::filesystem::copy_options::recursive |
                              std::filesystem::copy_options::overwrite_existing);
    EXPECT_EQ(different({root.path(), copy.path()}), Differences());
    ASSERT_EQ(sel({"add", tuesday(), "--board", "1"}).status, 0);
    ASSERT_EQ(different({root.path(), copy.path()}).size(), 2U) << "board 1, not board 2";
    EXPECT_EQ(different({root.path(), copy.path(), "--board", "2"}), Differences());
    // The root of the command line is the one of boards, also after another one was read.
    EXPECT_EQ(different({copy.path(), "1"}), Differences());
}

TEST_F(SelDiff, ComparesRootsBoardByBoard)
{
    const ScratchRoot other;
    initialise();
    ASSERT_EQ(run(ourCommand({"--root", other.path(), "sel", "init"})).status, 0);
    ASSERT_EQ(sel({"add", monday(), "--board", "1"}).status, 0);
    ASSERT_EQ(
        run(ourCommand({"--root", other.path(), "sel", "add", monday(), "--board", "2"})).status,
        0);
    EXPECT_EQ(different({root.path(), other.path()}).size(), 4U);
    EXPECT_EQ(different({"1", other.path()}), Differences()) << "one side has no boards";
}

TEST_F(SelDiff, KnowsWhatIsStillAsserted)
{
    writeFile(monday(), eventAt(1, TIME_1, "04100152080a") + eventAt(2, TIME_1, "04108152080a") +
                            eventAt(3, TIME_1, "04110152080a"));
    EXPECT_EQ(different({monday(), tuesday(), "--still-asserted", "--severity", "critical"}),
              Differences{"3 of monday"});
}

TEST_F(SelDiff, NamesEvents)
{
    writeFile(root.at("/rules"), textBytes("sensor-type=4 \"ours\"\nsensor-type=4\n"));
    const Outcome outcome =
        sel({"diff", monday(), monday(), "--rules", root.at("/rules"), "--event", "ours"});
    EXPECT_EQ(outcome.status, 1) << "a rule is damaged";
    EXPECT_NE(outcome.err.find("line 2: "), std::string::npos);
    const std::string sdr = RECORDKIT_EXAMPLE_DATA "/sdr/repository.sdr";
    EXPECT_NE(sel({"diff", monday(), tuesday(), "--sdr", sdr, "--sensor", "FAN1"}).out.find("FAN1"),
              std::string::npos);
    // The repository of the root is for its boards, not for files.
    initialise();
    ASSERT_EQ(sel({"add", monday(), "--board", "1"}).status, 0);
    std::filesystem::create_directories(root.at("/etc/default/config"));
    std::filesystem::copy_file(sdr, root.at("/etc/default/config/sdr.bin"));
    EXPECT_EQ(sel({"diff", "1", "2", "--sensor", "FAN1"}).status, 1);
    EXPECT_EQ(sel({"diff", "1", tuesday(), "--sensor", "FAN1"}).status, 2);
}

TEST_F(SelDiff, NamesAnotherRootAsItWasGiven)
{
    const std::string other = root.at("/a b");
    ASSERT_EQ(run(ourCommand({"--root", other, "sel", "init"})).status, 0);
    std::filesystem::resize_file(other + "/tmp/sb1_bmc_sel0", 200);
    const Outcome outcome = sel({"diff", other, monday()});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err.find("recordkit: " + other + "/tmp/sb1_bmc_sel0: "), 0U) << outcome.err;
}

TEST_F(SelDiff, ReportsWhatItCannotRead)
{
    const auto expectError = [this](int status, const Arguments& words, const std::string& text) {
        Arguments all = {"diff"};
        all.insert(all.end(), words.begin(), words.end());
        const Outcome outcome = sel(all);
        EXPECT_EQ(outcome.status, status) << outcome.err;
        EXPECT_NE(outcome.err.find(text), std::string::npos) << outcome.err;
    };
    std::filesystem::create_directories(root.at("/empty"));
    expectError(2, {monday()}, "B");
    std::filesystem::remove_all(root.at("/tmp"));
    std::filesystem::remove_all(root.at("/var"));
    expectError(3, {"1", monday()}, "sel init creates it");
    expectError(3, {root.at("/empty"), monday()}, root.at("/empty") + "/tmp is missing");
    expectError(3, {monday(), root.at("/none")}, root.at("/none"));
    expectError(3, {"4", monday()}, "4");
    initialise();
    std::filesystem::resize_file(working(1), 200);
    expectError(1, {"1", "1"}, working(1) + ": ");
    expectError(1, {root.path(), monday()}, working(1) + ": ");
}

TEST_F(SelDiff, NamesTheSidesOnANarrowTerminal)
{
    Arguments words = ourCommand({"sel", "diff", monday(), tuesday()});
    std::string shown;
    if (!runOnTerminal(words, {}, shown, 80)) {
        GTEST_SKIP() << "there is no terminal here";
    }
    EXPECT_EQ(shown.substr(0, 7), "ONLY IN") << shown;
    EXPECT_NE(shown.find("EVENT"), std::string::npos) << shown;
}
