// SPDX-License-Identifier: Apache-2.0
// Thousands of random edits of every kind on the samples: each is refused, or changes what it was
// asked to and conserves every other field, record and byte.
#include <algorithm>
#include <gtest/gtest.h>
#include <random>

#include <recordkit/inspect/bytes/Error.h>
#include <recordkit/inspect/fru/FruEdit.h>
#include <recordkit/inspect/fru/FruLayout.h>
#include <recordkit/inspect/fru/FruNames.h>
#include <recordkit/inspect/fru/FruParts.h>
#include <recordkit/inspect/fru/FruRepair.h>

#include "fru/MemoryDevice.h"
#include "support/FruSnapshot.h"
#include "support/SampleImages.h"
#include "support/ScratchRoot.h"

using namespace recordkit::inspect;
using namespace testing_support;

namespace {

constexpr unsigned int EDITS = 4000;

class Edits {
public:
    explicit Edits(unsigned int seed) : random(seed)
    {
        for (const std::string& path : sampleImages()) {
            const Bytes sample = readFile(path);
            // The large ones are few bytes and much nothing.
            samples.push_back(text(part(sample, 0, std::min<std::size_t>(sample.size(), 2048))));
        }
    }

    void run()
    {
        for (unsigned int i = 0; i < EDITS; ++i) {
            bytes = samples[below(samples.size())];
            if (below(2) == 0) {
                bytes.append(below(40) * 8, '\0');
            }
            if (!parseFruImage(bytes).isFru) {
                continue;
            }
            constexpr void (Edits::*KINDS[])() = {
                &Edits::setText,   &Edits::setRecord,    &Edits::addCustom, &Edits::removeCustom,
                &Edits::addRecord, &Edits::removeRecord, &Edits::addArea,   &Edits::removeArea,
                &Edits::resize,    &Edits::setInternal,  &Edits::setFixed};
            try {
                const std::size_t kind = below(std::size(KINDS));
                (this->*KINDS[kind])();
                ++done[kind];
            } catch (const Error&) {
                continue; // no room, no such part, or damaged
            }
        }
        for (std::size_t kind = 0; kind < std::size(done); ++kind) {
            EXPECT_GE(done[kind], 10U) << "edits of kind " << kind;
        }
    }

private:
    unsigned int below(std::size_t limit) { return static_cast<unsigned int>(random() % limit); }

    template <typename Items> const auto& any(const Items& items)
    {
        if (items.empty()) {
            throw DataError("none");
        }
        return items[below(items.size())];
    }

    std::string word()
    {
        std::string letters;
        const unsigned int length = 2 + below(20);
        for (unsigned int i = 0; i < length; ++i) {
            letters += static_cast<char>('A' + below(26));
        }
        return letters;
    }

    void expectConserved(const std::string& after, const FruSnapshot& expected,
                         const std::string& what)
    {
        const FruSnapshot now(after);
        EXPECT_EQ(now.differenceFrom(expected), "") << what;
        EXPECT_LE(now.problems, FruSnapshot(bytes).problems) << what;
        EXPECT_TRUE(parseFruImage(after).header.isRight()) << what;
    }

    FruEditOptions options()
    {
        FruEditOptions chosen;
        chosen.mayGrow = below(2) == 0;
        return chosen;
    }

    void setText()
    {
        const FruImage image = parseFruImage(bytes);
        const FruAreaImage& area = any(image.areas);
        const FruField& field = any(area.fields);
        if (!field.isCoded) {
            throw DataError("not a text");
        }
        const std::string name = area.extent.name + "." + field.name;
        FruEditOptions chosen = options();
        if (below(2) == 0) {
            chosen.coding = below(2) == 0 ? CODING_TEXT : CODING_SIX_BIT;
        }
        const FruEditResult result = editFruImage(bytes, {{name, word()}}, chosen);
        EXPECT_TRUE(!chosen.coding ||
                    codingOf(parseFruImage(result.bytes).findField(name)->typeLength) ==
                        *chosen.coding);
        FruSnapshot expected(bytes);
        FruSnapshot now(result.bytes);
        *expected.find(area.extent.name, field.name) = *now.find(area.extent.name, field.name);
        expectConserved(result.bytes, expected, name);
    }

