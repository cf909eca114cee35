// SPDX-License-Identifier: Apache-2.0
#include <recordkit/util/Util.h>

#include <filesystem>
#include <gtest/gtest.h>

#include <recordkit/host/Machine.h>

#include "fru/MemoryDevice.h"
#include "support/ScratchRoot.h"

using namespace testing_support;
using TAVLib::ipmiclient::IPMIClientCommand;
using TAVLib::RecordKit::Util;

namespace {

/// What no conversion gives, so that a type that is not set is seen.
constexpr auto NO_TYPE = static_cast<Util::BoardType>(-1);

struct Unit {
    int type;
    int unit;
    int side;
};

Unit unitOf(unsigned int nodeId)
{
    Util::BoardType type = NO_TYPE;
    int unit = -1;
    int side = -1;
    Util::nodeId2Unit(static_cast<unsigned char>(nodeId), type, unit, side);
    return {type, unit, side};
}

int nodeIdOf(int type, int unit, int side)
{
    return Util::unit2NodeId(static_cast<Util::BoardType>(type), unit, side);
}

std::string mappingError(const std::string& text, int value)
{
    return "1:82:0x0800 act 1 det 0x0701 msg 20027 (" + text +
           (value == 0 ? ")" : ", " + std::to_string(value) + ")");
}

class UtilTest : public testing::Test {
protected:
    void TearDown() override { TAVLib::host::setMachine({}); }
};

}

TEST_F(UtilTest, BoardIdGivesTypeAndUnit)
{
    const int types[] = {0, 192, 192, 192, 128, 160, 192, 192};
    for (unsigned int id = 0; id < 256; ++id) {
        Util::BoardType type = NO_TYPE;
        int unit = -1;
        Util::boardId2Unit(static_cast<unsigned char>(id), type, unit);
        EXPECT_EQ(type, types[id >> 5]) << id;
        EXPECT_EQ(unit, static_cast<int>(id & 15)) << id;
    }
}

TEST_F(UtilTest, NodeIdGivesItsTypeBitsAndLogicalUnit)
{
    Util::NodeType type = IPMIClientCommand::NODE_SB;
    int lunit = -1;
    Util::nodeId2LUnit(0xF7, type, lunit);
    EXPECT_EQ(static_cast<int>(type), 0xE0);
    EXPECT_EQ(lunit, 7);
}

TEST_F(UtilTest, NodeIdGivesTypeUnitAndSide)
{
    for (unsigned int id = 0; id < 256; ++id) {
        const Unit unit = unitOf(id);
        const unsigned int kind = id >> 5;
        EXPECT_EQ(unit.side, static_cast<int>(id & 1)) << id;
        EXPECT_EQ(unit.unit, static_cast<int>(kind == 0 || kind == 6 ? id & 15 : id >> 1 & 7))
            << id;
        const int type = id < 128 ? 0 : (id & 0x40) != 0 ? 192 : (id & 0x20) != 0 ? 160 : 128;
        EXPECT_EQ(unit.type, type) << id;
    }
    EXPECT_EQ(unitOf(0xE7).type, 192);
    EXPECT_EQ(unitOf(0xE7).unit, 3);
}

TEST_F(UtilTest, UnitsHaveTheirNodeIds)
{
    EXPECT_EQ(nodeIdOf(128, 3, 1), 0x87);
    EXPECT_EQ(nodeIdOf(160, 3, 1), 0xA7);
    EXPECT_EQ(nodeIdOf(192, 5, 2), 0xC5);
    EXPECT_EQ(nodeIdOf(0, 7, 0), 0x07);
    EXPECT_EQ(nodeIdOf(0, 7, 2), 0x07);
    EXPECT_EQ(nodeIdOf(128, 7, 1), 0x8F);
}

TEST_F(UtilTest, NegativeUnitsAreTakenByTheirLowBits)
{
    // Only units above 7 are refused.
    EXPECT_EQ(nodeIdOf(0, -1, 0), 0xFF);
    EXPECT_EQ(nodeIdOf(128, -1, 0), 0xFE);
    EXPECT_EQ(nodeIdOf(128, -1, 1), 0xFF);
    EXPECT_EQ(nodeIdOf(160, -1, 1), 0xFF);
    EXPECT_EQ(nodeIdOf(160, -8, 0), 0xF0);
    EXPECT_EQ(nodeIdOf(192, -1, 0), 0xFF);
    EXPECT_EQ(nodeIdOf(192, -64, 2), 0xC0);
    EXPECT_EQ(nodeIdOf(0, -2147483647 - 1, 0), 0x00);
}

