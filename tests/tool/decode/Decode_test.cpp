// SPDX-License-Identifier: Apache-2.0
// Every class with an image, by the table that the decode command is driven by: what is refused,
// what is taken, what stays untouched; and that none is forgotten.
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <regex>
#include <set>
#include <sstream>

#include <recordkit/platform/PException.h>
#include <recordkit/serial/PaddedImage.h>

#include "support/Bytes.h"
#include "support/Failures.h"
#include "support/Process.h"
#include "support/ScratchRoot.h"
#include "tool/Errors.h"
#include "tool/decode/RecordClass.h"

using namespace recordkit::tool;
using namespace testing_support;

namespace {

/// Two images that differ, and the length from which on the second one is accepted.
struct Sample {
    Bytes first;
    Bytes second;
    std::size_t least;
    std::size_t most = 1000;         ///< longer ones are refused
    bool isHalfTakenAtLeast = false; ///< refused images may change the object from 32 bytes on
    bool isCutAtWill = false;        ///< any length above the least gives an image of its own
};

const Bytes SLOTS_1 = Bytes(8, 1) + Bytes({2, 1, 2, 3, 4});
const Bytes SLOTS_2 = Bytes(8, 2) + Bytes({3, 9, 8, 7, 6, 5, 4});
const Bytes PORTS_1 = Bytes(8, 1) + Bytes({1, 5, 6, 0, 0});
const Bytes PORTS_2 = Bytes(8, 2) + Bytes({0, 1, 7, 8, 0});
const Bytes BOX_1 = Bytes(8, 1) + Bytes({1, 0, 0, 0, 1}) + Bytes({4, 1, 1, 0x34, 0x12});
const Bytes BOX_2 = Bytes(8, 2) + Bytes({1, 0, 0, 0, 1}) + Bytes({5, 2, 2, 1, 2, 3, 4});

Bytes sensor(std::size_t fixed, unsigned int first, unsigned char string)
{
    Bytes image = sequence(fixed, first);
    image[fixed - 1] = static_cast<unsigned char>(0xC0 | string);
    return image + sequence(string, 'A' + first);
}

Sample entry(std::size_t size)
{
    Sample sample = {sequence(size, 1), sequence(size, 0x55), 2};
    sample.isCutAtWill = true;
    return sample;
}

Sample raw(std::size_t size)
{
    Sample sample = entry(size);
    sample.least = 0;
    return sample;
}

/// The classes whose images are not all of one size.
const std::map<std::string, Sample> SAMPLES = {
    {"PartitionInfo", {{0, 3, 1, 2, 3}, {9, 2, 7, 8}, 2, 14}},
    {"IOUBoardInfo", {SLOTS_1, SLOTS_2, 15}},
    {"SASUBoardInfo", {SLOTS_1, SLOTS_2, 15}},
    {"GSPBBoardInfo", {PORTS_1, PORTS_2, 13}},
    {"PCIBOXInfo", {BOX_1, BOX_2, 18}}, // one byte a slot is enough
    {"SELEntry", entry(18)},
    {"OEMSELEntry", entry(74)},
    {"BMCSELEntry", entry(130)},
    {"BMCSELEntryMessage", entry(138)},
    {"SELEntryLongText",
     {Bytes(14, 1) + textBytes("text"), Bytes(14, 2) + textBytes("other"), 15, 1000, false, true}},
    {"BMCLog", raw(135)},
    {"BMCMemoryImage", raw(131)},
    {"FullSensorRecord", {sensor(48, 1, 3), sensor(48, 7, 5), 53, 1000, true}},
    {"CompactSensorRecord", {sensor(32, 1, 3), sensor(32, 7, 5), 37, 1000, true}},
};

Sample sampleOf(const RecordClass& recordClass)
{
    const auto found = SAMPLES.find(recordClass.name);
    if (found != SAMPLES.end()) {
        return found->second;
    }
    const std::size_t size = std::stoul(recordClass.sizes);
    EXPECT_EQ(std::to_string(size), recordClass.sizes) << recordClass.name;
    return {sequence(size, 1), sequence(size, 0x55), size};
}

/// False also for a class that throws.
bool take(TAVLib::SerializableObject& object, const Bytes& image)
{
    try {
        return TAVLib::setSerializedPadded(object, image);
    } catch (const TAVLib::PException&) {
        return false;
    }
}

std::vector<RecordClass> classesWithObjects()
{
    std::vector<RecordClass> classes;
    for (const RecordClass& each : recordClasses()) {
        if (each.create != nullptr) {
            classes.push_back(each);
        }
    }
    return classes;
}

class EveryClass : public testing::TestWithParam<RecordClass> {
protected:
    const TraceCapture trace;
};

}

namespace recordkit::tool {

/// What test listings show of a class.
void PrintTo(const RecordClass& recordClass, std::ostream* out)
{
    *out << recordClass.name;
}

}

