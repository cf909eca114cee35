// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/log/LogRepair.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <system_error>

#include <fmt/format.h>
#include <unistd.h>

#include <recordkit/inspect/bytes/Numbers.h>
#include <recordkit/inspect/log/BoardLog.h>
#include <recordkit/posix/File.h>
#include <recordkit/selfile/BMCSELDataFile.h>
#include <recordkit/selfile/SELStoreCheck.h>

namespace recordkit::inspect {

using namespace SELFileLayout;
using TAVLib::RecordKit::SELStoreCheck;
using TAVLib::RecordKit::SELStoreLock;

namespace {

std::string textOf(int error)
{
    return std::generic_category().message(error);
}

/// The first free name for a copy of a file that is not whole.
std::string freeName(const std::string& path)
{
    std::error_code ignored;
    unsigned int number = 1;
    while (std::filesystem::exists(
        std::filesystem::symlink_status(fmt::format("{}.damaged-{}", path, number), ignored))) {
        ++number;
    }
    return fmt::format("{}.damaged-{}", path, number);
}

/// The events of a file in the slots from the first on; the newest ones if there are more.
Bytes packed(const std::vector<const unsigned char*>& events)
{
    Bytes bytes(FILE_SIZE, EMPTY_BYTE);
    const std::size_t first = events.size() > SLOTS ? events.size() - SLOTS : 0;
    for (std::size_t i = first; i < events.size(); ++i) {
        std::copy_n(events[i], SLOT_SIZE,
                    bytes.begin() + static_cast<long>((i - first) * SLOT_SIZE));
    }
    return bytes;
}

/// Whether a file contains anything that packing its events would lose.
bool hasMoreThanEvents(const LogFile& file)
{
    const SlotView view(file.bytes);
    const ByteView rest = view.rest();
    return view.getBadSlots() != 0 || view.getEvents().size() > SLOTS ||
           file.size != file.bytes.size() ||
           std::any_of(rest.begin(), rest.end(), [](unsigned char b) { return b != EMPTY_BYTE; });
}

/// One round of repairs.
class Round {
public:
    Round(unsigned char sb, std::vector<std::string>& done)
        : board(sb), log(sb), files(log.getFiles()), actions(done)
    {
    }

    /// Before the store's own recovery: that would drop the oldest file of a full chain, and move a
    /// backup into the chain as a whole although other files have most of its events.
    bool prepare() { return cleanBackup() && makeRoom(); }
    bool repairFiles()
    {
        return std::all_of(files.begin(), files.end(),
                           [this](const LogFile& file) { return repair(file); }) &&
               restoreWorkingFile();
    }

private:
    bool failed(const std::string& path, const char* what, const std::string& reason)
    {
        actions.push_back(fmt::format("{} could not be {}: {}", path, what, reason));
        return false;
    }
    bool write(const std::string& path, const Bytes& bytes)
    {
        const auto failure = TAVLib::posix::replaceFile(path, bytes);
        ::sync();
        return !failure.isFailure() || failed(failure.path, "written", textOf(failure.error));
    }
    bool setAside(const std::string& path, const std::string& why)
    {
        const std::string name = freeName(path);
        std::error_code error;
        std::filesystem::rename(path, name, error);
        ::sync();
        if (error) {
            return failed(path, "renamed", error.message());
        }
        actions.push_back(fmt::format("{} renamed to {}: {}", path, name, why));
        return true;
    }

    /// Writes a file again with some of its events; the whole of it is kept first if there is more.
    bool rewrite(const LogFile& file, const std::vector<const unsigned char*>& events,
                 bool keepsAll)
    {
        std::string kept;
        if (file.size > file.bytes.size()) { // More than was read: it cannot be copied.
            if (!setAside(file.path, "too long")) {
                return false;
            }
        } else if (keepsAll) {
            const std::string name =
                freeName(BMCSELDataFile().getFileName(board, file.index, PERSISTENT));
            if (!write(name, file.bytes)) {
                return false;
            }
            kept = ", as it was in " + name;
        }
        if (!write(file.path, packed(events))) {
            return false;
        }
        actions.push_back(fmt::format("{} written again with {}{}", file.path,
                                      counted(std::min<std::size_t>(events.size(), SLOTS), "event"),
                                      kept));
        return true;
    }

