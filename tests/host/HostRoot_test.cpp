// SPDX-License-Identifier: Apache-2.0
#include <recordkit/host/HostRoot.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <stdexcept>

#include <recordkit/platform/SystemRoot.h>

#include "support/NastyNames.h"
#include "support/ScratchRoot.h"

using TAVLib::systemRoot;
using TAVLib::host::givenSystemRoot;
using TAVLib::host::setSystemRoot;
using namespace testing_support;

namespace {

constexpr const char* HARMLESS =
    "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789._/+-";

class HostRootTest : public testing::Test {
protected:
    void TearDown() override { setSystemRoot(""); }
};

}

TEST_F(HostRootTest, IsTheSystemsOwnAtFirst)
{
    EXPECT_EQ(systemRoot(), "");
}

TEST_F(HostRootTest, TakesAbsolutePathsOfHarmlessCharactersAsTheyAre)
{
    for (const char* root : {"/", "/a", "/tmp/x_1-2+3.d/Z9", ""}) {
        setSystemRoot(root);
        EXPECT_EQ(systemRoot(), root);
        EXPECT_EQ(givenSystemRoot(), root);
    }
}

TEST_F(HostRootTest, AnyOtherFolderGetsAHarmlessName)
{
    const ScratchRoot scratch;
    for (const std::string& name : nastyNames()) {
        const std::string folder = scratch.at("/" + name);
        std::filesystem::create_directory(folder);
        setSystemRoot(folder);
        EXPECT_EQ(givenSystemRoot(), folder);
        EXPECT_EQ(systemRoot().find_first_not_of(HARMLESS), std::string::npos) << systemRoot();
        writeFile(systemRoot() + "/file", "content");
        EXPECT_EQ(readFile(folder + "/file"), textBytes("content")) << name;
        // As a copy command does.
        EXPECT_EQ(
            std::system(("/bin/cp " + systemRoot() + "/file " + systemRoot() + "/copy").c_str()),
            0);
        EXPECT_EQ(readFile(folder + "/copy"), textBytes("content")) << name;
    }
    EXPECT_GE(nastyNames().size(), 40U);
}

TEST_F(HostRootTest, AMissingFolderHasNoFileUntilItIsMadeAndSetAgain)
{
    const ScratchRoot scratch;
    const std::string folder = scratch.at("/two words");
    setSystemRoot(folder);
    EXPECT_EQ(givenSystemRoot(), folder);
    EXPECT_EQ(systemRoot().find_first_not_of(HARMLESS), std::string::npos) << systemRoot();
    EXPECT_FALSE(std::ofstream(systemRoot() + "/file"));
    EXPECT_EQ(errno, ENOENT);
    std::filesystem::create_directory(folder);
    setSystemRoot(folder);
    EXPECT_TRUE(std::ofstream(systemRoot() + "/file"));
    EXPECT_TRUE(fileExists(folder + "/file"));
}

TEST_F(HostRootTest, AFileIsNoFolder)
{
    const ScratchRoot scratch;
    writeFile(scratch.at("/a file"), "content");
    setSystemRoot(scratch.at("/a file"));
    EXPECT_FALSE(std::ifstream(systemRoot() + "/"));
}

TEST_F(HostRootTest, KeepsOnlyTheCurrentFolderOpen)
{
    const ScratchRoot scratch;
    std::filesystem::create_directory(scratch.at("/a b"));
    const std::size_t before = openDescriptors();
    for (int i = 0; i < 3; ++i) {
        setSystemRoot(scratch.at("/a b"));
        EXPECT_EQ(openDescriptors(), before + 1);
    }
    setSystemRoot("/");
    EXPECT_EQ(openDescriptors(), before);
}

TEST_F(HostRootTest, RefusesWhatIsNoAbsolutePathAndKeepsTheRoot)
{
    setSystemRoot("/before");
    for (const std::string& root :
         {std::string("a"), std::string("./a"), std::string(" /a"), std::string("/a\0b", 4)}) {
        EXPECT_THROW(setSystemRoot(root), std::invalid_argument) << root;
        EXPECT_EQ(systemRoot(), "/before");
        EXPECT_EQ(givenSystemRoot(), "/before");
    }
}
