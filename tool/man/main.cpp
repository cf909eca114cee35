// SPDX-License-Identifier: Apache-2.0
// Writes a manual page for each sub-command and the bash completion into a folder:
//
//   recordkit-man FOLDER
#include <cstdio>
#include <exception>
#include <filesystem>

#include <fmt/format.h>

#include "../CommandLine.h"
#include "../Errors.h"
#include "../Files.h"
#include "Roff.h"

namespace {

using namespace recordkit::tool;

/// The path of a command with blanks or dashes, such as "recordkit sel list".
std::string pathOf(const CLI::App& app, char separator)
{
    const CLI::App* const parent = app.get_parent();
    return parent == nullptr ? app.get_name()
                             : pathOf(*parent, separator) + separator + app.get_name();
}

/// Sub-commands that have a name: groups of options are nameless ones.
std::vector<const CLI::App*> commandsOf(const CLI::App& app)
{
    std::vector<const CLI::App*> commands;
    for (const CLI::App* const each : app.get_subcommands(
             [](const CLI::App* command) { return !command->get_name().empty(); })) {
        commands.push_back(each);
    }
    return commands;
}

/// The options of a command and of its groups.
std::vector<const CLI::Option*> optionsOf(const CLI::App& app)
{
    std::vector<const CLI::Option*> options = app.get_options();
    for (const CLI::App* const group :
         app.get_subcommands([](const CLI::App* each) { return each->get_name().empty(); })) {
        for (const CLI::Option* const option : optionsOf(*group)) {
            if (option != group->get_help_ptr()) {
                options.push_back(option);
            }
        }
    }
    return options;
}

std::string optionText(const CLI::Option& option)
{
    const std::string name = option.get_positional()
                                 ? option.get_name(true)
                                 : replaceAll(option.get_name(false, true), ",", ", ");
    const bool takesValue = option.get_type_size() != 0 && !option.get_positional();
    const std::string value = takesValue ? " \\fI" + roff(option.get_type_name()) + "\\fR" : "";
    const std::string standard =
        option.get_default_str().empty() ? "" : " Default: " + option.get_default_str() + ".";
    return fmt::format(".TP\n\\fB{}\\fR{}\n{}.{}\n", roff(name), value,
                       roff(option.get_description()), roff(standard));
}

std::string optionSection(const CLI::App& app)
{
    std::string text;
    for (const CLI::Option* const option : optionsOf(app)) {
        text += optionText(*option);
    }
    return text;
}

std::string synopsis(const CLI::App& app)
{
    std::string text = ".B " + roff(pathOf(app, ' ')) + "\n[\\fIOPTION\\fR ...]";
    for (const CLI::Option* const option : optionsOf(app)) {
        if (option->get_positional()) {
            const std::string dots = option->get_items_expected_max() > 1 ? " ..." : "";
            const std::string name = "\\fI" + roff(option->get_name(true)) + "\\fR" + dots;
            text += option->get_required() ? " " + name : " [" + name + "]";
        }
    }
    return text + (commandsOf(app).empty() ? "\n" : " \\fICOMMAND\\fR\n");
}

std::string manualPage(const CLI::App& app)
{
    const std::string name = pathOf(app, '-');
    std::string text = fmt::format(
        ".TH {} 1 \"\" \"recordkit {}\" \"User Commands\"\n.SH NAME\n{} \\- {}\n.SH SYNOPSIS\n{}"
        ".SH DESCRIPTION\n{}.\n",
        roff(name), RECORDKIT_VERSION, roff(name), roff(app.get_description()), synopsis(app),
        roff(app.get_description()));
    if (!commandsOf(app).empty()) {
        text += ".SH COMMANDS\n";
        for (const CLI::App* const each : commandsOf(app)) {
            text += fmt::format(".TP\n.BR {} (1)\n{}.\n", roff(pathOf(*each, '-')),
                                roff(each->get_description()));
        }
    }
    text +=
        ".SH OPTIONS\n" + optionSection(app) +
        ".PP\nThe options that stand in front of every sub\\-command are in\n.BR recordkit (1).\n";
    const std::string footer = app.get_footer();
    const std::string heading = "Example:\n";
    if (footer.compare(0, heading.size(), heading) == 0) {
        text += ".SH EXAMPLE\n.nf\n" + roff(footer.substr(heading.size())) + "\n.fi\n";
    }
    return text + ".SH SEE ALSO\n.BR recordkit (1),\n.BR recordkit (3)\n";
}

/// A branch of the completion's case: what may follow a command.
std::string completionOf(const CLI::App& app)
{
    std::string words;
    for (const CLI::App* const each : commandsOf(app)) {
        words += each->get_name() + " ";
    }
    for (const CLI::Option* const option : optionsOf(app)) {
        for (const std::string& name : option->get_lnames()) {
            words += "--" + name + " ";
        }
    }
    return fmt::format("    \"{}\") words=\"{}\" ;;\n", pathOf(app, ' '), words);
}

void write(const CLI::App& app, const std::string& folder, std::string& completion)
{
    if (app.get_parent() != nullptr) {
        writeOutput(folder + "/" + pathOf(app, '-') + ".1",
                    ".\\\" SPDX-License-Identifier: Apache-2.0\n" + manualPage(app));
    }
    completion += completionOf(app);
    for (const CLI::App* const each : commandsOf(app)) {
        write(*each, folder, completion);
    }
}

void writeAll(const std::string& folder)
{
    std::filesystem::create_directories(folder);
    CommandLine commandLine;
    std::string cases;
    write(commandLine.getApp(), folder, cases);
    // The words before the cursor that name commands, as far as they lead to one.
    writeOutput(folder + "/recordkit.bash", R"(# SPDX-License-Identifier: Apache-2.0
# Completion of recordkit for bash: sub-commands, options, and files where neither fits.
_recordkit_words() {
    case "$1" in
)" + cases + R"(    *) return 1 ;;
    esac
}

_recordkit() {
    local words path=recordkit word
    for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
        _recordkit_words "$path $word" && path="$path $word"
    done
    _recordkit_words "$path"
    # shellcheck disable=SC2207
    COMPREPLY=($(compgen -W "$words" -- "${COMP_WORDS[COMP_CWORD]}"))
}
complete -o default -F _recordkit recordkit
)");
}

}

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fputs("usage: recordkit-man FOLDER\n", stderr);
        return EXIT_USAGE;
    }
    try {
        writeAll(argv[1]);
    } catch (const CommandError& e) {
        std::fprintf(stderr, "recordkit-man: %s\n", e.what());
        return e.getStatus();
    } catch (const std::exception& e) {
        std::fprintf(stderr, "recordkit-man: %s\n", e.what());
        return EXIT_FILE;
    }
    return EXIT_DONE;
}
