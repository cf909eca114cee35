// SPDX-License-Identifier: Apache-2.0
// Thousands of edit sequences on generated images, with fixed seeds: after each of them the image
// is valid, what was not touched is as it was, and no byte of the area got lost.
#include <gtest/gtest.h>
#include <map>
#include <random>

#include <recordkit/fru/FRUData.h>

#include "MemoryDevice.h"

using namespace testing_support;

namespace {

struct AreaPlan {
    FRU_AREA id;
    std::size_t headerByte;
    Bytes fixed; ///< after the length byte
    std::vector<FRU_ITEM> coded;
};

const AreaPlan PLANS[] = {
    {FRU_AREA_CHASSIS, 2, {0x17}, {FRU_ITEM_PART_NUMBER, FRU_ITEM_SERIAL_NUMBER}},
    {FRU_AREA_BOARD,
     3,
     {0x19, 1, 2, 3},
     {FRU_ITEM_MANUFACTURER, FRU_ITEM_PRODUCT_NAME, FRU_ITEM_SERIAL_NUMBER, FRU_ITEM_PART_NUMBER,
      FRU_ITEM_FRU_FILE_ID}},
    {FRU_AREA_PRODUCT,
     4,
     {0x19},
     {FRU_ITEM_MANUFACTURER, FRU_ITEM_PRODUCT_NAME, FRU_ITEM_PART_NUMBER, FRU_ITEM_VERSION,
      FRU_ITEM_SERIAL_NUMBER, FRU_ITEM_ASSET_TAG, FRU_ITEM_FRU_FILE_ID, FRU_ITEM_PRODUCT_EXTRA1,
      FRU_ITEM_PRODUCT_EXTRA2, FRU_ITEM_PRODUCT_EXTRA3}},
};

using Random = std::mt19937;

unsigned int upTo(Random& random, unsigned int limit)
{
    // Not std::uniform_int_distribution, whose numbers differ between libraries.
    return static_cast<unsigned int>(random() % (limit + 1));
}

std::string randomValue(Random& random, unsigned int longest)
{
    std::string value(upTo(random, longest), ' ');
    // One character would read as the end marker.
    if (value.size() == 1) {
        value = "";
    }
    for (char& character : value) {
        character = static_cast<char>(upTo(random, 0xFF));
    }
    return value;
}

/// A valid area; the number of custom fields and of unused bytes is drawn.
Bytes randomArea(Random& random, const AreaPlan& plan)
{
    Bytes fields = plan.fixed;
    const std::size_t count = plan.coded.size() + upTo(random, 3);
    for (std::size_t i = 0; i < count; ++i) {
        const std::string value = randomValue(random, 10);
        const unsigned int type = value.empty() ? 3 : upTo(random, 3);
        fields.push_back(static_cast<unsigned char>(type << 6 | value.size()));
        fields.insert(fields.end(), value.begin(), value.end());
    }
    fields.push_back(0xC1);
    const std::size_t least = fields.size() + 3;
    return areaOf((least + upTo(random, 40) + 7) / 8 * 8, fields);
}

Bytes randomImage(Random& random)
{
    Bytes header = {1, 0, 0, 0, 0, 0, 0};
    Bytes areas;
    for (const AreaPlan& plan : PLANS) {
        header[plan.headerByte] = static_cast<unsigned char>(1 + areas.size() / 8);
        areas = areas + randomArea(random, plan);
    }
    return withChecksum(header) + areas + sequence(16, 0xA0);
}

using Fields = std::map<FRU_ITEM, std::string>;

/// The expected contents of the library's objects.
struct Model {
    std::map<FRU_AREA, Fields> fields;
    std::map<FRU_AREA, unsigned int> unused;
};

unsigned int unusedOf(const FRUArea& area)
{
    for (const FRUMember* const member : area.getMembers()) {
        if (member->getItem() == FRU_ITEM_RESERVED) {
            return member->getLength();
        }
    }
    return 0;
}

Model read(MemoryDevice& device)
{
    FRUData fru(device);
    Model model;
    for (const AreaPlan& plan : PLANS) {
        const FRUArea* const area = fru.getAreaObject(plan.id, FRUArea::CSUM_CHECK);
        for (const FRU_ITEM item : plan.coded) {
            fru.getItem(plan.id, item, model.fields[plan.id][item], FRUArea::CSUM_CHECK);
        }
        model.unused[plan.id] = unusedOf(*area);
    }
    return model;
}

/// One edit that the unused space has room for.
void edit(Random& random, FRUData& fru, Model& model)
{
    const AreaPlan& plan = PLANS[upTo(random, 2)];
    const FRU_ITEM item =
        plan.coded[upTo(random, static_cast<unsigned int>(plan.coded.size() - 1))];
    std::string& known = model.fields[plan.id][item];
    unsigned int& unused = model.unused[plan.id];
    const auto longest = static_cast<unsigned int>(known.size() + unused);
    std::string value = randomValue(random, std::min(longest, 63U));
    fru.updateItem(plan.id, item, value);
    unused = static_cast<unsigned int>(known.size() + unused - value.size());
    known = value;
}

/// Bytes outside all areas.
Bytes outside(const Bytes& image, FRUData& fru)
{
    Bytes rest = image;
    for (const AreaPlan& plan : PLANS) {
        const FRUArea* const area = fru.getAreaObject(plan.id, FRUArea::CSUM_CHECK);
        std::fill_n(rest.begin() + area->getOffset(), area->getSize(), 0);
    }
    return rest;
}

}

