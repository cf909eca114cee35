// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <recordkit/version/BMCVersion.h>
#include <recordkit/version/DeviceID.h>
#include <recordkit/version/EFIVersion.h>
#include <recordkit/version/GSWBVersion.h>
#include <recordkit/version/PALSALVersion.h>
#include <recordkit/version/SystemFirmwareVersion.h>
#include <recordkit/version/SystemInfoParameters.h>
#include <recordkit/version/TAVFirmwareVersion.h>

#include "support/Bytes.h"
#include "support/Failures.h"

using namespace TAVLib::RecordKit;
using namespace testing_support;

TEST(TAVFirmwareVersion, ReadsItsNumbers)
{
    const auto version = fromBytes<TAVFirmwareVersion>({2, 0x15, 3, 0x47, 5, 6});
    EXPECT_EQ(version.getFirmMajorVersion(), 2);
    EXPECT_EQ(version.getFirmMinorVersion(), 15);
    EXPECT_EQ(version.getBootFirmMajorRevision(), 3);
    EXPECT_EQ(version.getBootFirmMinorRevision(), 47);
    EXPECT_EQ(version.getPSARefVersion(), 5);
    EXPECT_EQ(version.getSALRefVersion(), 6);
    EXPECT_EQ(version.getVersionString(), "2.15");
}

TEST(TAVFirmwareVersion, NoVersionIsShownAllTheSame)
{
    EXPECT_EQ(TAVFirmwareVersion().getVersionString(), "0.00");
    EXPECT_EQ(fromBytes<TAVFirmwareVersion>({255, 0x05, 0, 0, 0, 0}).getVersionString(), "255.05");
}

TEST(Versions, BCDDigitsAreNotChecked)
{
    const PALSALVersion version;
    for (unsigned int byte = 0; byte < 256; ++byte) {
        const auto expected = static_cast<unsigned char>((byte >> 4) * 10 + (byte & 15));
        EXPECT_EQ(version.BCDtoBin(static_cast<unsigned char>(byte)), expected);
    }
    EXPECT_EQ(version.BCDtoBin(0x99), 99);
    EXPECT_EQ(version.BCDtoBin(0xFF), 165);
    EXPECT_EQ(fromBytes<TAVFirmwareVersion>({1, 0xFF, 0, 0, 0, 0}).getVersionString(), "1.165");
}

TEST(PALSALVersion, ReadsFiveNumbers)
{
    const auto version = fromBytes<PALSALVersion>({0x11, 1, 0x22, 2, 0x33, 3, 0x44, 4, 0x55, 5});
    EXPECT_EQ(version.getPAL_A_GEN(), 256 + 11);
    EXPECT_EQ(version.getPAL_A_SPEC(), 2 * 256 + 22);
    EXPECT_EQ(version.getPAL_B(), 3 * 256 + 33);
    EXPECT_EQ(version.getSAL_A(), 4 * 256 + 44);
    EXPECT_EQ(version.getSAL_B(), 5 * 256 + 55);
    EXPECT_EQ(version.getPALVersionString(), "2.22 / 3.33");
    EXPECT_EQ(version.getSALVersionString(), "4.44 / 5.55");
    EXPECT_EQ(version.getVersionString(), "5.55");
}

TEST(PALSALVersion, OneFieldDecidesAndAnotherIsShown)
{
    const auto pal = [](const Bytes& image) {
        return fromBytes<PALSALVersion>(image).getPALVersionString();
    };
    EXPECT_EQ(pal({0, 0, 5, 2, 0, 0, 0, 0, 0, 0}), "-");
    EXPECT_EQ(pal({1, 0, 5, 2, 0, 0, 0, 0, 0, 0}), "2.05 / 0.00");
    EXPECT_EQ(pal({0, 0, 5, 2, 0, 1, 0, 0, 0, 0}), "2.05 / 1.00");
    const auto sal = [](const Bytes& image) {
        return fromBytes<PALSALVersion>(image).getSALVersionString();
    };
    EXPECT_EQ(sal({9, 9, 9, 9, 9, 9, 0, 0, 0, 0}), "-");
    EXPECT_EQ(sal({0, 0, 0, 0, 0, 0, 1, 0, 0, 0}), "0.01 / 0.00");
    EXPECT_EQ(sal({0, 0, 0, 0, 0, 0, 0, 0, 0, 1}), "0.00 / 1.00");
    const auto one = [](const Bytes& image) {
        return fromBytes<PALSALVersion>(image).getVersionString();
    };
    EXPECT_EQ(one({0, 0, 0, 0, 0, 0, 0, 0, 5, 2}), "-");
    EXPECT_EQ(one({0, 0, 0, 0, 1, 0, 0, 0, 0, 0}), "0.00");
}

