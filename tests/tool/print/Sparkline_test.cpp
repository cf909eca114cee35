// SPDX-License-Identifier: Apache-2.0
#include "tool/print/Sparkline.h"

#include <gtest/gtest.h>

using namespace recordkit::tool;

namespace {

constexpr unsigned int HOUR = 3600;

std::string bars(const std::map<unsigned int, std::size_t>& counts, std::size_t room = 80)
{
    return sparkline(counts, HOUR, room).bars;
}

}

TEST(Sparkline, HasABarForEachStep)
{
    EXPECT_EQ(bars({{0, 1}}), "█");
    EXPECT_EQ(bars({{HOUR, 1}, {2 * HOUR, 2}, {5 * HOUR, 4}}), "▂▄  █");
    EXPECT_EQ(bars({{0, 1},
                    {HOUR, 2},
                    {2 * HOUR, 3},
                    {3 * HOUR, 4},
                    {4 * HOUR, 5},
                    {5 * HOUR, 6},
                    {6 * HOUR, 7},
                    {7 * HOUR, 8}}),
              "▁▂▃▄▅▆▇█");
}

TEST(Sparkline, ShowsOneOfVeryManyToo)
{
    EXPECT_EQ(bars({{0, 1}, {HOUR, 100000}}), "▁█");
    EXPECT_EQ(bars({{0, 99999}, {HOUR, 100000}}), "██");
}

TEST(Sparkline, JoinsStepsWhereThereIsNoRoom)
{
    const std::map<unsigned int, std::size_t> counts = {{0, 1}, {HOUR, 3}, {2 * HOUR, 2}};
    EXPECT_EQ(bars(counts, 3), "▃█▆");
    EXPECT_EQ(sparkline(counts, HOUR, 3).step, HOUR);
    EXPECT_EQ(bars(counts, 2), "█▄");
    EXPECT_EQ(sparkline(counts, HOUR, 2).step, 2 * HOUR);
    EXPECT_EQ(bars(counts, 1), "█");
    EXPECT_EQ(sparkline(counts, HOUR, 1).step, 3 * HOUR);
    // From the first to the last time that a record can have.
    EXPECT_EQ(bars({{0, 1}, {4294965600, 1}}, 3), "█ █");
}
