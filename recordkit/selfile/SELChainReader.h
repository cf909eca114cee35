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
/// once and read in one piece, where readStoredRecord counts the chain again for every record.
///
/// The constructor opens the chain and counts it; the descriptors stay open as long as the
/// reader, so that a rotation in the meantime does not mix files up. One file is in memory at a
/// time (110400 bytes, or as long as a working file that is too long). Events stored after the
/// constructor are not given. Nothing is traced or thrown but std::bad_alloc.
class RECORDKIT_API SELChainReader {
public:
    enum Order { OLDEST_FIRST, NEWEST_FIRST };

    struct Record {
        /// The number that readStoredRecord knows the record by, from 1; 0 for the records before
        /// the damage of a damaged file, which have none.
        unsigned int logNumber;
        int fileIndex;              ///< 0 working file, 1 to 7 rotated
        unsigned int slot;          ///< 0 to 799, and above in a working file that is too long
        const unsigned char* image; ///< 138 bytes, valid until the next record is asked for
    };

    /// A file that could not be read as one of the chain.
    struct Damage {
        int fileIndex;
        std::string path;
        std::string text; ///< what is wrong with it, in words
    };

    explicit SELChainReader(unsigned char sb, Order order = OLDEST_FIRST);
    ~SELChainReader();
    SELChainReader(const SELChainReader&) = delete;
    SELChainReader& operator=(const SELChainReader&) = delete;

    /// Gives the next record; false behind the last.
    bool next(Record& record);

    /// Records that have a log number.
    unsigned int getTotal() const { return total; }
    /// What was found so far: a file that can be counted and not be read later comes in by next().
    const std::vector<Damage>& getDamage() const { return damage; }

private:
    struct File {
        int index;
        std::string path;
        unsigned int firstLogNumber; ///< 0 for a damaged file
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
    unsigned int position = 0; ///< records given of the current file
};

}

#endif
