// SPDX-License-Identifier: Apache-2.0
#include "SELFileScan.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>

#include "SELSlotSearch.h"

namespace TAVLib::RecordKit {

using namespace SELFileLayout;

namespace {

/// One slot more than a 16-bit count can express.
constexpr std::size_t LONGEST_SCAN = std::size_t{65536} * SLOT_SIZE;

/// Bytes that were read, as a search looks at them. Nothing is traced.
class SlotsInMemory : public SELSlotSource {
public:
    SlotsInMemory(const unsigned char* first, std::size_t count) : bytes(first), size(count) {}

    long lookAt(unsigned long offset, const unsigned char*& found) override
    {
        found = bytes + offset;
        return static_cast<long>(std::min<std::size_t>(size - offset, BYTES_AT_ONCE));
    }
    bool seek(unsigned long offset) override
    {
        position = offset;
        return true;
    }
    long read(unsigned char* out, unsigned int wanted) override
    {
        const std::size_t rest = position < size ? size - position : 0;
        const std::size_t count = std::min<std::size_t>(rest, wanted);
        std::copy_n(bytes + (size - rest), count, out);
        return static_cast<long>(count);
    }
    bool hasRecordId(const unsigned char*, unsigned int count) const override
    {
        return count >= RECORD_ID_END;
    }

private:
    const unsigned char* bytes;
    std::size_t size;
    unsigned long position = 0;
};

}

SELFileScan::SELFileScan(const std::string& path, Buffer& sharedBuffer)
    : buffer(sharedBuffer), file(path, O_RDONLY)
{
    if (file.isOpen()) {
        read();
    } else {
        error = errno;
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

bool SELFileScan::isCounted() const
{
    return code == BMCSELDataFile::SUCCESS || code == BMCSELDataFile::FILE_FULL;
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
    if (::fstat(file.get(), &status) == -1) {
        error = errno;
        return;
    }
    size = static_cast<long>(status.st_size);
    // The store finds the tail of an oversized working file, and counts the records before it.
    buffer.resize(std::clamp<std::size_t>(static_cast<std::size_t>(size), FILE_SIZE, LONGEST_SCAN));
    error = posix::readAt(file.get(), 0, buffer.data(), buffer.size(), filled) ? 0 : errno;
}

void SELFileScan::findTail()
{
    SlotsInMemory source(buffer.data(), filled);
    unsigned long addr = 0;
    code = RecordKit::findTail(source, addr);
    // A short last slot never counts as a record, even if the search went past it.
    count = static_cast<unsigned int>(std::min<std::size_t>(addr, filled) / SLOT_SIZE);
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
