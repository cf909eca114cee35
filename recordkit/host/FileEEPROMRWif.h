// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_HOST_FILEEEPROMRWIF_H
#define RECORDKIT_HOST_FILEEEPROMRWIF_H

#include <map>
#include <string>

#include <recordkit/platform/EEPROMRWif.h>

namespace TAVLib::host {

/// The EEPROMs as files: images, or the kernel's nodes for them. A write has reached the medium
/// when it returns. Several threads may use one object at once.
///
/// Failures are thrown as PException (module 200, location 0x0400, action 2, errno as detail) with
/// the operation, its offset and length, the path and the reason in the message: also for a read or
/// a write outside the file (ENODATA, ENOSPC) and for an EEPROM without a file (ENODEV).
class RECORDKIT_API FileEEPROMRWif : public EEPROMRWif {
public:
    /// Images eeprom<select>.bin in a folder.
    explicit FileEEPROMRWif(const std::string& directory);
    /// Files by the number of the EEPROM.
    explicit FileEEPROMRWif(const std::map<int, std::string>& pathsBySelect);
    ~FileEEPROMRWif() override;

    int read(int select, unsigned long offset, unsigned char* buffer, unsigned int length) override;
    int write(int select, unsigned long offset, const unsigned char* buffer,
              unsigned int length) override;

private:
    std::string pathOf(int select) const;

    std::string folder;
    std::map<int, std::string> paths;
};

}

#endif
