// SPDX-License-Identifier: Apache-2.0
#include "CommandLine.h"

#include <CLI/CLI.hpp>

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
    added->allow_extra_args(option.isMany);
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
                   "Example:\n  recordkit --root board sel list --severity warning");
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

}

int runCommandLine(const std::vector<std::string>& words, const std::vector<Group>& groups,
                   const std::vector<Command>& commands)
{
    Parser parser(groups, commands);
    CLI::App& app = parser.getApp();
    try {
        // CLI11 consumes the vector from the back.
        app.parse(std::vector<std::string>(words.rbegin(), words.rend()));
    } catch (const CLI::ParseError& e) {
        // Help and version end up here too, with status 0.
        return app.exit(e) == 0 ? EXIT_DONE : EXIT_USAGE;
    }
    parser.run();
    return EXIT_DONE;
}

}
