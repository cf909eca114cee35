// SPDX-License-Identifier: Apache-2.0
// Every class by its field table: which bits of an image decide which field.
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <set>
#include <sstream>
#include <tuple>

#include <recordkit/inspect/bytes/Hex.h>

#include "Samples.h"
#include "support/Bytes.h"
#include "support/Failures.h"

using namespace recordkit::inspect;
using namespace testing_support;

namespace {

class EveryRecordClass : public testing::TestWithParam<const RecordClass*> {
protected:
    const RecordClass& recordClass = *GetParam();
    const TraceCapture trace;
};

Bytes flipped(Bytes image, std::size_t byte, unsigned int bit)
{
    image[byte] = static_cast<unsigned char>(image[byte] ^ 1U << bit);
    return image;
}

std::map<std::string, DecodedField> byName(const DecodedFields& fields)
{
    std::map<std::string, DecodedField> named;
    for (const DecodedField& field : fields) {
        EXPECT_TRUE(named.emplace(field.name, field).second) << field.name << " is there twice";
    }
    return named;
}

/// One bit of one place of one row: what has to be shown to matter. The last place is that of the
/// row's condition.
using RowBit = std::tuple<const Field*, unsigned int, unsigned int, unsigned int>;

/// The places of a field that contain a bit, as the bits of its row.
std::vector<RowBit> rowBits(const DecodedField& field, unsigned int byte, unsigned int bit)
{
    std::vector<RowBit> bits;
    const auto add = [&](const Place& place, unsigned int number) {
        if (place.contains(byte, bit)) {
            bits.emplace_back(field.row, number, byte - place.offset, bit);
        }
    };
    add(field.place, 0);
    for (unsigned int i = 0; i < field.also.size(); ++i) {
        add(field.also[i], i + 1);
    }
    if (field.row->condition != nullptr) {
        add(field.row->condition->place, Field::MAX_ALSO + 1);
    }
    return bits;
}

/// Every bit of every row.
std::set<RowBit> allRowBits(const RecordClass& recordClass)
{
    std::set<RowBit> bits;
    for (const FieldTable& table : recordClass.tables) {
        for (const Field& row : table) {
            const auto add = [&](const Place& place, unsigned int number) {
                for (unsigned int byte = 0; byte < place.width; ++byte) {
                    for (unsigned int bit = place.low; bit <= place.high; ++bit) {
                        bits.emplace(&row, number, byte, bit);
                    }
                }
            };
            add(row.place, 0);
            for (unsigned int i = 0; i < row.alsoCount; ++i) {
                add(row.also[i], i + 1);
            }
            if (row.condition != nullptr) {
                add(row.condition->place, Field::MAX_ALSO + 1);
            }
        }
    }
    return bits;
}

/// Whether a field is the same in another decoding.
bool isIn(const DecodedField& field, const std::map<std::string, DecodedField>& others)
{
    const auto found = others.find(field.name);
    return found != others.end() && found->second.row == field.row &&
           found->second.place == field.place && found->second.value == field.value;
}

/// What one flipped bit may do: change the fields whose places contain it, and move, add or remove
/// elements if one of these fields is a count.
void expectOnlyItsFields(const DecodedFields& before, const DecodedFields& after, unsigned int byte,
                         unsigned int bit)
{
    const auto now = byName(after);
    const auto then = byName(before);
    bool isCountChanged = false;
    for (const DecodedField& field : before) {
        isCountChanged =
            isCountChanged || (!rowBits(field, byte, bit).empty() && !isIn(field, now));
    }
    const auto isAllowed = [&](const DecodedField& field) {
        const bool isMovable = field.row->list != nullptr || field.row->after != nullptr;
        return !rowBits(field, byte, bit).empty() || (isCountChanged && isMovable);
    };
    for (const DecodedField& field : before) {
        EXPECT_TRUE(isIn(field, now) || isAllowed(field))
            << field.name << " changed with byte " << byte << " bit " << bit;
    }
    for (const DecodedField& field : after) {
        EXPECT_TRUE(isIn(field, then) || isAllowed(field))
            << field.name << " appeared with byte " << byte << " bit " << bit;
    }
}

/// Removes the bits of rows that a flipped bit shows to matter.
void strike(const DecodedFields& before, const std::optional<DecodedFields>& after,
            unsigned int byte, unsigned int bit, std::set<RowBit>& missing)
{
    const auto now = after ? byName(*after) : std::map<std::string, DecodedField>();
    for (const DecodedField& field : before) {
        if (!isIn(field, now)) {
            for (const RowBit& each : rowBits(field, byte, bit)) {
                missing.erase(each);
            }
        }
    }
}

/// A line of decoded.txt: "name = value | meaning".
std::string lineOf(const DecodedField& field)
{
    std::string value = "null";
    if (const auto* const yes = std::get_if<bool>(&field.value)) {
        value = *yes ? "true" : "false";
    } else if (const auto* const number = std::get_if<long long>(&field.value)) {
        value = std::to_string(*number);
    } else if (const auto* const text = std::get_if<std::string>(&field.value)) {
        value = '"' + *text + '"';
    }
    return field.name + " = " + value + (field.meaning.empty() ? "" : " | " + field.meaning);
}

const RecordClass* classCalled(const std::string& name)
{
    for (const RecordClass* const each : recordClasses()) {
        if (each->name == name) {
            return each;
        }
    }
    return nullptr;
}

}

