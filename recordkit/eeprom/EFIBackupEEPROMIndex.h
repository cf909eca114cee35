// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_EEPROM_EFIBACKUPEEPROMINDEX_H
#define RECORDKIT_EEPROM_EFIBACKUPEEPROMINDEX_H

#include <atomic>
#include <string>

#include <recordkit/platform/Export.h>

namespace TAVLib::RecordKit {

/// The index record of the EFI backup, at the start of EEPROM 10: the owner of the backup, and the
/// blocks pending erasure.
///
/// | byte | width  | meaning                                                     |
/// |------|--------|-------------------------------------------------------------|
/// | 0    | 1      | checksum: all bytes add up to 0 modulo 256                  |
/// | 1    | 1      | carried unchanged; 0 in a new record                        |
/// | 2    | 12     | serial information of the system that the backup belongs to |
/// | 14   | 2      | carried unchanged; 0 in a new record                        |
/// | 16   | 16 x 8 | clear flags, 8 bytes for each backup EEPROM                 |
///
/// The backup is stored on 16 EEPROMs of 16 blocks of 4 KiB; partition p and bank b, 0 to 3 each,
/// select EEPROM 11 + 4 p + b and group 4 p + b of the flags. Block n has a nibble of byte n / 2 of
/// its group, even blocks the high nibble; a nibble other than 0 means that the block has yet to be
/// erased.
///
/// The flags are also kept in `clrinfo`, which all objects share and which outlives them; queries
/// read only that copy. It and `IndexState` are atomic because they are read without a lock.
///
/// Nothing is traced or thrown. Only the low two bits of partition and bank select a group. A block
/// above 15 has the byte that the formula yields, which belongs to a later group, as long as that
/// is inside the record; beyond the record, setting a flag changes nothing and the flag reads as
/// clear.
class RECORDKIT_API EFIBackupEEPROMIndex {
public:
    enum Size : unsigned int {
        INDEX_SIZE = 144,
        INDEX_AREA_SIZE = 256, ///< the bytes after the record are zero
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

    /// Whether the index is known to be valid, for the whole process; initially unknown, which
    /// counts as not valid.
    void setIndexState(bool valid);
    bool getIndexState() const;

    /// The record, for reading and writing.
    unsigned char* getIndexData() { return image; }
    const unsigned char* getIndexData() const { return image; }

    /// EEPROM of a partition's bank; all ones for any other.
    unsigned int getAreaEEPROMID(unsigned int p, unsigned int b) const;

    void setChecksum();
    bool isChecksum() const;

    /// Sets or clears the flag of a block in the record and in the shared copy; the byte's other
    /// flag is that of the copy. It takes no lock: markBlock and resetClearFlag of
    /// EFIBackupEEPROMData change the flags of a store.
    void setClrFlag(unsigned int p, unsigned int b, unsigned int n, bool set);
    /// Whether a block has yet to be erased, by the shared copy.
    bool getClrBlockState(unsigned int p, unsigned int b, unsigned int n) const;
    unsigned int getClrBlockNumber(unsigned int address) const;
    /// First and last byte address of a block.
    void getClrBlockAddress(unsigned int n, unsigned int& start, unsigned int& end) const;

    /// Offset of a block's flag byte in the record: 16 + 8 g + (n >> 1), which is 144 or more for a
    /// block without one.
    int getIndexPoint(int p, int b, int n) const;
    int getIndexChecksumPoint() const { return CHECKSUM; }

    /// Whether the record names this system, by 12 bytes; a shorter text never does.
    bool checkSerialInfo(const std::string& serial) const;
    /// Starts a new record without flags, in the shared copy too; a serial of less than 12 bytes is
    /// padded with zeroes. An invalid record is left all zero, which passes isChecksum by design:
    /// it names no system.
    void setIndexValidFlag(bool valid, const std::string& serial);
    /// Copies the record's flags to the shared copy.
    void expandClrFlags();

    static std::atomic<unsigned char> IndexState; ///< 1 valid, 0 invalid, FFh unknown
    static std::atomic<unsigned char> clrinfo[FLAGS_SIZE];

private:
    unsigned char image[INDEX_SIZE] = {};
};

}

#endif
