// SPDX-License-Identifier: Apache-2.0
// What a neighbour puts into the folders of working files before the board does.
#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <recordkit/host/TraceLog.h>
#include <recordkit/sensor/SeverityMap.h>

#include "Neighbour.h"

using namespace testing_support;

namespace {

class Attacks : public HostileBoard {
protected:
    /// The neighbour's link to a file that only root may read.
    void plantLink(const std::string& path) const
    {
        ASSERT_EQ(asNeighbour([&] {
                      return ::symlink(secretFile().c_str(), path.c_str()) == 0 ? 0 : errno;
                  }),
                  0);
    }
    void plantFifo(const std::string& path) const
    {
        ASSERT_EQ(asNeighbour([&] {
                      ::umask(0);
                      return ::mkfifo(path.c_str(), 0666) == 0 ? 0 : errno;
                  }),
                  0);
    }
    std::string request() const { return root.at("/var/tmp/shift_sel_sync"); }
};

constexpr const char* EVENT = "0100027856341220000404010157a16c\n";

}

TEST_F(Attacks, ALinkAtTheWorkingFileCopiesNothing)
{
    plantLink(working(1));
    const Outcome initialised = command({"sel", "init"});
    EXPECT_EQ(initialised.status, 3);
    EXPECT_NE(initialised.err.find("is not used: it is a link, in a folder that everybody"),
              std::string::npos)
        << initialised.err;
    EXPECT_EQ(command({"sel", "backup", "--board", "1"}).status, 3);
    EXPECT_EQ(sel({"add", "-", "--board", "1"}, EVENT).status, 3);
    EXPECT_FALSE(fileExists(kept(1, 0)));
    EXPECT_TRUE(isSecretUnchanged());
}

TEST_F(Attacks, AWorkingFileThatANeighbourMadeIsNotUsed)
{
    plant(working(1), std::string(FULL_FILE, '\xFF'));
    const Outcome initialised = command({"sel", "init"});
    EXPECT_EQ(initialised.status, 3);
    EXPECT_NE(initialised.err.find(working(1) + " is not used: it belongs to another user, in a "
                                                "folder that everybody may write to"),
              std::string::npos)
        << initialised.err;
    EXPECT_EQ(sel({"add", "-", "--board", "1"}, EVENT).status, 3);
    EXPECT_EQ(readFile(working(1)), Bytes(FULL_FILE, 0xFF));
    // Neither is what it contains believed.
    EXPECT_NE(command({"sel", "list", "--board", "1"}).status, 0);
    EXPECT_EQ(command({"sel", "clear", "--board", "1", "--yes"}).status, 3);
}

TEST_F(Attacks, AForgedWorkingFileMovesNoBackupIntoTheChain)
{
    ASSERT_EQ(command({"sel", "init"}).status, 0);
    fill(5);
    ASSERT_EQ(command({"sel", "backup", "--board", "1"}).status, 0);
    std::filesystem::remove(working(1));
    plant(working(1), std::string(FULL_FILE, '\xFF'));
    const Bytes backup = readFile(kept(1, 0));
    EXPECT_NE(command({"sel", "check", "--board", "1", "--recover"}).status, 0);
    EXPECT_EQ(readFile(kept(1, 0)), backup);
    EXPECT_FALSE(fileExists(kept(1, 1)));
}

TEST_F(Attacks, ALockOfANeighbourStopsTheLogForALimitedTime)
{
    ASSERT_EQ(command({"sel", "init"}).status, 0);
    int ends[2];
    ASSERT_EQ(::pipe(ends), 0);
    const Process locked(NEIGHBOUR, [&] {
        const int fd = ::open(working(1).c_str(), O_RDONLY);
        const char held = ::flock(fd, LOCK_EX) == 0 ? 'y' : 'n';
        ::_exit(::write(ends[1], &held, 1) == 1 ? ::pause() : 1);
    });
    char held = 'n';
    ASSERT_EQ(::read(ends[0], &held, 1), 1);
    ASSERT_EQ(held, 'y');
    const Outcome outcome = sel({"add", "-", "--board", "1", "--lock-timeout", "0"}, EVENT);
    EXPECT_EQ(outcome.status, 3);
    EXPECT_NE(outcome.err.find(working(1) + ": another program keeps it locked"), std::string::npos)
        << outcome.err;
    EXPECT_EQ(command({"sel", "clear", "--board", "1", "--yes", "--lock-timeout", "0"}).status, 3);
    // The lock of the log is out of the neighbour's reach, and readers need none.
    EXPECT_EQ(command({"sel", "backup", "--board", "1", "--lock-timeout", "0"}).status, 0);
    EXPECT_EQ(command({"sel", "check", "--board", "1"}).status, 0);
    ::close(ends[0]);
    ::close(ends[1]);
}

