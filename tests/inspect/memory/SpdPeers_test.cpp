// SPDX-License-Identifier: Apache-2.0
// Every line that decode-dimms prints of the sample modules.
#include <cstdio>
#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <set>
#include <sstream>

#include <recordkit/inspect/memory/SpdRows.h>

#include "support/Answers.h"
#include "support/ScratchRoot.h"

using namespace recordkit::inspect;
using namespace testing_support;

namespace {

using F = SpdFact;

template <typename... Numbers> std::string text(const char* format, Numbers... numbers)
{
    char buffer[200];
    std::snprintf(buffer, sizeof buffer, format, numbers...);
    return buffer;
}

std::string plain(const Value& value)
{
    if (const auto* number = std::get_if<long long>(&value)) {
        return std::to_string(*number);
    }
    const auto* words = std::get_if<std::string>(&value);
    return words == nullptr ? "none" : *words;
}

long long number(const Spd& spd, F fact)
{
    const auto* value = std::get_if<long long>(&spd.get(fact));
    return value == nullptr ? 0 : *value;
}

bool isTrue(const Spd& spd, F fact)
{
    return std::get<bool>(spd.get(fact));
}

std::string nanoseconds(const Spd& spd, F fact)
{
    const long long time = number(spd, fact);
    return text("%lld.%03lld ns", time / 1000, time % 1000);
}

std::string crcText(const SpdCrc& crc)
{
    return crc.isRight() ? text("OK (0x%04X)", crc.stored)
                         : text("Bad (found 0x%04X, calculated 0x%04X)", crc.stored, crc.expected);
}

std::string firstCrc(const Spd& spd)
{
    return crcText({0, 0, spd.storedCrc, spd.expectedCrc});
}

/// The data rate of a module with its name: "2133 MT/s (PC4-17000)".
std::string speedText(const Spd& spd, int generation)
{
    const long long speed = number(spd, F::SPEED);
    return text("%lld MT/s (PC%d-%lld)", speed, generation, speed * 8 / 100 * 100);
}

std::string latenciesText(const Spd& spd)
{
    std::string list;
    for (const long long each : std::get<std::vector<long long>>(spd.get(F::CAS_LATENCIES))) {
        list = std::to_string(each) + "T" + (list.empty() ? "" : ", ") + list;
    }
    return list;
}

/// CAS latency, RAS to CAS, precharge and active clocks with a longer cycle: the latency is the
/// least that the module has and that is long enough.
std::string clocksText(const Spd& spd, long long cycle, const SpdRounding& rounding)
{
    const auto clocks = [&](F fact) { return clocksOf(number(spd, fact), cycle, rounding); };
    long long latency = clocks(F::TAA);
    for (const long long each : std::get<std::vector<long long>>(spd.get(F::CAS_LATENCIES))) {
        if (each >= latency) {
            latency = each;
            break;
        }
    }
    return text("%lld-%lld-%lld-%lld", latency, clocks(F::TRCD), clocks(F::TRP), clocks(F::TRAS));
}

std::string capitalised(std::string words)
{
    if (!words.empty()) {
        words[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(words[0])));
    }
    return words;
}

std::string withoutPadding(std::string words)
{
    words.erase(words.find_last_not_of(std::string(" \0", 2)) + 1);
    return words;
}

std::string makerText(const Spd& spd, F fact, const std::string& theirs)
{
    const std::string ours = plain(spd.get(fact));
    // It adds former names, as JEP106 does.
    return ours == "none" ? "Undefined" : theirs.rfind(ours + " (", 0) == 0 ? theirs : ours;
}

std::string partText(const Spd& spd)
{
    // It cuts a part number at the first byte that is not an ASCII character.
    const std::string part = withoutPadding(spd.partNumber.substr(0, spd.partNumber.find('\xC2')));
    return part.empty() ? "Undefined" : part;
}

/// The cycle of a grade, which is a multiple of 400/3 without its fraction.
long long cycleOf(int grade)
{
    return 6000000 / ((grade * 3LL + 2) / 400 * 400);
}

/// Our text for a line of its answer.
using Ours = std::function<std::string(const Spd& spd, const std::string& theirs)>;
using Lines = std::map<std::string, Ours>;

Ours time(F fact)
{
    return [fact](const Spd& spd, const std::string&) { return nanoseconds(spd, fact); };
}

