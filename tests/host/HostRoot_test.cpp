// SPDX-License-Identifier: Apache-2.0
#include <recordkit/host/HostRoot.h>

#include <gtest/gtest.h>
#include <stdexcept>

#include <recordkit/platform/SystemRoot.h>

using TAVLib::systemRoot;
using TAVLib::host::setSystemRoot;

namespace {

class HostRootTest : public testing::Test {
protected:
    void TearDown() override { setSystemRoot(""); }
};

}

TEST_F(HostRootTest, IsTheSystemsOwnAtFirst)
{
    EXPECT_EQ(systemRoot(), "");
}

TEST_F(HostRootTest, TakesAbsolutePathsOfHarmlessCharacters)
{
    for (const char* root : {"/", "/a", "/tmp/x_1-2+3.d/Z9", ""}) {
        setSystemRoot(root);
        EXPECT_EQ(systemRoot(), root);
    }
}

TEST_F(HostRootTest, RefusesEverythingElseAndKeepsTheRoot)
{
    setSystemRoot("/before");
    for (const char* root : {"a", "./a", "/a b", "/a;b", "/a$b", "/a\nb", "/a'b", "/a\"b", "/a`b",
                             "/a&b", "/a|b", "/a>b", "/a*b", "/a\\b", "/a~b", "/\xc3\xa4"}) {
        EXPECT_THROW(setSystemRoot(root), std::invalid_argument) << root;
        EXPECT_EQ(systemRoot(), "/before");
    }
    EXPECT_THROW(setSystemRoot(std::string("/a\0b", 4)), std::invalid_argument);
}
