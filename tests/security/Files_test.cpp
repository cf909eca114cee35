// SPDX-License-Identifier: Apache-2.0
// Who may do what with each file, as SECURITY.md says.
#include <cerrno>
#include <fcntl.h>
#include <regex>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <recordkit/selfile/BMCSELDataFile.h>
#include <recordkit/sensor/SeverityMap.h>

#include "Neighbour.h"

using namespace testing_support;

namespace {

/// A row of the table of files.
struct Row {
    std::string path;
    mode_t mode;
    bool mayRead;
};

std::vector<Row> rows()
{
    std::ifstream file(RECORDKIT_SECURITY);
    const std::regex pattern(R"(\| `([^`]+)` \| (0[0-7]{3}) \| (read, lock|nothing) \|)");
    std::vector<Row> found;
    for (std::string line; std::getline(file, line);) {
        std::smatch parts;
        if (std::regex_match(line, parts, pattern)) {
            const std::string path = std::regex_replace(parts[1].str(), std::regex("<[^>]*>"), "1");
            found.push_back({path, static_cast<mode_t>(std::stoul(parts[2], nullptr, 8)),
                             parts[3] != "nothing"});
        }
    }
    return found;
}

int openFor(const std::string& path, int flags)
{
    const int fd = ::open(path.c_str(), flags | O_CLOEXEC, 0666);
    return fd == -1 ? errno : 0;
}

int lockFor(const std::string& path)
{
    return ::flock(::open(path.c_str(), O_RDONLY | O_CLOEXEC), LOCK_EX | LOCK_NB) == 0 ? 0 : errno;
}

class Files : public HostileBoard {
protected:
    /// Makes every file of the table as the library, the host and the command make it.
    void SetUp() override
    {
        HostileBoard::SetUp();
        if (IsSkipped() || HasFatalFailure()) {
            return;
        }
        ASSERT_EQ(command({"sel", "init"}).status, 0);
        fill(3);
        writeFile(root.at("/var/tav/fmem/ipmi/sb1_bmc_msg0"), "text");
        ASSERT_EQ(command({"sel", "backup", "--board", "1"}).status, 0);
        ASSERT_EQ(command({"sel", "restore", "--board", "1"}).status, 0);
        writeFile(root.at("/var/tmp/shift_sel_sync"), "");
        ASSERT_EQ(BMCSELDataFile().shiftSelFile(1, false), 0);
        fill(3, 4);
        ASSERT_EQ(command({"sel", "backup", "--board", "1"}).status, 0);
        SeverityMap::getInstance()->setPowerSupplyMode(true, true);
        ASSERT_EQ(command({"eeprom", "create", root.at("/eeproms")}).status, 0);
    }
};

}

TEST_F(Files, HaveThePermissionsOfTheTable)
{
    ASSERT_GE(rows().size(), 8U);
    for (const Row& row : rows()) {
        struct stat status = {};
        ASSERT_EQ(::stat(root.at(row.path).c_str(), &status), 0) << row.path;
        EXPECT_EQ(status.st_mode & 07777U, row.mode) << row.path;
        EXPECT_EQ(status.st_uid, 0U) << row.path;
    }
}

TEST_F(Files, CanBeReadByANeighbourWhereTheTableSaysSo)
{
    for (const Row& row : rows()) {
        const std::string path = root.at(row.path);
        EXPECT_EQ(asNeighbour([&] { return openFor(path, O_RDONLY); }), row.mayRead ? 0 : EACCES)
            << path;
        EXPECT_EQ(asNeighbour([&] { return lockFor(path); }), row.mayRead ? 0 : EBADF) << path;
    }
}