TEST_F(UtilTest, UnitsThatCannotBeMappedThrow)
{
    EXPECT_EQ(thrownBy([] { nodeIdOf(0, 8, 0); }), mappingError("unit2NodeId(id)", 8));
    EXPECT_EQ(thrownBy([] { nodeIdOf(0, 8, 9); }), mappingError("unit2NodeId(id)", 8));
    EXPECT_EQ(thrownBy([] { nodeIdOf(0, 0, 3); }), mappingError("unit2NodeId(divSide)", 3));
    EXPECT_EQ(thrownBy([] { nodeIdOf(0, 0, -1); }), mappingError("unit2NodeId(divSide)", -1));
    EXPECT_EQ(thrownBy([] { nodeIdOf(128, 0, 2); }), mappingError("unit2NodeId(divSide)", 2));
    EXPECT_EQ(thrownBy([] { nodeIdOf(160, 0, 2); }), mappingError("unit2NodeId(divSide)", 2));
    EXPECT_EQ(thrownBy([] { nodeIdOf(64, 0, 0); }), mappingError("unit2NodeId(boardType)", 64));
}

TEST_F(UtilTest, LogicalUnitsGoThroughTheirNodeIds)
{
    const struct {
        int ntype;
        int lunit;
        unsigned int nodeId;
    } rows[] = {{2, 7, 3},      {2, 0x3F, 15},   {0, 0x13, 3}, {128, 6, 0x86},
                {160, 7, 0xA7}, {1, 0x15, 0x85}, {3, 9, 0},    {192, 9, 0}};
    for (const auto& row : rows) {
        Util::BoardType type = IPMIClientCommand::BOARD_SB;
        int unit = -1;
        int side = -1;
        Util::LUnit2Unit(static_cast<Util::NodeType>(row.ntype), row.lunit, type, unit, side);
        const Unit expected = unitOf(row.nodeId);
        EXPECT_EQ(type, expected.type) << row.ntype;
        EXPECT_EQ(unit, expected.unit) << row.ntype;
        EXPECT_EQ(side, expected.side) << row.ntype;
    }
}

TEST_F(UtilTest, FirstTwoLogicalIOUnitsOfBoardZeroAreSwapped)
{
    const int expected[][2] = {{0, 1}, {0, 0}, {0, 0}, {0, 0}, {1, 0}, {1, 1}, {1, 2}, {1, 3}};
    for (unsigned char liou = 0; liou < 8; ++liou) {
        unsigned char board = 99;
        unsigned char index = 99;
        Util::liou2BmmId(liou, board, index);
        EXPECT_EQ(board, expected[liou][0]) << int(liou);
        EXPECT_EQ(index, expected[liou][1]) << int(liou);
    }
    EXPECT_EQ(Util::bmmId2Liou(0, 0), 1);
    EXPECT_EQ(Util::bmmId2Liou(0, 1), 0);
    EXPECT_EQ(Util::bmmId2Liou(0, 3), 0);
    EXPECT_EQ(Util::bmmId2Liou(1, 2), 6);
    EXPECT_EQ(Util::bmmId2Liou(2, 1), 9);
    EXPECT_EQ(Util::bmmId2Liou(63, 3), 255);
    EXPECT_EQ(Util::bmmId2Liou(64, 2), 2);
}

TEST_F(UtilTest, MachineWithoutLogicalIOUnitsDividesNothing)
{
    TAVLib::host::setMachine({4, 4, 0, {}});
    unsigned char board = 99;
    unsigned char index = 99;
    Util::liou2BmmId(5, board, index);
    EXPECT_EQ(board, 0);
    EXPECT_EQ(index, 0);
}

TEST_F(UtilTest, NodeIdsNeverGiveAManagementBoard)
{
    for (unsigned int id = 0; id < 256; ++id) {
        unsigned char board = 99;
        unsigned char index = 98;
        Util::nodeId2BmmId(static_cast<unsigned char>(id), board, index);
        EXPECT_EQ(board, 99);
        EXPECT_EQ(index, 98);
    }
}

