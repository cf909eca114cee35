// SPDX-License-Identifier: Apache-2.0
#include <recordkit/host/FileFRURWif.h>

#include <gtest/gtest.h>

#include <recordkit/fru/FRUData.h>

#include "support/Failures.h"
#include "support/ScratchRoot.h"

using TAVLib::host::FileFRURWif;
using namespace testing_support;

namespace {

class FileFRURWifTest : public testing::Test {
protected:
    void SetUp() override { writeFile(path, sequence(16)); }

    static std::string failure(int error, const std::string& text)
    {
        char detail[8];
        std::snprintf(detail, sizeof detail, "0x%04X", static_cast<unsigned int>(error));
        return "1:200:0x0300 act 2 det " + std::string(detail) + " msg 30001 (" + text + ", " +
               std::to_string(error) + ")";
    }

    ScratchRoot root;
    std::string path = root.at("/tmp/fru.bin");
    unsigned char buffer[16] = {};
};

}

TEST_F(FileFRURWifTest, ReadsBytesWhereTheyLie)
{
    FileFRURWif device(path);
    EXPECT_EQ(device.read(3, 4, buffer), 4);
    EXPECT_EQ(Bytes(buffer, buffer + 5), Bytes({3, 4, 5, 6, 0}));
    EXPECT_EQ(device.read(0, 16, buffer), 16);
    EXPECT_EQ(device.read(99, 0, buffer), 0);
}

TEST_F(FileFRURWifTest, ReadPastTheEndIsThrown)
{
    FileFRURWif device(path);
    EXPECT_EQ(thrownBy([&] { device.read(13, 4, buffer); }),
              failure(ENODATA, "read of 4 bytes at offset 13 of, " + path + ", No data available"));
    EXPECT_EQ(thrownBy([&] { device.read(4294967295U, 1, buffer); }).substr(0, 12), "1:200:0x0300");
}

TEST_F(FileFRURWifTest, WritesOnlyWhenAskedTo)
{
    const Bytes bytes = {0xAA, 0xBB};
    FileFRURWif reader(path);
    EXPECT_EQ(thrownBy([&] { reader.write(4, 2, bytes.data()); }),
              failure(EACCES, "write of 2 bytes at offset 4 of, " + path + ", Permission denied"));
    EXPECT_EQ(readFile(path), sequence(16));
    FileFRURWif writer(path, true);
    EXPECT_EQ(writer.write(4, 2, bytes.data()), 2);
    EXPECT_EQ(readFile(path), part(sequence(16), 0, 4) + bytes + part(sequence(16), 6, 10));
}

TEST_F(FileFRURWifTest, FileThatCannotBeOpenedIsThrownAndNotCreated)
{
    const std::string none = root.at("/tmp/none");
    EXPECT_EQ(thrownBy([&] { FileFRURWif device(none, true); }),
              failure(ENOENT, "open, " + none + ", No such file or directory"));
    EXPECT_FALSE(fileExists(none));
}

TEST_F(FileFRURWifTest, WriteErrorIsThrown)
{
    if (!fileExists("/dev/full")) {
        GTEST_SKIP() << "there is no /dev/full here";
    }
    FileFRURWif device("/dev/full", true);
    EXPECT_EQ(
        thrownBy([&] { device.write(0, 1, buffer); }),
        failure(ENOSPC, "write of 1 bytes at offset 0 of, /dev/full, No space left on device"));
}

TEST_F(FileFRURWifTest, ServesARealImage)
{
    const std::string image = RECORDKIT_EXAMPLE_DATA "/fru/ascii-all.bin";
    FileFRURWif device(image);
    FRUData data(device);
    std::string name;
    data.getItem(FRU_AREA_BOARD, FRU_ITEM_PRODUCT_NAME, name, FRUArea::CSUM_CHECK);
    EXPECT_EQ(name, "System Board");
}

TEST_F(FileFRURWifTest, LeavesNoDescriptorOpen)
{
    const std::size_t before = openDescriptors();
    {
        const FileFRURWif device(path);
    }
    EXPECT_EQ(openDescriptors(), before);
}