/// For what is not a quantity that an image and spd show have in common.
std::string as(const Spd&, const std::string& theirs)
{
    return theirs;
}

Ours fact(F which)
{
    return [which](const Spd& spd, const std::string&) { return plain(spd.get(which)); };
}

Ours madeBy(F which)
{
    return [which](const Spd& spd, const std::string& theirs) {
        return makerText(spd, which, theirs);
    };
}

Ours of(std::string (*function)(const Spd& spd))
{
    return [function](const Spd& spd, const std::string&) { return function(spd); };
}

/// What it prints of every generation.
Lines commonLines()
{
    return {
        {"EEPROM CRC of bytes 0-125", of(firstCrc)},
        {"# of bytes written to SDRAM EEPROM", fact(F::BYTES_USED)},
        {"Total number of bytes in EEPROM", fact(F::BYTES_TOTAL)},
        {"Fundamental Memory type", fact(F::MEMORY_TYPE)},
        {"SPD Revision", fact(F::REVISION)},
        {"Module Type", of([](const Spd& spd) { return spd.moduleType; })},
        {"Size", of([](const Spd& spd) { return text("%u MB", spd.megabytes); })},
        {"Banks x Rows x Columns x Bits", of([](const Spd& spd) {
             return text("%lld x %lld x %lld x %u", number(spd, F::BANKS), number(spd, F::ROW_BITS),
                         number(spd, F::COLUMN_BITS), spd.busWidth);
         })},
        {"SDRAM Device Width", of([](const Spd& spd) { return text("%u bits", spd.deviceWidth); })},
        {"Ranks", of([](const Spd& spd) { return std::to_string(spd.ranks); })},
        {"Primary Bus Width", of([](const Spd& spd) { return text("%u bits", spd.busWidth); })},
        {"Bus Width Extension", of([](const Spd& spd) { return text("%u bits", spd.eccWidth); })},
        {"Minimum CAS Latency Time (tAA)", time(F::TAA)},
        {"Minimum Row Precharge Delay (tRP)", time(F::TRP)},
        {"Minimum Active to Precharge Delay (tRAS)", time(F::TRAS)},
        {"Minimum Active to Auto-Refresh Delay (tRC)", time(F::TRC)},
        {"Minimum Four Activate Window Delay (tFAW)", time(F::TFAW)},
        {"Maximum Activate Count (MAC)",
         of([](const Spd& spd) { return capitalised(plain(spd.get(F::MAX_ACTIVATES))); })},
        {"Module Thickness", of([](const Spd& spd) {
             return text("%lld mm front, %lld mm back", number(spd, F::FRONT),
                         number(spd, F::BACK));
         })},
        {"Module Reference Card", fact(F::REFERENCE_CARD)},
        {"Module Manufacturer", madeBy(F::MODULE_MAKER)},
        {"DRAM Manufacturer", madeBy(F::DRAM_MAKER)},
        {"Manufacturing Location Code",
         of([](const Spd& spd) { return text("0x%02llX", number(spd, F::LOCATION)); })},
        {"Manufacturing Date", fact(F::MADE)},
        {"Assembly Serial Number",
         of([](const Spd& spd) { return text("0x%08X", spd.serialNumber); })},
        {"Part Number", of(partText)},
        {"Revision Code", of([](const Spd& spd) {
             const std::string digits = plain(spd.get(F::MODULE_REVISION));
             return "0x" + digits.substr(0, digits.size() - 1);
         })},
    };
}

