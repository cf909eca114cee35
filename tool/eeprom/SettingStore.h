// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_EEPROM_SETTINGSTORE_H
#define RECORDKIT_TOOL_EEPROM_SETTINGSTORE_H

#include <string>
#include <vector>

#include <recordkit/inspect/eeprom/SettingIndex.h>

#include "Images.h"

namespace recordkit::tool {

/// The argument N of the sub-commands on one area.
Option settingArea(const char* help);

/// The path of the master copy of the index below the system root.
std::string settingIndexFile();

/// The master copy's entries; none if the file does not exist.
std::vector<inspect::SettingEntry> readSettingIndexFile();

/// The entries of the index on the images.
std::vector<inspect::SettingEntry> readSettingIndex(const Arguments& arguments);

}

#endif
