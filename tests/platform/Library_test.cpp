// SPDX-License-Identifier: Apache-2.0
// The library on these siblings: it constructs, throws and catches them by what was compiled into
// it.
#include <gtest/gtest.h>

#include <recordkit/platform/BoardFiles.h>
#include <recordkit/platform/PException.h>
#include <recordkit/platform/SystemRoot.h>
#include <recordkit/sel/BMCSELEntryMessage.h>
#include <recordkit/selfile/BMCSELDataFile.h>
#include <recordkit/util/Util.h>

#include "Files.h"

using namespace platform_tests;
using TAVLib::RecordKit::BMCSELEntryMessage;
using TAVLib::RecordKit::OEMSELEntry;
using TAVLib::RecordKit::Util;

namespace {

class EventStore : public testing::Test {
protected:
    EventStore() { removeFiles(); }
    ~EventStore() override { removeFiles(); }

    BMCSELDataFile store;

private:
    void removeFiles()
    {
        std::filesystem::remove(store.getFileName(BOARD, 0, 0));
        for (int i = 0; i <= 7; ++i) {
            std::filesystem::remove(store.getFileName(BOARD, i, 1));
        }
    }
};

BMCSELEntryMessage event()
{
    const unsigned char record[18] = {0xFF, 0xFF, 0x02, 0x98, 0xB5, 0x29, 0x67, 0x20, 0,
                                      0x04, 0x01, 0x30, 0x01, 0x57, 0xFF, 0xFF, 0,    0};
    OEMSELEntry received;
    received.setSerialized(record, sizeof record);
    BMCSELEntryMessage message;
    message.convert(received);
    return message;
}

}

TEST_F(EventStore, KeepsEventsThroughABackup)
{
    BMCSELEntryMessage message = event();
    ASSERT_EQ(store.clearAllRecord(BOARD), 0U);
    ASSERT_EQ(store.writeRecord(BOARD, message), 1);
    unsigned short total = 0;
    unsigned short lastFile = 0;
    EXPECT_EQ(store.getEntryNum(BOARD, total, lastFile), 0U);
    EXPECT_EQ(total, 1);
    EXPECT_EQ(store.backupTmpSel(BOARD), 1);
    std::filesystem::remove(store.getFileName(BOARD, 0, 0));
    EXPECT_EQ(store.restoreTmpSel(BOARD), 1);
    BMCSELEntryMessage read;
    EXPECT_EQ(store.readStoredRecord(BOARD, 1, read), 0U);
    // After the record's number, which the store gives.
    for (int position = 3; position < 16; ++position) {
        EXPECT_EQ(read.getSpecifiedBytePosData(position), message.getSpecifiedBytePosData(position))
            << position;
    }
}

TEST(Library, ThrowsWithTheTextAndTheNumber)
{
    try {
        Util::unit2NodeId(TAVLib::ipmiclient::IPMIClientCommand::BOARD_SB, 99, 0);
    } catch (const TAVLib::PException& e) {
        EXPECT_EQ(e.getModuleCode(), 82);
        EXPECT_EQ(e.getLocationCode(), 0x0800);
        EXPECT_EQ(e.getActionCode(), 1);
        EXPECT_EQ(e.getExceptionDetail(), 0x0701);
        EXPECT_EQ(e.getMessageNumber(), 20027);
        EXPECT_EQ(e.getParameter(0), "unit2NodeId(id)");
        EXPECT_EQ(e.getParameter(1), "99");
        return;
    }
    FAIL() << "nothing was thrown";
}
