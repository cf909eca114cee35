// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_SELFILE_SELCHAINREADER_H
#define RECORDKIT_SELFILE_SELCHAINREADER_H

#include <memory>
#include <string>
#include <vector>

#include <recordkit/platform/Export.h>

namespace TAVLib::RecordKit {

class SELFileScan;

/// Walks the whole event log of one board, for callers that list everything: each file is opened
/// once and read in one piece, whereas readStoredRecord counts the chain again for every record.
///
/// The constructor opens the chain and counts it; the descriptors stay open as long as the reader
/// exists, so that a rotation in the meantime does not mix files up. Only one file is in memory at
/// a time (110400 bytes, more for an oversized working file). Events stored after the constructor
/// are not returned. Nothing is traced, and only std::bad_alloc is thrown.
class RECORDKIT_API SELChainReader {
public:
    enum Order { OLDEST_FIRST, NEWEST_FIRST };

    struct Record {
        /// The record's number for readStoredRecord, from 1; 0 for the records before the damage in
        /// a damaged file, which have no number.
        unsigned int logNumber;
        int fileIndex;              ///< 0 working file, 1 to 7 rotated
        unsigned int slot;          ///< 0 to 799; higher in an oversized working file
        const unsigned char* image; ///< 138 bytes, valid until the next record is asked for
    };

    /// A file that could not be read as one of the chain.
    struct Damage {
        int fileIndex;
        std::string path;
        std::string text; ///< what is wrong with it, as text
    };

    explicit SELChainReader(unsigned char sb, Order order = OLDEST_FIRST);
    ~SELChainReader();
    SELChainReader(const SELChainReader&) = delete;
    SELChainReader& operator=(const SELChainReader&) = delete;

    /// Fetches the next record; returns false after the last one.
    bool next(Record& record);

    /// Records that have a log number.
    unsigned int getTotal() const { return total; }
    /// Damage found so far; a file that could be counted but later not read is added by next().
    const std::vector<Damage>& getDamage() const { return damage; }

private:
    struct File {
        int index;
        std::string path;
        unsigned int firstLogNumber; ///< 0 for a damaged file, whose records have no number
        unsigned int count;
        std::unique_ptr<SELFileScan> scan;
    };

    void addRotatedFiles(unsigned char sb);
    void addFile(unsigned char sb, int index);
    void goToFile(std::size_t number);

    Order order;
    std::vector<unsigned char> buffer;
    std::vector<File> files; ///< in the order of the walk
    std::vector<Damage> damage;
    unsigned int total = 0;
    std::size_t file = 0;
    unsigned int position = 0; ///< records returned from the current file
};

}

#endif
