// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/words/Conversion.h>

#include <cmath>
#include <filesystem>
#include <gtest/gtest.h>
#include <map>
#include <sstream>

#include <recordkit/inspect/sensor/Sensor.h>

#include "support/Answers.h"
#include "support/ScratchRoot.h"
#include "support/SdrRecords.h"

using namespace recordkit::inspect;
using namespace testing_support;

namespace {

/// Factors of a full record, as its bytes have them.
struct Factors {
    unsigned char units1 = 0x00;
    unsigned char linearization = 0;
    unsigned char m = 1;
    unsigned char mHigh = 0;
    unsigned char b = 0;
    unsigned char bHigh = 0;
    unsigned char exponents = 0;
};

std::optional<Conversion> conversionOf(const Factors& factors, std::size_t size = 48)
{
    Bytes record(48, 0);
    record[20] = factors.units1;
    record[23] = factors.linearization;
    record[24] = factors.m;
    record[25] = factors.mHigh;
    record[26] = factors.b;
    record[27] = factors.bHigh;
    record[29] = factors.exponents;
    record.resize(size);
    return Conversion::of(record);
}

double valueOf(const Factors& factors, unsigned char raw)
{
    return conversionOf(factors).value().valueOf(raw).value();
}

std::string textOf(const Factors& factors, unsigned char raw)
{
    return conversionOf(factors).value().textOf(raw).value_or("none");
}

/// Units of 1 by a function.
Factors by(unsigned char linearization)
{
    Factors factors;
    factors.linearization = linearization;
    return factors;
}

}

TEST(Conversion, HasAFactorAndAnOffsetWithExponentsOfTheirOwn)
{
    EXPECT_DOUBLE_EQ(valueOf({0x00, 0, 120, 0, 0, 0, 0x00}, 4), 480);
    EXPECT_DOUBLE_EQ(valueOf({0x00, 0, 1, 0, 0x80, 0xC0, 0x00}, 151), 23); // B = -128
    EXPECT_DOUBLE_EQ(valueOf({0x00, 0, 1, 0, 0xFF, 0x40, 0x00}, 0), 511);  // B = 511
    EXPECT_DOUBLE_EQ(valueOf({0x00, 0, 1, 0, 0x00, 0x80, 0x00}, 0), -512); // B = -512
    EXPECT_DOUBLE_EQ(valueOf({0x00, 0, 0xFF, 0x40, 0, 0, 0x00}, 2), 1022); // M = 511
    EXPECT_DOUBLE_EQ(valueOf({0x00, 0, 0x00, 0x80, 0, 0, 0x00}, 1), -512); // M = -512
    EXPECT_DOUBLE_EQ(valueOf({0x00, 0, 5, 0, 3, 0, 0xE2}, 200), 13);       // (1000 + 300) / 100
    EXPECT_DOUBLE_EQ(valueOf({0x00, 0, 2, 0, 1, 0, 0x7F}, 3), 61000000);   // (6 + 0.1) 10^7
    EXPECT_DOUBLE_EQ(valueOf({0x00, 0, 1, 0, 1, 0, 0x88}, 0), 1e-16);      // 10^-8 10^-8
}

TEST(Conversion, KnowsTheSignedFormsOfAReading)
{
    const std::map<unsigned char, double> ones = {{0x00, 0},    {0x01, 1},  {0x7F, 127},
                                                  {0x80, -127}, {0xFE, -1}, {0xFF, 0}};
    for (const auto& [raw, value] : ones) {
        EXPECT_DOUBLE_EQ(valueOf({0x40}, raw), value) << int{raw};
    }
    const std::map<unsigned char, double> twos = {
        {0x00, 0}, {0x7F, 127}, {0x80, -128}, {0xFE, -2}, {0xFF, -1}};
    for (const auto& [raw, value] : twos) {
        EXPECT_DOUBLE_EQ(valueOf({0x80}, raw), value) << int{raw};
    }
    EXPECT_DOUBLE_EQ(valueOf({0x00}, 0xFF), 255);
    EXPECT_FALSE(conversionOf({0xC0})) << "no analog reading";
}

TEST(Conversion, KnowsTwelveFunctions)
{
    const double values[] = {
        4, 1.3862943611198906, 0.6020599913279624, 2, 54.598150033144236, 10000, 16, 0.25, 16, 64,
        2, 1.5874010519681994};
    for (unsigned char i = 0; i < 12; ++i) {
        EXPECT_DOUBLE_EQ(valueOf(by(i), 4), values[i]) << int{i};
        // Bit 7 is reserved.
        EXPECT_DOUBLE_EQ(valueOf(by(static_cast<unsigned char>(i | 0x80)), 4), values[i]);
    }
    for (const unsigned char other : {0x0C, 0x6F, 0x70, 0x7F}) {
        EXPECT_FALSE(conversionOf(by(other))) << int{other};
    }
}

TEST(Conversion, HasNoValueWhereTheFunctionHasNone)
{
    for (const unsigned char function : {1, 2, 3, 7}) {
        EXPECT_FALSE(conversionOf(by(function))->valueOf(0)) << int{function};
        EXPECT_FALSE(conversionOf(by(function))->textOf(0)) << int{function};
    }
    Factors negative = by(10);
    negative.units1 = 0x80;
    EXPECT_FALSE(conversionOf(negative)->valueOf(0xFF)) << "the root of -1";
    negative.linearization = 11;
    EXPECT_DOUBLE_EQ(valueOf(negative, 0xF8), -2) << "the cube root of -8";
}

