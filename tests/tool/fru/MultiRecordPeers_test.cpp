// SPDX-License-Identifier: Apache-2.0
// The multirecords of every FRU image of the samples against the output of ipmi-fru, and against
// the sources of images that were made from descriptions: each value that they name is the same
// here. ipmitool fru print shows no multirecords.
#include <cmath>
#include <filesystem>
#include <gtest/gtest.h>
#include <map>
#include <sstream>

#include <recordkit/inspect/bytes/Hex.h>
#include <recordkit/inspect/fru/FruImage.h>

#include "support/Answers.h"
#include "tool/Files.h"

using namespace recordkit::inspect;
using namespace recordkit::tool;
using namespace testing_support;
namespace fs = std::filesystem;

namespace {

const fs::path OWN = RECORDKIT_EXAMPLE_DATA "/fru";
const fs::path SHARED = RECORDKIT_PUBLIC_DATA "/fru";

FruImage imageAt(const fs::path& path)
{
    return parseFruImage(readInput(path.string(), FRU_LIMIT));
}

/// A value as the tables of a peer name it, and the record that it belongs to.
struct Named {
    const char* kind;
    const char* field;
};

const std::map<std::string, Named> FREEIPMI_NAMES = {
    {"Power Supply Overall Capacity", {"power-supply", "capacity"}},
    {"Power Supply Peak VA", {"power-supply", "peak-va"}},
    {"Power Supply Max Inrush Current", {"power-supply", "inrush-current"}},
    {"Power Supply Inrush Interval", {"power-supply", "inrush-interval"}},
    {"Power Supply Low End Input Voltage 1", {"power-supply", "input1-low"}},
    {"Power Supply High End Input Voltage 1", {"power-supply", "input1-high"}},
    {"Power Supply Low End Input Voltage 2", {"power-supply", "input2-low"}},
    {"Power Supply High End Input Voltage 2", {"power-supply", "input2-high"}},
    {"Power Supply Low End Acceptable Frequency", {"power-supply", "frequency-low"}},
    {"Power Supply High End Acceptable Frequency", {"power-supply", "frequency-high"}},
    {"Power Supply A/C Dropout Tolerance", {"power-supply", "dropout-tolerance"}},
    {"Power Supply Predictive Fail Support", {"power-supply", "predictive-fail"}},
    {"Power Supply Predictive Fail", {"power-supply", "fail-signal"}},
    {"Power Supply Power Factor Correction Supported", {"power-supply", "power-factor-correction"}},
    {"Power Supply AutoSwitch Supprt", {"power-supply", "autoswitch"}},
    {"Power Supply Hot Swap Support", {"power-supply", "hot-swap"}},
    {"Power Supply Peak Capacity", {"power-supply", "peak-capacity"}},
    {"Power Supply Hold Up Time", {"power-supply", "hold-up-time"}},
    {"Power Supply Voltage 1", {"power-supply", "combined-voltage1"}},
    {"Power Supply Voltage 2", {"power-supply", "combined-voltage2"}},
    {"Power Supply Total Combined Wattage", {"power-supply", "combined-capacity"}},
    {"DC Output Output Number", {"dc-output", "output"}},
    {"DC Output Output on Standy", {"dc-output", "standby"}},
    {"DC Output Nominal Voltage", {"dc-output", "nominal-voltage"}},
    {"DC Output Maximum Negative Voltage Deviation", {"dc-output", "negative-deviation"}},
    {"DC Output Maximum Positive Voltage Deviation", {"dc-output", "positive-deviation"}},
    {"DC Output Ripple and Noise pk-pk", {"dc-output", "ripple"}},
    {"DC Output Minimum Current Draw", {"dc-output", "min-current"}},
    {"DC Output Maximum Current Draw", {"dc-output", "max-current"}},
    {"DC Load Output Number", {"dc-load", "output"}},
    {"DC Load Nominal Voltage", {"dc-load", "nominal-voltage"}},
    {"DC Load Spec'd Minimum Voltage", {"dc-load", "min-voltage"}},
    {"DC Load Spec'd Maximum Voltage", {"dc-load", "max-voltage"}},
    {"DC Load Spec'd Ripple and Noise pk-pk", {"dc-load", "ripple"}},
    {"DC Load Minimum Current Load", {"dc-load", "min-current"}},
    {"DC Load Maximum Current Load", {"dc-load", "max-current"}},
};

/// What ipmi-fru prints of a field.
std::string asFreeipmi(const MultiRecordField& field)
{
    const std::map<std::string, std::string> words = {
        {"two pulses per rotation", "Tach output, two pulses per rotation"},
        {"one pulse per rotation", "Tach output, one pulse per rotation"},
        {"0 for a failure", "Pass/Fail predictive fail pin (0 = fail)"},
        {"1 for a failure", "Pass/Fail predictive fail pin (1 = fail)"},
        {"12 V", "12V"},
        {"-12 V", "-12V"},
        {"5 V", "5V"},
        {"3.3 V", "3.3V"},
    };
    const std::map<std::string, std::string> units = {
        {"W", " Watts"}, {"A", " Amps"}, {"VA", " VA"}, {"ms", " ms"}, {"s", " s"},
        {"Hz", " Hz"},   {"mV", " mV"},  {"mA", " mA"}, {"", ""},
    };
    if (const auto* const isSet = std::get_if<bool>(&field.value)) {
        return *isSet ? "Yes" : "No";
    }
    if (const auto* const volts = std::get_if<double>(&field.value)) {
        return std::to_string(std::lround(*volts * 1000)) + " mV";
    }
    const auto word = words.find(field.text);
    return word != words.end()
               ? word->second
               : std::to_string(std::get<long long>(field.value)) + units.at(field.unit);
}

/// The n-th record of a kind.
const FruMultiRecord* recordOf(const FruImage& image, const std::string& kind, unsigned int n)
{
    return image.findRecord(kind + std::to_string(n));
}

/// Records of a manufacturer, and GUIDs: bytes in hex, some of them in lines of their own.
struct HexAnswer {
    std::string manufacturer; ///< in hex; empty for a GUID
    std::string bytes;
};

std::string digitsOf(const std::string& text)
{
    std::string digits;
    for (const char each : text) {
        if (std::isxdigit(static_cast<unsigned char>(each)) != 0) {
            digits += each;
        }
    }
    return digits;
}

/// Compares one answer, and counts the values.
struct FreeipmiAnswer {
    unsigned int numbers = 0;
    unsigned int records = 0; ///< of manufacturers
    unsigned int guids = 0;

