// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/log/LogFile.h>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <utility>

#include <recordkit/posix/File.h>
#include <recordkit/selfile/BMCSELDataFile.h>

namespace recordkit::inspect {

using namespace SELFileLayout;

namespace {

constexpr unsigned long LONGEST = 65536UL * SLOT_SIZE;

void readContent(LogFile& file)
{
    const TAVLib::posix::File open(file.path, O_RDONLY);
    struct stat status = {};
    if (!open.isOpen() || ::fstat(open.get(), &status) != 0) {
        file.error = errno;
        return;
    }
    file.size = static_cast<unsigned long>(status.st_size);
    file.identity = static_cast<unsigned long>(status.st_ino);
    file.bytes.resize(std::min(file.size, LONGEST));
    std::size_t done = 0;
    file.error = TAVLib::posix::readAt(open.get(), 0, file.bytes.data(), file.bytes.size(), done)
                     ? 0
                     : errno;
    file.bytes.resize(done);
}

LogFile readLogFile(unsigned char board, int index, int kind)
{
    LogFile file;
    file.index = index;
    file.kind = kind;
    file.path = BMCSELDataFile().getFileName(board, index, kind);
    readContent(file);
    return file;
}

std::vector<LogFile> readOnce(unsigned char board)
{
    std::vector<LogFile> files = {readLogFile(board, 0, TEMPORARY)};
    for (int index = 1; index <= OLDEST_FILE; ++index) {
        files.push_back(readLogFile(board, index, PERSISTENT));
    }
    files.push_back(readLogFile(board, 0, PERSISTENT));
    return files;
}

/// Whether both readings found the same file with the same content.
bool isSame(const LogFile& one, const LogFile& other)
{
    return one.error == other.error && one.identity == other.identity && one.size == other.size &&
           one.bytes == other.bytes;
}

}

SlotView::SlotView(ByteView content) : bytes(content), tail(slots())
{
    for (unsigned int i = 0; i < slots(); ++i) {
        if (idOf(slot(i)) != EMPTY_RECORD_ID) {
            events.push_back(i);
            continue;
        }
        tail = std::min(tail, i);
        badSlots += isEmpty(slot(i)) ? 0 : 1;
    }
}

unsigned int SlotView::slots() const
{
    return static_cast<unsigned int>(bytes.size() / SLOT_SIZE);
}

ByteView SlotView::rest() const
{
    return bytes.part(std::size_t{slots()} * SLOT_SIZE);
}

bool SlotView::isCounted() const
{
    if (tail < slots()) {
        return isEmpty(slot(tail));
    }
    // A short slot at the end takes the place of one if it has a record id.
    const bool hasShort = rest().size() >= RECORD_ID_END;
    if (hasShort && rest().le16(RECORD_ID_OFFSET) == EMPTY_RECORD_ID) {
        return false;
    }
    return (rest().empty() || hasShort) && tail + (hasShort ? 1 : 0) == SLOTS;
}

bool SlotView::isInOrder() const
{
    return badSlots == 0 && events.size() == tail;
}

bool LogFile::isMissing() const
{
    return error == ENOENT;
}

bool LogFile::isSound() const
{
    return error == 0 && isRightSize() && SlotView(bytes).isInOrder();
}

std::vector<LogFile> readLogFiles(unsigned char board)
{
    // A rotation may rename, empty and fill files while they are read. What two readings after each
    // other found was there at the moment between them.
    constexpr int TRIALS = 50;
    std::vector<LogFile> files = readOnce(board);
    for (int i = 1; i < TRIALS; ++i) {
        std::vector<LogFile> again = readOnce(board);
        const bool isState = std::equal(files.begin(), files.end(), again.begin(), isSame);
        files = std::move(again);
        if (isState) {
            break;
        }
    }
    return files;
}

}
