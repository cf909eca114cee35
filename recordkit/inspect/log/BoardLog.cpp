// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/log/BoardLog.h>

#include <algorithm>
#include <string_view>
#include <system_error>
#include <unordered_map>

#include <recordkit/selfile/SELStoreCheck.h>

namespace recordkit::inspect {

using namespace SELFileLayout;
using TAVLib::RecordKit::SELStoreCheck;

namespace {

/// What is wrong with a file that exists, in the words of the store's own check.
std::string damageOf(unsigned char board, const LogFile& file)
{
    if (file.error != 0) {
        return "cannot be read: " + std::generic_category().message(file.error);
    }
    const SELStoreCheck check(board);
    for (const SELStoreCheck::File& checked : check.getFiles()) {
        if (checked.path == file.path && !checked.damage.empty()) {
            return checked.damage;
        }
    }
    return "changed while it was read";
}

std::string_view imageOf(const LogSlot& slot)
{
    return {reinterpret_cast<const char*>(slot.image), SLOT_SIZE};
}

/// Whether a backup is one of the working file as it was: it has the same events, or fewer.
bool isBackupOf(const LogFile& working, const LogFile& backup)
{
    const std::size_t used = std::size_t{SlotView(backup.bytes).getTail()} * SLOT_SIZE;
    return used <= std::size_t{SlotView(working.bytes).getTail()} * SLOT_SIZE &&
           ByteView(backup.bytes).part(0, used) == ByteView(working.bytes).part(0, used);
}

}

BoardLog::BoardLog(unsigned char sb) : board(sb), files(readLogFiles(sb))
{
    addChain();
    addBackup();
    addWorkingFile();
    for (LogSlot& slot : slots) {
        slot.logNumber = slot.state == EventState::REGULAR ? ++counted : 0;
    }
    if (!problems.empty()) {
        markCopies();
    }
    for (const LogSlot& slot : slots) {
        if (slot.logNumber == 0 && !slot.isCopy) {
            ++problems[problemOf[slot.file]].events;
        }
    }
}

std::size_t BoardLog::getTotal() const
{
    return static_cast<std::size_t>(std::count_if(
        slots.begin(), slots.end(), [](const LogSlot& slot) { return !slot.isCopy; }));
}

bool BoardLog::isUninitialised() const
{
    return std::all_of(files.begin(), files.end(),
                       [](const LogFile& file) { return file.isMissing(); });
}

Event BoardLog::decode(const LogSlot& slot) const
{
    Event event =
        decodeEvent(board, {slot.logNumber, files[slot.file].index, slot.slot, slot.image});
    event.state = slot.state;
    return event;
}

void BoardLog::addProblem(const LogFile& file, const std::string& text)
{
    problems.push_back({file.path, text, 0, isUninitialised()});
}

void BoardLog::addWorkingFile()
{
    const LogFile& file = files[WORKING];
    if (!file.isSound()) {
        problemOf[WORKING] = problems.size();
        addProblem(file, damageOf(board, file));
    }
    addSlots(WORKING, true);
}

/// From the newest file to the oldest: which of them the store reaches, and why not the others.
void BoardLog::addChain()
{
    int last = OLDEST_FILE;
    while (last > 0 && files[static_cast<std::size_t>(last)].isMissing()) {
        --last;
    }
    std::array<bool, OLDEST_FILE + 1> isReached = {};
    bool isChain = true;
    bool isGap = false;
    for (std::size_t i = 1; i <= static_cast<std::size_t>(last); ++i) {
        const LogFile& file = files[i];
        if (!file.isMissing() && !file.isSound()) {
            addProblem(file, damageOf(board, file));
        } else if (file.isMissing() && !isGap) {
            addProblem(file, "missing, so that the store does not reach the files after it");
        }
        isGap = file.isMissing();
        isChain = isChain && !isGap && (file.error != 0 || file.isRightSize());
        isReached[i] = isChain;
        problemOf[i] = problems.empty() ? 0 : problems.size() - 1;
    }
    for (auto i = static_cast<std::size_t>(last); i > 0; --i) {
        addSlots(i, isReached[i]);
    }
}

void BoardLog::addBackup()
{
    const LogFile& working = files[WORKING];
    const LogFile& backup = files[BACKUP];
    if (backup.isMissing()) {
        return;
    }
    const bool isOrdinary = working.error == 0 && isBackupOf(working, backup);
    if (!backup.isSound()) {
        addProblem(backup, damageOf(board, backup));
    } else if (!isOrdinary && working.error == 0) {
        addProblem(backup,
                   "contains events that the working file does not: a rotation was cut off");
    }
    // Without a working file, that is the problem.
    problemOf[BACKUP] =
        working.error == 0 && !problems.empty() ? problems.size() - 1 : problems.size();
    if (!backup.isSound() || !isOrdinary) {
        addSlots(BACKUP, false);
    }
}

void BoardLog::addSlots(std::size_t number, bool isReached)
{
    const LogFile& file = files[number];
    const SlotView view(file.bytes);
    const bool isCounted = isReached && file.error == 0 && view.isCounted();
    const EventState other = number == BACKUP               ? EventState::BACKUP
                             : !isReached && file.isSound() ? EventState::UNREACHABLE
                                                            : EventState::DAMAGED;
    for (const unsigned int at : view.getEvents()) {
        const bool isRegular = isCounted && at < view.getTail();
        slots.push_back(
            {number, at, 0, isRegular ? EventState::REGULAR : other, false, view.slot(at)});
    }
}

/// Of an event that several files contain, the one in its regular place stays; of several such, the
/// oldest. Inside one file an event may occur more than once.
void BoardLog::markCopies()
{
    std::unordered_map<std::string_view, std::size_t> found;
    for (const bool isRegular : {true, false}) {
        for (LogSlot& slot : slots) {
            if ((slot.state == EventState::REGULAR) == isRegular) {
                const auto known = found.emplace(imageOf(slot), slot.file).first;
                slot.isCopy = known->second != slot.file;
            }
        }
    }
}

}
