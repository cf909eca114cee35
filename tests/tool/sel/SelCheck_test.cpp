// SPDX-License-Identifier: Apache-2.0
#include "tool/sel/SelTest.h"

using namespace testing_support;

namespace {

using Ids = std::vector<int>;

class SelCheck : public SelTest {};

}

TEST_F(SelCheck, NamesWhatIsWrongAndRecovers)
{
    initialise();
    fill(5);
    ASSERT_EQ(sel({"backup", "--board", "1"}).status, 0);
    EXPECT_EQ(sel({"check"}).status, 0);
    writeFile(working(1), Bytes(FULL_FILE, 0xFF)); // as an interrupted rotation leaves it
    const Outcome checked = sel({"check", "--board", "1"});
    EXPECT_EQ(checked.status, 1);
    EXPECT_NE(checked.out.find("holds 5 events that the working file does not"), std::string::npos);
    expectRefused(1, {"rotate", "--board", "1"}, "nothing to rotate");
    const Outcome recovered = sel({"check", "--board", "1", "--recover"});
    EXPECT_EQ(recovered.status, 0) << recovered.err;
    EXPECT_EQ(recovered.out.find("board 1: sel0 renamed to sel1\nboard 1: sound\n"), 0U)
        << recovered.out;
    EXPECT_EQ(listedIds({"--board", "1"}), Ids({1, 2, 3, 4, 5}));
}

TEST_F(SelCheck, InJsonHasFilesFindingsAndActions)
{
    initialise();
    fill(2);
    patchFile(working(1), 2 * SLOT + 9, {0});
    const Outcome outcome = sel({"check", "--board", "1", "--json"});
    EXPECT_EQ(outcome.status, 1);
    const Json json = Json::parse(outcome.out);
    EXPECT_EQ(json[0]["sound"], false);
    EXPECT_EQ(json[0]["files"].size(), 9U);
    EXPECT_EQ(json[0]["files"][0]["events"], 2);
    EXPECT_EQ(json[0]["files"][0]["first_id"], 1);
    EXPECT_EQ(json[0]["findings"].size(), 1U);
    EXPECT_EQ(json[0]["actions"], Json::array());
    const Outcome recovered = sel({"check", "--board", "1", "--json", "--recover"});
    EXPECT_EQ(recovered.status, 0);
    const Json after = Json::parse(recovered.out);
    EXPECT_EQ(after[0]["sound"], true);
    EXPECT_EQ(after[0]["actions"],
              Json({working(1) + " written again with 2 events, as it was in " + kept(1, 0) +
                    ".damaged-1"}));
}

TEST_F(SelCheck, MovesARecordWithTheIdOfAnEmptySlotAside)
{
    // The library stores such a record, which then ends the log.
    initialise();
    fill(3);
    patchFile(working(1), 1 * SLOT + 2, {0xFF, 0xFF});
    const Bytes before = readFile(working(1));
    EXPECT_EQ(sel({"add", "-", "--board", "1"}, eventAt(9, TIME_1, THERMAL_TRIP)).status, 1);
    const Outcome outcome = sel({"check", "--board", "1", "--recover"});
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_NE(outcome.out.find("board 1: " + working(1) +
                               " written again with 2 events, as it was "
                               "in " +
                               kept(1, 0) + ".damaged-1\n"),
              std::string::npos)
        << outcome.out;
    EXPECT_EQ(readFile(kept(1, 0) + ".damaged-1"), before);
    EXPECT_EQ(sel({"add", "-", "--board", "1"}, eventAt(9, TIME_1, THERMAL_TRIP)).status, 0);
    EXPECT_EQ(listedIds({"--board", "1"}), Ids({1, 3, 9}));
}
