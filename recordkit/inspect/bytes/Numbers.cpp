// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/bytes/Numbers.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <sstream>

namespace recordkit::inspect {

std::optional<unsigned long> parseNumber(const std::string& text, unsigned long limit)
{
    std::string digits = text;
    int base = 10;
    if (text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X')) {
        digits = text.substr(2);
        base = 16;
    } else if (text.size() > 1 && (text.back() == 'h' || text.back() == 'H')) {
        digits = text.substr(0, text.size() - 1);
        base = 16;
    }
    const char* const allowed = base == 16 ? "0123456789abcdefABCDEF" : "0123456789";
    if (digits.empty() || digits.find_first_not_of(allowed) != std::string::npos) {
        return std::nullopt;
    }
    errno = 0;
    const unsigned long value = std::strtoul(digits.c_str(), nullptr, base);
    if (errno != 0 || value > limit) {
        return std::nullopt;
    }
    return value;
}

std::optional<std::vector<unsigned long>> parseNumberList(const std::string& text,
                                                          unsigned long limit)
{
    std::istringstream stream(text);
    std::vector<unsigned long> found;
    for (std::string word; std::getline(stream, word, ',');) {
        const std::size_t dash = std::min(word.find('-'), word.size());
        const auto first = parseNumber(word.substr(0, dash), limit);
        const auto last = dash == word.size() ? first : parseNumber(word.substr(dash + 1), limit);
        if (!first || !last || *first > *last) {
            return std::nullopt;
        }
        for (unsigned long number = *first; number <= *last; ++number) {
            found.push_back(number);
        }
    }
    if (found.empty() || text.back() == ',') {
        return std::nullopt;
    }
    return found;
}

std::string counted(std::size_t count, const std::string& noun)
{
    return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

std::vector<unsigned int> bitsOf(unsigned int mask)
{
    std::vector<unsigned int> bits;
    for (unsigned int bit = 0; mask != 0; ++bit, mask >>= 1) {
        if ((mask & 1U) != 0) {
            bits.push_back(bit);
        }
    }
    return bits;
}

}