TEST_F(Files, CannotBeChangedByANeighbour)
{
    for (const Row& row : rows()) {
        const std::string path = root.at(row.path);
        const Bytes before = readFile(path);
        const auto refused = [&path](const std::function<int()>& work) {
            const int error = asNeighbour(work);
            EXPECT_TRUE(error == EACCES || error == EPERM) << path << " " << error;
        };
        refused([&] { return openFor(path, O_WRONLY); });
        refused([&] { return ::unlink(path.c_str()) == 0 ? 0 : errno; });
        refused([&] { return ::rename(path.c_str(), (path + "x").c_str()) == 0 ? 0 : errno; });
        refused([&] { return ::chmod(path.c_str(), 0666) == 0 ? 0 : errno; });
        EXPECT_EQ(readFile(path), before);
    }
}

TEST_F(Files, OfThePersistentFolderAreNotMadeByANeighbour)
{
    for (const char* const name : {"sb1_bmc_sel0", "sb1_bmc_sel2", "sb0_bmc_sel.lock", "x"}) {
        const std::string path = root.at("/var/tav/fmem/ipmi/") + name;
        std::filesystem::remove(path);
        EXPECT_EQ(asNeighbour([&] { return openFor(path, O_WRONLY | O_CREAT); }), EACCES) << path;
    }
}

TEST_F(Files, ThatTheCommandMakesHaveWhatTheUmaskLeaves)
{
    ::umask(077);
    const Outcome rescued =
        command({"sel", "rescue", working(1), "-o", root.at("/tmp/rescued.raw")});
    ::umask(022);
    ASSERT_EQ(rescued.status, 0) << rescued.err;
    EXPECT_EQ(asNeighbour([&] { return openFor(root.at("/tmp/rescued.raw"), O_RDONLY); }), EACCES);
    ASSERT_EQ(command({"sel", "rescue", working(1), "-o", root.at("/tmp/open.raw")}).status, 0);
    EXPECT_EQ(asNeighbour([&] { return openFor(root.at("/tmp/open.raw"), O_RDONLY); }), 0);
    EXPECT_EQ(asNeighbour([&] { return openFor(root.at("/tmp/open.raw"), O_WRONLY); }), EACCES);
}

TEST_F(Files, OfSettingsAreReadByTheirOwnerOnly)
{
    const std::string value = root.at("/value");
    writeFile(value, "password=hunter2");
    writeFile(root.at("/areas"), R"([{"number": 3, "eeprom": 5, "offset": 0, "size": 64}])");
    for (const Arguments& words :
         {Arguments({"index", "--from", root.at("/areas")}), Arguments({"init"}),
          Arguments({"write", "3", value}), Arguments({"read", "3", root.at("/tmp/out")})}) {
        Arguments all = {"eeprom", "setting"};
        all.insert(all.end(), words.begin(), words.end());
        all.insert(all.end(), {"--images", root.at("/eeproms")});
        const Outcome outcome = command(all);
        ASSERT_EQ(outcome.status, 0) << words[0] << outcome.err;
    }
    EXPECT_EQ(asNeighbour([&] { return openFor(root.at("/tmp/out"), O_RDONLY); }), EACCES);
}

TEST_F(Files, OfARequestCanBeMadeByAnybody)
{
    // Who may make the request file decides when the log rotates: the firmware asks for nobody's
    // name.
    EXPECT_EQ(BMCSELDataFile().shiftSelFile(1, false),
              0); // the answer of SetUp counts as a request
    ASSERT_EQ(::unlink(root.at("/var/tmp/shift_sel_sync").c_str()), 0);
    EXPECT_EQ(BMCSELDataFile().shiftSelFile(1, false), BMCSELDataFile::NOT_REQUESTED);
    ASSERT_EQ(::unlink(root.at("/var/tmp/shift_sel_sync").c_str()), 0);
    plant(root.at("/var/tmp/shift_sel_sync"), "");
    EXPECT_EQ(BMCSELDataFile().shiftSelFile(1, false), 0);
    // The answer is the library's own file again.
    EXPECT_EQ(asNeighbour([&] { return openFor(root.at("/var/tmp/shift_sel_sync"), O_WRONLY); }),
              EACCES);
}
