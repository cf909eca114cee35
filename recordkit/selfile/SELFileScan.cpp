// SPDX-License-Identifier: Apache-2.0
#include <recordkit/selfile/SELFileScan.h>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

#include <recordkit/selfile/BMCSELDataFile.h>

namespace TAVLib::RecordKit {

using namespace SELFileLayout;

namespace {

/// One slot more than a 16-bit count can express.
constexpr std::size_t LONGEST_SCAN = std::size_t{65536} * SLOT_SIZE;

}

SELFileScan::SELFileScan(const std::string& path, Buffer& sharedBuffer)
    : buffer(sharedBuffer), fd(TEMP_FAILURE_RETRY(::open(path.c_str(), O_RDONLY | O_CLOEXEC))),
      code(BMCSELDataFile::OPEN_FAILED)
{
    if (fd == -1) {
        error = errno;
    } else {
        read();
    }
}

SELFileScan::~SELFileScan()
{
    if (fd != -1) {
        ::close(fd);
    }
}

void SELFileScan::read()
{
    count = 0;
    strayCount = 0;
    code = BMCSELDataFile::OPEN_FAILED;
    fillBuffer();
    if (error == 0) {
        findTail();
        findStrays();
    }
}

bool SELFileScan::isMissing() const
{
    return error == ENOENT;
}

std::string SELFileScan::describeDamage() const
{
    if (error != 0) {
        return "cannot be read: " + std::generic_category().message(error);
    }
    const auto at = [](unsigned int index) {
        return "slot " + std::to_string(index) + " (offset " + std::to_string(index * SLOT_SIZE) +
               ")";
    };
    std::vector<std::string> findings;
    if (!isRightSize()) {
        findings.push_back(std::to_string(size) + " bytes long, expected " +
                           std::to_string(FILE_SIZE));
    }
    if (code == BMCSELDataFile::DAMAGED_TAIL) {
        findings.push_back(at(count) + " has record id FFFFh but is not empty");
    }
    if (strayCount != 0) {
        findings.push_back(std::to_string(strayCount) + " slots used behind the tail, from " +
                           at(firstStray) + " on");
    }
    std::string text;
    for (const std::string& finding : findings) {
        text += (text.empty() ? "" : "; ") + finding;
    }
    return text;
}

void SELFileScan::fillBuffer()
{
    struct stat status = {};
    if (::fstat(fd, &status) == -1) {
        error = errno;
        return;
    }
    size = static_cast<long>(status.st_size);
    // The store finds the tail of an oversized working file, and counts the records before it.
    buffer.resize(std::clamp<std::size_t>(static_cast<std::size_t>(size), FILE_SIZE, LONGEST_SCAN));
    filled = 0;
    ssize_t got = 1;
    while (filled < buffer.size() && got > 0) {
        got = TEMP_FAILURE_RETRY(::pread(fd, buffer.data() + filled, buffer.size() - filled,
                                         static_cast<off_t>(filled)));
        filled += got > 0 ? static_cast<std::size_t>(got) : 0;
    }
    error = got < 0 ? errno : 0;
}

void SELFileScan::findTail()
{
    const auto slots = static_cast<unsigned int>(filled / SLOT_SIZE);
    while (count < slots && idOf(slot(count)) != EMPTY_RECORD_ID) {
        ++count;
    }
    if (count < slots) {
        code = isEmpty(slot(count)) ? BMCSELDataFile::SUCCESS : BMCSELDataFile::DAMAGED_TAIL;
        return;
    }
    // A short slot after the complete ones is judged as in the store's own search.
    const std::size_t rest = filled % SLOT_SIZE;
    constexpr std::size_t RECORD_ID_END = RECORD_ID_OFFSET + 2;
    if (rest != 0 && rest < RECORD_ID_END) {
        code = BMCSELDataFile::READ_FAILED;
    } else if (rest != 0 && idOf(slot(count)) == EMPTY_RECORD_ID) {
        code = BMCSELDataFile::DAMAGED_TAIL;
    } else {
        const std::size_t end = filled + (rest == 0 ? 0 : SLOT_SIZE - rest);
        code = end == FILE_SIZE ? BMCSELDataFile::FILE_FULL : BMCSELDataFile::NOT_FOUND;
    }
}

void SELFileScan::findStrays()
{
    const auto slots = static_cast<unsigned int>(filled / SLOT_SIZE);
    for (unsigned int i = count + 1; i < slots; ++i) {
        if (!isEmpty(slot(i))) {
            firstStray = strayCount == 0 ? i : firstStray;
            ++strayCount;
        }
    }
}

}