    void compare(const FruImage& image, const std::string& answer)
    {
        std::map<std::string, unsigned int> seen;
        std::vector<HexAnswer> hex;
        bool continues = false; // the bytes of the last one
        std::istringstream lines(answer);
        for (std::string line; std::getline(lines, line);) {
            const std::size_t colon = line.find(':');
            const bool isNamed = line.compare(0, 6, "  FRU ") == 0 && colon != std::string::npos;
            if (!isNamed) {
                if (continues && line.compare(0, 5, "     ") == 0) {
                    hex.back().bytes += digitsOf(line);
                }
                continue;
            }
            const std::string name = line.substr(6, colon - 6);
            const std::string value = line.substr(std::min(line.size(), colon + 2));
            continues = false;
            if (name == "OEM Manufacturer ID") {
                const std::size_t from = value.rfind('(') + 1;
                hex.push_back({value.substr(from, value.rfind('h') - from), ""});
            } else if (name == "OEM Data") {
                hex.back().bytes = digitsOf(value);
                continues = true;
            } else if (name == "Management Access System Unique ID") {
                hex.push_back({"", digitsOf(value)});
                continues = true;
            }
            const auto known = FREEIPMI_NAMES.find(name);
            if (known == FREEIPMI_NAMES.end()) {
                continue;
            }
            const std::string kind = known->second.kind;
            const bool isFirst = name == "DC Output Output Number" ||
                                 name == "DC Load Output Number" ||
                                 name == "Power Supply Overall Capacity";
            seen[kind] += isFirst ? 1 : 0;
            const FruMultiRecord* const record = recordOf(image, kind, seen[kind]);
            ASSERT_NE(record, nullptr) << kind << seen[kind];
            const MultiRecordField* const field = record->content.findField(known->second.field);
            ASSERT_NE(field, nullptr) << name;
            EXPECT_EQ(asFreeipmi(*field), value) << name;
            ++numbers;
        }
        compareHex(image, hex);
    }

