// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_WORDS_DEVICETYPES_H
#define RECORDKIT_INSPECT_WORDS_DEVICETYPES_H

#include <string>

namespace recordkit::inspect {

/// Name of a device type of a locator record (IPMI v2.0, table 43-12); "OEM C7h" for OEM types,
/// "reserved" for those without a name.
std::string deviceTypeName(unsigned char type);

/// What the modifier says of a device of that type (IPMI v2.0, table 43-12): what a memory
/// contains. Empty for types whose modifier the standard leaves unspecified.
std::string deviceModifierName(unsigned char type, unsigned char modifier);

}

#endif
