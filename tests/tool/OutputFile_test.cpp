// SPDX-License-Identifier: Apache-2.0
// How files are replaced and patched among other users.
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "support/ScratchRoot.h"
#include "tool/Errors.h"
#include "tool/OutputFile.h"
#include "tool/TemporaryFile.h"

using namespace recordkit::tool;
using namespace testing_support;
namespace fs = std::filesystem;

namespace {

class OutputFileTest : public testing::Test {
protected:
    /// Lets everybody write to /tmp of the root.
    void share() const { fs::permissions(root.at("/tmp"), fs::perms(01777)); }
    std::string content(const std::string& name) const
    {
        const Bytes bytes = readFile(root.at(name));
        return {bytes.begin(), bytes.end()};
    }

    const ScratchRoot root;
    const std::string file = root.at("/tmp/file");
};

std::string failure(const std::function<void()>& work)
{
    try {
        work();
        return "none";
    } catch (const CommandError& e) {
        EXPECT_EQ(e.getStatus(), EXIT_FILE);
        return e.what();
    }
}

unsigned int modeOf(const std::string& path)
{
    struct stat status = {};
    EXPECT_EQ(::stat(path.c_str(), &status), 0);
    return status.st_mode & 07777;
}

const std::vector<std::string> ONLY_FILE = {"file"};

}

TEST_F(OutputFileTest, ReplacesAFileAndKeepsItsPermissions)
{
    writeFile(file, "old");
    fs::permissions(file, fs::perms(0640));
    struct stat before = {};
    ASSERT_EQ(::stat(file.c_str(), &before), 0);
    writeOutput(file, "new");
    EXPECT_EQ(content("/tmp/file"), "new");
    EXPECT_EQ(modeOf(file), 0640U);
    struct stat after = {};
    ASSERT_EQ(::stat(file.c_str(), &after), 0);
    EXPECT_NE(after.st_ino, before.st_ino);
    EXPECT_EQ(listFolder(root.at("/tmp")), ONLY_FILE);
}

TEST_F(OutputFileTest, NewFilesHaveThePermissionsThatTheUmaskLeaves)
{
    for (const unsigned int mask : {0022U, 0077U, 0002U, 0U}) {
        const mode_t before = ::umask(mask);
        writeOutput(root.at("/tmp/all"), "x");
        writeOutput(root.at("/tmp/secret"), "x", Readers::OWNER);
        EXPECT_EQ(::umask(before), mask);
        EXPECT_EQ(modeOf(root.at("/tmp/all")), 0666U & ~mask);
        EXPECT_EQ(modeOf(root.at("/tmp/secret")), 0600U);
        fs::remove(root.at("/tmp/all"));
        fs::remove(root.at("/tmp/secret"));
    }
    EXPECT_EQ(listFolder(root.at("/tmp")), std::vector<std::string>());
}

TEST_F(OutputFileTest, FollowsLinksWhereOnlyTheOwnerMakesThem)
{
    writeFile(root.at("/target"), "old");
    fs::create_symlink("../target", root.at("/tmp/first"));
    fs::create_symlink(root.at("/tmp/first"), file);
    writeOutput(file, "new");
    EXPECT_EQ(content("/target"), "new");
    EXPECT_TRUE(fs::is_symlink(file));
    // To a file that is not there yet.
    fs::create_symlink("../fresh", root.at("/tmp/second"));
    writeOutput(root.at("/tmp/second"), "fresh");
    EXPECT_EQ(content("/fresh"), "fresh");
    fs::create_symlink("loop", root.at("/tmp/loop"));
    EXPECT_EQ(failure([&] { writeOutput(root.at("/tmp/loop"), "x"); }),
              root.at("/tmp/loop") + " cannot be written: Too many levels of symbolic links");
}

TEST_F(OutputFileTest, RefusesLinksInFoldersOfEverybody)
{
    writeFile(root.at("/target"), "precious");
    fs::create_symlink(root.at("/target"), file);
    share();
    const std::string expected = file + " cannot be written: Too many levels of symbolic links";
    EXPECT_EQ(failure([&] { writeOutput(file, "new"); }), expected);
    EXPECT_EQ(failure([&] { OutputFile(file).patch("precious", "PRECIOUS"); }), expected);
    // Also on the way.
    fs::create_symlink(file, root.at("/link"));
    EXPECT_EQ(failure([&] { writeOutput(root.at("/link"), "new"); }),
              root.at("/link") + " cannot be written: Too many levels of symbolic links");
    EXPECT_EQ(content("/target"), "precious");
    EXPECT_EQ(listFolder(root.at("/tmp")), ONLY_FILE);
}

TEST_F(OutputFileTest, RefusesFilesThatOthersHaveInHandInFoldersOfEverybody)
{
    writeFile(file, "old");
    share();
    const std::string inHand =
        file +
        " cannot be written: others have it in hand, in a folder that everybody may write to";
    fs::permissions(file, fs::perms(0646));
    EXPECT_EQ(failure([&] { writeOutput(file, "new"); }), inHand);
    fs::permissions(file, fs::perms(0644));
    fs::create_hard_link(file, root.at("/second"));
    EXPECT_EQ(failure([&] { writeOutput(file, "new"); }), inHand);
    EXPECT_EQ(failure([&] { OutputFile(file).patch("old", "new"); }), inHand);
    fs::remove(root.at("/second"));
    if (::geteuid() == 0) {
        constexpr uid_t NOBODY = 65534;
        ASSERT_EQ(::chown(file.c_str(), NOBODY, NOBODY), 0);
        EXPECT_EQ(failure([&] { writeOutput(file, "new"); }),
                  file + " cannot be written: it belongs to another user, in a folder that "
                         "everybody may write to");
        ASSERT_EQ(::chown(file.c_str(), 0, 0), 0);
    }
    EXPECT_EQ(content("/tmp/file"), "old");
    EXPECT_EQ(listFolder(root.at("/tmp")), ONLY_FILE);
    writeOutput(file, "new");
    EXPECT_EQ(content("/tmp/file"), "new");
}