Lines ddr4Lines()
{
    Lines lines = commonLines();
    const Lines more = {
        {"EEPROM CRC of bytes 128-253", of([](const Spd& spd) { return crcText(*spd.moduleCrc); })},
        {"Maximum module speed", of([](const Spd& spd) { return speedText(spd, 4); })},
        {"AA-RCD-RP-RAS (cycles)", of([](const Spd& spd) {
             return clocksText(spd, number(spd, F::TCK_MIN), DDR4_ROUNDING);
         })},
        {"Supported CAS Latencies", of(latenciesText)},
        {"Minimum Cycle Time (tCKmin)", time(F::TCK_MIN)},
        {"Maximum Cycle Time (tCKmax)", time(F::TCK_MAX)},
        {"Minimum RAS to CAS Delay (tRCD)", time(F::TRCD)},
        {"Minimum Recovery Delay (tRFC1)", time(F::TRFC1)},
        {"Minimum Recovery Delay (tRFC2)", time(F::TRFC2)},
        {"Minimum Recovery Delay (tRFC4)", time(F::TRFC4)},
        {"Minimum Row Active to Row Active Delay (tRRD_S)", time(F::TRRD)},
        {"Minimum Row Active to Row Active Delay (tRRD_L)", time(F::TRRD_L)},
        {"Minimum CAS to CAS Delay (tCCD_L)", time(F::TCCD_L)},
        {"Minimum Write Recovery Time (tWR)", time(F::TWR)},
        {"Minimum Write to Read Time (tWTR_S)", time(F::TWTR)},
        {"Minimum Write to Read Time (tWTR_L)", time(F::TWTR_L)},
        {"Package Type", of([](const Spd& spd) {
             const long long dies = number(spd, F::DIES);
             return capitalised(plain(spd.get(F::PACKAGE))) +
                    (dies == 1 ? "" : text(" (%lld dies)", dies));
         })},
        {"Post Package Repair",
         of([](const Spd& spd) { return capitalised(plain(spd.get(F::REPAIR))); })},
        {"Soft PPR", of([](const Spd& spd) {
             return std::string(isTrue(spd, F::SOFT_REPAIR) ? "Supported" : "Not Supported");
         })},
        {"Module Nominal Voltage", fact(F::VOLTAGES)},
        {"Thermal Sensor", of([](const Spd& spd) {
             return std::string(isTrue(spd, F::THERMAL_SENSOR) ? "TSE2004 compliant" : "No");
         })},
        {"Module Height", of([](const Spd& spd) {
             return text("%lld mm", number(spd, F::HEIGHT)) +
                    (number(spd, F::HEIGHT) == 15 ? " or less" : "");
         })},
    };
    lines.insert(more.begin(), more.end());
    for (const int grade : {1600, 1866, 2133, 2400, 2666, 2933, 3200}) {
        const long long cycle = cycleOf(grade);
        lines[text("AA-RCD-RP-RAS (cycles) as DDR4-%d", grade)] = [cycle](const Spd& spd,
                                                                          const std::string&) {
            return clocksText(spd, cycle, DDR4_ROUNDING);
        };
    }
    return lines;
}

std::string yes(const Spd& spd, F which)
{
    return isTrue(spd, which) ? "Yes" : "No";
}

Ours yesOf(F which)
{
    return [which](const Spd& spd, const std::string&) { return yes(spd, which); };
}

std::string ddr3Voltages(const Spd& spd, const std::string& theirs)
{
    std::string ours = plain(spd.get(F::VOLTAGES));
    for (std::size_t at = 0; (at = ours.find(" V")) != std::string::npos;) {
        ours.erase(at, 1);
    }
    // Annex K, byte 6: with bit 0 the module is not operable at 1.5 V; every module tolerates it.
    return theirs == "1.5V tolerant, 1.35V" && ours == "1.35V" ? theirs : ours;
}

/// Annex K, byte 0: bits 6..4 are the size, of which only 1, 256 bytes, is defined, and code 3 in
/// bits 3..0 is 256 bytes used. It takes other sizes from later generations, and for 93h says 512
/// bytes of which 176 are used.
std::string ddr3Size(const Spd& spd, const std::string& theirs)
{
    const std::string ours = plain(spd.get(F::BYTES_TOTAL));
    return theirs == "512" && (ours == "code 2h" || plain(spd.get(F::BYTES_USED)) == "256") ? theirs
                                                                                            : ours;
}

std::string ddr3Used(const Spd& spd, const std::string& theirs)
{
    const std::string ours = plain(spd.get(F::BYTES_USED));
    return theirs == "176" && ours == "256" ? theirs : ours;
}

/// Annex K, bytes 120 and 121: the date is BCD. It takes what is not for a binary number.
std::string ddr3Date(const Spd& spd, const std::string& theirs)
{
    const std::string ours = plain(spd.get(F::MADE));
    int year = 0;
    int week = 0;
    if (std::sscanf(theirs.c_str(), "20%d-W%d", &year, &week) == 2 &&
        ours == text("year %02Xh, week %02Xh", static_cast<unsigned int>(year),
                     static_cast<unsigned int>(week))) {
        return theirs;
    }
    return ours;
}

