// SPDX-License-Identifier: Apache-2.0
// The catalogue: the library's messages as they are installed, and one for these siblings.
#include "Catalogue.h"

#include <LibraryMessages.h>
#include <cstdarg>
#include <cstring>
#include <sstream>

#include <recordkit/platform/MessageCatalogue.h>

namespace {

std::vector<TAVLib::CatalogueEntry> readMessages()
{
    std::istringstream file(RECORDKIT_LIBRARY_MESSAGES);
    std::vector<TAVLib::CatalogueEntry> entries = TAVLib::readCatalogue(file);
    entries.push_back({board::MESSAGE_FILE, "ssn", "{} of {}: errno {}"});
    return entries;
}

}

const TAVLib::CatalogueEntry& board::findMessage(int number)
{
    static const std::vector<TAVLib::CatalogueEntry> entries = readMessages();
    static const TAVLib::CatalogueEntry unknown = {0, "", "message without a text"};
    for (const TAVLib::CatalogueEntry& entry : entries) {
        if (entry.number == number) {
            return entry;
        }
    }
    return unknown;
}

int lmsg_getmsg(int messageNumber, char* buffer, ...)
{
    const TAVLib::CatalogueEntry& entry = board::findMessage(messageNumber);
    std::vector<std::string> parameters;
    va_list arguments;
    va_start(arguments, buffer);
    // Only the catalogue knows what was passed: a text taken for a number, or the other way round,
    // shows an address or crashes.
    for (const char kind : entry.kinds) {
        if (kind == 's') {
            parameters.emplace_back(va_arg(arguments, const char*));
        } else {
            parameters.push_back(std::to_string(va_arg(arguments, long)));
        }
    }
    va_end(arguments);

    constexpr std::size_t LONGEST = 119; // and the terminating zero
    const std::string text = TAVLib::fillCatalogueText(entry.text, parameters).substr(0, LONGEST);
    std::memcpy(buffer, text.c_str(), text.size() + 1);
    return static_cast<int>(text.size());
}
