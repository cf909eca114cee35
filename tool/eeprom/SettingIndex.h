// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_EEPROM_SETTINGINDEX_H
#define RECORDKIT_TOOL_EEPROM_SETTINGINDEX_H

#include <array>
#include <string>
#include <vector>

#include "../print/Json.h"

namespace recordkit::tool {

/// Size of each EEPROM that setting areas lie on; an area's offset has 16 bits.
constexpr unsigned int SETTING_EEPROM_SIZE = 65536;

/// One entry of the index of setting areas, as PanelEEPROMIndex reads it.
struct SettingEntry {
    int number = 0; ///< by its place in the index
    std::array<unsigned char, 16> bytes = {};
    bool isValid = false;
    bool isChecksumRight = false;
    int eeprom = 0;
    int areaNumber = 0;
    unsigned int offset = 0;
    unsigned int size = 0;

    unsigned int end() const { return offset + size; }
};

/// All entries of an index of 432 bytes.
std::vector<SettingEntry> parseSettingIndex(const std::vector<unsigned char>& bytes);

/// What is wrong with how the areas lie: those that overlap each other or the index, or reach
/// beyond their EEPROM. Areas of 0 bytes lie nowhere.
std::vector<std::string> layoutProblems(const std::vector<SettingEntry>& entries);

Json toJson(const std::vector<SettingEntry>& entries);

/// Makes an index from what toJson writes. Throws CommandError (data).
std::vector<unsigned char> settingIndexFrom(const std::string& json);

}

#endif