    /// The events of a file that no other file contains, or that this one contains in their place.
    std::vector<const unsigned char*> eventsOf(std::size_t number) const
    {
        std::vector<const unsigned char*> events;
        for (const LogSlot& slot : log.getSlots()) {
            if (slot.file == number && !slot.isCopy) {
                events.push_back(slot.image);
            }
        }
        return events;
    }

    /// Leaves in a backup that a rotation left only the events that no other file contains.
    bool cleanBackup()
    {
        const LogFile& backup = files[BoardLog::BACKUP];
        const std::vector<const unsigned char*> own = eventsOf(BoardLog::BACKUP);
        const bool isListed =
            std::any_of(log.getSlots().begin(), log.getSlots().end(),
                        [](const LogSlot& slot) { return slot.file == BoardLog::BACKUP; });
        if (files[BoardLog::WORKING].error != 0 || !isListed ||
            own.size() == SlotView(backup.bytes).getEvents().size()) {
            return true;
        }
        return own.empty() ? setAside(backup.path, "other files contain all of its events")
                           : rewrite(backup, own, true);
    }

    bool makeRoom()
    {
        const LogFile& oldest = files[OLDEST_FILE];
        const bool isFull = std::none_of(files.begin() + 1, files.begin() + OLDEST_FILE + 1,
                                         [](const LogFile& file) { return file.isMissing(); });
        const SELStoreCheck check(board);
        const bool isCutOff = std::any_of(
            check.getFindings().begin(), check.getFindings().end(),
            [](const auto& finding) { return finding.kind == SELStoreCheck::ROTATION_CUT_OFF; });
        return !isFull || !isCutOff ||
               (oldest.error == 0 && SlotView(oldest.bytes).getEvents().empty()) ||
               setAside(oldest.path, "the chain has no room for it");
    }

    bool repair(const LogFile& file)
    {
        if (file.isMissing() || file.isSound()) {
            return true;
        }
        if (file.error == EACCES || file.error == EPERM) {
            return failed(file.path, "read", textOf(file.error));
        }
        if (file.error != 0) {
            return setAside(file.path, textOf(file.error));
        }
        const std::size_t number = static_cast<std::size_t>(&file - files.data());
        const std::vector<const unsigned char*> own = eventsOf(number);
        return rewrite(file, own,
                       hasMoreThanEvents(file) ||
                           own.size() != SlotView(file.bytes).getEvents().size());
    }

    /// As the firmware does at its start. A board without any file stays as it is.
    bool restoreWorkingFile()
    {
        const LogFile& working = files[BoardLog::WORKING];
        if (!working.isMissing() || log.isUninitialised()) {
            return true;
        }
        BMCSELDataFile store;
        if (store.restoreTmpSel(board) == 1) {
            actions.push_back(working.path + " restored from its backup");
            return true;
        }
        if (store.truncate(board, 0, TEMPORARY) != BMCSELDataFile::SUCCESS) {
            return failed(working.path, "created", textOf(errno));
        }
        actions.push_back(working.path + " created");
        return true;
    }

    unsigned char board;
    BoardLog log;
    const std::vector<LogFile>& files;
    std::vector<std::string>& actions;
};

}

bool repairLog(unsigned char board, std::vector<std::string>& actions)
{
    const BoardLog log(board);
    if (log.isUninitialised() || (log.getProblems().empty() && SELStoreCheck(board).isSound())) {
        return true;
    }
    // A rotation in progress looks like one that was cut off: each round looks again, under the
    // lock.
    const SELStoreLock lock(board, 0);
    if (!lock.isHeld()) {
        actions.push_back("nothing was repaired: " + lock.getProblem());
        return false;
    }
    // A file that was repaired or set aside can be what the store's own recovery waits for.
    constexpr int ROUNDS = 4;
    bool isDone = true;
    std::size_t before = actions.size() + 1;
    for (int i = 0; i < ROUNDS && isDone && actions.size() != before; ++i) {
        before = actions.size();
        isDone = Round(board, actions).prepare() && SELStoreCheck(board).recover(lock, actions) &&
                 Round(board, actions).repairFiles();
    }
    return isDone;
}

}
