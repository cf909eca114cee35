// SPDX-License-Identifier: Apache-2.0
// The command as a user runs it: a process with arguments, files, output and an exit status.
#include "tool/sel/SelTest.h"

using namespace testing_support;

namespace {

class Command : public SelTest {};

}

TEST_F(Command, TellsItsVersionAndItsHelp)
{
    EXPECT_EQ(run(ourCommand({"--version"})).out, "recordkit 1.0.0\n");
    const Outcome help = run(ourCommand({"--help"}));
    EXPECT_EQ(help.status, 0);
    EXPECT_NE(help.out.find("Subcommands:"), std::string::npos);
}

TEST_F(Command, EveryHelpHasAnExample)
{
    const Arguments commands[] = {{"sel"},
                                  {"sel", "init"},
                                  {"sel", "add"},
                                  {"sel", "list"},
                                  {"sel", "show"},
                                  {"sel", "status"},
                                  {"sel", "check"},
                                  {"sel", "rotate"},
                                  {"sel", "backup"},
                                  {"sel", "restore"},
                                  {"sel", "clear"},
                                  {"severity"},
                                  {}};
    for (Arguments words : commands) {
        words.push_back("--help");
        const Outcome help = run(ourCommand(words));
        EXPECT_EQ(help.status, 0);
        EXPECT_NE(help.out.find("Example:\n  "), std::string::npos) << help.out;
    }
}

TEST_F(Command, WrongUsageIsStatusTwo)
{
    for (const Arguments& words :
         {Arguments{}, Arguments{"toast"}, Arguments{"sel"}, Arguments{"sel", "toast"},
          Arguments{"sel", "list", "--toast"}, Arguments{"sel", "list", "--last", "0"},
          Arguments{"sel", "list", "--json", "--csv"}, Arguments{"--boards", "0", "sel", "list"},
          Arguments{"--boards", "257", "sel", "list"}, Arguments{"severity"}}) {
        const Outcome outcome = run(ourCommand(words));
        EXPECT_EQ(outcome.status, 2) << outcome.out << outcome.err;
        EXPECT_FALSE(outcome.err.empty());
    }
}

TEST_F(Command, EveryBoardIsRefusedThatTheMachineDoesNotHave)
{
    initialise();
    for (const char* name :
         {"list", "show", "status", "check", "rotate", "backup", "restore", "clear"}) {
        expectRefused(2, {name, "--board", "300"}, "(expected 0 to 3)");
        expectRefused(2, {name, "--board", "4"}, "(expected 0 to 3)");
        expectRefused(2, {name, "--board", "x"}, "(expected 0 to 3)");
    }
}

TEST_F(Command, EveryFieldNameIsInTheManualPage)
{
    initialise();
    ASSERT_EQ(sel({"add", "-"}, eventAt(1, TIME_2, FAN_WARNING)).status, 0);
    const Bytes bytes = readFile(RECORDKIT_MANUAL);
    const std::string page(bytes.begin(), bytes.end());
    const std::string fields = page.substr(page.find(".SH FIELDS"), page.find(".SH EXIT STATUS"));
    const std::vector<Json> events = listed({});
    for (const auto& field : events.at(0).items()) {
        EXPECT_NE(fields.find(".TP\n.B " + field.key() + "\n"), std::string::npos) << field.key();
    }
}

TEST_F(Command, OutputThatCannotBeWrittenIsStatusThree)
{
    initialise();
    if (!fileExists("/dev/full")) {
        GTEST_SKIP() << "there is no /dev/full here";
    }
    std::string line;
    for (const std::string& word : ourCommand({"--root", root.path(), "sel", "list"})) {
        line += word + " ";
    }
    const Outcome outcome = run({"sh", "-c", line + "> /dev/full"});
    EXPECT_EQ(outcome.status, 3);
    EXPECT_EQ(outcome.err, "recordkit: standard output cannot be written\n");
}

TEST_F(Command, RootMayComeFromTheEnvironmentAndBeRelative)
{
    initialise();
    const Arguments root_ = {"RECORDKIT_ROOT=" + root.path()};
    EXPECT_EQ(run(ourCommand({"sel", "status"}), "", root_).out, sel({"status"}).out);
    const Outcome outcome = run({"sh", "-c", "cd " + root.path() + "/tmp && exec " + [] {
                                     std::string line;
                                     for (const std::string& word : ourCommand({})) {
                                         line += word + " ";
                                     }
                                     return line;
                                 }() + "--root .. sel status"});
    EXPECT_EQ(outcome.out, sel({"status"}).out) << outcome.err;
}

TEST_F(Command, TracesAreShownOnlyWhenAskedFor)
{
    std::filesystem::remove_all(root.at("/tmp"));
    const Outcome quiet = sel({"add", EVENTS});
    EXPECT_EQ(quiet.err.find("recordkit["), std::string::npos);
    const Outcome verbose = sel({"add", EVENTS, "--verbose"});
    EXPECT_NE(
        verbose.err.find("recordkit[1:83:0x1000] level 0: BMCSELDataFile::truncate " + working(0)),
        std::string::npos)
        << verbose.err;
}

