// SPDX-License-Identifier: Apache-2.0
#include <recordkit/platform/BMCMessageFile.h>

#include <filesystem>
#include <gtest/gtest.h>

#include "support/Failures.h"
#include "support/ScratchRoot.h"

using namespace testing_support;

TEST(BMCMessageFileErrors, AreTracedWithThePath)
{
    const ScratchRoot root;
    const std::string working = root.at("/tmp/sb2_bmc_msg0");
    writeFile(working, "a");
    std::filesystem::remove_all(root.at("/var/tav"));
    TAVLib::BMCMessageFile messages;
    TraceCapture trace;
    EXPECT_FALSE(messages.backupTmpMessageFile(2));
    const Lines lines = trace.take();
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_NE(lines[0].find("sb2_bmc_msg0"), std::string::npos);
    EXPECT_NE(lines[0].find("errno 2"), std::string::npos);
    EXPECT_FALSE(messages.shiftSelMessageFile(2));
    EXPECT_EQ(readFile(working), textBytes("a"));
}