TEST_F(UtilTest, BCDIsReadLowestDigitsFirst)
{
    EXPECT_EQ(Util::getBCDtoHexValue(""), 0U);
    EXPECT_EQ(Util::getBCDtoHexValue("\x42"), 42U);
    EXPECT_EQ(Util::getBCDtoHexValue("\x34\x12"), 1234U);
    EXPECT_EQ(Util::getBCDtoHexValue("\x56\x34\x12"), 123456U);
    EXPECT_EQ(Util::getBCDtoHexValue("\x99\x99\x99\x99"), 99999999U);
    EXPECT_EQ(Util::getBCDtoHexValue("\x99\x99\x99\x99\x99"), 0U);
    EXPECT_EQ(Util::getBCDtoHexValue("\xFF"), 165U); // digits above 9 are not checked
}

TEST_F(UtilTest, SortingSwapsTheTwoManagementBoardsAlone)
{
    const struct {
        Bytes before;
        Bytes after;
    } rows[] = {{{0x80, 5, 0x81}, {0x81, 5, 0x80}},
                {{0x81, 5, 0x80}, {0x80, 5, 0x81}},
                {{0x80, 0x80, 0x81, 0x81}, {0x81, 0x80, 0x80, 0x81}},
                {{0x80, 5}, {0x80, 5}},
                {{5, 0x81}, {5, 0x81}},
                {{}, {}}};
    for (const auto& row : rows) {
        Bytes ids = row.before;
        Util::sortByBmmId(ids);
        EXPECT_EQ(ids, row.after);
    }
}

namespace {

/// Header, processor data at 14, core data at 27, cache data at 42, part number data at 76.
Bytes romWith(const Bytes& speed, const Bytes& cache)
{
    return Bytes({0x11, 0x00, 0x60, 14, 27, 42, 0, 76, 0, 0, 0, 0, 0, 0}) + textBytes("CODE-1") +
           Bytes({9, 0}) + speed + Bytes({0, 0, 0}) + Bytes({0x36, 0x12}) + Bytes(13, 0) +
           Bytes(23, 0) + cache + Bytes(9, 0) + Bytes(7, 0) + textBytes("ROM-PART") + Bytes(3, 0);
}

class CPUNames : public testing::Test {
protected:
    void SetUp() override { std::filesystem::create_directories(root.at("/etc/tav/common")); }
    void TearDown() override { TAVLib::host::setMachine({}); }

    void table(const std::string& name, const std::string& content)
    {
        writeFile(root.at("/etc/tav/common/" + name), content);
    }

    ScratchRoot root;
    TraceCapture trace;
    // Turned by getItem and read lowest byte first: 2667 MHz, 24576 KB.
    MemoryDevice device = MemoryDevice(romWith({0x26, 0x67}, {0x60, 0x00}));
    FRUData rom = FRUData(device, FRU_CPU_ROM);
};

}

TEST_F(CPUNames, CacheAndModelTypeComeFromTheRom)
{
    EXPECT_EQ(Util::getCPUCache(rom), 24576U);
    EXPECT_EQ(Util::getCPUModelType(rom), 6);
}

TEST_F(CPUNames, SteppingIsTheLastFieldOfTheRecord)
{
    table("cpu_stepping.csv", "CODE-0,x,A0\r\nCODE-1,ignored,\"B,0\"\r\nCODE-1,second,C0\r\n");
    EXPECT_EQ(Util::getCPUStepping(rom), "B,0");
    EXPECT_EQ(trace.lines(), Lines());
}

TEST_F(CPUNames, SteppingIsABlankWhereItIsNotKnown)
{
    EXPECT_EQ(Util::getCPUStepping(rom), " ");
    for (const char* content : {"", "CODE-2,A0\n", "CODE-1,A0,\n", "CODE-1,A0,\r\n"}) {
        table("cpu_stepping.csv", content);
        EXPECT_EQ(Util::getCPUStepping(rom), " ") << content;
    }
    EXPECT_EQ(trace.lines(), Lines());
}

TEST_F(CPUNames, KeyIsTheLastFieldOfARecordThatHasNoOther)
{
    table("cpu_stepping.csv", "CODE-1\n");
    EXPECT_EQ(Util::getCPUStepping(rom), "CODE-1");
}