TEST(EFIVersion, TextAndNumbersReadTheBytesInTheirOwnOrders)
{
    const auto version = fromBytes<EFIVersion>({1, 0, 2, 0, 3, 0, 4, 0, 0x12, 0x34});
    EXPECT_EQ(version.getEFILow(), 0x01000200U);
    EXPECT_EQ(version.getEFIHigh(), 0x03000400U);
    EXPECT_EQ(version.getBuildNumber(), 0x1234);
    EXPECT_EQ(version.getVersionString(), "2.1.4.3");
    EXPECT_EQ(fromBytes<EFIVersion>(Bytes(10, 0xFF)).getVersionString(), "65535.65535.65535.65535");
}

TEST(EFIVersion, NoVersionIsADash)
{
    EXPECT_EQ(fromBytes<EFIVersion>({0, 0, 0, 0, 0, 0, 0, 0, 1, 1}).getVersionString(), "-");
    for (std::size_t byte = 0; byte < 8; ++byte) {
        Bytes image(10, 0);
        image[byte] = 1;
        EXPECT_NE(fromBytes<EFIVersion>(image).getVersionString(), "-");
    }
}

TEST(BMCVersion, MasksTheTopBitOfTheMajorNumber)
{
    const auto version = fromBytes<BMCVersion>({0xEE, 0xEE, 0x81, 0x05});
    EXPECT_EQ(version.getFirmMajorVersion(), 1);
    EXPECT_EQ(version.getFirmMinorVersion(), 5);
    EXPECT_EQ(version.getVersionString(), "1.05");
    const TraceCapture trace;
    EXPECT_EQ(fromBytes<BMCVersion>({1, 1, 0x80, 0}).getVersionString(), "-");
    EXPECT_EQ(fromBytes<BMCVersion>({0, 0, 0x00, 1}).getVersionString(), "0.01");
    EXPECT_EQ(fromBytes<BMCVersion>({0, 0, 0x7F, 0}).getVersionString(), "127.00");
    EXPECT_EQ(trace.lines(), Lines());
}

TEST(DeviceID, TracesThatThereIsNoVersion)
{
    TraceCapture trace;
    EXPECT_EQ(fromBytes<DeviceID>({0xEE, 0xEE, 0x81, 0x05}).getVersionString(), "1.05");
    EXPECT_EQ(trace.take(), Lines());
    EXPECT_EQ(fromBytes<DeviceID>({1, 1, 0x80, 0}).getVersionString(), "-");
    EXPECT_EQ(trace.take(),
              Lines({"1:83:0x1200 level 0: Major Version and Minor Version is zero."}));
}

TEST(GSWBVersion, ReadsBanksAndVersions)
{
    auto version = fromBytes<GSWBVersion>({1, 2, 1, 2, 3, 10, 11, 12, 12, 0, 0, 200});
    unsigned char firstBank = 0;
    unsigned char secondBank = 0;
    version.getRunningBank(firstBank, secondBank);
    EXPECT_EQ(firstBank, 1);
    EXPECT_EQ(secondBank, 2);
    std::string first;
    std::string second;
    version.getOnlineVersion(first, second);
    EXPECT_EQ(first, "V01L02-A03");
    EXPECT_EQ(second, "V10L11-A12");
    version.getOfflineVersion(first, second);
    EXPECT_EQ(first, "V012L000");
    EXPECT_EQ(second, "V000L200");
}

