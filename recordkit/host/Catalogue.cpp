// SPDX-License-Identifier: Apache-2.0
#include "Catalogue.h"

#include <LibraryMessages.h>
#include <algorithm>
#include <cstdarg>
#include <sstream>

#include <recordkit/platform/MessageCatalogue.h>

namespace TAVLib::host {

namespace {

constexpr std::size_t LONGEST_MESSAGE = 119;

std::vector<CatalogueEntry> readMessages()
{
    std::istringstream file(RECORDKIT_LIBRARY_MESSAGES);
    std::vector<CatalogueEntry> entries = readCatalogue(file);
    entries.push_back({MESSAGE_FILE_OPERATION, "sssn", "{} {}: {} (errno {})"});
    return entries;
}

}

const std::vector<CatalogueEntry>& catalogue()
{
    static const std::vector<CatalogueEntry> entries = readMessages();
    return entries;
}

const CatalogueEntry& findMessage(int number)
{
    static const CatalogueEntry unknown = {0, "", "unknown message"};
    const std::vector<CatalogueEntry>& entries = catalogue();
    const auto found =
        std::find_if(entries.begin(), entries.end(),
                     [number](const CatalogueEntry& entry) { return entry.number == number; });
    return found == entries.end() ? unknown : *found;
}

}

int lmsg_getmsg(int messageNumber, char* buffer, ...)
{
    const TAVLib::CatalogueEntry& message = TAVLib::host::findMessage(messageNumber);
    std::vector<std::string> parameters;
    va_list arguments;
    va_start(arguments, buffer);
    for (const char kind : message.kinds) {
        if (kind == 's') {
            const char* const text = va_arg(arguments, const char*);
            parameters.emplace_back(text == nullptr ? "" : text);
        } else {
            parameters.push_back(std::to_string(va_arg(arguments, long)));
        }
    }
    va_end(arguments);

    const std::string text = TAVLib::fillCatalogueText(message.text, parameters);
    const std::size_t length = std::min(text.size(), TAVLib::host::LONGEST_MESSAGE);
    text.copy(buffer, length);
    buffer[length] = '\0';
    return static_cast<int>(length);
}