    void compareHex(const FruImage& image, const std::vector<HexAnswer>& answers)
    {
        std::size_t at = 0;
        for (const FruMultiRecord& record : image.records) {
            const bool isOem = record.type >= 0xC0;
            const MultiRecordField* const guid = record.content.findField("system-guid");
            if ((!isOem && guid == nullptr) || at == answers.size()) {
                continue;
            }
            const HexAnswer& answer = answers[at++];
            if (!isOem) {
                EXPECT_EQ(answer.bytes, toHex(record.bytes.substr(1)));
                ++guids;
                continue;
            }
            const MultiRecordField* const maker = record.content.findField("manufacturer");
            ASSERT_NE(maker, nullptr);
            EXPECT_EQ(std::get<long long>(maker->value), std::stoll(answer.manufacturer, {}, 16));
            EXPECT_EQ(answer.bytes, toHex(record.bytes.substr(3)));
            ++records;
        }
        EXPECT_EQ(at, answers.size());
    }
};

FreeipmiAnswer compareAll(const fs::path& folder, const fs::path& answers,
                          const std::string& suffix)
{
    FreeipmiAnswer all;
    for (const auto& entry : fs::directory_iterator(folder)) {
        if (entry.path().extension() == ".bin") {
            SCOPED_TRACE(entry.path().string());
            const std::string answer = (answers / entry.path().stem()).string() + suffix;
            all.compare(imageAt(entry.path()), contentOf(answer));
        }
    }
    return all;
}

}

TEST(MultiRecordPeers, TheGuidOfOurSampleIsThatOfIpmiFru)
{
    const FreeipmiAnswer all = compareAll(OWN, OWN, ".freeipmi.txt");
    EXPECT_EQ(all.guids, 1U);
}

TEST(MultiRecordPeers, ValuesAreThoseOfIpmiFru)
{
    if (!fs::exists(SHARED)) {
        GTEST_SKIP() << "the public samples are not at " << SHARED;
    }
    const FreeipmiAnswer all = compareAll(SHARED, SHARED / "ref", ".ipmi-fru.txt");
    // 6 supplies with 21 values, 66 outputs with 8 and 57 loads with 7.
    EXPECT_EQ(all.numbers, 6U * 21 + 66U * 8 + 57U * 7);
    EXPECT_EQ(all.records, 60U);
    EXPECT_EQ(all.guids, 1U);
}