    void setFixed()
    {
        const FruImage image = parseFruImage(bytes);
        const FruAreaImage& area = any(image.areas);
        const FruField& field = any(area.fields);
        if (field.isCoded) {
            throw DataError("a text");
        }
        const std::string name = area.extent.name + "." + field.name;
        const char* const value = field.item == FRU_ITEM_MFG_DATE_TIME   ? "2026-11-21 08:00"
                                  : field.item == FRU_ITEM_LANGUAGE_CODE ? "0"
                                                                         : "blade";
        const FruEditResult result = editFruImage(bytes, {{name, value}}, options());
        FruSnapshot expected(bytes);
        FruSnapshot now(result.bytes);
        *expected.find(area.extent.name, field.name) = *now.find(area.extent.name, field.name);
        expectConserved(result.bytes, expected, name);
        EXPECT_EQ(result.bytes.size(), bytes.size());
    }

    void setRecord()
    {
        const FruImage image = parseFruImage(bytes);
        const std::size_t index = below(std::max<std::size_t>(image.records.size(), 1));
        if (image.records.empty()) {
            throw DataError("none");
        }
        const FruMultiRecord& record = image.records[index];
        const MultiRecordField& field = any(record.content.fields);
        const std::string name = record.content.name + "." + field.name;
        const bool isNumber = std::holds_alternative<long long>(field.value);
        const std::string value = isNumber ? std::to_string(below(16)) : field.text;
        const FruEditResult result = editFruImage(bytes, {{name, value}}, options());
        const FruImage after = parseFruImage(result.bytes);
        FruSnapshot expected(bytes);
        const std::string old = expected.records[index].second;
        expected.records[index] = FruSnapshot(result.bytes).records[index];
        expectConserved(result.bytes, expected, name);
        // Of the record, only the bits of the field.
        const std::string edited = expected.records[index].second;
        ASSERT_EQ(edited.size(), old.size()) << name;
        for (std::size_t i = 1; i < old.size(); ++i) {
            const std::size_t at = record.extent.end() - record.bytes.size() + i - 1;
            unsigned int mask = 0;
            if (at >= field.offset && at < field.offset + field.width) {
                for (unsigned int bit = field.low; bit <= field.high; ++bit) {
                    mask |= bit / 8 == at - field.offset ? 1U << bit % 8 : 0;
                }
            }
            const unsigned int changed = static_cast<unsigned char>(old[i] ^ edited[i]);
            EXPECT_EQ(changed & ~mask, 0U) << name << " byte " << i;
        }
    }

    void addCustom()
    {
        const FruImage image = parseFruImage(bytes);
        const std::string area = any(image.areas).extent.name;
        const std::string value = word();
        const FruEditResult result = addToFruImage(bytes, {{area + ".custom", value}}, options());
        FruSnapshot expected(bytes);
        const FruSnapshot now(result.bytes);
        const auto& added = now.areas.at(area).back();
        auto& fields = expected.areas[area];
        while (fields.size() + 1 < now.areas.at(area).size()) {
            // Fields that the area ended before are empty.
            const auto& between = now.areas.at(area)[fields.size()];
            EXPECT_EQ(between.second, "\xC0");
            fields.push_back(between);
        }
        fields.push_back(added);
        EXPECT_EQ(added.first.compare(0, 6, "custom"), 0);
        expectConserved(result.bytes, expected, area + ".custom");
    }

