// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_PLATFORM_CATALOGUEFILE_H
#define RECORDKIT_PLATFORM_CATALOGUEFILE_H

#include <istream>
#include <stdexcept>
#include <string>
#include <vector>

namespace TAVLib {

/// One message of a catalogue file: share/recordkit/messages.tsv, which describes the format.
struct CatalogueEntry {
    int number = 0;
    std::string kinds; ///< a letter for each parameter, in order: s a text, n a number
    std::string text;  ///< shows the next parameter at each {}
};

/// The text with its parameters filled in, in order; a missing one stays {}.
inline std::string fillCatalogueText(const std::string& text,
                                     const std::vector<std::string>& parameters)
{
    std::string filled;
    std::size_t at = 0;
    for (const std::string& parameter : parameters) {
        const std::size_t hole = text.find("{}", at);
        if (hole == std::string::npos) {
            break;
        }
        filled.append(text, at, hole - at).append(parameter);
        at = hole + 2;
    }
    return filled.append(text, at, std::string::npos);
}

/// Reads one line that is not a comment; throws std::runtime_error if it is not a message.
inline CatalogueEntry parseCatalogueLine(const std::string& line)
{
    const std::size_t first = line.find('\t');
    const std::size_t second = first == std::string::npos ? first : line.find('\t', first + 1);
    if (second == std::string::npos) {
        throw std::runtime_error("not a message: " + line);
    }
    CatalogueEntry entry;
    const std::string number = line.substr(0, first);
    constexpr std::size_t MOST_DIGITS = 9;
    constexpr std::size_t MOST_PARAMETERS = 8; // those of a PException
    if (number.empty() || number.size() > MOST_DIGITS ||
        number.find_first_not_of("0123456789") != std::string::npos) {
        throw std::runtime_error("not a message's number: " + line);
    }
    entry.number = std::stoi(number);
    entry.kinds = line.substr(first + 1, second - first - 1);
    entry.text = line.substr(second + 1);
    std::size_t holes = 0;
    for (std::size_t at = entry.text.find("{}"); at != std::string::npos;
         at = entry.text.find("{}", at + 2)) {
        ++holes;
    }
    if (entry.kinds.find_first_not_of("sn") != std::string::npos || holes != entry.kinds.size() ||
        holes > MOST_PARAMETERS) {
        throw std::runtime_error("not one s or n for each {}, 8 at most: " + line);
    }
    return entry;
}

/// Reads a catalogue file. Throws std::runtime_error for a line that is not a message or has the
/// number of an earlier one.
inline std::vector<CatalogueEntry> readCatalogue(std::istream& file)
{
    std::vector<CatalogueEntry> entries;
    for (std::string line; std::getline(file, line);) {
        if (line.empty() || line[0] == '#') {
            continue;
        }
        CatalogueEntry entry = parseCatalogueLine(line);
        for (const CatalogueEntry& earlier : entries) {
            if (earlier.number == entry.number) {
                throw std::runtime_error("two messages have one number: " + line);
            }
        }
        entries.push_back(entry);
    }
    return entries;
}

}

#endif
