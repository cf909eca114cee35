// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/words/Languages.h>

#include <gtest/gtest.h>

using namespace recordkit::inspect;

TEST(Languages, AreInTheAlphabetOfTheStandard)
{
    EXPECT_EQ(languageName(1), "aa");
    EXPECT_EQ(languageName(25), "en");
    EXPECT_EQ(languageName(53), "ja");
    EXPECT_EQ(languageName(136), "zu");
    for (unsigned char code = 2; code <= 136; ++code) {
        EXPECT_LT(languageName(code - 1), languageName(code));
        EXPECT_EQ(languageName(code).size(), 2U);
    }
    for (const unsigned char without : {0, 137, 255}) {
        EXPECT_EQ(languageName(without), "");
    }
}

TEST(Languages, AreReadByLettersOrNumber)
{
    EXPECT_EQ(findLanguage("en"), 25);
    EXPECT_EQ(findLanguage("DE"), 22);
    EXPECT_EQ(findLanguage("0"), 0);
    EXPECT_EQ(findLanguage("0xFF"), 255);
    for (const char* const none : {"", "e", "xx", "256", "english"}) {
        EXPECT_FALSE(findLanguage(none)) << none;
    }
}
