// SPDX-License-Identifier: Apache-2.0
#include <recordkit/serial/HardwareInfo.h>

#include <gtest/gtest.h>

#include "support/Bytes.h"
#include "support/Failures.h"

using TAVLib::RecordKit::HardwareInfo;
using namespace testing_support;

namespace {

struct Query {
    const char* name;
    bool (HardwareInfo::*isPresent)(int) const;
    int units;
    std::size_t byte;
    int firstBit;
    int kind;
    const char* text;
};

/// What test listings show of a query.
void PrintTo(const Query& query, std::ostream* out)
{
    *out << query.name;
}

const Query QUERIES[] = {
    {"TAV", &HardwareInfo::isTAVInstalled, 2, 0, 0, 1, "Get TAV information(install)"},
    {"GSPB", &HardwareInfo::isGSPBInstalled, 2, 1, 0, 3, "Get GSPB information(install)"},
    {"SASU", &HardwareInfo::isSASUInstalled, 4, 1, 2, 4, "Get SASU information(install)"},
    {"SB", &HardwareInfo::isSBInstalled, 4, 3, 0, 5, "Get SB information(install)"},
    {"IOB", &HardwareInfo::isIOBInstalled, 2, 5, 0, 6, "Get IOB information(install)"},
    {"PCIBOX", &HardwareInfo::isPCIBOXInstalled, 2, 7, 0, 7, "Get PCI_Box information(connect)"},
};

class HardwareInfoQuery : public testing::TestWithParam<Query> {};

}

INSTANTIATE_TEST_SUITE_P(All, HardwareInfoQuery, testing::ValuesIn(QUERIES),
                         [](const auto& query) { return std::string(query.param.name); });

TEST_P(HardwareInfoQuery, EachUnitHasABitOfItsOwn)
{
    const Query& query = GetParam();
    for (std::size_t byte = 0; byte < 8; ++byte) {
        for (int bit = 0; bit < 8; ++bit) {
            Bytes image(8, 0);
            image[byte] = static_cast<unsigned char>(1 << bit);
            const auto info = fromBytes<HardwareInfo>(image);
            for (int unit = 0; unit < query.units; ++unit) {
                const bool expected = byte == query.byte && bit == query.firstBit + unit;
                EXPECT_EQ((info.*query.isPresent)(unit), expected)
                    << "unit " << unit << ", byte " << byte << ", bit " << bit;
            }
        }
    }
}

TEST_P(HardwareInfoQuery, UnitOutOfRangeIsAbsentWithATraceLine)
{
    const Query& query = GetParam();
    const auto info = fromBytes<HardwareInfo>(Bytes(8, 0xFF));
    for (const int unit : {query.units, -1, 8, 2147483647, -2147483647 - 1}) {
        TraceCapture trace;
        EXPECT_FALSE((info.*query.isPresent)(unit));
        EXPECT_EQ(trace.lines(), Lines({"1:83:0x000" + std::to_string(query.kind) + " level 200: " +
                                        query.text + ": bad value " + std::to_string(unit)}));
    }
}

TEST_P(HardwareInfoQuery, UnitInRangeWritesNoTraceLine)
{
    const Query& query = GetParam();
    TraceCapture trace;
    const auto info = fromBytes<HardwareInfo>(Bytes(8, 0xFF));
    for (int unit = 0; unit < query.units; ++unit) {
        EXPECT_TRUE((info.*query.isPresent)(unit));
    }
    EXPECT_EQ(trace.lines(), Lines());
}

TEST(HardwareInfo, CarriesAllEightBytesUnchanged)
{
    EXPECT_EQ(imageOf(fromBytes<HardwareInfo>(sequence(8, 0x11))), sequence(8, 0x11));
    EXPECT_EQ(imageOf(fromBytes<HardwareInfo>(sequence(12, 0x11))), sequence(8, 0x11));
    HardwareInfo info;
    EXPECT_FALSE(load(info, Bytes(7, 0xFF)));
    EXPECT_EQ(imageOf(info), Bytes(8, 0));
}

TEST(HardwareInfo, TracesAParameterErrorAsTold)
{
    TraceCapture trace;
    char text[] = "any text";
    HardwareInfo().getParamErrorTrace(0x42, text, -7);
    EXPECT_EQ(trace.lines(), Lines({"1:83:0x0042 level 200: any text: bad value -7"}));
}
