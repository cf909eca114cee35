// SPDX-License-Identifier: Apache-2.0
#include <filesystem>

#include <gtest/gtest.h>

#include "support/ScratchRoot.h"
#include "tool/Errors.h"
#include "tool/Files.h"

using namespace recordkit::tool;
using namespace testing_support;

TEST(Files, LinksInFoldersOfEverybodyAreNotWrittenThrough)
{
    const ScratchRoot root;
    const std::string link = root.at("/tmp/link");
    writeFile(root.at("/target"), "precious");
    std::filesystem::create_symlink(root.at("/target"), link);
    std::filesystem::permissions(root.at("/tmp"), std::filesystem::perms(01777));
    try {
        writeOutput(link, "new");
        ADD_FAILURE() << "written";
    } catch (const CommandError& e) {
        EXPECT_EQ(e.getStatus(), 3);
        EXPECT_EQ(std::string(e.what()),
                  link + " cannot be written: Too many levels of symbolic links");
    }
    EXPECT_EQ(readFile(root.at("/target")), textBytes("precious"));
    EXPECT_EQ(listFolder(root.at("/tmp")), std::vector<std::string>({"link"}));

    std::filesystem::permissions(root.at("/tmp"), std::filesystem::perms(0755));
    writeOutput(link, "new");
    EXPECT_EQ(readFile(root.at("/target")), textBytes("new"));
    EXPECT_TRUE(std::filesystem::is_symlink(link));
}

TEST(Files, NewFilesAreForTheOwnerToChangeAndTheRestToRead)
{
    const ScratchRoot root;
    const std::string path = root.at("/tmp/new");
    writeOutput(path, "text");
    EXPECT_EQ(std::filesystem::status(path).permissions(), std::filesystem::perms(0644));
}