TEST_P(EveryClass, RoundTripsItsImage)
{
    const Sample sample = sampleOf(GetParam());
    for (const Bytes& image : {sample.first, sample.second}) {
        const auto object = GetParam().create();
        ASSERT_TRUE(take(*object, image));
        EXPECT_EQ(object->getSerializedSize(), image.size());
        EXPECT_EQ(imageOf(*object), image);
    }
}

TEST_P(EveryClass, TakesWhatIsLongEnoughAndRefusesTheRest)
{
    const Sample sample = sampleOf(GetParam());
    const std::size_t size = sample.second.size();
    for (std::size_t length = 0; length <= size + 3; ++length) {
        const auto object = GetParam().create();
        ASSERT_TRUE(take(*object, sample.first));
        Bytes image = sample.second;
        image.resize(length, 0xEE);
        const bool isTaken = length >= sample.least && length <= sample.most;
        EXPECT_EQ(take(*object, image), isTaken) << length;
        if (isTaken && length >= size) {
            // Bytes after it are ignored.
            const std::size_t kept =
                sample.isCutAtWill && object->getSerializedSize() > size ? length : size;
            EXPECT_EQ(imageOf(*object), part(image, 0, kept)) << length;
        } else if (!isTaken && !(sample.isHalfTakenAtLeast && length >= 32) &&
                   std::string(GetParam().name) != "SELEntryLongText") {
            EXPECT_EQ(imageOf(*object), sample.first) << length;
        }
    }
}

TEST_P(EveryClass, ShortBufferStaysUntouched)
{
    const auto object = GetParam().create();
    const Bytes image = sampleOf(GetParam()).first;
    ASSERT_TRUE(take(*object, image));
    for (std::size_t length = 0; length <= image.size() + 3; ++length) {
        Bytes buffer(image.size() + 3, 0xEE);
        const unsigned int written =
            object->getSerialized(buffer.data(), static_cast<unsigned int>(length));
        if (length < image.size()) {
            EXPECT_EQ(written, 0U);
            EXPECT_EQ(buffer, Bytes(image.size() + 3, 0xEE)) << length;
        } else {
            EXPECT_EQ(written, image.size());
            EXPECT_EQ(buffer, image + Bytes(3, 0xEE));
        }
    }
}

