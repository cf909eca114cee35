// SPDX-License-Identifier: Apache-2.0
#include <recordkit/platform/PException.h>

#include <LibraryMessages.h>
#include <gtest/gtest.h>
#include <sstream>

#include <recordkit/platform/CatalogueFile.h>

using TAVLib::PException;

namespace {

/// Thrown with a text that is gone when it is caught.
[[noreturn]] void throwWithDyingText()
{
    char text[] = "getSpeed(fan)";
    const PException e(1, 83, 0x1900, 1, 0x0B00, 20034, reinterpret_cast<long>(text), 4, 0, 0, 0, 0,
                       0, 0);
    text[0] = 'X';
    throw e;
}

}

TEST(PException, GivesBackItsCodes)
{
    const PException e(1, 128, 0x000E, 2, 0xFFFF, 20031, reinterpret_cast<long>("text"), 0, 0, 0, 0,
                       0, 0, 0);
    EXPECT_EQ(e.getProducer(), 1);
    EXPECT_EQ(e.getModuleCode(), 128);
    EXPECT_EQ(e.getLocationCode(), 0x000E);
    EXPECT_EQ(e.getActionCode(), 2);
    EXPECT_EQ(e.getExceptionDetail(), 0xFFFF);
    EXPECT_EQ(e.getMessageNumber(), 20031);
}

TEST(PException, CopiesItsTextsBeforeTheyDie)
{
    try {
        throwWithDyingText();
    } catch (const PException& e) {
        EXPECT_EQ(e.getParameter(0), "getSpeed(fan)");
        EXPECT_EQ(e.getParameter(1), "4");
        EXPECT_NE(e.getMessage().find("getSpeed(fan)"), std::string::npos);
        return;
    }
    FAIL();
}

TEST(PException, CopiesAreIndependent)
{
    const PException fan(1, 83, 0x1900, 1, 0x0B00, 20034, reinterpret_cast<long>("getSpeed(fan)"),
                         4, 0, 0, 0, 0, 0, 0);
    PException copy(fan);
    {
        const PException other(2, 128, 0x000E, 2, 0xFFFF, 20031, reinterpret_cast<long>("text"), 0,
                               0, 0, 0, 0, 0, 0);
        copy = other;
    }
    EXPECT_EQ(copy.getProducer(), 2);
    EXPECT_EQ(copy.getModuleCode(), 128);
    EXPECT_EQ(copy.getLocationCode(), 0x000E);
    EXPECT_EQ(copy.getActionCode(), 2);
    EXPECT_EQ(copy.getExceptionDetail(), 0xFFFF);
    EXPECT_EQ(copy.getMessageNumber(), 20031);
    EXPECT_EQ(copy.getParameter(0), "text");
    EXPECT_NE(copy.getMessage().find("text"), std::string::npos);
    EXPECT_EQ(fan.getParameter(0), "getSpeed(fan)");
    const PException& same = copy;
    copy = same;
    EXPECT_EQ(copy.getParameter(0), "text");
}

TEST(PException, ParametersAreTextsOrDecimalNumbers)
{
    const PException e(1, 83, 0x0900, 1, 0x0B01, 20030, reinterpret_cast<long>("first"),
                       reinterpret_cast<long>("second"), -3, 4, 5, 6, 7, 8);
    const char* const expected[] = {"first", "second", "-3", "4", "5", "6", "7", "8"};
    for (unsigned int i = 0; i < 8; ++i) {
        EXPECT_EQ(e.getParameter(i), expected[i]);
    }
    EXPECT_EQ(e.getParameter(8), "");
    EXPECT_EQ(e.getParameter(0xFFFFFFFFU), "");
}

TEST(PException, CatalogueSaysWhichParametersAreTexts)
{
    std::istringstream file(RECORDKIT_LIBRARY_MESSAGES);
    const auto entries = TAVLib::readCatalogue(file);
    EXPECT_FALSE(entries.empty());
    for (const TAVLib::CatalogueEntry& entry : entries) {
        long given[PException::PARAMETERS];
        std::string expected[PException::PARAMETERS];
        std::string texts[PException::PARAMETERS];
        for (unsigned int i = 0; i < PException::PARAMETERS; ++i) {
            const bool isText = i < entry.kinds.size() && entry.kinds[i] == 's';
            texts[i] = "text " + std::to_string(i);
            given[i] = isText ? reinterpret_cast<long>(texts[i].c_str()) : -100L - i;
            expected[i] = isText ? texts[i] : std::to_string(given[i]);
        }
        const PException e(1, 83, 0, 1, 0, entry.number, given[0], given[1], given[2], given[3],
                           given[4], given[5], given[6], given[7]);
        for (unsigned int i = 0; i < PException::PARAMETERS; ++i) {
            EXPECT_EQ(e.getParameter(i), expected[i]) << entry.number;
            if (i < entry.kinds.size()) {
                EXPECT_NE(e.getMessage().find(expected[i]), std::string::npos) << e.getMessage();
            }
        }
    }
}

TEST(PException, MessageIsNotCut)
{
    const std::string text(500, 'x');
    const PException e(1, 83, 0, 1, 0, 20003, reinterpret_cast<long>(text.c_str()), 0, 0, 0, 0, 0,
                       0, 0);
    EXPECT_NE(e.getMessage().find(text), std::string::npos);
}

TEST(PException, UnknownMessageHasNumbersAlone)
{
    const PException e(1, 83, 0, 1, 0, 1, 11, 22, 0, 0, 0, 0, 0, 0);
    EXPECT_EQ(e.getParameter(0), "11");
    EXPECT_FALSE(e.getMessage().empty());
}