TEST(FRURandomEdits, LeaveAValidImageWithEverythingElseAsItWas)
{
    constexpr unsigned int SEQUENCES = 4000;
    for (unsigned int seed = 1; seed <= SEQUENCES; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        Random random(seed);
        MemoryDevice device(randomImage(random));
        const Bytes before = device.bytes;
        Model model = read(device);
        {
            FRUData fru(device);
            const unsigned int edits = 1 + upTo(random, 12);
            for (unsigned int i = 0; i < edits; ++i) {
                edit(random, fru, model);
                if (upTo(random, 3) == 0) {
                    fru.syncFRU();
                }
            }
            fru.syncFRU();
        }
        // It opens with checksums checked, and contains exactly what the model says.
        const Model after = read(device);
        ASSERT_EQ(after.fields, model.fields);
        ASSERT_EQ(after.unused, model.unused);
        FRUData fru(device);
        ASSERT_EQ(outside(device.bytes, fru), outside(before, fru));
        for (const AreaPlan& plan : PLANS) {
            FRUArea* const area = fru.getAreaObject(plan.id, FRUArea::CSUM_CHECK);
            ASSERT_EQ(area->calcAreaSize(), area->getSize());
        }
    }
}

TEST(FRURandomEdits, CustomFieldsStayWhatTheyAre)
{
    constexpr unsigned int SEQUENCES = 500;
    for (unsigned int seed = 1; seed <= SEQUENCES; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        Random random(seed);
        MemoryDevice device(randomImage(random));
        const auto customs = [&device] {
            Lines all;
            FRUData fru(device);
            for (const AreaPlan& plan : PLANS) {
                for (const FRUMember* const member :
                     fru.getAreaObject(plan.id, FRUArea::CSUM_CHECK)->getMembers()) {
                    if (member->getItem() == FRU_ITEM_CUSTOM) {
                        all.push_back(std::to_string(member->getTypeLength()) + member->getData());
                    }
                }
            }
            return all;
        };
        const Lines before = customs();
        Model model = read(device);
        {
            FRUData fru(device);
            for (unsigned int i = 0; i < 5; ++i) {
                edit(random, fru, model);
            }
            fru.syncFRU();
        }
        ASSERT_EQ(customs(), before);
    }
}
