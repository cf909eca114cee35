// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_EEPROM_SETTINGINDEX_H
#define RECORDKIT_INSPECT_EEPROM_SETTINGINDEX_H

#include <array>
#include <optional>
#include <string>
#include <vector>

#include <recordkit/inspect/bytes/ByteView.h>

namespace recordkit::inspect {

/// Size of each EEPROM with setting areas; an area's offset has 16 bits.
constexpr unsigned int SETTING_EEPROM_SIZE = 65536;

/// One entry of the index of setting areas, as PanelEEPROMIndex reads it.
struct SettingEntry {
    int number = 0; ///< by its position in the index
    std::array<unsigned char, 16> bytes = {};
    bool isValid = false;
    bool isChecksumRight = false;
    int eeprom = 0;
    int areaNumber = 0;
    unsigned int offset = 0;
    unsigned int size = 0;

    unsigned int end() const { return offset + size; }
};

/// The bytes of the index in an index file, or in the image of the EEPROM that contains it; nothing
/// for a content that has no room for it.
std::optional<ByteView> settingIndexIn(ByteView content);

/// All entries of an index of 432 bytes.
std::vector<SettingEntry> parseSettingIndex(ByteView bytes);

/// Problems of the areas' places: areas that overlap each other or the index, or extend beyond
/// their EEPROM. Areas of 0 bytes do not count.
std::vector<std::string> layoutProblems(const std::vector<SettingEntry>& entries);

/// layoutProblems, and valid entries with a wrong checksum or the number of another area.
std::vector<std::string> indexProblems(const std::vector<SettingEntry>& entries);

/// Creates an index: entries that are left out have no area, and contain their own number. Throws
/// DataError for a number that occurs twice, and for layoutProblems.
Bytes makeSettingIndex(const std::vector<SettingEntry>& entries);

}

#endif
