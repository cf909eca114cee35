// SPDX-License-Identifier: Apache-2.0
// Eight processes store events on four boards, rotate, back up and list, and are killed again and
// again; after each time `sel check --recover` runs, and the program looks for every event for
// which writeRecord returned 1.
//
//   soak FOLDER COMMAND EVENTS KILLS SEED
//
// Ends with 0 if each of these events was found exactly once, except those that rotations had
// dropped as the oldest ones. The number of events stored, which SEED decides, determines the
// moment of a kill; where in a call it hits each process is up to the machine.
#include <algorithm>
#include <atomic>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <new>
#include <random>
#include <set>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

#include <recordkit/host/HostRoot.h>
#include <recordkit/selfile/BMCSELDataFile.h>
#include <recordkit/selfile/SELChainReader.h>
#include <recordkit/selfile/SELFileLayout.h>
#include <recordkit/serial/ByteOrder.h>

namespace {

using namespace TAVLib::RecordKit;
namespace Layout = SELFileLayout;

constexpr unsigned int BOARDS = 4;
constexpr unsigned int WORKERS = 8;
constexpr unsigned int NUMBER_OFFSET = 20; ///< where an event carries its number
constexpr std::size_t FULL_CHAIN = std::size_t{Layout::OLDEST_FILE} * Layout::SLOTS;

/// What the processes share: each worker's events are numbered from 0 on.
struct Shared {
    std::atomic<unsigned int> acknowledged[WORKERS]; ///< for all below it writeRecord returned 1
    std::atomic<unsigned int> tried[WORKERS];
    std::atomic<unsigned int> inMaintenance; ///< processes that rotate or back up
    std::atomic<unsigned int> rotations;
    std::atomic<unsigned int> backups;
    std::atomic<unsigned int> listings;
};

struct Totals {
    unsigned int killsInMaintenance = 0;
    unsigned int recoveries = 0;
    std::size_t dropped = 0;
    std::size_t found = 0;
};

[[noreturn]] void fail(const std::string& text)
{
    std::fprintf(stderr, "soak: %s\n", text.c_str());
    std::exit(1);
}

/// The number of an event: worker and count.
unsigned int numberOf(unsigned int worker, unsigned int count)
{
    return worker << 28 | count;
}

BMCSELEntryMessage eventOf(unsigned int number)
{
    unsigned char image[Layout::SLOT_SIZE] = {};
    const unsigned int id = number % Layout::EMPTY_RECORD_ID;
    image[Layout::RECORD_ID_OFFSET] = static_cast<unsigned char>(id & 0xFF);
    image[Layout::RECORD_ID_OFFSET + 1] = static_cast<unsigned char>(id >> 8);
    for (unsigned int i = 0; i < 4; ++i) {
        image[NUMBER_OFFSET + i] = static_cast<unsigned char>(number >> 8 * i);
    }
    BMCSELEntryMessage message;
    message.setSerialized(image, sizeof image);
    return message;
}

/// The caller's part of the contract: rotations and backups do not run concurrently with writes to
/// a board.
class BoardLock {
public:
    BoardLock(const std::string& folder, unsigned int board, int kind)
        : fd(::open((folder + "/board" + std::to_string(board) + ".lock").c_str(),
                    O_RDWR | O_CREAT | O_CLOEXEC, 0600))
    {
        if (fd == -1 || TEMP_FAILURE_RETRY(::flock(fd, kind)) == -1) {
            fail("no lock for board " + std::to_string(board));
        }
    }
    ~BoardLock() { ::close(fd); }
    BoardLock(const BoardLock&) = delete;
    BoardLock& operator=(const BoardLock&) = delete;

private:
    int fd;
};

void maintain(Shared& shared, const std::string& folder, unsigned char board, bool mayOnlyRotate)
{
    const BoardLock lock(folder, board, LOCK_EX);
    ++shared.inMaintenance;
    BMCSELDataFile store;
    const unsigned int state = store.fullEntryCheck(board);
    if (state == BMCSELDataFile::FILE_FULL) {
        if (store.shiftSelFile(board, true) == 0) {
            ++shared.rotations;
        }
    } else if (!mayOnlyRotate && store.backupTmpSel(board) == 1) {
        ++shared.backups;
    }
    --shared.inMaintenance;
}

void list(Shared& shared, unsigned char board)
{
    SELChainReader reader(board);
    SELChainReader::Record record = {};
    while (reader.next(record)) {
    }
    ++shared.listings;
}

[[noreturn]] void work(Shared& shared, const std::string& folder, unsigned int worker)
{
    constexpr unsigned int BACKUP_EACH = 151;
    constexpr unsigned int LISTING_EACH = 211;
    const auto board = static_cast<unsigned char>(worker % BOARDS);
    for (;;) {
        // A number that was tried may be stored already, and is not used again.
        const unsigned int count = shared.tried[worker]++;
        BMCSELEntryMessage event = eventOf(numberOf(worker, count));
        int result = 0;
        {
            const BoardLock lock(folder, board, LOCK_SH);
            result = BMCSELDataFile().writeRecord(board, event);
        }
        if (result == 1) {
            // The answer has reached the caller, who remembers it by this.
            const int fd = ::open((folder + "/answers" + std::to_string(worker)).c_str(),
                                  O_WRONLY | O_APPEND | O_CREAT | O_CLOEXEC, 0600);
            if (::write(fd, &count, sizeof count) != sizeof count) {
                ::_exit(1);
            }
            ::close(fd);
            ++shared.acknowledged[worker];
        } else {
            maintain(shared, folder, board, true);
        }
        if (count % BACKUP_EACH == 0) {
            maintain(shared, folder, board, false);
        }
        if (count % LISTING_EACH == 0) {
            list(shared, board);
        }
    }
}

unsigned int sum(const std::atomic<unsigned int> (&counts)[WORKERS])
{
    unsigned int all = 0;
    for (const auto& count : counts) {
        all += count;
    }
    return all;
}

std::set<unsigned int> answersOf(const std::string& folder, unsigned int board)
{
    std::set<unsigned int> numbers;
    for (unsigned int worker = board; worker < WORKERS; worker += BOARDS) {
        const std::string path = folder + "/answers" + std::to_string(worker);
        if (std::FILE* const file = std::fopen(path.c_str(), "rb")) {
            unsigned int count = 0;
            while (std::fread(&count, sizeof count, 1, file) == 1) {
                numbers.insert(numberOf(worker, count));
            }
            std::fclose(file);
        }
    }
    return numbers;
}

std::vector<unsigned int> storedOn(unsigned int board)
{
    std::vector<unsigned int> numbers;
    SELChainReader reader(static_cast<unsigned char>(board));
    SELChainReader::Record record = {};
    while (reader.next(record)) {
        numbers.push_back(TAVLib::readLE32(record.image + NUMBER_OFFSET));
    }
    if (!reader.getDamage().empty()) {
        fail(reader.getDamage()[0].path + ": " + reader.getDamage()[0].text);
    }
    return numbers;
}

/// The leading events of the last look that are gone: a rotation may drop those, and no others.
std::size_t countDropped(const std::vector<unsigned int>& before, const std::set<unsigned int>& now)
{
    std::size_t dropped = 0;
    while (dropped < before.size() && now.count(before[dropped]) == 0) {
        ++dropped;
    }
    return dropped;
}

/// Looks for every event of a board; `before` is what was there at the last look.
void check(const std::string& folder, unsigned int board, std::vector<unsigned int>& before,
           std::set<unsigned int>& gone, Totals& totals)
{
    const std::vector<unsigned int> stored = storedOn(board);
    const std::set<unsigned int> once(stored.begin(), stored.end());
    const std::string name = "board " + std::to_string(board);
    if (once.size() != stored.size()) {
        fail(name + " has an event twice");
    }
    const std::size_t dropped = countDropped(before, once);
    if (dropped != 0 && stored.size() < FULL_CHAIN) {
        fail(name + " lost " + std::to_string(dropped) + " events with a chain of " +
             std::to_string(stored.size()) + " that had room");
    }
    gone.insert(before.begin(), before.begin() + static_cast<long>(dropped));
    for (const unsigned int number : answersOf(folder, board)) {
        if (once.count(number) == 0 && gone.count(number) == 0) {
            fail(name + " lost event " + std::to_string(number & 0x0FFFFFFF) + " of process " +
                 std::to_string(number >> 28));
        }
    }
    totals.dropped += dropped;
    before = stored;
}

int runCommand(const std::string& command, const std::string& folder, const char* arguments)
{
    const std::string line = command + " --root " + folder + " sel check " + arguments + " >>" +
                             folder + "/check.log 2>&1";
    return WEXITSTATUS(std::system(line.c_str()));
}

/// The processes, in a group of their own; the first is its leader.
std::vector<pid_t> start(Shared& shared, const std::string& folder)
{
    std::vector<pid_t> workers;
    for (unsigned int worker = 0; worker < WORKERS; ++worker) {
        const pid_t leader = workers.empty() ? 0 : workers.front();
        const pid_t child = ::fork();
        if (child == 0) {
            ::setpgid(0, leader);
            work(shared, folder, worker);
        }
        ::setpgid(child, leader);
        workers.push_back(child);
    }
    return workers;
}

/// All of them at once, as a power cut does: a process that continued after a rotation was killed
/// would be a different case.
void stop(const std::vector<pid_t>& workers)
{
    ::killpg(workers.front(), SIGKILL);
    for (const pid_t child : workers) {
        int status = 0;
        ::waitpid(child, &status, 0);
        if (!WIFSIGNALED(status) || WTERMSIG(status) != SIGKILL) {
            fail("a process ended by itself");
        }
    }
}

}

