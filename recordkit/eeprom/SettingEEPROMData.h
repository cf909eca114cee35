// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_EEPROM_SETTINGEEPROMDATA_H
#define RECORDKIT_EEPROM_SETTINGEEPROMDATA_H

#include <memory>
#include <string>

#include <recordkit/eeprom/PanelEEPROMIndex.h>
#include <recordkit/platform/EEPROMRWif.h>

namespace TAVLib::RecordKit {

/// The setting areas on EEPROMs 4 and 5, numbered 0 to 26, by their index on EEPROM 4 (see
/// PanelEEPROMIndex). The file /etc/default/config/panelindex.dat below the system root is the
/// index's master copy.
///
/// Each operation loads the entry that it needs; those on "the loaded entry" use the entry that an
/// earlier operation loaded. Failures throw PException (module 128, location 14) by their kind,
/// with only the text; failures of the device and of files are caught, and their action and detail
/// codes are in the text.
///
/// | kind | action | detail | message | failure                                        |
/// |------|--------|--------|---------|------------------------------------------------|
/// | 0, 1 | 1      | 3      | 20020   | the entry is not valid; its checksum is wrong  |
/// | 2, 3 | 1      | 1      | 20019   | another area number; data longer than the area |
/// | 4, 5 | 2      | 3      | 20031   | EEPROM read, EEPROM write                      |
/// | 6, 8 | 2      | 3      | 20031   | file read, file write                          |
/// | 7, 9 | 2      | 5      | 20032   | short file read, short file write              |
/// | 10   | 2      | 5      | 20032   | seek to another place                          |
/// | 11   | 2      | 3      | 20031   | no status of the file; file longer than area   |
///
/// The class has no locks: callers that share an object or an area must take turns.
class RECORDKIT_API SettingEEPROMData {
public:
    /// The device must outlive the object.
    explicit SettingEEPROMData(EEPROMRWif& device);
    virtual ~SettingEEPROMData();
    SettingEEPROMData(const SettingEEPROMData&) = delete;
    SettingEEPROMData& operator=(const SettingEEPROMData&) = delete;

    /// Offset of entry n on the index's EEPROM.
    unsigned int getIndexOffset(int n) const;
    /// Loads entry n, and writes the loaded entry as entry n.
    void readIndexData(int n);
    void writeIndexData(int n);
    /// The area number of the loaded entry; throws kind 1 for a wrong checksum, kind 2 for any
    /// number but n.
    int checkIndexData(int n);
    /// Whether entry n is in use and passes checkIndexData.
    bool isValid(int n);
    /// Marks every entry in use as not valid; stops at one that fails checkIndexData.
    void setAllInvalid();
    /// Copies entry n from the index file, or every entry for -1; stops at the first failure.
    void initializeIndexData(int n);
    /// Loads entry n of the index file. Permission to read the file is enough, and a missing one
    /// (kind 6) is not created. While a LockedFile has the file open, the call waits for a shared
    /// lock of flock(2), 2 seconds at most. The codes of a failure are action 2 and errno.
    void readIndexDataFile(int n);

    /// The whole area of the loaded entry.
    void readArea(std::string& out);
    /// Writes to the area of the loaded entry and returns the length; bytes after the data stay
    /// unchanged. Throws kind 3 before the device is touched. If the device fails, an entry in use
    /// is first marked as not valid, so that a half-written area is never taken for a valid one.
    int writeArea(std::string& data);

    /// Content of area n, which must be valid; with a path, written to that file too.
    std::string read(int n, char* path);
    /// Writes area n, marks it as valid, and returns the length.
    int write(int n, std::string& data);
    int write(int n, char* path);

    /// Throws the failure of that kind.
    [[noreturn]] void setThrow(int kind, const char* format, ...);

private:
    void writeFile(int n, const char* path, const std::string& content);
    std::string readFile(int n, const char* path, unsigned int size);
    int writeAndValidate(int n, std::string& data);

    EEPROMRWif& rw;
    std::unique_ptr<EEPROMIndex> index;
};

}

#endif
