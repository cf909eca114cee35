// SPDX-License-Identifier: Apache-2.0
#include "tool/sel/SelTest.h"

using namespace testing_support;

namespace {

class SelShow : public SelTest {};

}

TEST_F(SelShow, ExplainsEveryFieldAndByte)
{
    initialise();
    ASSERT_EQ(sel({"add", "-", "--partitions", "0,2", "--part-number", "PN-1"},
                  eventAt(0x1A, TIME_2, FAN_WARNING))
                  .status,
              0);
    const Outcome shown = sel({"show", "0x1A"});
    EXPECT_EQ(shown.status, 0) << shown.err;
    for (const char* part :
         {"record id         001Ah\n", "time              2024-11-05 06:07:08\n",
          "severity          warning\n", "generator         slave address 20h, LUN 0, channel 0\n",
          "sensor type       04h Fan\n", "event             Lower Non-critical - going low\n",
          "event data 1      50h\nevent data 2      reading 01h\nevent data 3      threshold 02h\n",
          "partitions        0,2\n", "part number       PN-1\n", "     5  0c b6 29 67",
          "    10  00                                               generator_id_2, lun\n",
          "    15  50                                               event_data_1\n",
          "    87  05 00                                            partition_bitmask\n",
          "   134  00 00 00 00                                      carried unchanged\n"}) {
        EXPECT_NE(shown.out.find(part), std::string::npos) << part << "\n" << shown.out;
    }
    EXPECT_EQ(sel({"show", "26"}).out, shown.out);
    EXPECT_EQ(sel({"show", "--log", "1"}).out, shown.out);
    EXPECT_EQ(Json::parse(sel({"show", "26", "--json"}).out)[0]["id"], 26);
}

TEST_F(SelShow, SaysWhatEachByteOfEventDataMeans)
{
    initialise();
    const auto shownData = [this](const std::string& data) {
        sel({"clear", "--yes"});
        EXPECT_EQ(sel({"add", "-"}, eventAt(1, TIME_2, "0c406f" + data)).status, 0);
        const std::string out = sel({"show", "1"}).out;
        const std::size_t start = out.find("event data 1");
        return out.substr(start, out.find("partitions") - start);
    };
    EXPECT_EQ(shownData("31ff03"), "event data 1      31h\n"
                                   "event data 2      unspecified FFh\n"
                                   "event data 3      sensor-specific 03h: memory module 3\n");
    EXPECT_EQ(shownData("a11234"), "event data 1      A1h\n"
                                   "event data 2      OEM code 12h\n"
                                   "event data 3      OEM code 34h\n");
    EXPECT_EQ(shownData("51f634"), "event data 1      51h\n"
                                   "event data 2      previous state and severity F6h: previous "
                                   "state Presence detected\n"
                                   "event data 3      reserved 34h\n");
    EXPECT_EQ(shownData("c11234"), "event data 1      C1h\n"
                                   "event data 2      sensor-specific 12h\n"
                                   "event data 3      unspecified 34h\n");
}

TEST_F(SelShow, LetsNoControlCharacterOfARecordThrough)
{
    initialise();
    std::string oem(112, '0');           // 56 extended bytes as hex
    oem.replace(30, 12, "c5411b5b319b"); // part number: A, ESC, [, 1, CSI
    const std::string image = "ffff" + eventAt(1, TIME_2, FAN_WARNING).substr(0, 32) + oem;
    ASSERT_EQ(sel({"add", "-"}, image).status, 0);
    EXPECT_NE(sel({"show", "1"}).out.find("part number       A\\x1B[1\\x9B\n"), std::string::npos);
    EXPECT_EQ(listed({}).at(0)["part_number"], "A\x1b[1\xc2\x9b");
}

TEST_F(SelShow, DumpsEveryByteOfEveryKindOfRecordOnce)
{
    initialise();
    const std::string records =
        eventAt(1, TIME_1, FAN_WARNING) + hexRecord(2, "c0" + TIME_1 + "570100010203040506") +
        hexRecord(3, "e00102030405060708090a0b0c0d") + hexRecord(4, "050102030405060708090a0b0c0d");
    ASSERT_EQ(sel({"add", "-", "--force"}, records).status, 0);
    for (int log = 1; log <= 4; ++log) {
        const std::string out = sel({"show", "--log", std::to_string(log)}).out;
        std::istringstream lines(out.substr(out.find("offset  bytes")));
        std::string line;
        std::getline(lines, line);
        unsigned int next = 0;
        while (std::getline(lines, line)) {
            EXPECT_EQ(std::stoul(line.substr(0, 6)), next) << out;
            std::istringstream bytes(line.substr(8, 47));
            for (std::string byte; bytes >> byte;) {
                ++next;
            }
        }
        EXPECT_EQ(next, 138U);
    }
}

TEST_F(SelShow, FindsTheNewestOfSeveralAndEventsInRotatedFiles)
{
    initialise();
    ASSERT_EQ(sel({"add", "-"}, eventAt(1, TIME_1, THERMAL_TRIP)).status, 0);
    ASSERT_EQ(sel({"rotate"}).status, 0);
    ASSERT_EQ(sel({"add", "-"}, eventAt(2, TIME_1, THERMAL_TRIP)).status, 0);
    EXPECT_NE(sel({"show", "1"}).out.find("stored in         sel1, slot 0"), std::string::npos);
    ASSERT_EQ(sel({"add", "-"}, eventAt(1, TIME_2, THERMAL_TRIP)).status, 0);
    EXPECT_NE(sel({"show", "1"}).out.find("stored in         sel0, slot 1"), std::string::npos);
    EXPECT_NE(sel({"show", "--log", "1"}).out.find("sel1, slot 0"), std::string::npos);
}

TEST_F(SelShow, RefusesWhatIsNotThere)
{
    initialise();
    fill(2);
    expectRefused(1, {"show", "9", "--board", "1"}, "board 1 has no event with record id 0009h");
    expectRefused(1, {"show", "--log", "3", "--board", "1"}, "no event with log number 3");
    expectRefused(1, {"show", "--log", "0", "--board", "1"}, "no event with log number 0");
    expectRefused(2, {"show"}, "expected a record id or --log N");
    expectRefused(2, {"show", "1", "--log", "1"}, "expected a record id or --log N");
    expectRefused(2, {"show", "65536"}, "(expected 0 to 65535)");
    expectRefused(2, {"show", "x"}, "(expected 0 to 65535)");
}