TEST_P(EveryClass, DecodesEachByteThatItReads)
{
    const Bytes image = sampleOf(GetParam()).first;
    const DecodedFields fields = GetParam().decode(image);
    ASSERT_FALSE(fields.empty());
    std::set<std::string> names;
    for (const DecodedField& field : fields) {
        EXPECT_TRUE(names.insert(field.name).second) << field.name << " is there twice";
    }
    // Only its own bytes change a field.
    for (std::size_t byte = 0; byte < image.size(); ++byte) {
        Bytes changed = image;
        changed[byte] ^= 0xFF;
        DecodedFields other;
        try {
            other = GetParam().decode(changed);
        } catch (const Error&) {
            continue; // a count that the image is too short for
        }
        if (other.size() != fields.size()) {
            continue; // a count
        }
        for (std::size_t i = 0; i < fields.size(); ++i) {
            const Place& place = fields[i].place;
            const bool isOwn = byte >= place.offset && byte < place.offset + place.width;
            if (other[i].value != fields[i].value && other[i].name == fields[i].name &&
                other[i].place.offset == place.offset && !other[i].value.is_null()) {
                // The LUN follows the software id, ports and serial numbers their type bytes.
                const bool isLinked = fields[i].name == "lun" || fields[i].name == "id_string" ||
                                      fields[i].name == "boot_device" ||
                                      fields[i].name == "serial_number" ||
                                      fields[i].name == "partition_bitmask" ||
                                      fields[i].name.find("version") != std::string::npos;
                EXPECT_TRUE(isOwn || isLinked) << fields[i].name << " changed with byte " << byte;
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Classes, EveryClass, testing::ValuesIn(classesWithObjects()),
                         [](const auto& each) { return std::string(each.param.name); });

TEST(RecordClasses, HoldEveryClassOfTheHeaders)
{
    // Bases without an image of their own kind.
    const std::set<std::string> bases = {"SerializableObject", "FixedSizeSerializableObject",
                                         "SlotBoardInfo",      "DeviceIDResponse",
                                         "RecordHeader",       "RecordSensorCommon"};
    const std::set<std::string> others = {"SeverityMap"};
    std::set<std::string> declared;
    for (const char* const folder : {"serial", "hardware", "version", "sel", "sensor"}) {
        for (const auto& entry : std::filesystem::directory_iterator(
                 std::string(RECORDKIT_SOURCE "/recordkit/") + folder)) {
            if (entry.path().extension() != ".h") {
                continue;
            }
            std::ifstream file(entry.path());
            std::stringstream text;
            text << file.rdbuf();
            const std::string content = text.str();
            const std::regex pattern("class RECORDKIT_API (\\w+)");
            for (std::sregex_iterator at(content.begin(), content.end(), pattern), end; at != end;
                 ++at) {
                declared.insert((*at)[1]);
            }
        }
    }
    for (const std::string& name : bases) {
        EXPECT_EQ(declared.erase(name), 1U) << name;
    }
    for (const std::string& name : others) {
        EXPECT_EQ(declared.erase(name), 1U) << name;
    }
    std::set<std::string> listed;
    for (const RecordClass& each : classesWithObjects()) {
        listed.insert(each.name);
    }
    EXPECT_EQ(listed, declared);
    EXPECT_GE(listed.size(), 35U);
    EXPECT_NE(findRecordClass("frudata"), nullptr);
    EXPECT_NE(findRecordClass("FRUData.ROM"), nullptr);
    EXPECT_EQ(findRecordClass("Nothing"), nullptr);
}

TEST(DecodeCommand, ShowsFieldsWithTheirBytesAndMeanings)
{
    const Outcome outcome = run(ourCommand({"decode", "psustatus", "--hex", "01 13"}));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.out, "FIELD                     BYTES         VALUE                 MEANING\n"
                           "power_on                  0 bit 0       yes                   \n"
                           "installed                 1 bit 0       yes                   \n"
                           "failure                   1 bit 1       yes                   \n"
                           "predictive_failure        1 bit 2       no                    \n"
                           "ac_lost                   1 bit 3       no                    \n"
                           "out_of_range              1 bit 5       no                    \n"
                           "config_error              1 bit 6       no                    \n");
    const Outcome json =
        run(ourCommand({"decode", "DIMMType", "--hex", "0x01020203 04", "--json"}));
    ASSERT_EQ(json.status, 0) << json.err;
    const auto fields = nlohmann::json::parse(json.out)["fields"];
    EXPECT_EQ(fields[2]["name"], "dimm_size");
    EXPECT_EQ(fields[2]["value"], 2);
    EXPECT_EQ(fields[2]["meaning"], "4096 MB");
    EXPECT_EQ(fields[2]["offset"], 2);
}

TEST(DecodeCommand, ReadsFilesAndStandardInput)
{
    const std::string fru = RECORDKIT_EXAMPLE_DATA "/fru/ascii-all.bin";
    const Outcome outcome = run(ourCommand({"decode", "FRUData", fru}));
    EXPECT_EQ(outcome.status, 0);
    EXPECT_NE(outcome.out.find("board.serial              81 to 92      SBS00998877"),
              std::string::npos)
        << outcome.out;
    const Outcome rom =
        run(ourCommand({"decode", "FRUData.ROM", RECORDKIT_EXAMPLE_DATA "/cpu/sample.bin"}));
    EXPECT_NE(rom.out.find("area51.item59             14 to 19      535230303432"),
              std::string::npos)
        << rom.out;
    EXPECT_EQ(run(ourCommand({"decode", "BMCLog", "-"}), "abc").out,
              "FIELD                     BYTES         VALUE                 MEANING\n"
              "bytes                     0 to 2        616263                \n");
}

TEST(DecodeCommand, RefusesWhatItCannotShow)
{
    const auto status = [](const Arguments& words) {
        Arguments all = {"decode"};
        all.insert(all.end(), words.begin(), words.end());
        return run(ourCommand(all));
    };
    EXPECT_EQ(status({"PSUStatus", "--hex", "01"}).err,
              "recordkit: --hex: 1 bytes are no image of PSUStatus, expected 2\n");
    EXPECT_EQ(status({"PSUStatus", "--hex", "01"}).status, 1);
    EXPECT_EQ(status({"SELEntryLongText", "--hex", "01"}).status, 1);
    EXPECT_EQ(status({"FRUData", "--hex", "FF"}).status, 1);
    EXPECT_EQ(status({"FRUData.ROM", "--hex", "FF"}).status, 1);
    EXPECT_EQ(status({"PSUStatus", "--hex", "0g"}).status, 2);
    EXPECT_EQ(status({"Nothing", "--hex", "00"}).status, 2);
    EXPECT_EQ(status({"PSUStatus"}).status, 2);
    EXPECT_EQ(status({"PSUStatus", "-", "--hex", "00"}).status, 2);
    EXPECT_EQ(status({"PSUStatus", "--list"}).status, 2);
    EXPECT_EQ(status({}).status, 2);
    EXPECT_EQ(status({"PSUStatus", "/nowhere"}).status, 3);
    EXPECT_EQ(status({"--list"}).status, 0);
    const auto list = nlohmann::json::parse(status({"--list", "--json"}).out);
    EXPECT_EQ(list.size(), recordClasses().size());
}
