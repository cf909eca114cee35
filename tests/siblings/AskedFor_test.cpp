// SPDX-License-Identifier: Apache-2.0
// What the library asks its siblings, where the answer does not show it.
#include <recordkit/util/Util.h>

#include "Asked.h"
#include "eeprom/SettingFixture.h"
#include "recordkit/eeprom/EFIBackupEEPROMData.h"
#include "recordkit/selfile/BMCSELDataFile.h"

using namespace testing_support;
using TAVLib::RecordKit::Util;

namespace {

class AskedFor : public Settings {
protected:
    AskedFor() { asked.clear(); }
    ~AskedFor() override
    {
        csvAnswers = {};
        systemBoardType = 0;
    }

    std::string folder() const { return root.at("/etc/tav/common/"); }
};

}

TEST_F(AskedFor, PartNumberAsksForTheBoardTypeOfKindThree)
{
    std::string number = "untouched";
    csvAnswers.record = "CODE,x,CA1";
    EXPECT_EQ(Util::convertCPUPartNumber("CODE", number, 3), 0);
    EXPECT_EQ(number, "CA1");
    EXPECT_EQ(asked, Lines({"getSBBoardType 3 3", "open " + folder() + " cpu_ca_number.csv",
                            "isFault", "searchRecord 0 CODE"}));
    for (const int type : {1, 2, 3, -1}) {
        asked.clear();
        systemBoardType = type;
        EXPECT_EQ(Util::convertCPUPartNumber("CODE", number, 0), 0);
        EXPECT_EQ(asked[1], "open " + folder() +
                                (type == 2 ? " cpu_ca_number_sb3.csv" : " cpu_ca_number.csv"));
    }
}

TEST_F(AskedFor, TableThatCannotBeOpenedIsNotSearched)
{
    csvAnswers.isFault = true;
    csvAnswers.record = "CODE,x,CA1";
    std::string number = "untouched";
    EXPECT_NE(Util::convertCPUPartNumber("CODE", number, 0), 0);
    EXPECT_EQ(number, "untouched");
    EXPECT_EQ(asked,
              Lines({"getSBBoardType 0 3", "open " + folder() + " cpu_ca_number.csv", "isFault"}));
}

TEST_F(AskedFor, LastFieldIsTakenAsTheTableGivesIt)
{
    // Line ends are the table's to remove.
    csvAnswers.record = "CODE,x,CA1\r";
    std::string number;
    EXPECT_EQ(Util::convertCPUPartNumber("CODE", number, 0), 0);
    EXPECT_EQ(number, "CA1\r");
}

TEST_F(AskedFor, FailuresOfTheEEPROMStoresGoToTheCatalogueFirst)
{
    const std::string text = "checkIndexData: flag invalid.(area=0x4)";
    EXPECT_EQ(thrownBy([&] { settings.read(4, nullptr); }), eepromError(1, 3, 20020, text));
    EXPECT_EQ(asked, Lines({"message 20020 " + text}));
    asked.clear();
    EXPECT_EQ(thrownBy([&] { settings.setThrow(3, "%d and %s", 7, "more"); }),
              eepromError(1, 1, 20019, "7 and more"));
    EXPECT_EQ(asked, Lines({"message 20019 7 and more"}));
    asked.clear();
    TAVLib::RecordKit::EFIBackupEEPROMData backup(eeproms);
    EXPECT_EQ(thrownBy([&] { backup.setThrow(4, "text %d", 5); }),
              eepromError(2, 3, 20031, "text 5"));
    EXPECT_EQ(asked, Lines({"message 20031 text 5"}));
    // An empty text has nothing to say to it.
    asked.clear();
    EXPECT_EQ(thrownBy([&] { settings.setThrow(0, "%s", ""); }), eepromError(1, 3, 20020, ""));
    EXPECT_EQ(thrownBy([&] { backup.setThrow(0, "%s", ""); }), eepromError(2, 3, 20031, ""));
    EXPECT_EQ(asked, Lines());
}

TEST_F(AskedFor, LongTextsGoToTheCatalogueWithTwoHundredFiftyFiveCharacters)
{
    thrownBy([&] { settings.setThrow(0, "%s", std::string(300, 'x').c_str()); });
    EXPECT_EQ(asked, Lines({"message 20020 " + std::string(255, 'x')}));
}

TEST_F(AskedFor, MessageOfAFileThatCannotBeOpenedNamesItsFirst255Characters)
{
    const std::string path = "/" + std::string(254, 'b') + "cd";
    EXPECT_LT(BMCSELDataFile().openFile(path), 0);
    EXPECT_EQ(asked, Lines({"message 20011 open filename:[/" + std::string(254, 'b') + "]"}));
}
