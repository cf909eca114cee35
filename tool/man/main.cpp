// SPDX-License-Identifier: Apache-2.0
// Writes the manual pages of the command, its sub-commands and groups, and the bash completion,
// into a folder. The template of the first page has @NAMES@ for what is described in the code:
//
//   recordkit-man FOLDER TEMPLATE
#include <cstdio>
#include <exception>
#include <filesystem>
#include <map>

#include <fmt/format.h>

#include "../Commands.h"
#include "../Errors.h"
#include "../ExitCases.h"
#include "../Files.h"
#include "../OutputFile.h"
#include "../cli/Globals.h"
#include "Roff.h"

namespace {

using namespace recordkit::tool;

/// The name of a page: "recordkit-sel-list".
std::string pageName(const std::string& path)
{
    return "recordkit-" + replaceAll(path, " ", "-");
}

std::string withStop(const std::string& sentence)
{
    return !sentence.empty() && sentence.back() == '.' ? sentence : sentence + ".";
}

std::string optionText(const Option& option)
{
    const bool hasValue = option.takesValue() && !option.isArgument();
    const std::string value = hasValue ? " \\fI" + roff(option.valueName) + "\\fR" : "";
    const bool saysDefault = option.help.find("default:") != std::string::npos;
    const std::string standard =
        option.standard.empty() || saysDefault ? "" : " Default: " + roff(option.standard) + ".";
    return fmt::format(".TP\n\\fB{}\\fR{}\n{}{}\n", roff(option.name), value,
                       withStop(roff(option.help)), standard);
}

std::string synopsis(const Command& command)
{
    std::string text = ".B recordkit " + roff(command.path) + "\n[\\fIOPTION\\fR ...]";
    for (const Option& option : command.options) {
        if (option.isArgument()) {
            const std::string name =
                "\\fI" + roff(option.name) + "\\fR" + (option.isMany ? " ..." : "");
            text += option.isRequired ? " " + name : " [" + name + "]";
        }
    }
    return text + "\n";
}

std::string pageStart(const std::string& path, const std::string& help)
{
    const std::string name = roff(pageName(path));
    return fmt::format(".\\\" SPDX-License-Identifier: Apache-2.0\n"
                       ".TH {} 1 \"\" \"recordkit {}\" \"User Commands\"\n"
                       ".SH NAME\n{} \\- {}\n.SH SYNOPSIS\n",
                       name, RECORDKIT_VERSION, name, roff(help));
}

std::string pageEnd(const std::string& example)
{
    return ".PP\nThe options of every sub\\-command are in\n.BR recordkit (1).\n"
           ".SH EXAMPLE\n.nf\n" +
           roff(example) + "\n.fi\n.SH SEE ALSO\n.BR recordkit (1),\n.BR recordkit (3)\n";
}

std::string commandPage(const Command& command)
{
    std::string text = pageStart(command.path, command.help) + synopsis(command) +
                       ".SH DESCRIPTION\n" + withStop(roff(command.help)) + "\n" +
                       (command.details.empty() ? "" : ".PP\n" + roff(command.details) + "\n") +
                       ".SH OPTIONS\n";
    for (const Option& option : command.allOptions()) {
        text += optionText(option);
    }
    return text + optionText(flag("--help", "Print help")) + pageEnd(command.example);
}

bool isBelow(const std::string& path, const std::string& group)
{
    return path.compare(0, group.size() + 1, group + " ") == 0;
}

/// A line for each sub-command of a group; of all if the group is empty.
std::string commandList(const std::string& group)
{
    std::string text;
    for (const Command& command : commands()) {
        if (group.empty() || isBelow(command.path, group)) {
            text += fmt::format(".TP\n.BR {} (1)\n{}\n", roff(pageName(command.path)),
                                withStop(roff(command.help)));
        }
    }
    return text;
}

std::string groupPage(const Group& group)
{
    return pageStart(group.path, group.help) + ".B recordkit " + roff(group.path) +
           "\n\\fICOMMAND\\fR\n.SH COMMANDS\n" + commandList(group.path) + pageEnd(group.example);
}

/// The word after the group, of a path below it.
std::string nextWord(const std::string& path, const std::string& group)
{
    const std::size_t from = group.empty() ? 0 : group.size() + 1;
    return path.substr(from, path.find(' ', from) - from);
}

/// A branch of the completion's case: what may follow the words of a path.
std::string completionOf(const std::string& path, const std::string& words)
{
    return fmt::format("    \"recordkit{}{}\") words=\"{}\" ;;\n", path.empty() ? "" : " ", path,
                       words);
}

/// The sub-commands and groups right below a group.
std::string wordsBelow(const std::string& group)
{
    std::string words;
    for (const Command& command : commands()) {
        if (!group.empty() && !isBelow(command.path, group)) {
            continue;
        }
        const std::string word = nextWord(command.path, group) + " ";
        if ((" " + words).find(" " + word) == std::string::npos) {
            words += word;
        }
    }
    return words + "--help ";
}

std::string optionWords(const std::vector<Option>& options)
{
    std::string words;
    for (const Option& option : options) {
        words += option.isArgument() ? "" : option.name + " ";
    }
    return words;
}

std::string completion()
{
    std::string cases =
        completionOf("", wordsBelow("") + "--version " + optionWords(globalOptions()));
    for (const Group& group : groups()) {
        cases += completionOf(group.path, wordsBelow(group.path));
    }
    for (const Command& command : commands()) {
        cases += completionOf(command.path, optionWords(command.allOptions()) + "--help ");
    }
    // The words before the cursor that name commands, as far as they lead to one.
    return R"(# SPDX-License-Identifier: Apache-2.0
# Completion of recordkit for bash: sub-commands, options, and files where neither fits.
_recordkit_words() {
    case "$1" in
)" + cases +
           R"(    *) return 1 ;;
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
)";
}

