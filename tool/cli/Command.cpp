// SPDX-License-Identifier: Apache-2.0
#include "Command.h"

#include <utility>

namespace recordkit::tool {

Option Option::by(const std::string& value) const
{
    Option option = *this;
    option.standard = value;
    return option;
}

Option Option::optional() const
{
    Option option = *this;
    option.isRequired = false;
    return option;
}

Option Option::required() const
{
    Option option = *this;
    option.isRequired = true;
    return option;
}

Option Option::many() const
{
    Option option = *this;
    option.isMany = true;
    return option;
}

Option flag(const char* name, const char* help)
{
    return {name, Kind::FLAG, "", help};
}

Option text(const char* name, const char* valueName, const char* help)
{
    return {name, Kind::TEXT, valueName, help};
}

Option number(const char* name, const char* valueName, unsigned long least, unsigned long most,
              const char* help)
{
    Option option = {name, Kind::NUMBER, valueName, help, least, most};
    option.isRequired = option.isArgument();
    return option;
}

Option numbers(const char* name, const char* valueName, unsigned long most, const char* help)
{
    Option option = {name, Kind::NUMBERS, valueName, help, 0, most};
    option.isRequired = option.isArgument();
    return option;
}

Option word(const char* name, const char* valueName, Words words, const std::string& expected,
            const char* help)
{
    Option option = {name, Kind::WORD, valueName, help};
    option.words = words;
    option.expected = expected;
    option.isRequired = option.isArgument();
    return option;
}

Option choice(const char* name, const char* valueName, std::vector<std::string> choices,
              const char* help)
{
    Option option = {name, Kind::WORD, valueName, help};
    for (const std::string& each : choices) {
        option.expected += (option.expected.empty() ? "" : ", ") + each;
    }
    option.choices = std::move(choices);
    return option;
}

Option board()
{
    return Option{"--board", Kind::BOARD, "N", "System board, from 0"}.by("0");
}

Option boards(const char* standard)
{
    return Option{"--board", Kind::BOARDS, "N|all", "System board, from 0, or all"}.by(standard);
}

Option partitions(const char* help)
{
    return {"--partitions", Kind::PARTITIONS, "LIST", help};
}

Option argument(const char* name, const char* help)
{
    Option option = {name, Kind::TEXT, name, help};
    option.isRequired = true;
    return option;
}

std::vector<Option> Command::allOptions() const
{
    std::vector<Option> all = options;
    switch (answer) {
    case Answer::TEXT:
        break;
    case Answer::OBJECT:
        all.push_back(flag("--json", "Print one JSON object"));
        break;
    case Answer::TABLE:
        all.push_back(text("--columns", "LIST",
                           "Only these columns of the table, in this order: names or their "
                           "beginnings, with commas"));
        all.push_back(flag("--wide", "All columns whole, also on a narrow terminal"));
        [[fallthrough]];
    case Answer::LISTING:
        all.push_back(flag("--json", "Print a JSON array with one object per line"));
        all.push_back(flag("--ndjson", "Print one JSON object per line"));
        all.push_back(flag("--csv", "Print CSV with a line of names"));
        all.push_back(
            flag("--csv-safe", "The same, without cells that a spreadsheet takes for formulas"));
        all.push_back(text("--fields", "LIST",
                           "Only these fields in JSON, NDJSON or CSV, with commas; +LIST adds "
                           "fields to the usual ones"));
        break;
    }
    return all;
}

}
