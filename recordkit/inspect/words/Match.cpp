// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/words/Match.h>

#include <algorithm>
#include <cctype>
#include <strings.h>

namespace recordkit::inspect {

std::optional<std::size_t> matchWord(const std::string& text, const std::vector<std::string>& words)
{
    std::optional<std::size_t> found;
    std::size_t count = 0;
    for (std::size_t i = 0; i < words.size(); ++i) {
        if (::strcasecmp(text.c_str(), words[i].c_str()) == 0) {
            return i;
        }
        if (!text.empty() && ::strncasecmp(text.c_str(), words[i].c_str(), text.size()) == 0) {
            found = i;
            ++count;
        }
    }
    return count == 1 ? found : std::nullopt;
}

bool containsText(const std::string& text, const std::string& part)
{
    const auto isEqual = [](unsigned char one, unsigned char other) {
        return std::tolower(one) == std::tolower(other);
    };
    return std::search(text.begin(), text.end(), part.begin(), part.end(), isEqual) != text.end() ||
           part.empty();
}

}
