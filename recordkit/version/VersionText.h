// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_VERSION_VERSIONTEXT_H
#define RECORDKIT_VERSION_VERSIONTEXT_H

#include <string>

namespace TAVLib::RecordKit {

/// How a missing version is shown.
constexpr const char* NO_VERSION = "-";

/// Value of a BCD byte, kept to eight bits; digits above 9 are not checked.
unsigned char bcdToDecimal(unsigned char bcd);

/// "2.05".
std::string versionText(unsigned char major, unsigned char minor);

}

#endif
