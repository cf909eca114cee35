// SPDX-License-Identifier: Apache-2.0
// Many images at once: listed, compared, audited.
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "support/FruImages.h"
#include "support/Process.h"
#include "support/ScratchRoot.h"

using namespace testing_support;
using Json = nlohmann::json;

namespace {

class FruFleet : public testing::Test {
protected:
    void SetUp() override
    {
        writeFile(one(), fruImage(boardArea({"Acme", "Mezz", "SN1", "PN1", "AA", "red"}),
                                  productArea({"Acme", "Box", "P1", "2.0", "PS1"})));
        writeFile(two(), fruImage(boardArea({"Acme", "Mezz", "SN2", "PN1", "AA"})));
        Bytes bytes = readFile(two());
        bytes[20] ^= 1;
        writeFile(damaged(), bytes);
    }
    static Outcome fru(const Arguments& arguments, const std::string& input = "")
    {
        Arguments words = {"fru"};
        words.insert(words.end(), arguments.begin(), arguments.end());
        return run(ourCommand(words), input);
    }
    std::string one() const { return root.at("/one.bin"); }
    std::string two() const { return root.at("/two.bin"); }
    std::string damaged() const { return root.at("/damaged.bin"); }

    ScratchRoot root;
};

}

TEST_F(FruFleet, ListsALineForEachImage)
{
    const Outcome outcome = fru({"list", one(), two()});
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_EQ(outcome.out,
              "STATE       MANUFACTURER      BOARD             SERIAL          PART NUMBER     "
              "PRODUCT           PRODUCT SERIAL  FILE\n"
              "good        Acme              Mezz              SN1             PN1             "
              "Box               PS1             " +
                  one() +
                  "\n"
                  "good        Acme              Mezz              SN2             PN1             "
                  "-                 -               " +
                  two() + "\n");
}

TEST_F(FruFleet, ListsTheFieldsThatAreWanted)
{
    const Outcome csv = fru({"list", one(), two(), "--csv", "--fields",
                             "board.serial,product.version,board.custom1,file"});
    EXPECT_EQ(csv.out, "board.serial,product.version,board.custom1,file\r\n"
                       "SN1,2.0,red," +
                           one() +
                           "\r\n"
                           "SN2,,," +
                           two() + "\r\n");
    const Json json = Json::parse(fru({"list", one(), two(), "--json"}).out);
    ASSERT_EQ(json.size(), 2U);
    EXPECT_EQ(json[0]["board.date"], "2014-12-09 16:32");
    EXPECT_EQ(json[0]["product.asset-tag"], nullptr);
    EXPECT_EQ(json[0]["chassis.type"], nullptr);
    EXPECT_EQ(json[0]["problems"], Json::array());
    EXPECT_EQ(json[0]["file"], one());
    EXPECT_EQ(json[0].count("board.custom1"), 0U) << "only where it is named";
    EXPECT_EQ(json[1]["product.name"], nullptr);
    EXPECT_EQ(fru({"list", one(), "--csv", "--fields", "board.custom9"}).out,
              "board.custom9\r\n\r\n");
    EXPECT_EQ(fru({"list", one(), "--csv", "--fields", "board.custom10"}).status, 2);
    EXPECT_EQ(fru({"list", one(), "--columns", "board.version"}).status, 2);
}

TEST_F(FruFleet, ListsWhatCanBeReadOfADamagedImage)
{
    const Outcome outcome = fru({"list", damaged(), root.at("/none"), two(), "--csv", "--fields",
                                 "file,board.serial,problems"});
    EXPECT_EQ(outcome.status, 3);
    EXPECT_NE(outcome.err.find(damaged() + ": board area: "), std::string::npos) << outcome.err;
    EXPECT_NE(outcome.err.find(root.at("/none")), std::string::npos);
    EXPECT_NE(outcome.out.find(two() + ",SN2,"), std::string::npos) << outcome.out;
    EXPECT_NE(outcome.out.find(damaged() + ",SN2,"), std::string::npos) << outcome.out;
    EXPECT_NE(fru({"list", damaged()}).out.find("1 problem"), std::string::npos);
}

TEST_F(FruFleet, DiffersInFields)
{
    const Outcome outcome = fru({"diff", one(), two(), "--csv"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.out.find("field,a,b\r\nboard.serial,SN1,SN2\r\nboard.custom1,red,\r\n"), 0U)
        << outcome.out;
    const Outcome same = fru({"diff", one(), one()});
    EXPECT_EQ(same.status, 0) << same.err;
    EXPECT_EQ(same.out, "FIELD                     A                                 B\n");
    const Outcome broken = fru({"diff", damaged(), damaged()});
    EXPECT_EQ(broken.status, 1) << "both are damaged";
    EXPECT_NE(broken.err.find(damaged() + ": board area: "), std::string::npos);
    EXPECT_EQ(fru({"diff", one(), root.at("/none")}).status, 3);
    const Bytes bytes = readFile(one());
    EXPECT_EQ(fru({"diff", one(), "-"}, std::string(bytes.begin(), bytes.end())).status, 0);
}

TEST_F(FruFleet, AuditListsFindings)
{
    EXPECT_EQ(fru({"audit", one(), two()}).status, 0);
    writeFile(root.at("/three.bin"), readFile(two()));
    const Outcome outcome = fru({"audit", one(), two(), root.at("/three.bin"), "--csv"});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.err, "recordkit: 2 findings in 3 images\n");
    EXPECT_EQ(outcome.out, "file,field,finding\r\n" + two() +
                               ",board.serial,\"\"\"SN2\"\" is in 2 images\"\r\n" +
                               root.at("/three.bin") +
                               ",board.serial,\"\"\"SN2\"\" is in 2 images\"\r\n");
    const Json json = Json::parse(fru({"audit", damaged(), "--json"}).out);
    ASSERT_EQ(json.size(), 1U);
    EXPECT_EQ(json[0]["field"], nullptr);
    EXPECT_EQ(json[0]["finding"].get<std::string>().find("board area: "), 0U);
}

TEST_F(FruFleet, AuditGoesOnAfterWhatIsNoImage)
{
    writeFile(root.at("/text"), textBytes("this is no image at all"));
    const Outcome outcome = fru({"audit", root.at("/text"), root.at("/none"), one()});
    EXPECT_EQ(outcome.status, 3);
    EXPECT_NE(outcome.err.find(root.at("/text") + ": "), std::string::npos) << outcome.err;
    EXPECT_NE(outcome.err.find(root.at("/none")), std::string::npos) << outcome.err;
    EXPECT_EQ(outcome.out.find(one()), std::string::npos) << "it is sound";
}
