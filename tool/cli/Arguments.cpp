// SPDX-License-Identifier: Apache-2.0
#include "Arguments.h"

#include <algorithm>
#include <numeric>

#include <fmt/format.h>
#include <strings.h>

#include <recordkit/host/Machine.h>
#include <recordkit/inspect/bytes/Numbers.h>
#include <recordkit/inspect/bytes/Text.h>

#include "../Errors.h"

namespace recordkit::tool {

namespace {

using Numbers = std::vector<unsigned long>;

CommandError invalid(const Option& option, const std::string& text, const std::string& expected)
{
    return usageError(fmt::format("{}: invalid value \"{}\" (expected {})", option.name,
                                  printable(text), expected));
}

unsigned long readNumber(const Option& option, const std::string& text, unsigned long least,
                         unsigned long most)
{
    const auto number = parseNumber(text, most);
    if (!number || *number < least) {
        throw invalid(option, text, fmt::format("{} to {}", least, most));
    }
    return *number;
}

Numbers readList(const Option& option, const std::string& text, unsigned long most)
{
    return orThrow(parseNumberList(text, most),
                   invalid(option, text, fmt::format("numbers from 0 to {}, such as 0,2-4", most)));
}

unsigned long readWord(const Option& option, const std::string& text)
{
    const auto found = std::find_if(
        option.choices.begin(), option.choices.end(),
        [&text](const std::string& each) { return ::strcasecmp(each.c_str(), text.c_str()) == 0; });
    if (found != option.choices.end()) {
        return static_cast<unsigned long>(found - option.choices.begin());
    }
    const auto number = option.words == nullptr ? std::nullopt : option.words(text);
    return orThrow(number, invalid(option, text, option.expected));
}

Numbers readBoards(const Option& option, const std::string& text)
{
    const auto count = static_cast<std::size_t>(TAVLib::host::machine().systemBoards);
    if (option.kind == Kind::BOARDS && text == "all") {
        Numbers all(count);
        std::iota(all.begin(), all.end(), 0UL);
        return all;
    }
    return {readNumber(option, text, 0, count - 1)};
}

Numbers read(const Option& option, const std::string& text)
{
    switch (option.kind) {
    case Kind::NUMBER:
        return {readNumber(option, text, option.least, option.most)};
    case Kind::NUMBERS:
        return readList(option, text, option.most);
    case Kind::WORD:
        return {readWord(option, text)};
    case Kind::BOARD:
    case Kind::BOARDS:
        return readBoards(option, text);
    case Kind::PARTITIONS:
        return readList(option, text,
                        static_cast<unsigned long>(TAVLib::host::machine().partitions - 1));
    case Kind::FLAG:
    case Kind::TEXT:
        break;
    }
    return {};
}

}

void Arguments::add(const Option& option, const std::vector<std::string>& given)
{
    Given& value = values[option.name];
    value.texts = given;
    if (given.empty() && !option.standard.empty()) {
        value.texts = {option.standard};
    }
    for (const std::string& each : value.texts) {
        const Numbers numbers = read(option, each);
        value.numbers.insert(value.numbers.end(), numbers.begin(), numbers.end());
    }
}

std::string Arguments::text(const std::string& name) const
{
    return has(name) ? values.at(name).texts.front() : "";
}

const std::vector<std::string>& Arguments::texts(const std::string& name) const
{
    return values.at(name).texts;
}

std::optional<unsigned long> Arguments::find(const std::string& name) const
{
    const Numbers& found = numbers(name);
    return found.empty() ? std::nullopt : std::optional(found.front());
}

const std::vector<unsigned long>& Arguments::numbers(const std::string& name) const
{
    return values.at(name).numbers;
}

unsigned char Arguments::board() const
{
    return static_cast<unsigned char>(number("--board"));
}

std::vector<unsigned char> Arguments::boards() const
{
    const Numbers& chosen = numbers("--board");
    return {chosen.begin(), chosen.end()};
}

Format Arguments::format() const
{
    const bool isCsv = has("--csv") || has("--csv-safe");
    if (has("--json") + has("--ndjson") + isCsv > 1) {
        throw usageError("--json, --ndjson and --csv exclude each other");
    }
    return has("--json")     ? Format::JSON
           : has("--ndjson") ? Format::NDJSON
           : isCsv           ? Format::CSV
                             : Format::TABLE;
}

Layout Arguments::layout() const
{
    Layout layout(format());
    layout.isSafeCsv = has("--csv-safe");
    layout.fields = text("--fields");
    if (!layout.fields.empty() && layout.format == Format::TABLE) {
        throw usageError("--fields is for --json, --ndjson and --csv");
    }
    if (values.count("--columns") != 0) {
        layout.columns = text("--columns");
        layout.isWide = has("--wide");
        if ((layout.isWide || !layout.columns.empty()) && layout.format != Format::TABLE) {
            throw usageError("--columns and --wide are for tables; --fields chooses what --json, "
                             "--ndjson and --csv contain");
        }
    }
    return layout;
}

}