TEST(GSWBVersion, EachVersionHasItsOwnDash)
{
    for (std::size_t byte = 2; byte < 12; ++byte) {
        Bytes image(12, 0);
        image[byte] = 1;
        auto version = fromBytes<GSWBVersion>(image);
        std::string texts[4];
        version.getOnlineVersion(texts[0], texts[1]);
        version.getOfflineVersion(texts[2], texts[3]);
        const std::size_t shown = byte < 5 ? 0 : byte < 8 ? 1 : byte < 10 ? 2 : 3;
        for (std::size_t i = 0; i < 4; ++i) {
            EXPECT_EQ(texts[i] == "-", i != shown) << byte;
        }
    }
}

TEST(SystemFirmwareVersion, HasALetterAndThreeNumbers)
{
    const auto text = [](const Bytes& image) {
        return fromBytes<SystemFirmwareVersion>(image).getVersionString();
    };
    EXPECT_EQ(text({2, 0x10, 0x05, 3}), "SB10053");
    EXPECT_EQ(text({2, 0, 0, 3}), "-");
    EXPECT_EQ(text({1, 0x01, 0, 0}), "SA01000");
    EXPECT_EQ(text({26, 0, 0x99, 9}), "SZ00999");
    EXPECT_EQ(text({1, 0x99, 0x99, 255}), "SA9999255");
}

TEST(SystemInfoParameters, TextIsCutAtAZeroByte)
{
    const auto text = [](const Bytes& image) {
        return fromBytes<SystemInfoParameters>(image).getVersionString();
    };
    EXPECT_EQ(text(Bytes({1, 0, 0, 0}) + textBytes("1234567890ABC")), "1234567890ABC");
    EXPECT_EQ(text(Bytes({1, 0, 0, 0}) + textBytes("1.23") + Bytes(9, 0)), "1.23");
    EXPECT_EQ(text(Bytes({0xFF, 0, 0, 0}) + Bytes(13, 0)), "");
    EXPECT_EQ(text(Bytes({0, 1, 1, 1}) + textBytes("1234567890ABC")), "-");
}

TEST(GSWBVersion, IsASerializableObjectOfTwelveBytes)
{
    GSWBVersion version;
    TAVLib::SerializableObject& object = version;
    EXPECT_EQ(object.getSerializedSize(), 12U);
    EXPECT_EQ(imageOf(object), Bytes(12, 0));
    EXPECT_FALSE(load(object, sequence(11, 1)));
    EXPECT_EQ(imageOf(object), Bytes(12, 0));
    EXPECT_TRUE(load(object, sequence(14, 1)));
    EXPECT_EQ(imageOf(object), sequence(12, 1));
    EXPECT_EQ(version.getInternalData()[11], 12);
    version.getInternalData()[0] = 0x77;
    EXPECT_EQ(imageOf(object), Bytes({0x77}) + sequence(11, 2));
    Bytes buffer(11, 0xEE);
    EXPECT_EQ(object.getSerialized(buffer.data(), 11), 0U);
    EXPECT_EQ(buffer, Bytes(11, 0xEE));
}

TEST(GSWBVersion, NumbersAboveTheirWidthAreShownWhole)
{
    auto version = fromBytes<GSWBVersion>({0, 0, 100, 255, 199, 99, 9, 100, 255, 100, 99, 9});
    std::string first;
    std::string second;
    version.getOnlineVersion(first, second);
    EXPECT_EQ(first, "V100L255-A199");
    EXPECT_EQ(second, "V99L09-A100");
    version.getOfflineVersion(first, second);
    EXPECT_EQ(first, "V255L100");
    EXPECT_EQ(second, "V099L009");
}

TEST(SystemFirmwareVersion, LetterIndexC0EndsTheText)
{
    // C0h and 40h make the zero character.
    EXPECT_EQ(fromBytes<SystemFirmwareVersion>({0xC0, 0x10, 0x05, 3}).getVersionString(), "S");
    EXPECT_EQ(fromBytes<SystemFirmwareVersion>({0xC1, 0x10, 0x05, 3}).getVersionString(), "S\x01"
                                                                                          "10053");
    EXPECT_EQ(fromBytes<SystemFirmwareVersion>({0xBF, 0x10, 0x05, 3}).getVersionString(), "S\xFF"
                                                                                          "10053");
}
