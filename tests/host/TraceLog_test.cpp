// SPDX-License-Identifier: Apache-2.0
#include <recordkit/host/TraceLog.h>

#include <gtest/gtest.h>
#include <thread>

#include <recordkit/platform/TavTrace.h>

#include "support/Failures.h"

using namespace testing_support;

namespace {

void trace(const char* text)
{
    TAVLib::trace::TavTrace(1, 83, 0x0900).putLog(0, text);
}

}

TEST(TraceLog, WritesALineToStandardErrorByDefault)
{
    testing::internal::CaptureStderr();
    trace("record too short");
    TAVLib::trace::TavTrace(2, 255, 0xFFFF).putLog(200, "%s");
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "recordkit[1:83:0x0900] level 0: record too short\n"
              "recordkit[2:255:0xFFFF] level 200: %s\n");
}

TEST(TraceLog, GivesEveryFieldToItsSink)
{
    TraceCapture capture;
    trace("text");
    EXPECT_EQ(capture.lines(), Lines({"1:83:0x0900 level 0: text"}));
}

TEST(TraceLog, GivesBackTheSinkBefore)
{
    int first = 0;
    int second = 0;
    const auto outer = TAVLib::host::setTraceSink([&](const auto&) { ++first; });
    auto before = TAVLib::host::setTraceSink([&](const auto&) { ++second; });
    trace("to the second");
    TAVLib::host::setTraceSink(std::move(before));
    trace("to the first");
    TAVLib::host::setTraceSink(outer);
    EXPECT_EQ(first, 1);
    EXPECT_EQ(second, 1);
}

TEST(TraceLog, EmptySinkRestoresTheDefault)
{
    {
        TraceCapture capture;
        TAVLib::host::setTraceSink({});
        testing::internal::CaptureStderr();
        trace("back again");
        EXPECT_EQ(testing::internal::GetCapturedStderr(),
                  "recordkit[1:83:0x0900] level 0: back again\n");
        EXPECT_EQ(capture.lines(), Lines());
    }
}

TEST(TraceLog, SinkMayTraceAndReplaceItself)
{
    TraceCapture capture;
    TAVLib::host::setTraceSink([](const auto&) { TAVLib::host::setTraceSink([](const auto&) {}); });
    trace("replaces the sink");
    trace("goes to the new one");
    EXPECT_EQ(capture.lines(), Lines());
}

TEST(TraceLog, TakesLinesFromSeveralThreads)
{
    TraceCapture capture;
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([] {
            for (int n = 0; n < 100; ++n) {
                trace("line");
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(capture.lines().size(), 400U);
}