TEST_F(Attacks, NoPipeIsWaitedFor)
{
    plantFifo(working(1));
    EXPECT_EQ(command({"sel", "init"}).status, 3);
    EXPECT_NE(command({"sel", "list", "--board", "all"}).status, 0);
    EXPECT_NE(command({"sel", "status"}).status, 0);
    EXPECT_EQ(sel({"add", "-", "--board", "1"}, EVENT).status, 3);
    std::filesystem::remove(working(1));
    ASSERT_EQ(command({"sel", "init"}).status, 0);
    plantFifo(request());
    plantFifo(root.at("/tmp/psumode"));
    plantFifo(root.at("/tmp/sb1_bmc_msg0.new"));
    writeFile(root.at("/var/tav/fmem/ipmi/sb1_bmc_msg0"), "text");
    EXPECT_EQ(sel({"add", "-", "--board", "1"}, EVENT).status, 0);
    for (const char* const name : {"check", "status", "list", "backup", "restore"}) {
        EXPECT_LE(command({"sel", name, "--board", "1"}).status, 1) << name;
    }
    EXPECT_EQ(command({"severity", "0x0B", "0x09", "3"}).status, 0);
}

TEST_F(Attacks, APowerSupplyModeOfANeighbourDoesNotCount)
{
    const auto severity = [this] { return command({"severity", "0x08", "0x01", "2"}).out; };
    const std::string usual = severity();
    for (const char flags : {'\0', '\1', '\2', '\3'}) {
        plant(root.at("/tmp/psumode"), std::string(1, flags));
        EXPECT_EQ(severity(), usual);
        std::filesystem::remove(root.at("/tmp/psumode"));
    }
}

TEST_F(Attacks, TheTemporaryOfAMessageFileIsNobodyElses)
{
    ASSERT_EQ(command({"sel", "init"}).status, 0);
    ASSERT_EQ(command({"sel", "backup", "--board", "1"}).status, 0);
    writeFile(root.at("/var/tav/fmem/ipmi/sb1_bmc_msg0"), "text");
    const std::string message = root.at("/tmp/sb1_bmc_msg0");
    plant(message + ".new", "");
    ASSERT_EQ(command({"sel", "restore", "--board", "1"}).status, 0);
    struct stat status = {};
    ASSERT_EQ(::stat(message.c_str(), &status), 0);
    EXPECT_EQ(status.st_uid, 0U);
    EXPECT_EQ(status.st_mode, S_IFREG | 0644U);
    EXPECT_EQ(readFile(message), textBytes("text"));
}

TEST_F(Attacks, WhatARequestContainsReachesNoTerminal)
{
    ASSERT_EQ(command({"sel", "init"}).status, 0);
    for (const std::string& content :
         {std::string("0\033]0;OWNED\007\033[2JX"), std::string("0\377\376AAAAAAAAAAAAA")}) {
        plant(request(), content);
        const Outcome text = command({"sel", "check", "--board", "1"});
        for (const char character : text.out + text.err) {
            EXPECT_TRUE(character == '\n' || (character >= ' ' && character <= '~')) << text.out;
        }
        const Outcome json = command({"sel", "check", "--json"});
        EXPECT_LE(json.status, 1) << json.err;
        EXPECT_EQ(Json::parse(json.out).size(), 4U);
        std::filesystem::remove(request());
    }
}
