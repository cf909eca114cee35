// SPDX-License-Identifier: Apache-2.0
#include <recordkit/platform/SystemRoot.h>

#include <gtest/gtest.h>

TEST(SystemRoot, IsHarmlessInAShell)
{
    EXPECT_EQ(TAVLib::systemRoot().find_first_not_of("abcdefghijklmnopqrstuvwxyz"
                                                     "ABCDEFGHIJKLMNOPQRSTUVWXYZ"
                                                     "0123456789._/+-"),
              std::string::npos)
        << TAVLib::systemRoot();
}

TEST(SystemRoot, IsAPrefixOfAbsolutePaths)
{
    // "" is the system's own root.
    const std::string root = TAVLib::systemRoot();
    EXPECT_TRUE(root.empty() || root.front() == '/') << root;
    EXPECT_EQ(TAVLib::systemRoot(), root);
}
