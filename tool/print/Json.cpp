// SPDX-License-Identifier: Apache-2.0
#include "Json.h"

#include "../text/CodedText.h"

namespace recordkit::tool {

std::string toUtf8(const std::string& text)
{
    std::string utf8;
    for (const char character : text) {
        const auto byte = static_cast<unsigned char>(character);
        if (byte < 0x80) {
            utf8 += character;
        } else {
            utf8 += static_cast<char>(0xC0 | byte >> 6);
            utf8 += static_cast<char>(0x80 | (byte & 0x3F));
        }
    }
    return utf8;
}

std::string indented(const Json& value)
{
    return value.dump(2) + "\n";
}

std::string oneLine(const Json& value)
{
    return value.dump() + "\n";
}

std::string cellText(const Json& value)
{
    if (value.is_null()) {
        return "-";
    }
    if (value.is_boolean()) {
        return value.get<bool>() ? "yes" : "no";
    }
    return value.is_string() ? printable(value.get<std::string>()) : value.dump();
}

}