Lines ddr3Lines()
{
    Lines lines = commonLines();
    lines["# of bytes written to SDRAM EEPROM"] = ddr3Used;
    lines["Total number of bytes in EEPROM"] = ddr3Size;
    lines["Manufacturing Date"] = ddr3Date;
    // It follows from the type of module, and is not in the image.
    lines["Module Width"] = as;
    // Placement of the buffer of an LRDIMM, which is not shown.
    lines["Rank Numbering"] = as;
    lines["Buffer Orientation"] = as;
    const Lines more = {
        {"EEPROM CRC of bytes 0-116", of(firstCrc)},
        {"Maximum module speed", of([](const Spd& spd) { return speedText(spd, 3); })},
        {"tCL-tRCD-tRP-tRAS", of([](const Spd& spd) {
             return clocksText(spd, number(spd, F::TCK_MIN), DDR3_ROUNDING);
         })},
        {"Supported CAS Latencies (tCL)", of(latenciesText)},
        {"Minimum Cycle Time (tCK)", time(F::TCK_MIN)},
        {"Minimum Write Recovery time (tWR)", time(F::TWR)},
        {"Minimum RAS# to CAS# Delay (tRCD)", time(F::TRCD)},
        {"Minimum Row Active to Row Active Delay (tRRD)", time(F::TRRD)},
        {"Minimum Recovery Delay (tRFC)", time(F::TRFC1)},
        {"Minimum Write to Read CMD Delay (tWTR)", time(F::TWTR)},
        {"Minimum Read to Pre-charge CMD Delay (tRTP)", time(F::TRTP)},
        {"Operable voltages", ddr3Voltages},
        {"RZQ/6 supported?", yesOf(F::RZQ6)},
        {"RZQ/7 supported?", yesOf(F::RZQ7)},
        {"DLL-Off Mode supported?", yesOf(F::DLL_OFF)},
        {"Operating temperature range", of([](const Spd& spd) {
             return std::string(isTrue(spd, F::HOT) ? "0-95 degrees C" : "0-85 degrees C");
         })},
        {"Refresh Rate in extended temp range",
         of([](const Spd& spd) { return text("%lldX", number(spd, F::HOT_REFRESH)); })},
        {"Auto Self-Refresh?", yesOf(F::AUTO_REFRESH)},
        {"On-Die Thermal Sensor readout?", yesOf(F::ON_DIE_SENSOR)},
        {"Partial Array Self-Refresh?", yesOf(F::PARTIAL_REFRESH)},
        {"Module Thermal Sensor", yesOf(F::THERMAL_SENSOR)},
        {"SDRAM Device Type", of([](const Spd& spd) {
             return std::string(plain(spd.get(F::PACKAGE)) == "monolithic" ? "Standard Monolithic"
                                                                           : "Non-Standard");
         })},
        {"Module Height",
         of([](const Spd& spd) { return text("%lld mm", number(spd, F::HEIGHT)); })},
        {"Rank 1 Mapping",
         of([](const Spd& spd) { return capitalised(plain(spd.get(F::MAPPING))); })},
        {"# DRAM Rows", fact(F::DEVICE_ROWS)},
        {"# Registers", fact(F::REGISTERS)},
        {"Register manufacturer", madeBy(F::REGISTER_MAKER)},
        {"Register device type", fact(F::REGISTER_TYPE)},
        {"Register revision", fact(F::REGISTER_REVISION)},
        {"Buffer Revision", fact(F::BUFFER_REVISION)},
        {"Heat spreader", yesOf(F::HEAT_SPREADER)},
        {"Mirroring", of([](const Spd& spd) {
             return std::string(plain(spd.get(F::MAPPING)) == "mirrored" ? "Odd ranks" : "None");
         })},
    };
    lines.insert(more.begin(), more.end());
    for (const int grade : {800, 1066, 1333, 1600, 1866}) {
        const long long cycle = cycleOf(grade);
        lines[text("tCL-tRCD-tRP-tRAS as DDR3-%d", grade)] = [cycle](const Spd& spd,
                                                                     const std::string&) {
            return clocksText(spd, cycle, DDR3_ROUNDING);
        };
    }
    return lines;
}