namespace {

/// A record of a description: "key: value" in order; an element of a list has its key's name.
struct Described {
    std::string type;
    std::vector<std::pair<std::string, std::string>> values;
};

std::vector<Described> descriptionsOf(const std::string& source)
{
    std::vector<Described> all;
    std::istringstream lines(source);
    bool isIn = false;
    std::string list;
    for (std::string line; std::getline(lines, line);) {
        if (line == "MultirecordArea:") {
            isIn = true;
            continue;
        }
        if (!isIn || line.empty()) {
            continue;
        }
        if (line.compare(0, 8, "- type: ") == 0) {
            all.push_back({line.substr(8), {}});
            continue;
        }
        const std::size_t start = line.find_first_not_of(" -");
        if (all.empty() || start == std::string::npos) {
            continue;
        }
        const std::size_t colon = line.find(": ", start);
        if (colon != std::string::npos) {
            all.back().values.emplace_back(line.substr(start, colon - start),
                                           line.substr(colon + 2));
        } else if (line.back() == ':') {
            list = line.substr(start, line.size() - start - 1);
        } else {
            all.back().values.emplace_back(list, line.substr(start));
        }
    }
    return all;
}

/// A field as descriptions name it.
struct DescribedField {
    const char* field;
    double scale = 1; ///< their number is the value times this
};

const std::map<std::string, std::map<std::string, DescribedField>> DESCRIBED = {
    {"dc-output",
     {{"nominal_voltage", {"nominal-voltage", 1000}},
      {"max_neg_voltage", {"negative-deviation", 1000}},
      {"max_pos_voltage", {"positive-deviation", 1000}},
      {"max_noise_pk2pk", {"ripple"}},
      {"min_current_draw", {"min-current"}},
      {"max_current_draw", {"max-current"}},
      {"standby_enable", {"standby"}},
      {"output_number", {"output"}}}},
    {"dc-load",
     {{"nominal_voltage", {"nominal-voltage", 1000}},
      {"min_voltage", {"min-voltage", 1000}},
      {"max_voltage", {"max-voltage", 1000}},
      {"max_noise_pk2pk", {"ripple"}},
      {"min_current_load", {"min-current"}},
      {"max_current_load", {"max-current"}},
      {"output_number", {"output"}}}},
    {"fmc",
     {{"module_size", {"module-size"}},
      {"p1_connector_size", {"p1-connector"}},
      {"p2_connector_size", {"p2-connector"}},
      {"p1_p3_connector_size", {"p1-connector"}},
      {"p2_p4_connector_size", {"p2-connector"}},
      {"clock_direction", {"clock-direction"}},
      {"p1_a_num_signals", {"p1-bank-a-signals"}},
      {"p1_b_num_signals", {"p1-bank-b-signals"}},
      {"p2_a_num_signals", {"p2-bank-a-signals"}},
      {"p2_b_num_signals", {"p2-bank-b-signals"}},
      {"p1_gbt_num_trcv", {"p1-transceivers"}},
      {"p2_gbt_num_trcv", {"p2-transceivers"}},
      {"tck_max_clock", {"tck-max"}}}},
    {"module-current", {{"current_draw", {"current"}}}},
};

const std::map<std::string, std::string> DESCRIBED_KINDS = {
    {"DCOutput", "dc-output"},
    {"DCLoad", "dc-load"},
    {"FmcMainDefinition", "fmc"},
    {"FmcPlusMainDefinition", "fmc"},
    {"ModuleCurrentRequirements", "module-current"},
    {"PointToPointConnectivity", "amc-links"},
};

const std::map<std::string, std::string> DESCRIBED_WORDS = {
    {"single_width", "single width"},
    {"lpc", "LPC"},
    {"hpc", "HPC"},
    {"hspc", "HSPC"},
    {"not_fitted", "not fitted"},
    {"m2c", "mezzanine to carrier"},
    {"c2m", "carrier to mezzanine"},
    {"amc_module", "AMC module"},
    {"match_exact", "exact"},
    {"match_10b", "10b"},
    {"match_01b", "01b"},
    {"pcie", "AMC.1 PCI Express"},
    {"ethernet", "AMC.2 Ethernet"},
    {"serial_rapidio", "AMC.4 Serial RapidIO"},
    {"storage", "AMC.3 storage"},
    {"oem_guid_0", "240"},
    {"oem_guid_1", "241"},
};

std::string described(const std::string& value)
{
    const auto word = DESCRIBED_WORDS.find(value);
    return word == DESCRIBED_WORDS.end() ? value : word->second;
}

std::string textOf(const FruMultiRecord& record, const std::string& name)
{
    const MultiRecordField* const field = record.content.findField(name);
    return field == nullptr ? "missing" : field->text;
}

/// "P1_12P0V" as "P1 12P0V".
std::string outputName(std::string value)
{
    return value.replace(2, 1, " ");
}

/// The ports of the lanes of a channel as "[4, 5]".
std::string lanesOf(const FruMultiRecord& record, const std::string& channel)
{
    std::string text;
    for (const char* const lane : {"0", "1", "2", "3"}) {
        const std::string port = textOf(record, channel + ".lane" + lane + "-port");
        if (port != "unspecified") {
            text += (text.empty() ? "" : ", ") + port;
        }
    }
    return "[" + text + "]";
}

/// The bits of the lanes of a link as "[1, 0, 0, 0]".
std::string flagsOf(const FruMultiRecord& record, const std::string& link)
{
    const MultiRecordField* const lanes = record.content.findField(link + ".lanes");
    if (lanes == nullptr) {
        return "missing";
    }
    std::string text;
    for (unsigned int lane = 0; lane < 4; ++lane) {
        const bool isSet = (std::get<long long>(lanes->value) >> lane & 1) != 0;
        text += (text.empty() ? "" : ", ") + std::string(isSet ? "1" : "0");
    }
    return "[" + text + "]";
}

unsigned int compareLinks(const FruMultiRecord& record, const Described& theirs)
{
    unsigned int compared = 0;
    std::map<std::string, unsigned int> elements;
    const std::map<std::string, std::string> fields = {{"asymm_match", "match"},
                                                       {"grouping_id", "group"},
                                                       {"link_type_ext", "extension"},
                                                       {"link_type", "type"},
                                                       {"channel_id", "channel"}};
    for (const auto& [key, value] : theirs.values) {
        ++compared;
        elements[key] += 1;
        // The first value of a link.
        const std::string link = "link" + std::to_string(elements["asymm_match"]);
        if (key == "guids") {
            std::string guid = textOf(record, "guid" + std::to_string(elements[key]));
            for (char& digit : guid) {
                digit = static_cast<char>(std::tolower(static_cast<unsigned char>(digit)));
            }
            EXPECT_EQ(guid, value);
        } else if (key == "record_type") {
            EXPECT_EQ(textOf(record, "device-type"), described(value));
        } else if (key == "channel_descriptors") {
            EXPECT_EQ(lanesOf(record, "channel" + std::to_string(elements[key])), value);
        } else if (key == "lane_flags") {
            EXPECT_EQ(flagsOf(record, link), value);
        } else if (fields.count(key) != 0) {
            EXPECT_EQ(textOf(record, link + "." + fields.at(key)), described(value)) << key;
        } else {
            ADD_FAILURE() << key;
        }
    }
    return compared;
}

unsigned int compareFields(const FruMultiRecord& record, const std::string& kind,
                           const Described& theirs, bool isVita)
{
    unsigned int compared = 0;
    for (const auto& [key, value] : theirs.values) {
        const auto known = DESCRIBED.at(kind).find(key);
        if (known == DESCRIBED.at(kind).end()) {
            ADD_FAILURE() << key;
            continue;
        }
        const MultiRecordField* const field = record.content.findField(known->second.field);
        if (field == nullptr) {
            ADD_FAILURE() << known->second.field;
            continue;
        }
        ++compared;
        if (key == "output_number") {
            // Without a record of VITA it is not known what its outputs are called.
            if (isVita) {
                EXPECT_EQ(field->text, outputName(value));
            }
        } else if (const auto* const isSet = std::get_if<bool>(&field->value)) {
            EXPECT_EQ(*isSet ? "1" : "0", value) << key;
        } else if (const auto* const fraction = std::get_if<double>(&field->value)) {
            EXPECT_NEAR(*fraction * known->second.scale, std::stod(value), 0.001) << key;
        } else {
            EXPECT_EQ(field->text, described(value)) << key;
        }
    }
    return compared;
}

/// What cannot be compared.
const std::map<std::string, std::string> OTHER_SOURCES = {
    // Its source describes a mezzanine card of VITA, but the image has another manufacturer's id.
    {"frugy__opalkelly_default", "FmcMainDefinition"},
    {"frugy__opalkelly_default_2k", "FmcMainDefinition"},
};

}