int main(int argc, char** argv)
{
    if (argc != 6) {
        std::fputs("usage: soak FOLDER COMMAND EVENTS KILLS SEED\n", stderr);
        return 2;
    }
    const std::string folder = std::filesystem::absolute(argv[1]);
    const std::string command = argv[2];
    const auto events = static_cast<unsigned int>(std::atoi(argv[3]));
    const auto kills = static_cast<unsigned int>(std::atoi(argv[4]));
    std::mt19937 random(static_cast<unsigned int>(std::atoi(argv[5])));

    std::filesystem::remove_all(folder);
    std::filesystem::create_directories(folder);
    TAVLib::host::setSystemRoot(folder);
    if (std::system((command + " --root " + folder + " sel init >/dev/null").c_str()) != 0) {
        fail("sel init");
    }
    void* const memory =
        ::mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    Shared& shared = *new (memory) Shared{};

    Totals totals;
    std::vector<unsigned int> before[BOARDS];
    std::set<unsigned int> gone[BOARDS];
    for (unsigned int kill = 1; kill <= kills; ++kill) {
        const unsigned int share = events / kills;
        const unsigned int least = kill == kills ? events : share * (kill - 1) + share / 2;
        const unsigned int target = least + (kill == kills ? 0 : random() % share);
        const std::vector<pid_t> workers = start(shared, folder);
        while (sum(shared.acknowledged) < target) {
            ::sched_yield();
        }
        stop(workers);
        totals.killsInMaintenance += shared.inMaintenance.exchange(0) != 0 ? 1 : 0;

        totals.recoveries += runCommand(command, folder, "") != 0 ? 1 : 0;
        runCommand(command, folder, "--recover");
        for (unsigned int board = 0; board < BOARDS; ++board) {
            // What recovery leaves to the firmware's start: a working file or a backup that was
            // interrupted while it was written contains no events that are only there, and is
            // created again.
            const auto sb = static_cast<unsigned char>(board);
            BMCSELDataFile().fullEntryCheck(sb);
            BMCSELDataFile().backupTmpSel(sb);
        }
        if (runCommand(command, folder, "") != 0) {
            fail("the log is not sound after its recovery: " + folder + "/check.log");
        }
        for (unsigned int board = 0; board < BOARDS; ++board) {
            check(folder, board, before[board], gone[board], totals);
        }
    }
    for (const auto& stored : before) {
        totals.found += stored.size();
    }
    std::printf(
        "%u events answered with 1 by %u processes on %u boards, %u kills (%u in a rotation "
        "or backup), %u rotations, %u backups, %u listings, %u recoveries needed; %zu events "
        "in the logs, %zu dropped as the oldest, none lost, none twice\n",
        sum(shared.acknowledged), WORKERS, BOARDS, kills, totals.killsInMaintenance,
        shared.rotations.load(), shared.backups.load(), shared.listings.load(), totals.recoveries,
        totals.found, totals.dropped);
    return 0;
}