/// Annex K, byte 0 of 91h: 256 bytes, of which 128 are used. Annex M, byte 0 of 24h: 512 bytes, all
/// of them used; of 23h: 384 of 512. It reads the byte of kinds that it does not know, and of
/// LPDDR3, as that of other kinds.
Ours sizeOf(F which, const std::set<std::pair<std::string, std::string>>& theirsAndOurs)
{
    return [which, theirsAndOurs](const Spd& spd, const std::string& theirs) {
        const std::string ours = plain(spd.get(which));
        return theirsAndOurs.count({theirs, ours}) != 0 ? theirs : ours;
    };
}

/// What it prints of memory that it does not decode.
Lines undecodedLines()
{
    return {
        {"EEPROM CRC of bytes 0-116", of(firstCrc)},
        {"EEPROM CRC of bytes 0-125", of(firstCrc)},
        {"# of bytes written to SDRAM EEPROM",
         sizeOf(F::BYTES_USED, {{"176", "128"}, {"256", "512"}, {"256", "384"}})},
        {"Total number of bytes in EEPROM",
         sizeOf(F::BYTES_TOTAL, {{"128", "256"}, {"1024", "512"}})},
        {"SPD Revision", fact(F::REVISION)},
        // F1h is not a number of JEDEC.
        {"Fundamental Memory type",
         [](const Spd& spd, const std::string& theirs) {
             const std::string ours = plain(spd.get(F::MEMORY_TYPE));
             return theirs == "Unknown (0xf1)" && ours == "LPDDR3 SDRAM" ? theirs : ours;
         }},
        {"Module Type", of([](const Spd& spd) {
             return std::string(spd.moduleType == "non-DIMM" ? "Reserved (0x0E)" : spd.moduleType);
         })},
        // Bytes of other kinds: the fine corrections (Annex M, bytes 117 to 125), and zeroes.
        {"Manufacturer", as},
        {"Module Manufacturer", as},
        {"Assembly Serial Number", as},
        {"Part Number", as},
    };
}

/// Annex M, which it reads as DDR4. Those that have other places or units there are left as they
/// are: byte 25 is the latency sets, bytes 27 to 33 are precharge and refresh recovery of all banks
/// and of one, and there are no others. Latencies are not a range.
Lines lpddr4Lines()
{
    Lines lines = ddr4Lines();
    for (const char* const other :
         {"AA-RCD-RP-RAS (cycles)", "Supported CAS Latencies", "Minimum RAS to CAS Delay (tRCD)",
          "Minimum Row Precharge Delay (tRP)", "Minimum Active to Precharge Delay (tRAS)",
          "Minimum Active to Auto-Refresh Delay (tRC)", "Minimum Recovery Delay (tRFC1)",
          "Minimum Recovery Delay (tRFC2)", "Minimum Recovery Delay (tRFC4)",
          "Minimum Four Activate Window Delay (tFAW)",
          "Minimum Row Active to Row Active Delay (tRRD_S)",
          "Minimum Row Active to Row Active Delay (tRRD_L)", "Minimum CAS to CAS Delay (tCCD_L)",
          "Module Nominal Voltage"}) {
        lines[other] = as;
    }
    for (auto& [name, ours] : lines) {
        if (name.rfind("AA-RCD-RP-RAS (cycles) as ", 0) == 0) {
            ours = as;
        }
    }
    const Lines more = {
        {"Module Type", of([](const Spd& spd) {
             return std::string(spd.moduleType == "non-DIMM" ? "Reserved (0x0E)" : spd.moduleType);
         })},
        // Only an LP-DIMM has a second block.
        {"EEPROM CRC of bytes 128-253", as},
        // The speed is named by its grade, 4267 (JESD209-4), of which 469 ps are rounded.
        {"Maximum module speed",
         [](const Spd& spd, const std::string& theirs) {
             return number(spd, F::SPEED) == 4267 && number(spd, F::TCK_MIN) == 469
                        ? theirs
                        : plain(spd.get(F::SPEED));
         }},
        // Annex M, byte 13: bits 7..5 are the channels, of which it shows one.
        {"Size", of([](const Spd& spd) {
             return text("%lld MB", spd.megabytes / number(spd, F::CHANNELS));
         })},
        {"Primary Bus Width", of([](const Spd& spd) {
             return text("%lld bits", spd.busWidth / number(spd, F::CHANNELS));
         })},
        {"Banks x Rows x Columns x Bits", of([](const Spd& spd) {
             return text("%lld x %lld x %lld x %lld", number(spd, F::BANKS),
                         number(spd, F::ROW_BITS), number(spd, F::COLUMN_BITS),
                         spd.busWidth / number(spd, F::CHANNELS));
         })},
        {"Minimum CAS Latency Time (tAA)", time(F::TAA)},
        // Annex M, byte 6: the loads are an index, of which 0 is not defined.
        {"Package Type",
         of([](const Spd& spd) { return text("Unknown (%lld dies)", number(spd, F::DIES)); })},
        {"Part Number",
         [](const Spd& spd, const std::string& theirs) {
             return withoutPadding(spd.partNumber).empty() ? theirs : spd.partNumber;
         }},
    };
    for (const auto& [name, ours] : more) {
        lines[name] = ours;
    }
    return lines;
}

