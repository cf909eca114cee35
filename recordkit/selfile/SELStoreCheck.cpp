// SPDX-License-Identifier: Apache-2.0
#include <recordkit/selfile/SELStoreCheck.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <stdexcept>
#include <system_error>
#include <unistd.h>

#include <recordkit/posix/File.h>
#include <recordkit/selfile/BMCSELDataFile.h>

#include "SELFileScan.h"

namespace TAVLib::RecordKit {

using namespace SELFileLayout;

namespace {

constexpr unsigned int RECORD_TYPE_OFFSET = SELEntry::RECORD_TYPE + 1;
constexpr unsigned int TIMESTAMP_OFFSET = SELEntry::TIMESTAMP + 1;

/// Positions of the files in the list.
constexpr std::size_t WORKING = 0;
constexpr std::size_t BACKUP = 1;
constexpr std::size_t FIRST_ROTATED = 2;

std::string pathOf(unsigned char sb, int index, int kind)
{
    return BMCSELDataFile().getFileName(sb, index, kind);
}

std::string selName(int index)
{
    return "sel" + std::to_string(index);
}

/// Renames one persistent file of a board and records the action.
bool move(unsigned char sb, int from, int to, std::vector<std::string>& actions)
{
    const std::string oldPath = pathOf(sb, from, PERSISTENT);
    const std::string newPath = pathOf(sb, to, PERSISTENT);
    if (std::rename(oldPath.c_str(), newPath.c_str()) != 0) {
        actions.push_back(oldPath + " could not be renamed to " + newPath + ": " +
                          std::generic_category().message(errno));
        return false;
    }
    ::sync();
    actions.push_back(selName(from) + " renamed to " + selName(to));
    return true;
}

}

SELStoreCheck::SELStoreCheck(unsigned char sb) : board(sb)
{
    addFile(0, TEMPORARY);
    addFile(0, PERSISTENT);
    for (int index = 1; index <= OLDEST_FILE; ++index) {
        addFile(index, PERSISTENT);
    }
    findMissingWorkingFile();
    findDamage();
    findCutOffRotation();
    findGap();
    findShiftRequest();
}

const SELStoreCheck::File& SELStoreCheck::workingFile() const
{
    return files[WORKING];
}

const SELStoreCheck::File& SELStoreCheck::backup() const
{
    return files[BACKUP];
}

const SELStoreCheck::File& SELStoreCheck::rotated(int index) const
{
    if (index < 1 || index > OLDEST_FILE) {
        throw std::out_of_range("SELStoreCheck::rotated");
    }
    return files[FIRST_ROTATED + static_cast<std::size_t>(index - 1)];
}

bool SELStoreCheck::isSound() const
{
    return std::none_of(findings.begin(), findings.end(),
                        [](const Finding& finding) { return finding.isDamage; });
}

bool SELStoreCheck::recover(std::vector<std::string>& actions) const
{
    return hasNothingToRecover() || recover(SELStoreLock(board, 0), actions);
}

bool SELStoreCheck::recover(const SELStoreLock& lock, std::vector<std::string>& actions) const
{
    if (!lock.isHeld()) {
        actions.push_back("nothing was repaired: " + lock.getProblem());
        return false;
    }
    return SELStoreCheck(board).moveFiles(actions);
}

bool SELStoreCheck::hasNothingToRecover() const
{
    const std::vector<int> present = presentIndexes();
    // Of a chain without a gap the last index is the number of files.
    return !isCutOff && (present.empty() || *std::max_element(present.begin(), present.end()) ==
                                                static_cast<int>(present.size()));
}

bool SELStoreCheck::moveFiles(std::vector<std::string>& actions) const
{
    std::vector<int> present = presentIndexes();
    const auto isPresent = [&present](int index) {
        return std::find(present.begin(), present.end(), index) != present.end();
    };
    int firstGap = 1;
    while (isPresent(firstGap)) {
        ++firstGap;
    }
    if (isCutOff) {
        if (firstGap > OLDEST_FILE) {
            actions.push_back(selName(OLDEST_FILE) + " dropped, as the rotation does");
            firstGap = OLDEST_FILE;
        } else {
            present.push_back(firstGap);
        }
        for (int index = firstGap - 1; index >= 0; --index) {
            if (!move(board, index, index + 1, actions)) {
                return false;
            }
        }
    }
    int next = 1;
    std::sort(present.begin(), present.end());
    for (const int index : present) {
        if (index != next && !move(board, index, next, actions)) {
            return false;
        }
        ++next;
    }
    return true;
}

void SELStoreCheck::addFile(int index, int kind)
{
    const std::string path = pathOf(board, index, kind);
    SELFileScan::Buffer buffer;
    const SELFileScan scan(path, buffer);
    File file = {};
    file.index = index;
    file.kind = kind;
    file.path = path;
    file.isMissing = scan.isMissing();
    file.size = scan.getSize();
    file.count = scan.getCount();
    file.damage = scan.isMissing() ? "" : scan.describeDamage();
    if (file.count != 0) {
        file.firstId = idOf(scan.slot(0));
        file.lastId = idOf(scan.slot(file.count - 1));
    }
    for (unsigned int i = 0; i < file.count; ++i) {
        const unsigned char* const slot = scan.slot(i);
        if (slot[RECORD_TYPE_OFFSET] < SELEntry::FIRST_OEM_UNTIMESTAMPED_RECORD) {
            file.lastTime = readLE32(slot + TIMESTAMP_OFFSET);
            file.firstTime = file.hasTimes ? file.firstTime : file.lastTime;
            file.hasTimes = true;
        }
    }
    files.push_back(file);
}

void SELStoreCheck::findMissingWorkingFile()
{
    if (workingFile().isMissing) {
        findings.push_back({WORKING_FILE_MISSING, true,
                            workingFile().path +
                                " is missing: no event can be stored until the board "
                                "is initialised"});
    }
}

void SELStoreCheck::findDamage()
{
    for (const File& file : files) {
        if (!file.damage.empty()) {
            findings.push_back({FILE_DAMAGED, true, file.path + ": " + file.damage});
        }
    }
}

void SELStoreCheck::findCutOffRotation()
{
    const File& saved = backup();
    // Without a working file the backup waits to be restored; a broken one would hide the chain.
    if (workingFile().isMissing || saved.count == 0 || saved.size != FILE_SIZE) {
        return;
    }
    if (!isBackupPartOfWorkingFile()) {
        isCutOff = true;
        findings.push_back({ROTATION_CUT_OFF, true,
                            saved.path + " holds " + std::to_string(saved.count) +
                                " events that the working file does not: a rotation was cut off, "
                                "and the next one would delete them"});
    }
}

bool SELStoreCheck::isBackupPartOfWorkingFile() const
{
    SELFileScan::Buffer currentSlots;
    SELFileScan::Buffer savedSlots;
    const SELFileScan current(workingFile().path, currentSlots);
    const SELFileScan saved(backup().path, savedSlots);
    if (!current.isReadable() || !saved.isReadable()) {
        return true; // If either file cannot be read, assume nothing and move nothing.
    }
    const unsigned int count = backup().count;
    return current.getCount() >= count && saved.getCount() == count &&
           std::equal(saved.slot(0), saved.slot(count), current.slot(0));
}

void SELStoreCheck::findGap()
{
    const std::vector<int> present = presentIndexes();
    if (!present.empty() && present.back() != static_cast<int>(present.size())) {
        int firstGap = 1;
        for (const int index : present) {
            firstGap += index == firstGap ? 1 : 0;
        }
        findings.push_back({CHAIN_GAP, true,
                            pathOf(board, firstGap, PERSISTENT) +
                                " is missing: the files behind it, up to " +
                                selName(present.back()) + ", cannot be reached"});
    }
}

namespace {

/// Whether a text is the result of a shift: digits, after a minus where it failed. Anybody may have
/// made the file, so that nothing else of it is repeated.
bool isNumber(const std::string& text)
{
    const std::size_t first = text[0] == '-' ? 1 : 0;
    return text.size() > first && text.find_first_not_of("0123456789", first) == std::string::npos;
}

}

void SELStoreCheck::findShiftRequest()
{
    const std::string path = BMCSELDataFile::getShiftRequestFile();
    const posix::File file(path, O_RDONLY);
    if (!file.isOpen()) {
        return;
    }
    char content[17] = {};
    std::size_t count = 0;
    posix::readAt(file.get(), 0, content, sizeof content, count);
    const bool isAnswer = count == sizeof content - 1 && isNumber(content);
    findings.push_back(
        {SHIFT_REQUEST_LEFT, false,
         path + (isAnswer ? " holds the result " + std::string(content) +
                                " of an earlier rotation that nobody took: the next rotation "
                                "takes it for a request"
                          : " is there: a rotation was requested and has not run")});
}

std::vector<int> SELStoreCheck::presentIndexes() const
{
    std::vector<int> indexes;
    for (int index = 1; index <= OLDEST_FILE; ++index) {
        if (!rotated(index).isMissing) {
            indexes.push_back(index);
        }
    }
    return indexes;
}

}
