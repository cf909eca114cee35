// SPDX-License-Identifier: Apache-2.0
#include <recordkit/host/FileEEPROMRWif.h>

#include <cerrno>

#include "DeviceFile.h"

namespace TAVLib::host {

FileEEPROMRWif::FileEEPROMRWif(const std::string& directory) : folder(directory)
{
}

FileEEPROMRWif::FileEEPROMRWif(const std::map<int, std::string>& pathsBySelect)
    : paths(pathsBySelect)
{
}

FileEEPROMRWif::~FileEEPROMRWif() = default;

int FileEEPROMRWif::read(int select, unsigned long offset, unsigned char* buffer,
                         unsigned int length)
{
    return DeviceFile(FILE_EEPROM_LOCATION, pathOf(select), false).read(offset, length, buffer);
}

int FileEEPROMRWif::write(int select, unsigned long offset, const unsigned char* buffer,
                          unsigned int length)
{
    return DeviceFile(FILE_EEPROM_LOCATION, pathOf(select), true)
        .writeThrough(offset, length, buffer);
}

std::string FileEEPROMRWif::pathOf(int select) const
{
    const std::string name = "eeprom" + std::to_string(select);
    if (!folder.empty()) {
        return folder + "/" + name + ".bin";
    }
    const auto found = paths.find(select);
    if (found == paths.end()) {
        throw fileError(FILE_EEPROM_LOCATION, "open", name, ENODEV);
    }
    return found->second;
}

}
