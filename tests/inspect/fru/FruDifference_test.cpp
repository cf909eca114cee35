// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/fru/FruDifference.h>

#include <gtest/gtest.h>

#include "support/FruImages.h"

using namespace recordkit::inspect;
using namespace testing_support;

namespace {

const Bytes IMAGE = fruImage(boardArea({"Acme", "Mezz", "SN1", "PN1", "", "red"}));

/// "FIELD: FIRST -> SECOND", - for what an image does not have.
std::vector<std::string> compared(const Bytes& first, const Bytes& second)
{
    std::vector<std::string> lines;
    for (const FruDifference& each : compareFruImages(first, second)) {
        lines.push_back(each.what + ": " + each.first.value_or("-") + " -> " +
                        each.second.value_or("-"));
    }
    return lines;
}

using Lines = std::vector<std::string>;

}

TEST(FruDifference, OfTheSameBytesIsNone)
{
    EXPECT_EQ(compared(IMAGE, IMAGE), Lines());
    EXPECT_EQ(compared({}, {}), Lines());
}

TEST(FruDifference, NamesTheFields)
{
    EXPECT_EQ(compared(IMAGE, fruImage(boardArea({"Acme", "Mezz", "SN2", "PN1", "", "red"}))),
              Lines{"board.serial: SN1 -> SN2"});
    EXPECT_EQ(compared(IMAGE, fruImage(boardArea({"Acme", "Mezz", "SN1", "PN1", ""}))),
              Lines{"board.custom1: red -> -"});
    EXPECT_EQ(compared(IMAGE, fruImage(boardArea({"Acme", "Mezz", "SN1", "PN1", "", "red", "xy"}))),
              Lines{"board.custom2: - -> xy"});
    EXPECT_EQ(compared(IMAGE, fruImage(boardArea({"Acme", "Mezz", "SN1", "PN1", "", "red"},
                                                 {1, 0, 0x98}))),
              Lines{"board.date: 2014-12-09 16:32 -> 2014-12-09 16:33"});
}

TEST(FruDifference, NamesAreasThatOnlyOneHas)
{
    const Bytes product = productArea({"Acme", "Box"});
    EXPECT_EQ(
        compared(IMAGE, fruImage(boardArea({"Acme", "Mezz", "SN1", "PN1", "", "red"}), product)),
        (Lines{"product.language: - -> 25", "product.manufacturer: - -> Acme",
               "product.name: - -> Box"}));
}

TEST(FruDifference, OfTheSameValueIsItsCoding)
{
    Bytes board = {1, 5, 0x19, 0, 0, 0x98, 0xC4, 'A', 'c', 'm', 'e', 0xC4, 'M', 'e', 'z', 'z'};
    const Bytes rest = {0xC3, 'P', 'N', '1', 0xC0, 0xC3, 'r', 'e', 'd', 0xC1};
    const auto withSerial = [&](const Bytes& serial) {
        Bytes area = board + serial + rest;
        area.resize(39);
        return fruImage(summed(area));
    };
    // "12" as text, and as BCD plus.
    EXPECT_EQ(compared(withSerial({0xC2, '1', '2'}), withSerial({0x41, 0x12})),
              Lines{"board.serial: text 3132 -> BCD plus 12"});
}

TEST(FruDifference, RecordsAreComparedByTheirBytes)
{
    const Bytes record = summed({0xC0, 0x82, 3, 0x1B}) + Bytes{1, 2, 0xE2};
    Bytes other = record;
    other[6] = 3;
    const Bytes board = boardArea({"Acme", "Mezz", "SN1", "PN1", "", "red"});
    EXPECT_EQ(compared(fruImage(board, {}, record), fruImage(board, {}, other)),
              Lines{"multirecord1: C082031BA00102E2 -> C082031BA00103E2"});
    EXPECT_EQ(compared(IMAGE, fruImage(board, {}, record)),
              Lines{"multirecord1: - -> C082031BA00102E2"});
}

TEST(FruDifference, OfTheSameContentsIsTheNumberOfBytes)
{
    EXPECT_EQ(compared(IMAGE, IMAGE + Bytes(8, 0)), Lines{"bytes: 40 bytes -> 48 bytes"});
    Bytes other = IMAGE + Bytes(8, 0);
    other.back() = 1;
    EXPECT_EQ(compared(IMAGE + Bytes(8, 0), other), Lines{"bytes: 48 bytes -> 48 bytes"});
}