TEST_F(Command, WrongWordsAreNamedWithASuggestion)
{
    const auto complaint = [](const Arguments& words) {
        const Outcome outcome = run(ourCommand(words));
        EXPECT_EQ(outcome.status, 2);
        EXPECT_EQ(outcome.out, "");
        return outcome.err;
    };
    EXPECT_EQ(complaint({"slo", "list"}), "recordkit: unknown sub-command \"slo\"; did you mean "
                                          "\"sel\"?; see --help\n");
    EXPECT_EQ(complaint({"sel", "lst"}), "recordkit: unknown sub-command \"lst\"; did you mean "
                                         "\"list\"?; see --help\n");
    EXPECT_EQ(complaint({"toast"}), "recordkit: unknown sub-command \"toast\"; see --help\n");
    EXPECT_EQ(complaint({"sel", "status", "--bord", "1"}),
              "recordkit: unexpected arguments: --bord 1; did you mean \"--board\"?; see --help\n");
    EXPECT_EQ(complaint({"sel", "rotate", "x"}), "recordkit: unexpected argument: x; see --help\n");
    EXPECT_EQ(complaint({"sel"}), "recordkit: A subcommand is required; see --help\n");
    EXPECT_EQ(complaint({"sel", "add"}), "recordkit: FILE is required; see --help\n");
    EXPECT_EQ(complaint({"fru", "set", "-", "board.serial=AB"}),
              "recordkit: FILE is changed, it cannot be standard input\n");
}

TEST_F(Command, EndlessInputEndsAtItsLimit)
{
    for (const Arguments& words :
         {Arguments{"fru", "show", "/dev/zero"}, Arguments{"fru", "verify", "/dev/zero"},
          Arguments{"fru", "get", "/dev/zero", "board.serial"},
          Arguments{"spd", "show", "/dev/zero"}, Arguments{"cpu", "/dev/zero"}}) {
        const Outcome outcome = run(ourCommand(words));
        EXPECT_EQ(outcome.status, 1) << words[0];
        EXPECT_NE(outcome.err.find("recordkit: /dev/zero: more than 65536 bytes; --max-size "
                                   "raises this limit\n"),
                  std::string::npos)
            << outcome.err;
    }
    EXPECT_EQ(run(ourCommand({"--max-size", "1000", "sdr", "list", "/dev/zero"})).err,
              "recordkit: /dev/zero: more than 1000 bytes; --max-size raises this limit\n");
    // A record has a limit of its own.
    EXPECT_EQ(run(ourCommand({"decode", "PSUStatus", "/dev/zero"})).err,
              "recordkit: /dev/zero: more than 2 bytes; --allow-trailing ignores what follows the "
              "record\n");
    EXPECT_EQ(run(ourCommand({"decode", "SELEntry", "/dev/zero", "--allow-trailing"})).err,
              "recordkit: /dev/zero: more than 67108864 bytes; --max-size raises this limit\n");
}

TEST_F(Command, ANameThatIsNotUtf8LosesNoOtherFile)
{
    const std::string good = RECORDKIT_EXAMPLE_DATA "/fru/ascii-all.bin";
    const std::string odd = root.at("/n\xFF\n.bin");
    writeFile(odd, readFile(good));
    const Outcome outcome = run(ourCommand({"fru", "show", good, odd, "--json"}));
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    const Json json = Json::parse(outcome.out);
    ASSERT_EQ(json.size(), 2U);
    EXPECT_EQ(json[0]["file"], good);
    EXPECT_EQ(json[0]["file_bytes"], nullptr);
    EXPECT_EQ(json[1]["file"], root.at("/n\\xFF\\x0A.bin"));
    EXPECT_EQ(json[1]["file_bytes"].get<std::string>().size(), 2 * odd.size());
    EXPECT_EQ(run(ourCommand({"fru", "verify", odd})).out,
              "STATE    FILE\ngood     " + root.at("/n\\xFF\\x0A.bin") + "\n");
}

TEST_F(Command, ARootWithoutLogsIsStatusThreeWithAHint)
{
    for (const Arguments& words : {Arguments{"sel", "list"}, Arguments{"sel", "show", "1"},
                                   Arguments{"sel", "status"}, Arguments{"sel", "check"}}) {
        Arguments all = {"--root", root.at("/nowhere")};
        all.insert(all.end(), words.begin(), words.end());
        const Outcome outcome = run(ourCommand(all));
        EXPECT_EQ(outcome.status, 3);
        EXPECT_EQ(outcome.out, "");
        EXPECT_EQ(outcome.err, "recordkit: " + root.at("/nowhere/tmp") +
                                   " is missing; recordkit sel init creates it, and the logs\n");
    }
}
