// SPDX-License-Identifier: Apache-2.0
#include "CommandLine.h"

#include <algorithm>
#include <numeric>
#include <set>
#include <utility>

#include <CLI/CLI.hpp>

#include <recordkit/inspect/bytes/Text.h>

#include "../Errors.h"
#include "Globals.h"

namespace recordkit::tool {

namespace {

/// An option, and what is parsed for it.
struct Parsed {
    Option option;
    CLI::Option* parsed;
};
using Options = std::vector<Parsed>;

CLI::Option* addTo(CLI::App& app, const Option& option)
{
    if (!option.takesValue()) {
        return app.add_flag(option.name, option.help);
    }
    CLI::Option* const added = app.add_option(option.name, option.help);
    added->required(option.isRequired)->default_str(option.standard)->envname(option.environment);
    added->type_size(1)->expected(1, option.isMany ? CLI::detail::expected_max_vector_size : 1);
    // An option takes one value each time: what follows it may be an argument.
    added->allow_extra_args(option.isMany && option.isArgument());
    return option.isArgument() ? added : added->type_name(option.valueName);
}

Arguments read(const Options& options)
{
    Arguments arguments;
    for (const Parsed& parsed : options) {
        arguments.add(parsed.option, parsed.parsed->results());
    }
    return arguments;
}

std::string lastWord(const std::string& path)
{
    return path.substr(path.find_last_of(' ') + 1);
}

/// The command line of CLI11, made from the descriptions.
class Parser {
public:
    Parser(const std::vector<Group>& groups, const std::vector<Command>& commands)
        : app("Event records, FRU images and stores of a management board", "recordkit")
    {
        app.set_version_flag("--version", "recordkit " RECORDKIT_VERSION);
        app.require_subcommand(1);
        app.footer("Exit status: 0 done, 1 data damaged, absent or refused, 2 wrong usage, 3 a "
                   "file could not be read or written.\n"
                   "Example:\n  recordkit sel summary events.raw");
        for (const Option& option : globalOptions()) {
            globals.push_back({option, addTo(app, option)});
        }
        for (const Group& group : groups) {
            add(group.path, group.help, group.example).require_subcommand(1);
        }
        for (const Command& command : commands) {
            CLI::App& added = add(command.path, command.help, command.example);
            parsed.push_back({&command, &added, {}});
            for (const Option& option : command.allOptions()) {
                parsed.back().options.push_back({option, addTo(added, option)});
            }
        }
    }

    CLI::App& getApp() { return app; }

    void run() const
    {
        applyGlobals(read(globals));
        for (const ParsedCommand& each : parsed) {
            if (each.app->parsed()) {
                each.command->run(read(each.options));
            }
        }
    }

private:
    struct ParsedCommand {
        const Command* command;
        CLI::App* app;
        Options options;
    };

    /// Adds a sub-command to the one that the words before its name lead to.
    CLI::App& add(const std::string& path, const std::string& help, const std::string& example)
    {
        CLI::App* parent = &app;
        for (std::size_t from = 0, blank = path.find(' '); blank != std::string::npos;
             from = blank + 1, blank = path.find(' ', from)) {
            parent = parent->get_subcommand(path.substr(from, blank - from));
        }
        CLI::App* const added = parent->add_subcommand(lastWord(path), help);
        added->footer("Example:\n  " + example);
        added->fallthrough();
        return *added;
    }

    CLI::App app;
    Options globals;
    std::vector<ParsedCommand> parsed;
};

/// How many characters must be added, removed or changed to make one word of the other.
std::size_t distanceOf(const std::string& from, const std::string& to)
{
    std::vector<std::size_t> row(to.size() + 1);
    std::iota(row.begin(), row.end(), 0U);
    for (std::size_t i = 1; i <= from.size(); ++i) {
        std::size_t diagonal = std::exchange(row[0], i);
        for (std::size_t j = 1; j <= to.size(); ++j) {
            const std::size_t changed = diagonal + (from[i - 1] == to[j - 1] ? 0 : 1);
            diagonal = std::exchange(row[j], std::min({changed, row[j] + 1, row[j - 1] + 1}));
        }
    }
    return row[to.size()];
}

/// "; did you mean ...?", or nothing if no candidate is like the word.
std::string suggestion(const std::string& word, const std::vector<std::string>& candidates)
{
    constexpr std::size_t FARTHEST = 2;
    const auto nearest = std::min_element(
        candidates.begin(), candidates.end(), [&word](const auto& left, const auto& right) {
            return distanceOf(word, left) < distanceOf(word, right);
        });
    return nearest != candidates.end() && distanceOf(word, *nearest) <= FARTHEST
               ? "; did you mean \"" + *nearest + "\"?"
               : "";
}

/// The words that CLI11 could not use, in the order in which they were typed.
std::vector<std::string> unusedWords(const CLI::App& app, const std::vector<std::string>& words)
{
    const std::vector<std::string> remaining = app.remaining(true);
    std::multiset<std::string> unused(remaining.begin(), remaining.end());
    std::vector<std::string> inOrder;
    for (const std::string& word : words) {
        const auto found = unused.find(word);
        if (found != unused.end()) {
            unused.erase(found);
            inOrder.push_back(word);
        }
    }
    return inOrder;
}

/// What is wrong with a command line: `message`, or the words that it does not explain.
std::string complaintOf(const CLI::App& app, const std::vector<std::string>& words,
                        const std::string& message)
{
    const std::vector<std::string> unused = unusedWords(app, words);
    if (unused.empty()) {
        return message;
    }
    const CLI::App* command = &app;
    while (!command->get_subcommands().empty()) {
        command = command->get_subcommands().front();
    }
    std::vector<std::string> names;
    for (const CLI::App* const each : command->get_subcommands({})) {
        names.push_back(each->get_name());
    }
    const std::string& first = unused.front();
    if (!names.empty() && first[0] != '-') {
        return "unknown sub-command \"" + printable(first) + "\"" + suggestion(first, names);
    }
    names.clear();
    for (const CLI::Option* const option : command->get_options()) {
        names.push_back(option->get_name());
    }
    std::string text = unused.size() == 1 ? "unexpected argument:" : "unexpected arguments:";
    for (const std::string& word : unused) {
        text += " " + printable(word);
    }
    return text + suggestion(first, names);
}

}

int runCommandLine(const std::vector<std::string>& words, const std::vector<Group>& groups,
                   const std::vector<Command>& commands)
{
    Parser parser(groups, commands);
    CLI::App& app = parser.getApp();
    try {
        // CLI11 consumes the vector from the back.
        app.parse(std::vector<std::string>(words.rbegin(), words.rend()));
    } catch (const CLI::Success& e) {
        return app.exit(e); // help or the version
    } catch (const CLI::ParseError& e) {
        throw usageError(complaintOf(app, words, e.what()) + "; see --help");
    }
    parser.run();
    return EXIT_DONE;
}

}