/// A line for each case of an exit status.
std::string exitCases()
{
    std::string text;
    for (const ExitCase& each : EXIT_CASES) {
        text += fmt::format(".TP\n.B {}\n{}\n", static_cast<int>(each.status), roff(each.text));
    }
    return text;
}

/// The variables that options take their values from where they are not given.
std::string variables()
{
    std::vector<Option> options = globalOptions();
    for (const Command& command : commands()) {
        options.insert(options.end(), command.options.begin(), command.options.end());
    }
    std::map<std::string, std::string> named;
    for (const Option& option : options) {
        if (!option.environment.empty()) {
            named[option.environment] = option.name;
        }
    }
    std::string text;
    for (const auto& [variable, option] : named) {
        text += fmt::format(".TP\n.B {}\nThe default of\n.BR {} .\n", roff(variable), roff(option));
    }
    return text;
}

/// The page of the command itself.
std::string mainPage(const std::string& pattern)
{
    std::string options;
    for (const Option& option : globalOptions()) {
        options += optionText(option);
    }
    std::string page = replaceAll(pattern, "@PROJECT_VERSION@", RECORDKIT_VERSION);
    page = replaceAll(page, "@OPTIONS@\n", options);
    page = replaceAll(page, "@EXIT_CASES@\n", exitCases());
    page = replaceAll(page, "@VARIABLES@\n", variables());
    return replaceAll(page, "@COMMANDS@\n", commandList(""));
}

void writeAll(const std::string& folder, const std::string& pattern)
{
    std::filesystem::create_directories(folder);
    writeOutput(folder + "/recordkit.1", mainPage(readInput(pattern, LARGE_LIMIT)));
    for (const Group& group : groups()) {
        writeOutput(folder + "/" + pageName(group.path) + ".1", groupPage(group));
    }
    for (const Command& command : commands()) {
        writeOutput(folder + "/" + pageName(command.path) + ".1", commandPage(command));
    }
    writeOutput(folder + "/recordkit.bash", completion());
}

}

int main(int argc, char** argv)
{
    if (argc != 3) {
        std::fputs("usage: recordkit-man FOLDER TEMPLATE\n", stderr);
        return EXIT_USAGE;
    }
    try {
        writeAll(argv[1], argv[2]);
    } catch (const CommandError& e) {
        std::fprintf(stderr, "recordkit-man: %s\n", e.what());
        return e.getStatus();
    } catch (const std::exception& e) {
        std::fprintf(stderr, "recordkit-man: %s\n", e.what());
        return EXIT_FILE;
    }
    return EXIT_DONE;
}