/// What begins a line that says nothing of the image.
bool isFrame(const std::string& line)
{
    for (const char* start : {"---=== ", "# decode-dimms version", "Memory Serial Presence Detect",
                              "By Philip", "Jean Delvare", "Decoding EEPROM: ",
                              "Number of SDRAM DIMMs", "[stderr] ", "Use of uninitialized value"}) {
        if (line.rfind(start, 0) == 0) {
            return true;
        }
    }
    return line.empty();
}

using Answers = std::vector<std::pair<std::string, std::string>>;

/// Names end before two blanks; a line that begins with blanks continues the one before it.
Answers answersOf(const std::string& path)
{
    Answers answers;
    std::istringstream lines(contentOf(path));
    for (std::string line; std::getline(lines, line);) {
        if (isFrame(line)) {
            continue;
        }
        const std::size_t gap = line.find("  ");
        const std::size_t value = gap == std::string::npos ? gap : line.find_first_not_of(' ', gap);
        const std::string words = value == std::string::npos ? "" : line.substr(value);
        if (gap == 0 && !answers.empty()) {
            answers.back().second += " " + words;
        } else {
            answers.emplace_back(line.substr(0, gap), withoutPadding(words));
        }
    }
    return answers;
}

const std::string PUBLIC = RECORDKIT_PUBLIC_DATA "/";

struct Compared {
    std::size_t images = 0;
    std::map<std::string, int> lines;
};

/// Compares all samples of a kind of memory with their answers.
Compared compareAll(unsigned char deviceType, const Lines& lines,
                    const std::set<std::string>& without)
{
    Compared compared;
    const std::pair<const char*, const char*> folders[] = {
        {"spd", "spd/ref/"}, {"spd/other", "spd/ref/"}, {"spd-more", "spd-more/ref/"}};
    for (const auto& [folder, answers] : folders) {
        for (const auto& entry : std::filesystem::directory_iterator(PUBLIC + folder)) {
            const std::string name = entry.path().stem().string();
            const std::string known = PUBLIC + answers + name + ".decode-dimms.txt";
            if (entry.path().extension() != ".bin" || !std::filesystem::exists(known)) {
                continue;
            }
            const Bytes image = readFile(entry.path().string());
            if (image.size() < 128 || image[2] != deviceType || without.count(name) != 0) {
                continue;
            }
            ++compared.images;
            const Spd spd = parseSpd(image);
            for (const auto& [line, theirs] : answersOf(known)) {
                ++compared.lines[line];
                const auto ours = lines.find(line);
                if (ours == lines.end()) {
                    ADD_FAILURE() << name << ": nothing is known of \"" << line << "\"";
                    continue;
                }
                EXPECT_EQ(ours->second(spd, theirs), theirs) << name << ": " << line;
            }
        }
    }
    return compared;
}

bool haveSamples()
{
    return std::filesystem::exists(PUBLIC + "spd/ref") &&
           std::filesystem::exists(PUBLIC + "spd-more/ref");
}

}

