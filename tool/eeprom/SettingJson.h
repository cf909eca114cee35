// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_EEPROM_SETTINGJSON_H
#define RECORDKIT_TOOL_EEPROM_SETTINGJSON_H

#include <string>

#include <recordkit/inspect/bytes/ByteView.h>

#include "../Errors.h"

namespace recordkit::tool {

/// Makes an index of setting areas from a listing of its entries in JSON. Throws DataError.
Bytes settingIndexFrom(const std::string& text);

}

#endif
