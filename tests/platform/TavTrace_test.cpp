// SPDX-License-Identifier: Apache-2.0
// Where lines go is the platform's; that any line can be given to it is not.
#include <recordkit/platform/TavTrace.h>

#include <gtest/gtest.h>
#include <string>
#include <thread>
#include <vector>

using TAVLib::trace::TavTrace;

TEST(TavTrace, TakesAnyText)
{
    TavTrace trace(1, 83, 0x0900);
    for (const unsigned char level : {0, 100, 200}) {
        EXPECT_NO_THROW(trace.putLog(level, ""));
        EXPECT_NO_THROW(trace.putLog(level, "%s%n%d {} {0} \x1B[31m \xFF\xFE"));
        EXPECT_NO_THROW(trace.putLog(level, std::string(5000, 'x').c_str()));
    }
}

TEST(TavTrace, TakesLinesFromSeveralThreads)
{
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([] {
            for (int n = 0; n < 25; ++n) {
                EXPECT_NO_THROW(TavTrace(1, 128, 13).putLog(0, "one of 100 lines"));
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}
