// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <recordkit/host/Machine.h>

#include "tool/Commands.h"
#include "tool/Errors.h"
#include "tool/cli/Arguments.h"
#include "tool/cli/Globals.h"

using namespace recordkit::tool;

namespace {

/// What an option refuses, as the message; empty if it takes the text.
std::string refusal(const Option& option, const std::string& given)
{
    try {
        Arguments().add(option, {given});
        return "";
    } catch (const CommandError& e) {
        EXPECT_EQ(e.getStatus(), 2);
        return e.what();
    }
}

std::vector<unsigned long> numbersOf(const Option& option, const std::string& given)
{
    Arguments arguments;
    arguments.add(option, {given});
    return arguments.numbers(option.name);
}

using Numbers = std::vector<unsigned long>;

std::optional<unsigned long> colour(const std::string& text)
{
    return text == "red" ? std::optional(7UL) : std::nullopt;
}

}

TEST(Arguments, NumbersAreInTheirRange)
{
    const Option last = number("--last", "N", 1, 300, "");
    EXPECT_EQ(numbersOf(last, "1"), Numbers({1}));
    EXPECT_EQ(numbersOf(last, "0x12C"), Numbers({300}));
    EXPECT_EQ(numbersOf(last, "12Ch"), Numbers({300}));
    for (const char* const text : {"0", "301", "-1", "x", "", "1 "}) {
        EXPECT_EQ(refusal(last, text),
                  "--last: invalid value \"" + std::string(text) + "\" (expected 1 to 300)");
    }
}

TEST(Arguments, ListsHaveNumbersInTheirRange)
{
    const Option offsets = numbers("OFFSETS", "OFFSETS", 15, "");
    EXPECT_EQ(numbersOf(offsets, "0,15"), Numbers({0, 15}));
    EXPECT_EQ(refusal(offsets, "0,16"),
              "OFFSETS: invalid value \"0,16\" (expected numbers from 0 to 15, such as 0,2-4)");
    EXPECT_NE(refusal(offsets, ""), "");
    EXPECT_NE(refusal(offsets, "1,"), "");
}

TEST(Arguments, WordsStandForNumbers)
{
    EXPECT_EQ(numbersOf(choice("--format", "F", {"auto", "hex"}, ""), "HEX"), Numbers({1}));
    EXPECT_EQ(refusal(choice("--format", "F", {"auto", "hex"}, ""), "toast\x1b"),
              "--format: invalid value \"toast\\x1B\" (expected auto, hex)");
    const Option paint = word("--paint", "COLOUR", colour, "red", "");
    EXPECT_EQ(numbersOf(paint, "red"), Numbers({7}));
    EXPECT_EQ(refusal(paint, "blue"), "--paint: invalid value \"blue\" (expected red)");
}

TEST(Arguments, BoardsAndPartitionsAreThoseOfTheMachine)
{
    const TAVLib::host::Machine before = TAVLib::host::machine();
    TAVLib::host::Machine machine;
    machine.systemBoards = 3;
    machine.partitions = 2;
    TAVLib::host::setMachine(machine);
    EXPECT_EQ(numbersOf(boards("0"), "all"), Numbers({0, 1, 2}));
    EXPECT_EQ(numbersOf(boards("0"), "2"), Numbers({2}));
    EXPECT_EQ(refusal(boards("0"), "3"), "--board: invalid value \"3\" (expected 0 to 2)");
    EXPECT_NE(refusal(board(), "all"), "");
    EXPECT_EQ(numbersOf(partitions(""), "1,0"), Numbers({1, 0}));
    EXPECT_NE(refusal(partitions(""), "2"), "");
    TAVLib::host::setMachine(before);
}

TEST(Arguments, AbsentOptionsHaveTheirDefaultOrNothing)
{
    Arguments arguments;
    arguments.add(number("--a", "N", 0, 9, "").by("4"), {});
    arguments.add(number("--b", "N", 0, 9, ""), {});
    arguments.add(argument("FILE", ""), {"x"});
    arguments.add(flag("--json", ""), {});
    EXPECT_EQ(arguments.number("--a"), 4U);
    EXPECT_EQ(arguments.find("--b"), std::nullopt);
    EXPECT_FALSE(arguments.has("--b"));
    EXPECT_EQ(arguments.text("--b"), "");
    EXPECT_EQ(arguments.text("FILE"), "x");
    EXPECT_FALSE(arguments.isJson());
    EXPECT_THROW(static_cast<void>(arguments.has("--c")), std::out_of_range);
}

TEST(Arguments, FormatsExcludeEachOther)
{
    const auto format = [](const std::vector<std::string>& given) {
        Arguments arguments;
        for (const char* const name : {"--json", "--ndjson", "--csv", "--csv-safe"}) {
            const bool isGiven = std::find(given.begin(), given.end(), name) != given.end();
            arguments.add(flag(name, ""),
                          isGiven ? std::vector<std::string>{"yes"} : std::vector<std::string>());
        }
        return arguments.format();
    };
    EXPECT_EQ(format({}), Format::TABLE);
    EXPECT_EQ(format({"--csv-safe"}), Format::CSV);
    EXPECT_EQ(format({"--csv", "--csv-safe"}), Format::CSV);
    EXPECT_EQ(format({"--json"}), Format::JSON);
    EXPECT_EQ(format({"--ndjson"}), Format::NDJSON);
    EXPECT_EQ(format({"--csv"}), Format::CSV);
    EXPECT_THROW(format({"--json", "--csv"}), CommandError);
}

TEST(Commands, AreDescribedCompletely)
{
    for (const Command& command : commands()) {
        EXPECT_NE(command.example.find("recordkit "), std::string::npos) << command.path;
        EXPECT_NE(command.help, "") << command.path;
        EXPECT_NE(command.run, nullptr) << command.path;
        for (const Option& option : command.allOptions()) {
            EXPECT_NE(option.help, "") << command.path << " " << option.name;
            EXPECT_NE(option.help.back(), '.') << command.path << " " << option.name;
            EXPECT_EQ(option.takesValue(), !option.valueName.empty())
                << command.path << " " << option.name;
        }
    }
}

TEST(Commands, DefaultsAreValuesOfTheirOptions)
{
    for (const Command& command : commands()) {
        for (const Option& option : command.allOptions()) {
            EXPECT_NO_THROW(Arguments().add(option, {})) << command.path << " " << option.name;
        }
    }
    for (const Option& option : globalOptions()) {
        EXPECT_NO_THROW(Arguments().add(option, {})) << option.name;
    }
}

TEST(Commands, EveryGroupHasSubCommands)
{
    const auto all = commands();
    for (const Group& group : groups()) {
        EXPECT_TRUE(std::any_of(all.begin(), all.end(), [&](const Command& command) {
            return command.path.compare(0, group.path.size() + 1, group.path + " ") == 0;
        })) << group.path;
    }
}
