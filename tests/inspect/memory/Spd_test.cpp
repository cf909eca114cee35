// SPDX-License-Identifier: Apache-2.0
#include <cstdio>
#include <filesystem>
#include <gtest/gtest.h>
#include <map>
#include <sstream>

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
    image[2] = 0x11;
    EXPECT_EQ(refusal(image), "not supported: LPDDR4X SDRAM (device type 11h at offset 2)");
    image[2] = 0x12;
    EXPECT_EQ(refusal(image), "not supported: DDR5 SDRAM (device type 12h at offset 2)");
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

void PrintTo(const Image& image, std::ostream* out)
{
    *out << image.name;
}

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

/// A line's value by its name; names end before two blanks.
std::map<std::string, std::string> answersOf(const std::string& name)
{
    std::map<std::string, std::string> answers;
    std::istringstream lines(contentOf(SHARED + "ref/" + name + ".decode-dimms.txt"));
    for (std::string line; std::getline(lines, line);) {
        const std::size_t gap = line.find("  ");
        const std::size_t value = line.find_first_not_of(' ', gap);
        if (gap != std::string::npos && gap != 0 && value != std::string::npos) {
            answers[line.substr(0, gap)] = line.substr(value);
        }
    }
    return answers;
}

std::string withoutPadding(std::string text)
{
    text.erase(text.find_last_not_of(std::string(" \0", 2)) + 1);
    return text;
}

class SpdPeers : public testing::TestWithParam<Image> {};
GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(SpdPeers);

}

TEST_P(SpdPeers, ModuleIsThatOfDecodeDimms)
{
    const Spd spd = parseSpd(readFile(GetParam().file));
    const auto answers = answersOf(GetParam().name);
    if (answers.at("Fundamental Memory type") == "Unknown (0x0b)") {
        // Byte 0 is 01h, so it mistakes the module for one of an older kind, and reads that kind's
        // bytes. By Annex K, 0Bh in byte 2 is DDR3, and the CRC is right.
        EXPECT_EQ(GetParam().name, "coreboot__pcengines_apu2_HYNIX-2G-1333");
        EXPECT_TRUE(spd.isCrcRight());
        EXPECT_EQ(spd.megabytes, 2048U);
        return;
    }
    const auto answer = [&answers](const std::string& name) {
        const auto found = answers.find(name);
        return found == answers.end() ? "" : found->second;
    };
    EXPECT_EQ(std::to_string(spd.megabytes) + " MB", answer("Size"));
    EXPECT_EQ(std::to_string(spd.ranks), answer("Ranks"));
    EXPECT_EQ(std::to_string(spd.deviceWidth) + " bits", answer("SDRAM Device Width"));
    EXPECT_EQ(std::to_string(spd.busWidth) + " bits", answer("Primary Bus Width"));
    const std::string covered = (readFile(GetParam().file)[0] & 0x80) != 0 ? "116" : "125";
    const std::string crc = answer("EEPROM CRC of bytes 0-" + covered);
    EXPECT_EQ(crc.substr(0, crc.find(' ')), spd.isCrcRight() ? "OK" : "Bad");
    char serial[16];
    std::snprintf(serial, sizeof serial, "0x%08X", spd.serialNumber);
    if (!answer("Assembly Serial Number").empty()) {
        EXPECT_EQ(serial, answer("Assembly Serial Number"));
    } else {
        // It leaves out a serial number that is 0.
        EXPECT_EQ(spd.serialNumber, 0U);
    }
    if (spd.hasManufacturerData && answer("Part Number") != "Undefined") {
        // It cuts a part number at the first byte that is not an ASCII character; one image has
        // 88h.
        const std::string ours = spd.partNumber.substr(0, spd.partNumber.find('\xC2'));
        EXPECT_EQ(withoutPadding(ours), withoutPadding(answer("Part Number")));
    }
    // Only modules of 2 to 32 GB have a code.
    const bool hasCode = spd.megabytes >= 2048;
    EXPECT_EQ(spd.dimmSize == 15, !hasCode);
    const bool isKnownWithoutCode =
        GetParam().name == "coreboot__google_rambi_micron_1GiB_dimm_MT41K128M16JT-125" ||
        GetParam().name == "coreboot__google_rambi_samsung_1GiB_dimm_K4B2G1646Q-BYK0";
    EXPECT_EQ(hasCode, !isKnownWithoutCode);
}

INSTANTIATE_TEST_SUITE_P(Samples, SpdPeers, testing::ValuesIn(imagesIn(SHARED)),
                         [](const auto& each) { return "Image" + std::to_string(each.index); });

TEST(SpdSamples, AllOfThemAreThereAndOthersAreNamed)
{
    if (!std::filesystem::exists(SHARED)) {
        GTEST_SKIP() << "the public samples are not at " RECORDKIT_PUBLIC_DATA;
    }
    EXPECT_EQ(imagesIn(SHARED).size(), 43U);
    const std::vector<Image> others = imagesIn(SHARED + "other");
    EXPECT_EQ(others.size(), 10U);
    for (const Image& other : others) {
        EXPECT_EQ(refusal(readFile(other.file)).substr(0, 4), "not ") << other.name;
    }
    const std::string hex = SHARED + "hex/rigred-SPD__dump-orig-2gb.spd.txt";
    EXPECT_EQ(parseSpd(parseImage(hex, contentOf(hex))).megabytes, 2048U);
}
