// SPDX-License-Identifier: Apache-2.0
#include "tool/sel/SelTest.h"

using namespace testing_support;

namespace {

/// Saved events of sensors of the example repository, and one of another sensor.
class EventFilter : public SelTest {
protected:
    void SetUp() override
    {
        writeFile(root.at("/events"), eventAt(1, TIME_1, "04100152080a") +     // FAN1
                                          eventAt(2, TIME_1, "04118152ff0a") + // FAN2, deasserted
                                          eventAt(3, TIME_1, "0c506fa01203") + // DIMM 1 ECC
                                          eventAt(4, TIME_1, "07ee6f01ffff") +
                                          hexRecord(5, "c0" + TIME_1 +
                                                           "0102030405060708"
                                                           "09"));
    }
    Ids chosen(const Arguments& options) const
    {
        Arguments words = {root.at("/events"), "--sdr",
                           RECORDKIT_EXAMPLE_DATA "/sdr/repository.sdr"};
        words.insert(words.end(), options.begin(), options.end());
        return listedIds(words);
    }
};

}

TEST_F(EventFilter, ChoosesBySensor)
{
    EXPECT_EQ(chosen({"--sensor", "0x10"}), Ids({1}));
    EXPECT_EQ(chosen({"--sensor", "10h"}), Ids({1}));
    EXPECT_EQ(chosen({"--sensor", "fan2"}), Ids({2}));
    EXPECT_EQ(chosen({"--sensor", "FAN"}), Ids({1, 2})) << "the beginning of several names";
    EXPECT_EQ(chosen({"--sensor", "an1"}), Ids());
    EXPECT_EQ(chosen({"--sensor", "0xEE"}), Ids({4})) << "a sensor that no record describes";
    EXPECT_EQ(chosen({"--sensor", "0"}), Ids()) << "not the OEM record either";
}

TEST_F(EventFilter, NeedsSensorDataRecordsForNames)
{
    for (const Arguments& words : {Arguments({"--sensor", "FAN1"}), {"--entity", "29"}}) {
        Arguments all = {"list", root.at("/events")};
        all.insert(all.end(), words.begin(), words.end());
        const Outcome outcome = sel(all);
        EXPECT_EQ(outcome.status, 2);
        EXPECT_EQ(outcome.out, "");
        EXPECT_EQ(outcome.err, "recordkit: names of sensors and entities are in sensor data "
                               "records; give them with --sdr\n");
    }
    EXPECT_EQ(listedIds({root.at("/events"), "--sensor", "0x10"}), Ids({1}));
    EXPECT_EQ(sel({"list", root.at("/events"), "--sensor", ""}).status, 2);
}

TEST_F(EventFilter, ChoosesByEntity)
{
    EXPECT_EQ(chosen({"--entity", "29"}), Ids({1, 2}));
    EXPECT_EQ(chosen({"--entity", "29.2"}), Ids({2}));
    EXPECT_EQ(chosen({"--entity", "2"}), Ids());
    EXPECT_EQ(chosen({"--entity", "32.1"}), Ids({3}));
}

TEST_F(EventFilter, ChoosesByDirection)
{
    EXPECT_EQ(chosen({"--asserted"}), Ids({1, 3, 4}));
    EXPECT_EQ(chosen({"--deasserted"}), Ids({2}));
    const Outcome both = sel({"list", root.at("/events"), "--asserted", "--deasserted"});
    EXPECT_EQ(both.status, 2);
    EXPECT_EQ(both.err, "recordkit: --asserted and --deasserted exclude each other\n");
}

TEST_F(EventFilter, ChoosesByText)
{
    EXPECT_EQ(chosen({"--event", "lower critical"}), Ids({1, 2}));
    EXPECT_EQ(chosen({"--event", "480 <"}), Ids({1}));
    EXPECT_EQ(chosen({"--event", "fan1"}), Ids()) << "the name is not in the event";
    EXPECT_EQ(chosen({"--grep", "fan1"}), Ids({1}));
    EXPECT_EQ(chosen({"--grep", "MEMORY"}), Ids({3})) << "the sensor type";
    EXPECT_EQ(chosen({"--grep", "manufacturer"}), Ids({5}));
    ASSERT_EQ(sel({"init"}).status, 0);
    ASSERT_EQ(sel({"add", root.at("/events"), "--part-number", "CA0123", "--serial-number", "SN77"})
                  .status,
              0);
    EXPECT_EQ(listedIds({"--grep", "ca01"}), Ids({1, 2, 3, 4, 5}));
    EXPECT_EQ(listedIds({"--grep", "sn77"}), Ids({1, 2, 3, 4, 5}));
    EXPECT_EQ(listedIds({"--grep", "CA0123SN77"}), Ids());
}

TEST_F(EventFilter, CombinesAll)
{
    EXPECT_EQ(chosen({"--sensor", "FAN", "--asserted", "--event", "critical", "--severity",
                      "critical", "--entity", "29"}),
              Ids({1}));
    EXPECT_EQ(chosen({"--sensor", "FAN", "--grep", "ECC"}), Ids());
}
