// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_SELFILE_SELFILESCAN_H
#define RECORDKIT_SELFILE_SELFILESCAN_H

#include <string>
#include <vector>

#include <recordkit/posix/File.h>
#include <recordkit/selfile/BMCSELDataFile.h>
#include <recordkit/selfile/SELFileLayout.h>

namespace TAVLib::RecordKit {

/// One event log file, opened once and read in one piece, and the state of its slots.
///
/// Only the first 65536 slots of an oversized file are examined: the store counts in 16 bits.
/// Nothing is traced, and only std::bad_alloc is thrown.
class SELFileScan {
public:
    /// The buffer that a file is read into: 110400 bytes, or more for a longer file. Several scans
    /// may share one buffer, one after another.
    using Buffer = std::vector<unsigned char>;

    /// Opens the file and reads it for the first time.
    SELFileScan(const std::string& path, Buffer& buffer);

    /// Reads the file again into the buffer and recomputes everything derived from it.
    void read();

    bool isMissing() const;
    bool isReadable() const { return error == 0; }
    /// errno of the call that failed, 0 when the file was read.
    int getError() const { return error; }
    long getSize() const { return size; }
    bool isRightSize() const { return size == SELFileLayout::FILE_SIZE; }

    /// The store's code for the tail of this file: SUCCESS, FILE_FULL, DAMAGED_TAIL,
    /// READ_FAILED or NOT_FOUND, or OPEN_FAILED.
    BMCSELDataFile::Code getCode() const { return code; }
    /// Whether the store counts the records of this file: it has a tail, or is full.
    bool isCounted() const;
    /// Records from slot 0 to the tail or to the damage.
    unsigned int getCount() const { return count; }

    /// What an administrator must know about this file, as text; empty for a sound one.
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
    posix::File file;
    int error = 0;
    long size = -1;
    std::size_t filled = 0;
    BMCSELDataFile::Code code = BMCSELDataFile::OPEN_FAILED;
    unsigned int count = 0;
    unsigned int strayCount = 0; ///< non-empty slots after the first empty one
    unsigned int firstStray = 0;
};

}

#endif