TEST_F(CPUNames, RecordWithABadEscapeIsTracedAndCountsAsNotThere)
{
    table("cpu_stepping.csv", "CODE-1,\\q,A0\n");
    EXPECT_EQ(Util::getCPUStepping(rom), " ");
    EXPECT_EQ(trace.lines(),
              Lines({"1:82:0x0800 level 0: cpu_stepping.csv: unknown escape sequence"}));
    table("cpu_stepping.csv", "CODE-1,A0\\");
    EXPECT_EQ(Util::getCPUStepping(rom), " ");
}

TEST_F(CPUNames, PartNumberTableFollowsTheTypeOfTheBoard)
{
    table("cpu_ca_number.csv", "CODE-1,GENERAL\n");
    table("cpu_ca_number_sb3.csv", "CODE-1,SPECIAL\n");
    TAVLib::host::setMachine({4, 4, 4, {0, 2, 3}});
    EXPECT_EQ(Util::getCPUPartNumber(rom, 0), "GENERAL");
    EXPECT_EQ(Util::getCPUPartNumber(rom, 1), "SPECIAL");
    EXPECT_EQ(Util::getCPUPartNumber(rom, 2), "GENERAL");
    std::string partNumber = "before";
    EXPECT_EQ(Util::convertCPUPartNumber("CODE-1", partNumber, 1), 0);
    EXPECT_EQ(partNumber, "SPECIAL");
}

TEST_F(CPUNames, PartNumberIsTheRomsOwnWhereTheTablesHaveNone)
{
    std::string partNumber = "before";
    EXPECT_NE(Util::convertCPUPartNumber("CODE-1", partNumber, 0), 0);
    EXPECT_EQ(partNumber, "before");
    EXPECT_EQ(Util::getCPUPartNumber(rom, 0), "ROM-PART");
}

TEST_F(CPUNames, TrademarksAreReplaced)
{
    std::string text = "A&reg; B&reg;&reg; &reg";
    EXPECT_EQ(Util::replaceRegisteredTrademark(text), "A(R) B(R)(R) &reg");
    std::string none;
    EXPECT_EQ(Util::replaceRegisteredTrademark(none), "");
}

TEST_F(CPUNames, ModelNameOfTheTableStandsAlone)
{
    table("cpu_processor_number.csv", "CODE-1,Brand&reg; 9999\n");
    EXPECT_EQ(Util::getCPUModelName(rom, Util::DISPLAY_MODE_MARKUP), "Brand&reg; 9999");
    EXPECT_EQ(Util::getCPUModelName(rom, Util::DISPLAY_MODE_PLAIN), "Brand(R) 9999");
}

TEST_F(CPUNames, GeneralModelNameHasTwoBlanksBeforeTheSpeed)
{
    EXPECT_EQ(Util::getCPUModelName(rom, Util::DISPLAY_MODE_MARKUP),
              "Intel&reg; Xeon&reg; Processor  2.66 GHz 24MB");
    EXPECT_EQ(Util::getCPUModelName(rom, Util::DISPLAY_MODE_PLAIN), "Intel(R) Xeon(R) Processor ");
    EXPECT_EQ(Util::getCPUModelName(rom, static_cast<Util::DISPLAY_MODE>(7)),
              "Intel(R) Xeon(R) Processor ");
}

TEST_F(CPUNames, SpeedHasTwoDecimals)
{
    const struct {
        Bytes speed;
        const char* text;
    } rows[] = {{{0x30, 0x00}, " 3.00 GHz "}, {{0x30, 0x59}, " 3.05 GHz "},
                {{0x30, 0x99}, " 3.09 GHz "}, {{0x31, 0x00}, " 3.10 GHz "},
                {{0x09, 0x99}, " 0.99 GHz "}, {{0x99, 0x90}, " 9.99 GHz "},
                {{0x00, 0x09}, " 0.00 GHz "}};
    for (const auto& row : rows) {
        MemoryDevice other(romWith(row.speed, {0, 0}));
        FRUData data(other, FRU_CPU_ROM);
        EXPECT_NE(Util::getCPUModelName(data, Util::DISPLAY_MODE_MARKUP).find(row.text),
                  std::string::npos)
            << row.text;
    }
}

TEST_F(CPUNames, MissingBlockPassesItsFailureOn)
{
    Bytes bytes = romWith({0, 0}, {0, 0});
    bytes[5] = 0;
    MemoryDevice other(bytes);
    FRUData data(other, FRU_CPU_ROM);
    EXPECT_EQ(thrownBy([&] { Util::getCPUCache(data); }),
              fruError(20019, "FRUData::getAreaObject. parameter=53"));
}
