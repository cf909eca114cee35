// SPDX-License-Identifier: Apache-2.0
// openipmi's simulated controller on loopback has twelve full sensors, one of each linearization,
// as often as there are raw readings. ipmitool converts each reading to units as this project does.
#include <cmath>
#include <cstdio>
#include <gtest/gtest.h>
#include <map>
#include <sstream>

#include <recordkit/inspect/sensor/Sensor.h>

#include "interop/Simulator.h"
#include "support/ScratchRoot.h"
#include "support/SdrRecords.h"

using namespace recordkit::inspect;
using namespace testing_support;

namespace {

/// How the readings of a sensor become units.
struct Factors {
    unsigned char format; ///< unsigned, ones' or two's complement
    int m;
    int b;
    int resultExponent;
    int offsetExponent;
};

constexpr unsigned char UNSIGNED = 0x00;
constexpr unsigned char ONES = 0x40;
constexpr unsigned char TWOS = 0x80;

/// By linearization. Values have a few digits before and after the point.
constexpr Factors FACTORS[] = {
    {TWOS, 300, -7, -2, 1},       // linear
    {UNSIGNED, 5, 0, -2, 0},      // ln
    {ONES, 7, 500, -2, 0},        // log10
    {TWOS, 3, 1, -1, 2},          // log2
    {TWOS, 5, 0, -2, 0},          // e^x
    {ONES, -2, 12, -2, 0},        // 10^x
    {UNSIGNED, 4, -50, -2, 1},    // 2^x
    {TWOS, 1, 5, -1, 0},          // 1/x
    {ONES, 11, -3, -1, 1},        // x^2
    {TWOS, -9, 4, -1, -1},        // x^3
    {UNSIGNED, 511, -512, -1, 0}, // square root
    {TWOS, 13, 0, 0, 0},          // cube root
};
constexpr unsigned int READINGS = 256;
/// Raw readings of one simulator; all sensors of one LUN have a number each.
constexpr unsigned int AT_ONCE = 64;
constexpr unsigned int LUNS = 4;

unsigned char byteOf(int number)
{
    return static_cast<unsigned char>(number & 0xFF);
}
/// Bits 9..8 of a number, where a record has them.
unsigned char highBits(int number)
{
    return static_cast<unsigned char>((number >> 8 & 3) << 6);
}
unsigned char halves(int high, int low)
{
    return static_cast<unsigned char>((high & 0x0F) << 4 | (low & 0x0F));
}

Bytes recordOf(unsigned char linearization, unsigned char lun, unsigned char number,
               const std::string& name)
{
    const Factors& factors = FACTORS[linearization];
    Bytes body(43, 0);
    body[0] = 0x20;
    body[1] = lun;
    body[2] = number;
    body[3] = 7; // system board
    body[5] = 0x7F;
    body[6] = 0x40;
    body[7] = 0x01; // temperature
    body[8] = 0x01; // thresholds
    body[15] = factors.format;
    body[16] = 1; // degrees C
    body[18] = linearization;
    body[19] = byteOf(factors.m);
    body[20] = highBits(factors.m);
    body[21] = byteOf(factors.b);
    body[22] = highBits(factors.b);
    body[24] = halves(factors.resultExponent, factors.offsetExponent);
    body[42] = static_cast<unsigned char>(0xC0 | name.size());
    return sdrRecord(0, SDR_FULL, body + textBytes(name));
}

std::string hexBytes(const Bytes& bytes)
{
    std::string text;
    for (const unsigned char byte : bytes) {
        char word[8];
        std::snprintf(word, sizeof word, " 0x%02x", byte);
        text += word;
    }
    return text;
}

/// A sensor that reports one raw reading.
struct Reporter {
    unsigned char linearization;
    unsigned char raw;
    std::optional<double> ours;
};

/// Sensors of all linearizations with these readings, by name, and the simulator's lines for them.
std::map<std::string, Reporter> reportersOf(unsigned int firstRaw, std::string& lines)
{
    std::map<std::string, Reporter> reporters;
    unsigned int count = 0;
    for (unsigned int raw = firstRaw; raw < firstRaw + AT_ONCE; ++raw) {
        for (unsigned char linearization = 0; linearization < std::size(FACTORS); ++linearization) {
            const auto lun = static_cast<unsigned char>(count % LUNS);
            const auto number = static_cast<unsigned char>(count / LUNS + 1);
            ++count;
            const std::string name = std::to_string(linearization) + " at " + std::to_string(raw);
            const Bytes record = recordOf(linearization, lun, number, name);
            const std::string sensor =
                " 0x20 " + std::to_string(lun) + " " + std::to_string(number);
            lines += "main_sdr_add 0x20" + hexBytes(record) + "\nsensor_add" + sensor +
                     " 1 1\nsensor_set_value" + sensor + " " + std::to_string(raw) + " 0\n";
            const auto conversion = readSensor({0, record}).conversion;
            EXPECT_TRUE(conversion);
            const auto reading = static_cast<unsigned char>(raw);
            reporters[name] = {linearization, reading,
                               conversion ? conversion->valueOf(reading) : std::nullopt};
        }
    }
    return reporters;
}

/// The second column of `ipmitool sensor`, by the first one.
std::map<std::string, std::string> readingsOf(const std::string& listing)
{
    std::map<std::string, std::string> readings;
    std::istringstream lines(listing);
    for (std::string line; std::getline(lines, line);) {
        const std::size_t first = line.find('|');
        const std::size_t second = line.find('|', first + 1);
        if (second != std::string::npos) {
            readings[line.substr(0, line.find_last_not_of(' ', first - 1) + 1)] =
                line.substr(first + 2, line.find_last_not_of(' ', second - 1) - first - 1);
        }
    }
    return readings;
}

}

TEST(Simulator, EveryReadingOfEveryLinearizationIsThatOfIpmitool)
{
    if (!hasPrograms({"ipmi_sim", "ipmitool"})) {
        GTEST_SKIP() << "ipmi_sim and ipmitool are not here";
    }
    unsigned int compared = 0;
    unsigned int without = 0;
    for (unsigned int firstRaw = 0; firstRaw < READINGS; firstRaw += AT_ONCE) {
        std::string lines;
        const std::map<std::string, Reporter> reporters = reportersOf(firstRaw, lines);
        const ScratchRoot root;
        const Simulator simulator(root.path(), lines);
        const Outcome outcome = simulator.ipmitool({"sensor"});
        ASSERT_EQ(outcome.status, 0) << outcome.err;
        const std::map<std::string, std::string> readings = readingsOf(outcome.out);
        ASSERT_EQ(readings.size(), reporters.size());
        for (const auto& [name, reporter] : reporters) {
            const auto theirs = readings.find(name);
            ASSERT_NE(theirs, readings.end()) << name;
            ++compared;
            if (!reporter.ours) {
                ++without;
                // What the arithmetic gives where a function has no value.
                EXPECT_FALSE(std::isfinite(std::stod(theirs->second))) << name;
                continue;
            }
            // It prints three places.
            EXPECT_NEAR(*reporter.ours, std::stod(theirs->second),
                        0.0005001 + std::fabs(*reporter.ours) * 1e-9)
                << name;
        }
    }
    EXPECT_EQ(compared, READINGS * std::size(FACTORS));
    // The logarithms of 0 and less, 1/0, and the roots of two negative numbers.
    EXPECT_EQ(without, 1U + 56U + 95U + 1U + 2U);
}
