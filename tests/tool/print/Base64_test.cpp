// SPDX-License-Identifier: Apache-2.0
#include "tool/print/Base64.h"

#include <gtest/gtest.h>

using recordkit::inspect::Bytes;
using recordkit::tool::base64;

TEST(Base64, HasTheTestVectorsOfTheStandard)
{
    // RFC 4648, section 10.
    const char* const VECTORS[][2] = {{"", ""},
                                      {"f", "Zg=="},
                                      {"fo", "Zm8="},
                                      {"foo", "Zm9v"},
                                      {"foob", "Zm9vYg=="},
                                      {"fooba", "Zm9vYmE="},
                                      {"foobar", "Zm9vYmFy"}};
    for (const auto& vector : VECTORS) {
        EXPECT_EQ(base64(std::string(vector[0])), vector[1]);
    }
}

TEST(Base64, HasAllDigits)
{
    Bytes bytes;
    for (unsigned int digit = 0; digit < 64; digit += 4) {
        bytes.push_back(static_cast<unsigned char>(digit << 2 | (digit + 1) >> 4));
        bytes.push_back(static_cast<unsigned char>((digit + 1) << 4 | (digit + 2) >> 2));
        bytes.push_back(static_cast<unsigned char>((digit + 2) << 6 | (digit + 3)));
    }
    EXPECT_EQ(base64(bytes), "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/");
}
