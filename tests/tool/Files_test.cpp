// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "support/ScratchRoot.h"
#include "tool/Errors.h"
#include "tool/Files.h"

using namespace recordkit::tool;
using namespace testing_support;

TEST(Files, InputsAreReadUpToTheirLimit)
{
    const ScratchRoot root;
    writeFile(root.at("/four"), "1234");
    EXPECT_EQ(readInput(root.at("/four"), 4), "1234");
    try {
        readInput(root.at("/four"), 3);
        ADD_FAILURE() << "read";
    } catch (const CommandError& e) {
        EXPECT_EQ(e.getStatus(), 1);
        EXPECT_EQ(std::string(e.what()),
                  root.at("/four") +
                      ": 4 bytes, expected at most 3 bytes; --max-size raises this limit");
    }
    try {
        readInput("/dev/zero", 1, "a hint");
        ADD_FAILURE() << "read";
    } catch (const CommandError& e) {
        EXPECT_EQ(std::string(e.what()), "/dev/zero: more than 1 byte; a hint");
    }
    setLargestInput(4);
    EXPECT_EQ(readInput(root.at("/four"), 3), "1234");
    setLargestInput(3);
    EXPECT_THROW(readInput(root.at("/four"), 100), CommandError);
    setLargestInput(0);
    EXPECT_THROW(readInput("/dev/zero", 65536), CommandError);
}

TEST(Files, NamesOfInputsAreTextWithoutControlCharacters)
{
    EXPECT_EQ(inputName("-"), "standard input");
    EXPECT_EQ(inputName("caf\xC3\xA9.bin"), "caf\xC3\xA9.bin");
    EXPECT_EQ(inputNameBytes("caf\xC3\xA9.bin"), "");
    EXPECT_EQ(inputName("n\xFF\n\x1B[31m"), "n\\xFF\\x0A\\x1B[31m");
    EXPECT_EQ(inputNameBytes("n\xFFx"), "6EFF78");
    EXPECT_EQ(inputName("a\nb"), "a\\x0Ab");
}
