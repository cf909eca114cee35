// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_CLI_ARGUMENTS_H
#define RECORDKIT_TOOL_CLI_ARGUMENTS_H

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "../print/Layout.h"
#include "Command.h"

namespace recordkit::tool {

/// The options and arguments of a command line, read as their descriptions say. Asking for one
/// that the sub-command does not have throws std::out_of_range.
class Arguments {
public:
    /// Reads the texts given for an option; none if it is absent and has no default. Throws
    /// CommandError (usage).
    void add(const Option& option, const std::vector<std::string>& given);

    /// Whether the option was given, or has a default.
    bool has(const std::string& name) const { return !values.at(name).texts.empty(); }
    /// The text; empty if there is none.
    std::string text(const std::string& name) const;
    const std::vector<std::string>& texts(const std::string& name) const;
    /// The number, or the number that the word stands for; the option has a value.
    unsigned long number(const std::string& name) const { return values.at(name).numbers.at(0); }
    std::optional<unsigned long> find(const std::string& name) const;
    const std::vector<unsigned long>& numbers(const std::string& name) const;

    /// The board of --board; for several, all of them.
    unsigned char board() const;
    std::vector<unsigned char> boards() const;
    /// The form that --json, --ndjson or --csv chooses. Throws CommandError (usage) for two.
    Format format() const;
    /// The form, and what --fields, --columns and --wide choose of it. Throws CommandError (usage)
    /// for those that another form has.
    Layout layout() const;
    bool isJson() const { return has("--json"); }

private:
    struct Given {
        std::vector<std::string> texts;
        std::vector<unsigned long> numbers;
    };
    std::map<std::string, Given> values;
};

}

#endif
