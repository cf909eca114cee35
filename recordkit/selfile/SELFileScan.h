// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_SELFILE_SELFILESCAN_H
#define RECORDKIT_SELFILE_SELFILESCAN_H

#include <string>
#include <utility>
#include <vector>

#include <recordkit/selfile/SELFileLayout.h>

namespace TAVLib::RecordKit {

/// One event log file, opened once and read whole, and what its slots hold.
///
/// Of a file that is longer than it should be, only the leading 800 slots are looked at.
class SELFileScan {
public:
    /// Reads the file; nothing is traced or thrown.
    explicit SELFileScan(const std::string& path);

    bool isMissing() const;
    /// errno of the call that failed, 0 when the file was read.
    int getError() const { return error; }
    long getSize() const { return size; }
    bool isRightSize() const { return size == SELFileLayout::FILE_SIZE; }

    /// The store's code for the tail of this file: SUCCESS, FILE_FULL, DAMAGED_TAIL,
    /// READ_FAILED or NOT_FOUND (BMCSELDataFile::Code), or OPEN_FAILED.
    unsigned int getCode() const { return code; }
    /// Records from slot 0 to the tail or to the damage.
    unsigned int getCount() const { return count; }
    /// Slots behind the first empty one that are not empty, and the first of them.
    unsigned int getStrayCount() const { return strayCount; }
    unsigned int getFirstStray() const { return firstStray; }

    /// What an administrator must know of this file, in words; empty for a sound one.
    std::string describeDamage() const;

    const unsigned char* slot(unsigned int index) const
    {
        return bytes.data() + std::size_t{index} * SELFileLayout::SLOT_SIZE;
    }
    /// The records from slot 0 on, getCount() slots; taken out of this object.
    std::vector<unsigned char> takeBytes() { return std::move(bytes); }

private:
    void load(const std::string& path);
    void findTail();
    void findStrays();

    int error = 0;
    long size = -1;
    unsigned int code;
    unsigned int count = 0;
    unsigned int strayCount = 0;
    unsigned int firstStray = 0;
    std::vector<unsigned char> bytes;
};

}

#endif
