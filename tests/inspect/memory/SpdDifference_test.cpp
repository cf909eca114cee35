// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/memory/SpdDifference.h>

#include <gtest/gtest.h>

#include <recordkit/inspect/bytes/Error.h>

#include "support/SpdImage.h"

using namespace recordkit::inspect;
using namespace testing_support;

namespace {

std::string textOf(const Value& value)
{
    if (const auto* const number = std::get_if<long long>(&value)) {
        return std::to_string(*number);
    }
    if (const auto* const flag = std::get_if<bool>(&value)) {
        return *flag ? "yes" : "no";
    }
    const auto* const text = std::get_if<std::string>(&value);
    return text == nullptr ? "-" : *text;
}

using Lines = std::vector<std::string>;

/// "FIELD: FIRST -> SECOND".
Lines compared(const Bytes& first, const Bytes& second)
{
    Lines lines;
    for (const SpdDifference& each : compareSpdImages(first, second)) {
        lines.push_back(each.what + ": " + textOf(each.first) + " -> " + textOf(each.second));
    }
    return lines;
}

Bytes with(Bytes image, std::size_t offset, unsigned char value)
{
    image[offset] = value;
    return image;
}

/// A DDR4 module with another byte and right CRCs.
Bytes sound(std::size_t offset, unsigned char value)
{
    Bytes image = with(ddr4Module(), offset, value);
    writeSpdCrc(image, 0, 126, 126);
    writeSpdCrc(image, 128, 126, 254);
    return image;
}

}

TEST(SpdDifference, OfTheSameDataIsNone)
{
    for (const Bytes& image :
         {spdModule(), ddr3Module(), ddr4Module(), ddr5Module(), lpddr4Module(), lpddr5Module()}) {
        EXPECT_EQ(compared(image, image), Lines());
    }
}

TEST(SpdDifference, NamesWhatIsEachModulesOwn)
{
    EXPECT_EQ(compared(ddr4Module(), with(ddr4Module(), 328, 0x79)),
              Lines{"serial_number: 12345678 -> 12345679"});
    EXPECT_EQ(compared(ddr4Module(), with(ddr4Module(), 324, 0x28)),
              Lines{"made: 2019-W27 -> 2019-W28"});
    EXPECT_EQ(compared(ddr4Module(), with(ddr4Module(), 329, 'Q')),
              Lines{"part_number: RK-DDR4-PART         -> QK-DDR4-PART        "});
    // A serial number that the CRC covers.
    Bytes other = ddr3Module();
    other[0] = 0x12;
    Bytes image = other;
    image[125] ^= 0xFF;
    writeSpdCrc(other, 0, 126, 126);
    writeSpdCrc(image, 0, 126, 126);
    const Lines lines = compared(other, image);
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[0], "serial_number: 12345678 -> 12345687");
    EXPECT_EQ(lines[1].substr(0, 11), "crc_stored:");
}

TEST(SpdDifference, NamesMembersAndFacts)
{
    const Lines ranks = compared(ddr4Module(), sound(12, 0x01));
    ASSERT_EQ(ranks.size(), 3U);
    EXPECT_EQ(ranks[0], "capacity_mb: 16384 -> 8192");
    EXPECT_EQ(ranks[1], "ranks: 2 -> 1");
    EXPECT_EQ(ranks[2].substr(0, 12), "crc_stored: ");
    const Lines reserved = compared(ddr4Module(), sound(12, 0x0C));
    EXPECT_EQ(reserved[0], "capacity_mb: 16384 -> -");
    EXPECT_EQ(reserved[1], "device_width: 8 -> -");
    const Lines width = compared(ddr4Module(), sound(13, 0x03));
    EXPECT_EQ(width[0], "ecc_width: 8 -> 0");
    const Lines bus = compared(ddr4Module(), sound(13, 0x0A));
    EXPECT_EQ(bus[1], "bus_width: 64 -> 32");
    const Lines density = compared(ddr4Module(), sound(4, 0x84));
    EXPECT_EQ(density[1], "density_mbit: 8192 -> 4096");
    const Lines type = compared(ddr4Module(), sound(3, 0x02));
    EXPECT_EQ(type[0], "module_type: RDIMM -> UDIMM");
    const Lines sensor = compared(ddr4Module(), sound(14, 0x00));
    EXPECT_EQ(sensor[1], "thermal_sensor: yes -> no");
}

TEST(SpdDifference, NamesWrongCrcs)
{
    const Bytes image = ddr4Module();
    const Lines first = compared(image, with(image, 126, image[126] ^ 1));
    ASSERT_EQ(first.size(), 2U);
    EXPECT_EQ(first[0].substr(0, 12), "crc_stored: ");
    EXPECT_EQ(first[1], "crc_right: yes -> no");
    const Lines second = compared(image, with(image, 254, image[254] ^ 1));
    ASSERT_EQ(second.size(), 2U);
    EXPECT_EQ(second[0].substr(0, 19), "module_crc_stored: ");
    EXPECT_EQ(second[1], "module_crc_right: yes -> no");
}

TEST(SpdDifference, NamesWhatOnlyOneHas)
{
    const Lines lines = compared(ddr4Module(), part(ddr4Module(), 0, 256));
    EXPECT_EQ(lines[0], "serial_number: 12345678 -> -");
    EXPECT_EQ(lines[1], "part_number: RK-DDR4-PART         -> -");
    const Lines codes = compared(spdModule(), ddr4Module());
    for (const char* const line :
         {"rank_field: 1 -> -", "dimm_size_code: 3 -> -", "dram_size_code: 2 -> -",
          "memory_type: DDR3 SDRAM -> DDR4 SDRAM", "module_crc_right: - -> yes"}) {
        EXPECT_EQ(std::count(codes.begin(), codes.end(), line), 1) << line;
    }
}

TEST(SpdDifference, OfDataThatSayTheSameIsTheirBytes)
{
    // Bytes 384 on of DDR4 are for the end user; of these only profiles are decoded.
    Bytes image = ddr4Module();
    image[500] = 0xAB;
    image[502] = 0xCD;
    image[505] = 0x01;
    image[506] = 0x02;
    EXPECT_EQ(compared(ddr4Module(), image), (Lines{"byte 500: 00 -> AB", "byte 502: 00 -> CD",
                                                    "bytes 505 to 506: 0000 -> 0102"}));
    image = ddr4Module();
    image[511] = 1;
    EXPECT_EQ(compared(ddr4Module(), image), Lines{"byte 511: 00 -> 01"});
    EXPECT_EQ(compared(part(ddr4Module(), 0, 400), part(ddr4Module(), 0, 390)),
              Lines{"size: 400 -> 390"});
    image = part(image, 0, 450);
    image[440] = 7;
    EXPECT_EQ(compared(ddr4Module(), image), (Lines{"byte 440: 00 -> 07", "size: 512 -> 450"}));
    image[328] = 0x79; // what it says comes first
    EXPECT_EQ(compared(ddr4Module(), image), Lines{"serial_number: 12345678 -> 12345679"});
}

TEST(SpdDifference, RefusesWhatIsNotAModule)
{
    EXPECT_THROW(compareSpdImages(ddr4Module(), Bytes(127, 0)), DataError);
    EXPECT_THROW(compareSpdImages(Bytes(127, 0), ddr4Module()), DataError);
}