TEST(SpdPeers, EveryLineOfDecodeDimmsForDdr3)
{
    if (!haveSamples()) {
        GTEST_SKIP() << "the public samples are not at " RECORDKIT_PUBLIC_DATA;
    }
    // Byte 0 of this image is 01h, so decode-dimms mistakes it for an older kind, and reads that
    // kind's bytes. By Annex K, 0Bh in byte 2 is DDR3, and the CRC is right.
    const std::string older = "coreboot__pcengines_apu2_HYNIX-2G-1333";
    const Spd spd = parseSpd(readFile(PUBLIC + "spd/" + older + ".bin"));
    EXPECT_TRUE(spd.isCrcRight());
    EXPECT_EQ(spd.megabytes, 2048U);
    const Compared compared = compareAll(0x0B, ddr3Lines(), {older});
    EXPECT_EQ(compared.images, 42U);
    const std::map<std::string, int> expected = {
        {"# DRAM Rows", 8},
        {"# Registers", 7},
        {"# of bytes written to SDRAM EEPROM", 42},
        {"Assembly Serial Number", 11},
        {"Auto Self-Refresh?", 42},
        {"Banks x Rows x Columns x Bits", 42},
        {"Buffer Orientation", 1},
        {"Buffer Revision", 1},
        {"Bus Width Extension", 9},
        {"DLL-Off Mode supported?", 42},
        {"DRAM Manufacturer", 34},
        {"EEPROM CRC of bytes 0-116", 40},
        {"EEPROM CRC of bytes 0-125", 2},
        {"Fundamental Memory type", 42},
        {"Heat spreader", 8},
        {"Manufacturing Date", 15},
        {"Manufacturing Location Code", 25},
        {"Maximum Activate Count (MAC)", 42},
        {"Maximum module speed", 42},
        {"Minimum Active to Auto-Refresh Delay (tRC)", 42},
        {"Minimum Active to Precharge Delay (tRAS)", 42},
        {"Minimum CAS Latency Time (tAA)", 42},
        {"Minimum Cycle Time (tCK)", 42},
        {"Minimum Four Activate Window Delay (tFAW)", 42},
        {"Minimum RAS# to CAS# Delay (tRCD)", 42},
        {"Minimum Read to Pre-charge CMD Delay (tRTP)", 42},
        {"Minimum Recovery Delay (tRFC)", 42},
        {"Minimum Row Active to Row Active Delay (tRRD)", 42},
        {"Minimum Row Precharge Delay (tRP)", 42},
        {"Minimum Write Recovery time (tWR)", 42},
        {"Minimum Write to Read CMD Delay (tWTR)", 42},
        {"Mirroring", 1},
        {"Module Height", 42},
        {"Module Manufacturer", 42},
        {"Module Reference Card", 42},
        {"Module Thermal Sensor", 42},
        {"Module Thickness", 42},
        {"Module Type", 42},
        {"Module Width", 42},
        {"On-Die Thermal Sensor readout?", 42},
        {"Operable voltages", 42},
        {"Operating temperature range", 42},
        {"Part Number", 42},
        {"Partial Array Self-Refresh?", 42},
        {"Primary Bus Width", 42},
        {"RZQ/6 supported?", 42},
        {"RZQ/7 supported?", 42},
        {"Rank 1 Mapping", 34},
        {"Rank Numbering", 1},
        {"Ranks", 42},
        {"Refresh Rate in extended temp range", 41},
        {"Register device type", 7},
        {"Register manufacturer", 8},
        {"Register revision", 7},
        {"Revision Code", 21},
        {"SDRAM Device Type", 42},
        {"SDRAM Device Width", 42},
        {"SPD Revision", 42},
        {"Size", 42},
        {"Supported CAS Latencies (tCL)", 42},
        {"Total number of bytes in EEPROM", 42},
        {"tCL-tRCD-tRP-tRAS", 42},
        {"tCL-tRCD-tRP-tRAS as DDR3-1066", 41},
        {"tCL-tRCD-tRP-tRAS as DDR3-1333", 41},
        {"tCL-tRCD-tRP-tRAS as DDR3-1600", 28},
        {"tCL-tRCD-tRP-tRAS as DDR3-1866", 7},
        {"tCL-tRCD-tRP-tRAS as DDR3-800", 42},
    };
    EXPECT_EQ(compared.lines, expected);
}

