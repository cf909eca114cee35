// SPDX-License-Identifier: Apache-2.0
// Roots whose names mean something to a shell, a terminal or a program.
#include <algorithm>

#include "support/NastyNames.h"
#include "tool/sel/SelTest.h"

using namespace testing_support;

namespace {

/// The name as messages have it.
std::string shown(const std::string& name)
{
    const bool isUtf8 = name.find('\xFF') == std::string::npos;
    std::string text;
    for (const char each : name) {
        const auto byte = static_cast<unsigned char>(each);
        char escape[8];
        std::snprintf(escape, sizeof escape, "\\x%02X", byte);
        text += byte < 0x20 || (byte > 0x7F && !isUtf8) ? escape : std::string(1, each);
    }
    return text;
}

class NastyRoots : public SelTest {
protected:
    Outcome inRoot(const std::string& name, const Arguments& arguments) const
    {
        Arguments words = {"--root", root.at("/" + name), "sel"};
        words.insert(words.end(), arguments.begin(), arguments.end());
        return run(ourCommand(words));
    }
};

}

TEST_F(NastyRoots, WorkLikeAnyOther)
{
    for (const std::string& name : nastyNames()) {
        const Outcome created = inRoot(name, {"init"});
        ASSERT_EQ(created.status, 0) << name << created.err;
        const std::string message =
            "board 0: " + root.at("/") + shown(name) + "/tmp/sb0_bmc_sel0 created\n";
        EXPECT_EQ(created.out.find(message), 0U) << created.out;
        ASSERT_EQ(inRoot(name, {"add", EVENTS}).status, 0) << name;
        ASSERT_EQ(inRoot(name, {"backup"}).status, 0) << name; // copies through a shell
        const std::string folder = root.at("/" + name);
        EXPECT_EQ(readFile(folder + "/var/tav/fmem/ipmi/sb0_bmc_sel0"),
                  readFile(folder + "/tmp/sb0_bmc_sel0"))
            << name;
        EXPECT_FALSE(fileExists(root.at("/canary"))) << name;
        EXPECT_FALSE(fileExists("canary")) << name;
    }
}

TEST_F(NastyRoots, AreNamedInAnswersAsTheyWereGiven)
{
    const std::string name = "a \"b\" c";
    ASSERT_EQ(inRoot(name, {"init"}).status, 0);
    const Json checked = Json::parse(inRoot(name, {"check", "--board", "1", "--json"}).out);
    EXPECT_EQ(checked[0]["files"][0]["path"], root.at("/" + name) + "/tmp/sb1_bmc_sel0");
    std::filesystem::remove(root.at("/" + name + "/tmp/sb1_bmc_sel0"));
    const Outcome failed = inRoot(name, {"backup", "--board", "1"});
    EXPECT_EQ(failed.status, 1);
    EXPECT_NE(failed.err.find(root.at("/" + name) + "/tmp/sb1_bmc_sel0"), std::string::npos)
        << failed.err;
}

TEST_F(NastyRoots, ThatAreMissingGetTheHintToInit)
{
    const Outcome outcome = inRoot("no such root", {"list"});
    EXPECT_EQ(outcome.status, 3);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err, "recordkit: " + root.at("/no such root/tmp") +
                               " is missing; recordkit sel init creates it, and the logs\n");
}
