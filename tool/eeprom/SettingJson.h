// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_EEPROM_SETTINGJSON_H
#define RECORDKIT_TOOL_EEPROM_SETTINGJSON_H

#include <recordkit/inspect/eeprom/SettingIndex.h>

#include "../Errors.h"
#include "../print/Json.h"

namespace recordkit::tool {

/// The index of setting areas as JSON with stable names.
Json toJson(const std::vector<inspect::SettingEntry>& entries);

/// Makes an index from the output of toJson. Throws CommandError (data).
inspect::Bytes settingIndexFrom(const std::string& json);

}

#endif
