// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_EEPROM_EFIBACKUPEEPROMINDEX_H
#define RECORDKIT_EEPROM_EFIBACKUPEEPROMINDEX_H

#include <atomic>
#include <string>

#include <recordkit/platform/Export.h>

namespace TAVLib::RecordKit {

/// The index record of the EFI backup, at the start of EEPROM 10: whose backup it is, and which
/// blocks are still to be erased.
///
/// | byte | width  | meaning                                                           |
/// |------|--------|-------------------------------------------------------------------|
/// | 0    | 1      | checksum: all bytes add up to 0 modulo 256                        |
/// | 1    | 1      | 0                                                                 |
/// | 2    | 12     | serial information of the system that the backup belongs to       |
/// | 14   | 2      | 0                                                                 |
/// | 16   | 16 x 8 | clear flags, 8 bytes for each backup EEPROM                       |
///
/// The backup lies on 16 EEPROMs of 16 blocks of 4 KiB; partition p and bank b, 0 to 3 each, give
/// EEPROM 11 + 4 p + b and group 4 p + b of the flags. Block n has a nibble of byte n / 2 of its
/// group, even ones the high nibble; other than 0 means that it is still to be erased.
///
/// The flags are also held in `clrinfo`, which all objects share and which outlives them; queries
/// read that copy alone. It and `IndexState` are read without a lock, and so are atomic.
///
/// Nothing is traced or thrown. Only the low two bits of partition and bank count where a group is
/// meant. A block above 15 has the byte that the formula gives, which is one of a later group, as
/// long as that lies in the record; beyond it, setting a flag changes nothing and it reads as
/// clear.
class RECORDKIT_API EFIBackupEEPROMIndex {
public:
    enum Size : unsigned int {
        INDEX_SIZE = 144,
        INDEX_AREA_SIZE = 256, ///< what follows the record is zero
        SERIAL_SIZE = 12,
        FLAGS_SIZE = 128,
        GROUP_SIZE = 8,
        BLOCKS = 16,
        BLOCK_SIZE = 4096,
        PARTITIONS = 4,
        BANKS = 4,
    };
    enum Offset : int { CHECKSUM = 0, SERIAL = 2, FLAGS = 16 };
    enum Eeprom : int { INDEX_EEPROM = 10, FIRST_AREA_EEPROM = 11 };

    EFIBackupEEPROMIndex();
    virtual ~EFIBackupEEPROMIndex();

    /// Whether the index is known to be valid, for the whole process; not known at first, which
    /// counts as not valid.
    void setIndexState(bool valid);
    bool getIndexState() const;

    /// The record, to be read and written.
    unsigned char* getIndexData() { return image; }
    const unsigned char* getIndexData() const { return image; }

    /// EEPROM of a partition's bank; all ones for any other.
    unsigned int getAreaEEPROMID(unsigned int p, unsigned int b) const;

    void setChecksum();
    bool isChecksum() const;

    /// Sets or clears the flag of a block in the record and in the shared copy; the byte's other
    /// flag is that of the copy.
    void setClrFlag(unsigned int p, unsigned int b, unsigned int n, bool set);
    /// Whether a block is still to be erased, by the shared copy.
    bool getClrBlockState(unsigned int p, unsigned int b, unsigned int n) const;
    unsigned int getClrBlockNumber(unsigned int address) const;
    /// First and last byte address of a block.
    void getClrBlockAddress(unsigned int n, unsigned int& start, unsigned int& end) const;

    /// Where the flag byte of a block lies in the record: 16 + 8 g + (n >> 1), which is 144 or more
    /// for a block without one.
    int getIndexPoint(int p, int b, int n) const;
    int getIndexChecksumPoint() const { return CHECKSUM; }

    /// Whether the record names this system, by 12 bytes; a shorter text never does.
    bool checkSerialInfo(const std::string& serial) const;
    /// Begins a new record without flags, in the shared copy too; bytes that a serial of less than
    /// 12 lacks are 0. An invalid one is left all zero,
    /// which deliberately passes isChecksum: it names no system.
    void setIndexValidFlag(bool valid, const std::string& serial);
    /// Takes the record's flags over to the shared copy.
    void expandClrFlags();

    static std::atomic<unsigned char> IndexState; ///< 1 valid, 0 invalid, FFh not known
    static std::atomic<unsigned char> clrinfo[FLAGS_SIZE];

private:
    unsigned char image[INDEX_SIZE] = {};
};

}

#endif