TEST(MultiRecordPeers, ValuesAreThoseOfTheImagesSources)
{
    if (!fs::exists(SHARED)) {
        GTEST_SKIP() << "the public samples are not at " << SHARED;
    }
    std::map<std::string, unsigned int> compared; // by kind
    for (const auto& entry : fs::directory_iterator(SHARED / "ref-source")) {
        const std::string stem = entry.path().stem().string();
        const fs::path path = SHARED / (stem + ".bin");
        if (entry.path().extension() != ".yml" || !fs::exists(path)) {
            continue;
        }
        SCOPED_TRACE(stem);
        const FruImage image = imageAt(path);
        const bool isVita = image.findRecord("fmc1") != nullptr;
        std::map<std::string, unsigned int> numbers;
        for (const Described& theirs : descriptionsOf(contentOf(entry.path().string()))) {
            const auto kind = DESCRIBED_KINDS.find(theirs.type);
            const auto other = OTHER_SOURCES.find(stem);
            if (kind == DESCRIBED_KINDS.end() ||
                (other != OTHER_SOURCES.end() && other->second == theirs.type)) {
                continue;
            }
            const FruMultiRecord* const record =
                recordOf(image, kind->second, ++numbers[kind->second]);
            if (record == nullptr) {
                ADD_FAILURE() << kind->second;
                continue;
            }
            compared[kind->second] += kind->second == "amc-links"
                                          ? compareLinks(*record, theirs)
                                          : compareFields(*record, kind->second, theirs, isVita);
        }
    }
    const std::map<std::string, unsigned int> all = {{"amc-links", 208},
                                                     {"dc-load", 126},
                                                     {"dc-output", 96},
                                                     {"fmc", 44},
                                                     {"module-current", 6}};
    EXPECT_EQ(compared, all);
}