TEST_F(OutputFileTest, OnlyRegularFilesAreReplaced)
{
    EXPECT_EQ(failure([&] { writeOutput(root.at("/tmp"), "x"); }),
              root.at("/tmp") + " cannot be written: Is a directory");
    EXPECT_EQ(failure([&] { writeOutput(root.at("/tmp/"), "x"); }),
              root.at("/tmp/") + " cannot be written: Is a directory");
    ASSERT_EQ(::mkfifo(file.c_str(), 0600), 0);
    EXPECT_EQ(failure([&] { writeOutput(file, "x"); }),
              file + " cannot be written: Invalid argument");
    EXPECT_EQ(failure([&] { writeOutput(root.at("/none/file"), "x"); }),
              root.at("/none/file") + " cannot be written: No such file or directory");
    EXPECT_TRUE(OutputFile(file).isDevice());
    EXPECT_TRUE(OutputFile("/dev/null").isDevice());
    EXPECT_FALSE(OutputFile(root.at("/tmp/new")).isDevice());
}

TEST_F(OutputFileTest, AFileThatChangedSinceItWasReadIsKept)
{
    const std::string changed = file + " cannot be written: changed by another program";
    const std::string old = "old";
    writeFile(file, "old");
    OutputFile(file).replace("new", &old);
    EXPECT_EQ(content("/tmp/file"), "new");
    // Other content, longer, shorter.
    for (const char* const now : {"odl", "old ", "ol", ""}) {
        writeFile(file, now);
        EXPECT_EQ(failure([&] { OutputFile(file).replace("new", &old); }), changed) << now;
        EXPECT_EQ(failure([&] { OutputFile(file).patch("old", "new"); }), changed) << now;
        EXPECT_EQ(content("/tmp/file"), now);
    }
    // Another file of the same name and content.
    writeFile(file, "old");
    OutputFile output(file);
    fs::rename(file, root.at("/aside"));
    writeFile(file, "old");
    EXPECT_EQ(failure([&] { output.replace("new", &old); }), changed);
    EXPECT_EQ(failure([&] { output.patch("old", "new"); }), changed);
    EXPECT_EQ(content("/tmp/file"), "old");
    // A file where there was none, and none where there was one.
    OutputFile fresh(root.at("/tmp/fresh"));
    writeFile(root.at("/tmp/fresh"), "somebody else's");
    EXPECT_EQ(failure([&] { fresh.replace("mine"); }),
              root.at("/tmp/fresh") + " cannot be written: changed by another program");
    EXPECT_EQ(content("/tmp/fresh"), "somebody else's");
    OutputFile gone(file);
    fs::remove(file);
    EXPECT_EQ(failure([&] { gone.replace("new", &old); }), changed);
    EXPECT_EQ(listFolder(root.at("/tmp")), std::vector<std::string>({"fresh"}));
}

TEST_F(OutputFileTest, AFolderThatIsExchangedLaterLeadsNowhereElse)
{
    writeFile(file, "old");
    fs::create_directory(root.at("/secret"));
    writeFile(root.at("/secret/file"), "precious");
    OutputFile output(file);
    fs::rename(root.at("/tmp"), root.at("/moved"));
    fs::create_directory_symlink(root.at("/secret"), root.at("/tmp"));
    output.replace("new");
    EXPECT_EQ(content("/moved/file"), "new");
    EXPECT_EQ(content("/secret/file"), "precious");
    fs::remove(root.at("/tmp"));
}

TEST_F(OutputFileTest, PatchWritesOnlyWhatDiffers)
{
    writeFile(file, "one two three");
    struct stat before = {};
    ASSERT_EQ(::stat(file.c_str(), &before), 0);
    OutputFile(file).patch("one two three", "One two threE");
    EXPECT_EQ(content("/tmp/file"), "One two threE");
    struct stat after = {};
    ASSERT_EQ(::stat(file.c_str(), &after), 0);
    EXPECT_EQ(after.st_ino, before.st_ino);
}

TEST_F(OutputFileTest, TemporariesAreGoneAfterASignal)
{
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        const pid_t child = ::fork();
        if (child == 0) {
            // A shell starts programs in the background with SIGINT ignored.
            std::signal(signal, SIG_DFL);
            const int folder = ::open(root.at("/tmp").c_str(), O_PATH | O_DIRECTORY);
            const TemporaryFile temporary(folder, "file", file);
            temporary.write("half");
            const bool isThere = fileExists(root.at("/tmp/") + temporary.getName());
            if (isThere) {
                ::raise(signal);
            }
            ::_exit(1);
        }
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == signal) << status;
        EXPECT_EQ(listFolder(root.at("/tmp")), std::vector<std::string>());
    }
}

TEST_F(OutputFileTest, LongNamesHaveTemporariesToo)
{
    const std::string name(255, 'n');
    writeOutput(root.at("/tmp/" + name), "content");
    EXPECT_EQ(content("/tmp/" + name), "content");
    EXPECT_EQ(listFolder(root.at("/tmp")), std::vector<std::string>({name}));
}
