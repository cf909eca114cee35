// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_SELFILE_SELFILESCAN_H
#define RECORDKIT_SELFILE_SELFILESCAN_H

#include <string>
#include <vector>

#include <recordkit/selfile/SELFileLayout.h>

namespace TAVLib::RecordKit {

/// One event log file, opened once and read in one piece, and what its slots hold.
///
/// Of a file that is longer than it should be, the leading 65536 slots are looked at: the store
/// counts in 16 bits. Nothing is traced or thrown but std::bad_alloc.
class SELFileScan {
public:
    /// Where a file is read to: 110400 bytes, or more for a longer file. Several scans may share
    /// one, one after another.
    using Buffer = std::vector<unsigned char>;

    /// Opens the file and reads it for the first time.
    SELFileScan(const std::string& path, Buffer& buffer);
    ~SELFileScan();
    SELFileScan(const SELFileScan&) = delete;
    SELFileScan& operator=(const SELFileScan&) = delete;

    /// Reads the file again, to have it in the buffer; what is known of it is found out again.
    void read();

    bool isMissing() const;
    bool isReadable() const { return error == 0; }
    /// errno of the call that failed, 0 when the file was read.
    int getError() const { return error; }
    long getSize() const { return size; }
    bool isRightSize() const { return size == SELFileLayout::FILE_SIZE; }

    /// The store's code for the tail of this file: SUCCESS, FILE_FULL, DAMAGED_TAIL,
    /// READ_FAILED or NOT_FOUND (BMCSELDataFile::Code), or OPEN_FAILED.
    unsigned int getCode() const { return code; }
    /// Records from slot 0 to the tail or to the damage.
    unsigned int getCount() const { return count; }

    /// What an administrator must know of this file, in words; empty for a sound one.
    std::string describeDamage() const;

    /// A slot in the buffer; it is this file's until another one is read.
    const unsigned char* slot(unsigned int index) const
    {
        return buffer.data() + std::size_t{index} * SELFileLayout::SLOT_SIZE;
    }

private:
    void fillBuffer();
    void findTail();
    void findStrays();

    Buffer& buffer;
    int fd;
    int error = 0;
    long size = -1;
    std::size_t filled = 0;
    unsigned int code;
    unsigned int count = 0;
    unsigned int strayCount = 0; ///< slots after the first empty one that are not empty
    unsigned int firstStray = 0;
};

}

#endif
