// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_CLI_COMMAND_H
#define RECORDKIT_TOOL_CLI_COMMAND_H

#include <optional>
#include <string>
#include <vector>

namespace recordkit::tool {

class Arguments;

/// What an option takes, and as what a sub-command gets it.
enum class Kind {
    FLAG,
    TEXT,
    NUMBER,     ///< in a range
    NUMBERS,    ///< a list such as 0,2 of numbers in a range
    WORD,       ///< a word that stands for a number
    BOARD,      ///< one of the machine's boards
    BOARDS,     ///< one of the machine's boards, or all
    PARTITIONS, ///< a list of the machine's partitions
};

/// Reads a word; nothing for one that it does not know.
using Words = std::optional<unsigned long> (*)(const std::string& text);

/// An option of a sub-command, or an argument if its name does not begin with "--". Parsing, help,
/// manual pages and the completion are all made from this.
struct Option {
    std::string name; ///< "--last" or "FILE"
    Kind kind = Kind::TEXT;
    std::string valueName; ///< what help calls the value: "N"
    std::string help;
    unsigned long least = 0; ///< of NUMBER and NUMBERS
    unsigned long most = 0;
    std::vector<std::string> choices = {}; ///< of WORD: each stands for its position
    Words words = nullptr;                 ///< of WORD, if there are no choices
    std::string expected = {};             ///< the words, for messages
    std::string standard = {};             ///< the value if the option is not given
    std::string environment = {};          ///< a variable with the value if the option is not given
    bool isRequired = false;
    bool isMany = false;

    bool isArgument() const { return name[0] != '-'; }
    bool takesValue() const { return kind != Kind::FLAG; }

    // Options that differ in one point.
    Option by(const std::string& value) const; ///< with this value if it is not given
    Option optional() const;                   ///< an argument that may be absent
    Option required() const;                   ///< an option that must be given
    Option many() const;                       ///< an argument that may be repeated
};

Option flag(const char* name, const char* help);
Option text(const char* name, const char* valueName, const char* help);
Option number(const char* name, const char* valueName, unsigned long least, unsigned long most,
              const char* help);
Option numbers(const char* name, const char* valueName, unsigned long most, const char* help);
Option word(const char* name, const char* valueName, Words words, const std::string& expected,
            const char* help);
Option choice(const char* name, const char* valueName, std::vector<std::string> choices,
              const char* help);
Option board();
Option boards(const char* standard);
Option partitions(const char* help);

/// A required argument; its name is also what help calls its value.
Option argument(const char* name, const char* help);

/// The forms in which a sub-command can answer besides text.
enum class Answer {
    TEXT,
    OBJECT,  ///< --json: one object
    LISTING, ///< --json: an array of objects; --ndjson; --csv
    TABLE,   ///< the same, and the text is a table
};

/// A sub-command, described as data.
struct Command {
    std::string path; ///< "sel list"
    std::string help;
    std::string example;
    std::vector<Option> options;
    Answer answer;
    void (*run)(const Arguments&); ///< throws Error, Reported or PException
    std::string details = {};      ///< more for the manual page

    /// The options, and those that choose the form of the answer.
    std::vector<Option> allOptions() const;
};

/// A group of sub-commands.
struct Group {
    std::string path;
    std::string help;
    std::string example;
};

}

#endif
