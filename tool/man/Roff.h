// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_MAN_ROFF_H
#define RECORDKIT_TOOL_MAN_ROFF_H

#include <string>

namespace recordkit::tool {

/// The text with `to` for every `from`.
inline std::string replaceAll(std::string text, const std::string& from, const std::string& to)
{
    for (std::size_t at = text.find(from); at != std::string::npos;
         at = text.find(from, at + to.size())) {
        text.replace(at, from.size(), to);
    }
    return text;
}

/// Text in roff: a leading dot or quote would be a request, a hyphen would not be a minus.
inline std::string roff(const std::string& text)
{
    std::string escaped = replaceAll(replaceAll(text, "\\", "\\e"), "-", "\\-");
    escaped = replaceAll(escaped, "\n", "\n\\&");
    const bool isRequest = !escaped.empty() && (escaped[0] == '.' || escaped[0] == '\'');
    return isRequest ? "\\&" + escaped : escaped;
}

}

#endif
