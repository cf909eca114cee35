// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_EEPROM_EFIBACKUPEEPROMDATA_H
#define RECORDKIT_EEPROM_EFIBACKUPEEPROMDATA_H

#include <memory>
#include <pthread.h>
#include <string>

#include <recordkit/eeprom/EFIBackupEEPROMIndex.h>
#include <recordkit/platform/EEPROMRWif.h>

namespace TAVLib::RecordKit {

/// The backup of EFI data on EEPROMs 11 to 26, one for each partition's bank (0 to 3 each), and its
/// index record on EEPROM 10 (see EFIBackupEEPROMIndex).
///
/// Failures throw PException (module 128, location 14, action 2, detail 3, message 20031) with only
/// the text; exceptions of the device are caught, and their action and detail codes are in the
/// text. Exceptions of other types pass through. Locks are released on every path.
///
/// Several threads may each use an object of their own at the same time: changes of the index
/// record are serialised in the whole process, and so are erases of one EEPROM; different EEPROMs
/// are erased concurrently. Only one process at a time may change the record.
class RECORDKIT_API EFIBackupEEPROMData {
public:
    /// The device must outlive the object, and be usable from several threads if there are any.
    explicit EFIBackupEEPROMData(EEPROMRWif& device);
    virtual ~EFIBackupEEPROMData();
    EFIBackupEEPROMData(const EFIBackupEEPROMData&) = delete;
    EFIBackupEEPROMData& operator=(const EFIBackupEEPROMData&) = delete;

    /// Whether setIndexData made the store valid, in this process.
    bool isValid() const;

    /// Reads or writes bytes of a backup EEPROM and returns the length; returns 0 without touching
    /// the device while the store is not valid.
    unsigned int write(unsigned int p, unsigned int b, unsigned long offset, unsigned int length,
                       unsigned char* data);
    unsigned int read(unsigned int p, unsigned int b, unsigned long offset, unsigned int length,
                      unsigned char* data);

    /// Reads the record; returns true and adopts its flags if its checksum is right and it names
    /// this system. Does not change whether the store is valid: only setIndexData does.
    bool checkIndexData(const std::string& serial);
    /// Valid: writes a new record for this system, without flags. Not valid: leaves the record
    /// unchanged, so that a later checkIndexData can find it.
    void setIndexData(bool valid, std::string serial);

    /// Writes the record and the zeroes after it; one flag byte, or those of one EEPROM. The
    /// checksum byte is always written first. Each returns the result of its last write; for a
    /// block whose flag byte would be outside the record it writes nothing and returns 0.
    int writeIndexData();
    int writeIndexData(int p, int b, int n);
    int writeIndexData(int p, int b);

    /// Clears the flag of the block that contains an address; returns 0.
    int resetClearFlag(unsigned int p, unsigned int b, unsigned int address);
    /// Sets that flag, so that clearExecute erases the block; returns 0. It is an addition of this
    /// library to what callers on the board use.
    ///
    /// Like resetClearFlag it reads the record on the device, whose other flags it keeps and
    /// adopts, and for a block whose flag byte would be outside the record writes nothing. It waits
    /// for the erase of a block of that EEPROM that is under way, and so for its flag to be
    /// cleared: a mark in between would be lost. If it fails, clearExecute does not erase the block
    /// unless the record on the device, when it is read again, has the flag.
    int markBlock(unsigned int p, unsigned int b, unsigned int address);
    /// Erases every block of an EEPROM whose flag is set, and clears the flag after each erase;
    /// returns 0.
    ///
    /// The flags are those of the shared copy, which is read again for each block: a mark by any
    /// object of this process counts at once, also one that comes while earlier blocks are erased.
    /// A mark by another process counts after an object of this one has adopted the record's flags
    /// (checkIndexData, resetClearFlag, markBlock).
    int clearExecute(unsigned int p, unsigned int b);

    /// Throws; the kind is not used.
    [[noreturn]] void setThrow(int kind, const char* format, ...);

private:
    [[noreturn]] void throwWriteError(unsigned char action, unsigned short detail);
    void readRecord();
    int changeFlag(unsigned int p, unsigned int b, unsigned int address, bool set);
    int writeFlags(int first, unsigned int count);

    static pthread_mutex_t idxlock;     ///< of the index record; taken inside clrlock
    static pthread_mutex_t clrlock[16]; ///< of each backup EEPROM: an erase and its flag, or a mark

    EEPROMRWif& rw;
    std::unique_ptr<EFIBackupEEPROMIndex> index;
};

}

#endif