    void removeCustom()
    {
        const FruImage image = parseFruImage(bytes);
        const FruAreaImage& area = any(image.areas);
        const FruField& field = any(area.fields);
        const unsigned int number = customNumber(field.name);
        if (number == 0) {
            throw DataError("none");
        }
        const std::string name = area.extent.name + "." + field.name;
        const FruEditResult result = removeFromFruImage(bytes, {name}, options());
        FruSnapshot expected(bytes);
        auto& fields = expected.areas[area.extent.name];
        const auto place = std::find_if(fields.begin(), fields.end(), [&field](const auto& each) {
            return each.first == field.name;
        });
        for (auto later = fields.erase(place); later != fields.end(); ++later) {
            later->first = "custom" + std::to_string(customNumber(later->first) - 1);
        }
        expectConserved(result.bytes, expected, name);
    }

    void addRecord()
    {
        constexpr const char* KINDS[] = {"dc-load", "power-supply", "fmc", "module-current"};
        const std::string kind = KINDS[below(std::size(KINDS))];
        const FruEditResult result = addToFruImage(bytes, {{kind, ""}}, options());
        FruSnapshot expected(bytes);
        expected.records.push_back(FruSnapshot(result.bytes).records.back());
        EXPECT_EQ(expected.records.back().first, kind);
        expectConserved(result.bytes, expected, kind);
    }

    void removeRecord()
    {
        const FruImage image = parseFruImage(bytes);
        const FruMultiRecord& record = any(image.records);
        const auto index = &record - image.records.data();
        const FruEditResult result = removeFromFruImage(bytes, {record.content.name}, options());
        FruSnapshot expected(bytes);
        expected.records.erase(expected.records.begin() + index);
        expectConserved(result.bytes, expected, record.content.name);
    }

    void addArea()
    {
        const std::string area = fruAreaName(any(informationAreas()));
        const FruEditResult result = addToFruImage(bytes, {{area, ""}}, options());
        FruSnapshot expected(bytes);
        expected.areas[area] = FruSnapshot(result.bytes).areas.at(area);
        expectConserved(result.bytes, expected, area);
    }

    void removeArea()
    {
        const FruImage image = parseFruImage(bytes);
        const std::string area = any(image.areas).extent.name;
        const FruEditResult result = removeFromFruImage(bytes, {area}, options());
        FruSnapshot expected(bytes);
        expected.areas.erase(area);
        expectConserved(result.bytes, expected, area);
    }

    void resize()
    {
        const std::string after = resizeFruImage(bytes, 8 + below(2 * bytes.size()));
        FruSnapshot expected(bytes);
        const std::size_t both = std::min(bytes.size(), after.size());
        EXPECT_EQ(after.substr(0, both), bytes.substr(0, both));
        EXPECT_EQ(FruSnapshot(after).differenceFrom(expected), "");
        EXPECT_EQ(FruSnapshot(after).problems, expected.problems);
    }

    void setInternal()
    {
        const std::string value = word();
        const bool has = !parseFruImage(bytes).internalUse.empty();
        const FruEditOptions chosen = options();
        const auto edit = has ? editFruImage : addToFruImage;
        const FruEditResult result = edit(bytes, {{"internal", value}}, chosen);
        FruSnapshot expected(bytes);
        expected.internalUse = value;
        // Bytes of nobody after it belong to it now.
        FruSnapshot now(result.bytes);
        if (!has && now.others != expected.others) {
            throw DataError("other bytes");
        }
        expectConserved(result.bytes, expected, "internal");
    }

    std::mt19937 random;
    std::vector<std::string> samples;
    std::string bytes;
    unsigned int done[11] = {};
};

class FruRandomEdits : public testing::TestWithParam<unsigned int> {};

}

TEST_P(FruRandomEdits, ConserveWhatTheyDoNotName)
{
    const TraceCapture trace;
    Edits(GetParam()).run();
}

INSTANTIATE_TEST_SUITE_P(Seeds, FruRandomEdits, testing::Range(1U, 4U));
