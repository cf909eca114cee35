// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>
#include <thread>
#include <vector>

#include <recordkit/host/FileEEPROMRWif.h>

#include "support/Failures.h"
#include "support/ScratchRoot.h"

using TAVLib::host::FileEEPROMRWif;
using namespace testing_support;

namespace {

class FileEEPROMs : public testing::Test {
protected:
    FileEEPROMs() { writeFile(root.at("/eeprom4.bin"), sequence(64)); }

    const ScratchRoot root;
    FileEEPROMRWif eeproms{root.path()};
};

}

TEST_F(FileEEPROMs, MovesBytesOfAnImage)
{
    unsigned char buffer[4] = {};
    EXPECT_EQ(eeproms.read(4, 60, buffer, 4), 4);
    EXPECT_EQ(Bytes(buffer, buffer + 4), sequence(4, 60));
    const Bytes bytes = {9, 8, 7, 6};
    EXPECT_EQ(eeproms.write(4, 60, bytes.data(), 4), 4);
    EXPECT_EQ(readFile(root.at("/eeprom4.bin")), sequence(60) + bytes);
}

TEST_F(FileEEPROMs, WhatDoesNotLieInTheImageIsThrown)
{
    unsigned char buffer[8] = {};
    EXPECT_NE(thrownBy([&] {
                  eeproms.read(4, 60, buffer, 5);
              }).find("(read of 5 bytes at offset 60 of, " + root.at("/eeprom4.bin")),
              std::string::npos);
    EXPECT_NE(thrownBy([&] {
                  eeproms.write(4, 60, buffer, 5);
              }).find("(write of 5 bytes at offset 60 of, " + root.at("/eeprom4.bin")),
              std::string::npos);
    EXPECT_EQ(thrownBy([&] { eeproms.write(4, 64, buffer, 0); }), "nothing");
    EXPECT_NE(thrownBy([&] { eeproms.write(4, 65, buffer, 0); }), "nothing");
    // Nothing became longer, nothing was written.
    EXPECT_EQ(readFile(root.at("/eeprom4.bin")), sequence(64));
    EXPECT_NE(thrownBy([&] { eeproms.read(5, 0, buffer, 1); }).find("/eeprom5.bin"),
              std::string::npos);
    EXPECT_NE(thrownBy([&] { eeproms.write(5, 0, buffer, 1); }).find("(open, "), std::string::npos);
    EXPECT_FALSE(fileExists(root.at("/eeprom5.bin")));
}

TEST_F(FileEEPROMs, TakesFilesByNumber)
{
    FileEEPROMRWif nodes(std::map<int, std::string>{{7, root.at("/eeprom4.bin")}});
    unsigned char buffer[2] = {};
    EXPECT_EQ(nodes.read(7, 1, buffer, 2), 2);
    EXPECT_EQ(buffer[1], 2);
    EXPECT_EQ(thrownBy([&] { nodes.read(4, 0, buffer, 1); }).substr(0, 30),
              "1:200:0x0400 act 2 det 0x0013 ");
}

TEST_F(FileEEPROMs, ServesSeveralThreads)
{
    writeFile(root.at("/eeprom5.bin"), Bytes(4096, 0));
    const std::size_t before = openDescriptors();
    std::vector<std::thread> threads;
    for (unsigned int i = 0; i < 8; ++i) {
        threads.emplace_back([this, i] {
            const Bytes mine(512, static_cast<unsigned char>(i + 1));
            unsigned char back[512] = {};
            for (int round = 0; round < 20; ++round) {
                eeproms.write(5, 512UL * i, mine.data(), 512);
                eeproms.read(5, 512UL * i, back, 512);
                EXPECT_EQ(Bytes(back, back + 512), mine);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(openDescriptors(), before);
}