TEST(DecodedRecords, AreWhatTheListOfImagesSays)
{
    const TraceCapture trace;
    std::ifstream file(RECORDKIT_SOURCE "/tests/inspect/fields/decoded.txt");
    std::set<std::string> seen;
    std::string line;
    while (std::getline(file, line)) {
        if (line.empty() || line[0] == '#') {
            continue;
        }
        std::istringstream words(line);
        std::string name;
        std::string digits;
        words >> name >> digits;
        SCOPED_TRACE(line);
        const RecordClass* const recordClass = classCalled(name);
        ASSERT_NE(recordClass, nullptr);
        seen.insert(name);
        Bytes image;
        ASSERT_EQ(parseHexDigits(digits, image), std::string::npos);
        std::vector<std::string> expected;
        while (std::getline(file, line) && !line.empty()) {
            expected.push_back(line);
        }
        std::vector<std::string> actual;
        for (const DecodedField& field : decodeRecord(*recordClass, image)) {
            actual.push_back(lineOf(field));
        }
        EXPECT_EQ(actual, expected);
    }
    EXPECT_GE(seen.size(), 39U);
}

TEST_P(EveryRecordClass, BitsChangeTheFieldsWhosePlacesContainThem)
{
    std::set<RowBit> missing = allRowBits(recordClass);
    Samples samples(recordClass);
    for (int i = 0; i < 16; ++i) {
        const Bytes image = samples.next();
        const std::size_t size = std::min(keptSize(recordClass, image), image.size());
        const DecodedFields before = *decoded(recordClass, image);
        for (unsigned int byte = 0; byte < size; ++byte) {
            for (unsigned int bit = 0; bit < 8; ++bit) {
                const auto after = decoded(recordClass, flipped(image, byte, bit));
                strike(before, after, byte, bit, missing);
                bool isNamed = false;
                for (const DecodedField& field : before) {
                    isNamed = isNamed || !rowBits(field, byte, bit).empty();
                }
                if (after) {
                    expectOnlyItsFields(before, *after, byte, bit);
                } else {
                    EXPECT_TRUE(isNamed) << "byte " << byte << " bit " << bit << " is refused";
                }
            }
        }
    }
    // The same the other way round: every bit of every place matters in some image.
    for (int i = 0; i < 20000 && !missing.empty(); ++i) {
        const Bytes image = samples.next();
        const DecodedFields before = *decoded(recordClass, image);
        std::set<std::pair<unsigned int, unsigned int>> tries;
        for (const DecodedField& field : before) {
            for (const RowBit& each : missing) {
                if (std::get<0>(each) == field.row) {
                    const unsigned int number = std::get<1>(each);
                    const Place place = number == 0                ? field.place
                                        : number > Field::MAX_ALSO ? field.row->condition->place
                                                                   : field.also[number - 1];
                    tries.emplace(place.offset + std::get<2>(each), std::get<3>(each));
                }
            }
        }
        for (const auto& [byte, bit] : tries) {
            if (byte < image.size()) {
                strike(before, decoded(recordClass, flipped(image, byte, bit)), byte, bit, missing);
            }
        }
    }
    for (const auto& [row, number, byte, bit] : missing) {
        ADD_FAILURE() << row->name << ": bit " << bit << " of byte " << byte << " of its place "
                      << number << " decides nothing";
    }
}

TEST_P(EveryRecordClass, FieldsBeyondAShortImageHaveNoValue)
{
    Samples samples(recordClass);
    const Bytes whole = samples.next();
    const std::size_t size = std::min(keptSize(recordClass, whole), whole.size());
    for (std::size_t length = 0; length < size; ++length) {
        const Bytes image = part(whole, 0, length);
        const auto fields = decoded(recordClass, image);
        if (!fields || keptSize(recordClass, image) > length) {
            continue;
        }
        for (const DecodedField& field : *fields) {
            if (field.place.offset >= length && field.place.width != 0) {
                EXPECT_TRUE(isNone(field.value)) << field.name << " in " << length << " bytes";
                EXPECT_EQ(field.meaning, "not in this record");
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Classes, EveryRecordClass, testing::ValuesIn(recordClasses()),
                         [](const auto& each) { return std::string(each.param->name); });
