// SPDX-License-Identifier: Apache-2.0
#include <recordkit/platform/FirmupFile.h>

#include <gtest/gtest.h>

TEST(FirmupFile, ConvertsEveryByte)
{
    for (unsigned int byte = 0; byte <= 255; ++byte) {
        EXPECT_EQ(TAVLib::FirmupFile::BCDtoBin(static_cast<char>(byte)), byte / 16 * 10 + byte % 16)
            << byte;
    }
}
