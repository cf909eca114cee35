// SPDX-License-Identifier: Apache-2.0
#include "Catalogue.h"

#include <algorithm>
#include <cstdarg>
#include <iterator>

#include <recordkit/platform/MessageCatalogue.h>

namespace TAVLib::host {

namespace {

constexpr CatalogueMessage MESSAGES[] = {
    {20003, "s", "{}"},
    {20004, "s", "{}"},
    {20008, "snn", "{}: {} where {} is needed"},
    {20010, "ss", "{}: {}"},
    {20011, "sn", "{} failed: errno {}"},
    {20019, "s", "refused: {}"},
    {20020, "s", "not valid: {}"},
    {20027, "sn", "{}: bad value {}"},
    {20030, "ssn", "{}: not given by {} {}"},
    {20031, "s", "failed: {}"},
    {20032, "s", "mismatch: {}"},
    {20034, "sn", "{}: {} is beyond the table"},
    {MESSAGE_FILE_OPERATION, "sssn", "{} {}: {} (errno {})"},
};
static_assert(std::size(MESSAGES) == 13, "the library's twelve messages and the host's own");

constexpr CatalogueMessage UNKNOWN = {0, "", "unknown message"};

constexpr std::size_t LONGEST_MESSAGE = 119;

}

const CatalogueMessage& findMessage(int number)
{
    const auto* const found =
        std::find_if(std::begin(MESSAGES), std::end(MESSAGES),
                     [number](const CatalogueMessage& row) { return row.number == number; });
    return found == std::end(MESSAGES) ? UNKNOWN : *found;
}

std::string fillMessage(const CatalogueMessage& message, const std::vector<std::string>& parameters)
{
    const std::string text = message.text;
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

const CatalogueMessage* catalogue(std::size_t& count)
{
    count = std::size(MESSAGES);
    return MESSAGES;
}

}

int lmsg_getmsg(int messageNumber, char* buffer, ...)
{
    using namespace TAVLib::host;
    const CatalogueMessage& message = findMessage(messageNumber);
    std::vector<std::string> parameters;
    va_list arguments;
    va_start(arguments, buffer);
    for (const char* kind = message.kinds; *kind != '\0'; ++kind) {
        if (*kind == 's') {
            const char* const text = va_arg(arguments, const char*);
            parameters.emplace_back(text == nullptr ? "" : text);
        } else {
            parameters.push_back(std::to_string(va_arg(arguments, long)));
        }
    }
    va_end(arguments);

    const std::string text = fillMessage(message, parameters);
    const std::size_t length = std::min(text.size(), LONGEST_MESSAGE);
    text.copy(buffer, length);
    buffer[length] = '\0';
    return static_cast<int>(length);
}
