// SPDX-License-Identifier: Apache-2.0
// Events in files that no root contains: listed, shown, rescued.
#include <recordkit/inspect/bytes/Hex.h>

#include "support/Answers.h"
#include "support/EventFiles.h"
#include "tool/sel/SelTest.h"

using namespace testing_support;
using recordkit::inspect::toLowerHex;

namespace {

class SavedEvents : public SelTest {
protected:
    std::string file(const std::string& name, const Bytes& bytes) const
    {
        writeFile(root.at("/" + name), bytes);
        return root.at("/" + name);
    }
    Ids ids(const Arguments& files) const
    {
        Arguments words = {"list", "--ndjson"};
        words.insert(words.end(), files.begin(), files.end());
        const Outcome outcome = sel(words);
        EXPECT_EQ(outcome.status, 0) << outcome.err;
        return idsOf(outcome);
    }
    static Ids idsOf(const Outcome& outcome)
    {
        Ids found;
        std::istringstream lines(outcome.out);
        for (std::string line; std::getline(lines, line);) {
            found.push_back(Json::parse(line)["id"].get<int>());
        }
        return found;
    }
};

}

TEST_F(SavedEvents, AreListedWithoutARoot)
{
    const Outcome outcome = sel({"list", EVENTS, "--json"});
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    const Json events = Json::parse(outcome.out);
    ASSERT_EQ(events.size(), 166U);
    EXPECT_EQ(events[150]["manufacturer"], 0x000157);
    EXPECT_EQ(events[150]["source"], EVENTS);
    EXPECT_EQ(events[150]["slot"], 150);
    for (const char* key : {"board", "log", "file", "state"}) {
        EXPECT_EQ(events[150][key], nullptr) << key;
    }
    EXPECT_EQ(sel({"list", "-"}, eventAt(0x1A, TIME_2, THERMAL_TRIP)).out,
              "BOARD  LOG   ID     TIME (UTC)           SEVERITY         SENSOR TYPE               "
              "SENSOR  DIRECTION   DATA    PARTITIONS  EVENT\n"
              "-      -     001Ah  2024-11-05 06:07:08  non-recoverable  Processor                 "
              "70h     asserted    01ffff  -           Thermal Trip\n");
}

TEST_F(SavedEvents, OfEveryFormAreMergedByTime)
{
    const std::string log = file("sb1_bmc_sel3", eventFile(3, 1));
    const std::string hex = root.at("/hex");
    writeFile(hex, toLowerHex(eventSlot(10, FIRST_TIME - 9)) + "\n");
    EXPECT_EQ(ids({log, hex}), Ids({1, 10, 2, 3}));
    EXPECT_EQ(ids({log, hex, "--last", "1"}), Ids({3}));
    const std::string ndjson = root.at("/ndjson");
    writeFile(ndjson, sel({"list", "--ndjson", log}).out);
    EXPECT_EQ(ids({ndjson}), Ids({1, 2, 3}));
    EXPECT_EQ(ids({file("empty", Bytes(FULL_FILE, 0xFF))}), Ids());
}

TEST_F(SavedEvents, OfADamagedFileAreShownAsFarAsTheyAreWhole)
{
    Bytes bytes = eventFile(800, 1);
    bytes.resize(10 * SLOT + 7);
    bytes[2 * SLOT + 2] = bytes[2 * SLOT + 3] = 0xFF;
    const std::string path = file("sb1_bmc_sel3", bytes);
    const Outcome outcome = sel({"list", "--ndjson", path});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err, "recordkit: " + path + ": 1 damaged slot\nrecordkit: " + path +
                               ": the last 7 bytes are not a whole slot\n");
    EXPECT_EQ(idsOf(outcome), Ids({1, 2, 4, 5, 6, 7, 8, 9, 10}));
}

TEST_F(SavedEvents, AreNotWhatAnyFileContains)
{
    writeFile(root.at("/fru"),
              contentOf(RECORDKIT_EXAMPLE_DATA "/fru/ascii-all.bin").substr(0, 192));
    const Outcome outcome = sel({"list", "--ndjson", root.at("/fru"), EVENTS});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err, "recordkit: " + root.at("/fru") +
                               ", offset 0: record type 01h is unknown; this is not a list of "
                               "events\nrecordkit: 1 of 2 files is damaged\n");
    EXPECT_EQ(idsOf(outcome).size(), 166U);
    EXPECT_EQ(sel({"list", root.at("/none")}).status, 3);
    EXPECT_EQ(sel({"list", EVENTS, "--follow"}).status, 2);
    EXPECT_EQ(sel({"list", EVENTS, "--strict"}).status, 2);
}

TEST_F(SavedEvents, AreShownById)
{
    const std::string log = file("sb1_bmc_sel3", eventFile(3, 1));
    const Outcome shown = sel({"show", log, "0x2"});
    EXPECT_EQ(shown.status, 0) << shown.err;
    EXPECT_EQ(shown.out.find("board             -\nlog number        -\nstored in         " + log +
                             ", record 1\nrecord id         0002h\n"),
              0U)
        << shown.out;
    const Outcome absent = sel({"show", log, "9"});
    EXPECT_EQ(absent.status, 1);
    EXPECT_EQ(absent.err, "recordkit: no file has an event with record id 0009h\n");
    EXPECT_EQ(sel({"show", log, "x"}).status, 2);
}

TEST_F(SavedEvents, AreRescuedFromAnyBytes)
{
    Bytes dump = sequence(1000, 3);
    for (unsigned int id = 1; id <= 3; ++id) {
        const Bytes slot = eventSlot(id);
        dump.insert(dump.end(), slot.begin(), slot.end());
        dump.insert(dump.end(), id, 0x5A);
    }
    dump.resize(dump.size() - 10); // the third one is not whole
    const std::string path = file("dump", dump);
    const std::string out = root.at("/out");
    const Outcome outcome = sel({"rescue", path, "-o", out});
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(outcome.out, path + ": 2 events\n2 events written to " + out + "\n");
    EXPECT_EQ(contentOf(out),
              toLowerHex(eventSlot(1)) + " # " + path +
                  ", offset 1000: 0001h 2024-11-04 17:10:25 Lower Non-critical - going low\n" +
                  toLowerHex(eventSlot(2)) + " # " + path +
                  ", offset 1139: 0002h 2024-11-04 17:10:26 Lower Non-critical - going low\n");
    EXPECT_EQ(ids({out}), Ids({1, 2}));
    initialise();
    EXPECT_EQ(sel({"add", out}).out, "2 events stored on board 0\n");
    expectRefused(2, {"rescue", path, "-o", path}, "is an input and would be replaced");
    expectRefused(2, {"rescue", path}, "-o");
}
