// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_WORDS_CHASSISTYPES_H
#define RECORDKIT_INSPECT_WORDS_CHASSISTYPES_H

#include <optional>
#include <string>

namespace recordkit::inspect {

/// Name of a chassis type (SMBIOS, table 17); "type 200" for those without one.
std::string chassisTypeName(unsigned char type);

/// Reads a chassis type: a name in any case, or a number.
std::optional<unsigned char> findChassisType(const std::string& text);

}

#endif
