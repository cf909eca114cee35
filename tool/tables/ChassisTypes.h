// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_TABLES_CHASSISTYPES_H
#define RECORDKIT_TOOL_TABLES_CHASSISTYPES_H

#include <string>

namespace recordkit::tool {

/// Name of a chassis type (SMBIOS, table 17); "type 200" for those without one.
std::string chassisTypeName(unsigned char type);

/// The chassis type that a person means: a name in any case, or a number.
bool findChassisType(const std::string& text, unsigned char& type);

}

#endif