TEST(Conversion, OfADifferenceHasNoOffset)
{
    EXPECT_DOUBLE_EQ(conversionOf({0x00, 0, 5, 0, 100, 0, 0xF0})->differenceOf(4).value(), 2);
    EXPECT_FALSE(conversionOf(by(8))->differenceOf(4));
}

TEST(Conversion, TextHasThePlacesOfTheResolution)
{
    EXPECT_EQ(textOf({0x00, 0, 120}, 5), "600");
    EXPECT_EQ(textOf({0x00, 0, 1}, 5), "5");
    EXPECT_EQ(textOf({0x00, 0, 5, 0, 0, 0, 0xF0}, 5), "2.5");      // 0.5
    EXPECT_EQ(textOf({0x00, 0, 1, 0, 0, 0, 0xF0}, 3), "0.3");      // 0.1
    EXPECT_EQ(textOf({0x00, 0, 78, 0, 0, 0, 0xD0}, 155), "12.09"); // 0.078
    EXPECT_EQ(textOf({0x00, 0, 1, 0, 0, 0, 0x80}, 3), "0.000000"); // six places at most
    EXPECT_EQ(textOf({0x00, 0, 0, 0, 7, 0, 0x00}, 9), "7");        // every reading is the same
    EXPECT_EQ(textOf({0x80, 0, 1}, 0xFB), "-5");
    EXPECT_EQ(textOf({0x40, 0, 1, 0, 0, 0, 0xF0}, 0xFF), "0.0") << "not -0.0";
    EXPECT_EQ(textOf(by(7), 4), "0.25");
    EXPECT_EQ(textOf(by(8), 12), "144");
    EXPECT_EQ(textOf(by(10), 2), "1.4");
}

TEST(Conversion, NeedsTheBytesOfItsFactors)
{
    EXPECT_FALSE(conversionOf({}, 29));
    EXPECT_TRUE(conversionOf({}, 30));
}

namespace {

/// What freeipmi says of a record, by name of the line.
using Facts = std::map<std::string, std::string>;

/// The facts of each sensor number: the simulator that was asked has record ids of its own.
std::map<unsigned int, Facts> factsOf(const std::string& answers)
{
    std::map<unsigned int, Facts> all;
    Facts facts;
    std::istringstream lines(answers);
    for (std::string line; std::getline(lines, line);) {
        const std::size_t colon = line.find(": ");
        if (colon == std::string::npos) {
            continue;
        }
        const std::string name = line.substr(0, colon);
        const std::string value = line.substr(colon + 2);
        if (name == "Record ID") {
            facts.clear();
        }
        facts[name] = value;
        if (name == "Sensor Reading" && facts.count("Linearization") != 0) {
            all[static_cast<unsigned int>(std::stoul(facts.at("Sensor Number")))] = facts;
        }
    }
    return all;
}

std::vector<std::string> servers()
{
    std::vector<std::string> names;
    const std::string folder = RECORDKIT_PUBLIC_DATA "/sdr";
    if (std::filesystem::exists(folder)) {
        for (const auto& entry : std::filesystem::directory_iterator(folder)) {
            if (entry.path().extension() == ".sdr") {
                names.push_back(entry.path().stem().string());
            }
        }
    }
    return names;
}

}

TEST(ConversionPeers, ReadingsOfPublicRecordsAreThoseOfFreeipmi)
{
    const std::vector<std::string> names = servers();
    if (names.empty()) {
        GTEST_SKIP() << "the public samples are not here";
    }
    unsigned int compared = 0;
    for (const std::string& name : names) {
        const Bytes bytes = readFile(RECORDKIT_PUBLIC_DATA "/sdr/" + name + ".sdr");
        const std::map<unsigned int, Facts> answers =
            factsOf(contentOf(RECORDKIT_PUBLIC_DATA "/sdr/ref/" + name + ".ipmi-sensors-vv.txt"));
        for (const SdrRecord& record : parseSdrFile(bytes).records) {
            const Sensor sensor = readSensor(record);
            const auto answer = answers.find(sensor.number);
            if (!sensor.conversion || answer == answers.end() ||
                answer->second.at("ID String") != sensor.name) {
                continue;
            }
            const auto compare = [&](const char* fact, std::optional<unsigned char> raw) {
                const auto line = answer->second.find(fact);
                if (raw && line != answer->second.end()) {
                    EXPECT_NEAR(sensor.conversion->valueOf(*raw).value(), std::stod(line->second),
                                1e-6)
                        << name << " record " << record.id() << " " << fact;
                    ++compared;
                }
            };
            compare("Nominal Reading", sensor.nominal);
            compare("Normal Max.", sensor.normalMaximum);
            compare("Normal Min.", sensor.normalMinimum);
            compare("Sensor Max. Reading", sensor.maximum);
            compare("Sensor Min. Reading", sensor.minimum);
            // A count is M 10^K2 units (section 36.4); freeipmi leaves out a negative K2, and says
            // 0 for factors that it thereby takes for an integer.
            const double resolution = std::stod(answer->second.at("Resolution"));
            if (resolution != 0) {
                EXPECT_NEAR(sensor.conversion->differenceOf(1).value(), resolution, 1e-6);
            }
        }
    }
    EXPECT_GT(compared, 300U);
}