TEST(SpdPeers, EveryLineOfDecodeDimmsForDdr4)
{
    if (!haveSamples()) {
        GTEST_SKIP() << "the public samples are not at " RECORDKIT_PUBLIC_DATA;
    }
    const Compared compared = compareAll(0x0C, ddr4Lines(), {});
    EXPECT_EQ(compared.images, 17U);
    const std::map<std::string, int> expected = {
        {"# of bytes written to SDRAM EEPROM", 17},
        {"AA-RCD-RP-RAS (cycles)", 17},
        {"AA-RCD-RP-RAS (cycles) as DDR4-1600", 17},
        {"AA-RCD-RP-RAS (cycles) as DDR4-1866", 17},
        {"AA-RCD-RP-RAS (cycles) as DDR4-2133", 17},
        {"AA-RCD-RP-RAS (cycles) as DDR4-2400", 14},
        {"AA-RCD-RP-RAS (cycles) as DDR4-2666", 14},
        {"AA-RCD-RP-RAS (cycles) as DDR4-2933", 2},
        {"AA-RCD-RP-RAS (cycles) as DDR4-3200", 2},
        {"Banks x Rows x Columns x Bits", 17},
        {"Bus Width Extension", 1},
        {"DRAM Manufacturer", 10},
        {"EEPROM CRC of bytes 0-125", 17},
        {"EEPROM CRC of bytes 128-253", 17},
        {"Fundamental Memory type", 17},
        {"Manufacturing Location Code", 5},
        {"Maximum Activate Count (MAC)", 17},
        {"Maximum Cycle Time (tCKmax)", 17},
        {"Maximum module speed", 17},
        {"Minimum Active to Auto-Refresh Delay (tRC)", 17},
        {"Minimum Active to Precharge Delay (tRAS)", 17},
        {"Minimum CAS Latency Time (tAA)", 17},
        {"Minimum CAS to CAS Delay (tCCD_L)", 17},
        {"Minimum Cycle Time (tCKmin)", 17},
        {"Minimum Four Activate Window Delay (tFAW)", 17},
        {"Minimum RAS to CAS Delay (tRCD)", 17},
        {"Minimum Recovery Delay (tRFC1)", 17},
        {"Minimum Recovery Delay (tRFC2)", 17},
        {"Minimum Recovery Delay (tRFC4)", 17},
        {"Minimum Row Active to Row Active Delay (tRRD_L)", 17},
        {"Minimum Row Active to Row Active Delay (tRRD_S)", 17},
        {"Minimum Row Precharge Delay (tRP)", 17},
        {"Minimum Write Recovery Time (tWR)", 14},
        {"Minimum Write to Read Time (tWTR_L)", 14},
        {"Minimum Write to Read Time (tWTR_S)", 14},
        {"Module Height", 16},
        {"Module Manufacturer", 17},
        {"Module Nominal Voltage", 17},
        {"Module Reference Card", 16},
        {"Module Thickness", 16},
        {"Module Type", 17},
        {"Package Type", 17},
        {"Part Number", 17},
        {"Post Package Repair", 17},
        {"Primary Bus Width", 17},
        {"Ranks", 17},
        {"Revision Code", 4},
        {"SDRAM Device Width", 17},
        {"SPD Revision", 17},
        {"Size", 17},
        {"Soft PPR", 14},
        {"Supported CAS Latencies", 17},
        {"Thermal Sensor", 17},
        {"Total number of bytes in EEPROM", 17},
    };
    EXPECT_EQ(compared.lines, expected);
}

TEST(SpdPeers, EveryLineOfDecodeDimmsForLpddr)
{
    if (!haveSamples()) {
        GTEST_SKIP() << "the public samples are not at " RECORDKIT_PUBLIC_DATA;
    }
    const Compared inLayoutOfDdr3 = compareAll(0xF1, undecodedLines(), {});
    EXPECT_EQ(inLayoutOfDdr3.images, 3U);
    const std::map<std::string, int> few = {
        {"# of bytes written to SDRAM EEPROM", 3},
        {"EEPROM CRC of bytes 0-116", 3},
        {"Fundamental Memory type", 3},
        {"Manufacturer", 3},
        {"Part Number", 3},
        {"Total number of bytes in EEPROM", 3},
    };
    EXPECT_EQ(inLayoutOfDdr3.lines, few);
    const Compared lpddr3 = compareAll(0x0F, undecodedLines(), {});
    EXPECT_EQ(lpddr3.images, 2U);
    EXPECT_EQ(lpddr3.lines.size(), 9U);
    const Compared lpddr4 = compareAll(0x11, lpddr4Lines(), {});
    EXPECT_EQ(lpddr4.images, 1U);
    EXPECT_EQ(lpddr4.lines.size(), 44U);
    const Compared lpddr5 = compareAll(0x13, undecodedLines(), {});
    EXPECT_EQ(lpddr5.images, 1U);
    EXPECT_EQ(lpddr5.lines.size(), 6U);
}
