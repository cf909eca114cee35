// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_SELFILE_SELCHAINREADER_H
#define RECORDKIT_SELFILE_SELCHAINREADER_H

#include <string>
#include <vector>

#include <recordkit/platform/Export.h>

namespace TAVLib::RecordKit {

/// Walks the whole event log of one board, for callers that list everything: each file is opened
/// once and read in one piece, where readStoredRecord counts the chain again for every record.
///
/// The constructor reads the chain; what is written later is not seen. At most eight files of
/// 110400 bytes are held. Nothing is traced or thrown but std::bad_alloc.
class RECORDKIT_API SELChainReader {
public:
    enum Order { OLDEST_FIRST, NEWEST_FIRST };

    struct Record {
        /// The number that readStoredRecord knows the record by, from 1; 0 for the records before
        /// the damage of a damaged file, which have none.
        unsigned int logNumber;
        int fileIndex;              ///< 0 working file, 1 to 7 rotated
        unsigned int slot;          ///< 0 to 799
        const unsigned char* image; ///< 138 bytes, valid as long as the reader
    };

    /// A file that could not be read as one of the chain.
    struct Damage {
        int fileIndex;
        std::string path;
        std::string text; ///< what is wrong with it, in words
    };

    explicit SELChainReader(unsigned char sb, Order order = OLDEST_FIRST);

    /// Gives the next record; false behind the last.
    bool next(Record& record);

    /// Records that have a log number.
    unsigned int getTotal() const { return total; }
    const std::vector<Damage>& getDamage() const { return damage; }

private:
    struct File {
        int index;
        unsigned int firstLogNumber; ///< 0 for a damaged file
        unsigned int count;
        std::vector<unsigned char> bytes;
    };

    void addRotatedFiles(unsigned char sb);
    void addFile(unsigned char sb, int index);

    Order order;
    std::vector<File> files; ///< in the order of the walk
    std::vector<Damage> damage;
    unsigned int total = 0;
    std::size_t file = 0;
    unsigned int position = 0; ///< records given of the current file
};

}

#endif
