// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_EEPROM_EEPROMTEXT_H
#define RECORDKIT_EEPROM_EEPROMTEXT_H

#include <cstdarg>
#include <cstdio>

namespace TAVLib::RecordKit {

/// The text of a failure of the EEPROM stores, cut at 255 characters.
class EEPROMText {
public:
    EEPROMText(const char* format, va_list arguments)
    {
        std::vsnprintf(text, sizeof text, format, arguments);
    }

    const char* get() const { return text; }

private:
    char text[256] = {};
};

}

#endif
