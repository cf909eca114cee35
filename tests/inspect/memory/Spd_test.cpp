// SPDX-License-Identifier: Apache-2.0
#include <filesystem>
#include <gtest/gtest.h>
#include <map>

#include <recordkit/inspect/bytes/Error.h>
#include <recordkit/inspect/bytes/Hex.h>
#include <recordkit/inspect/memory/Spd.h>

#include "support/Answers.h"
#include "support/Failures.h"
#include "support/HexDumps.h"
#include "support/Process.h"
#include "support/ScratchRoot.h"
#include "support/SpdImage.h"

using namespace recordkit::inspect;
using namespace testing_support;

namespace {

std::string refusal(const Bytes& image)
{
    try {
        parseSpd(image);
        return "none";
    } catch (const Error& e) {
        return e.what();
    }
}

}

TEST(Spd, ReadsAModule)
{
    const Spd spd = parseSpd(spdModule());
    EXPECT_EQ(spd.megabytes, 8192U);
    EXPECT_EQ(spd.ranks, 2U);
    EXPECT_EQ(spd.deviceWidth, 8U);
    EXPECT_EQ(spd.busWidth, 64U);
    EXPECT_EQ(spd.eccWidth, 8U);
    EXPECT_EQ(spd.densityMegabits, 4096U);
    EXPECT_EQ(spd.moduleType, "RDIMM");
    EXPECT_EQ(spd.serialNumber, 0x12345678U);
    EXPECT_EQ(spd.partNumber, "RK-PART-4711      ");
    EXPECT_EQ(spd.dimmSize, 3);
    EXPECT_EQ(spd.dramSize, 2);
    EXPECT_TRUE(spd.isCrcRight());
}

TEST(Spd, CrcCoversWhatByteZeroSays)
{
    // The check value of this CRC over "123456789".
    EXPECT_EQ(spdCrc(ByteView(textBytes("123456789")).part(0, 9)), 0x31C3);
    Bytes image = spdModule();
    image[120] = 9; // after the 117 bytes
    EXPECT_TRUE(parseSpd(image).isCrcRight());
    image[116] = 9;
    EXPECT_FALSE(parseSpd(image).isCrcRight());
    image = spdModule();
    image[0] = 0x12; // now 126 bytes
    EXPECT_FALSE(parseSpd(image).isCrcRight());
    const unsigned short crc = spdCrc(ByteView(image).part(0, 126));
    image[126] = static_cast<unsigned char>(crc & 0xFF);
    image[127] = static_cast<unsigned char>(crc >> 8);
    EXPECT_TRUE(parseSpd(image).isCrcRight());
}

TEST(Spd, WhatIsNoModuleIsNamed)
{
    EXPECT_EQ(refusal(Bytes(127, 0x0B)), "not SPD data: 127 bytes, expected at least 128");
    EXPECT_EQ(refusal({}), "not SPD data: 0 bytes, expected at least 128");
    Bytes image = spdModule();
    image[2] = 0x08;
    EXPECT_EQ(refusal(image), "not supported: DDR2 SDRAM (device type 08h at offset 2)");
    image[2] = 0x0E;
    EXPECT_EQ(refusal(image), "not supported: DDR4E SDRAM (device type 0Eh at offset 2)");
    image[2] = 0x07;
    EXPECT_EQ(refusal(image), "not supported: DDR SDRAM (device type 07h at offset 2)");
    image[2] = 0x12;
    EXPECT_EQ(refusal(image), "not the whole data of DDR5 SDRAM: 256 different bytes, expected at "
                              "least 512");
    for (const unsigned char unknown : {0x09, 0x0A, 0x0D, 0x14, 0x16, 0xF0, 0xF2}) {
        image[2] = unknown;
        EXPECT_EQ(refusal(image).substr(0, 34), "not SPD data: unknown device type ");
    }
    image[2] = 0x7F;
    EXPECT_EQ(refusal(image), "not SPD data: unknown device type 7Fh at offset 2");
}

TEST(Spd, ShortImageHasNoManufacturerData)
{
    const Bytes whole = spdModule();
    EXPECT_FALSE(parseSpd(part(whole, 0, 128)).hasManufacturerData);
    EXPECT_FALSE(parseSpd(part(whole, 0, 145)).hasManufacturerData);
    EXPECT_TRUE(parseSpd(part(whole, 0, 146)).hasManufacturerData);
    EXPECT_EQ(parseSpd(part(whole, 0, 128)).megabytes, 8192U);
}

TEST(Spd, ReservedCodesHaveNoCapacity)
{
    for (const auto& [byte, value] :
         std::map<std::size_t, unsigned char>{{4, 0x07}, {7, 0x0C}, {8, 0x04}}) {
        Bytes image = spdModule();
        image[byte] = value;
        EXPECT_EQ(parseSpd(image).megabytes, 0U) << byte;
    }
    Bytes image = spdModule();
    image[7] = 0x21; // five ranks
    EXPECT_EQ(parseSpd(image).megabytes, 0U);
    EXPECT_EQ(parseSpd(image).ranks, 0U);
}

namespace {

struct Image {
    std::string name;
    std::string file;
};

const std::string SHARED = RECORDKIT_PUBLIC_DATA "/spd/";

std::vector<Image> imagesIn(const std::string& folder)
{
    std::vector<Image> images;
    if (!std::filesystem::exists(folder)) {
        return images;
    }
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        if (entry.path().extension() == ".bin") {
            images.push_back({entry.path().stem().string(), entry.path().string()});
        }
    }
    std::sort(images.begin(), images.end(),
              [](const Image& a, const Image& b) { return a.name < b.name; });
    return images;
}

}

TEST(SpdSamples, OnlyModulesOf2To32GbHaveACode)
{
    std::size_t without = 0;
    for (const Image& image : imagesIn(SHARED)) {
        const Spd spd = parseSpd(readFile(image.file));
        EXPECT_EQ(spd.dimmSize == 15, spd.megabytes < 2048) << image.name;
        without += spd.dimmSize == 15;
    }
    EXPECT_EQ(without, imagesIn(SHARED).empty() ? 0U : 2U);
}

TEST(SpdSamples, AllOfThemAreThereAndOthersAreNamed)
{
    if (!std::filesystem::exists(SHARED)) {
        GTEST_SKIP() << "the public samples are not at " RECORDKIT_PUBLIC_DATA;
    }
    EXPECT_EQ(imagesIn(SHARED).size(), 43U);
    const std::vector<Image> others = imagesIn(SHARED + "other");
    EXPECT_EQ(others.size(), 10U);
    std::size_t refused = 0;
    for (const Image& other : others) {
        const Bytes image = readFile(other.file);
        if (refusal(image) == "none") {
            // Images for firmware that does not look at the CRC.
            EXPECT_FALSE(parseSpd(image).isCrcRight()) << other.name;
            continue;
        }
        EXPECT_EQ(refusal(image).substr(0, 4), "not ") << other.name;
        ++refused;
    }
    EXPECT_EQ(refused, 2U);
    const std::string hex = SHARED + "hex/rigred-SPD__dump-orig-2gb.spd.txt";
    EXPECT_EQ(parseSpd(parseImage(hex, contentOf(hex))).megabytes, 2048U);
}
