// SPDX-License-Identifier: Apache-2.0
// Every sample image, opened, read whole and written back with every area marked.
#include <gtest/gtest.h>

#include <recordkit/fru/FRUData.h>

#include "MemoryDevice.h"
#include "support/SampleImages.h"
#include "support/ScratchRoot.h"

using namespace testing_support;

namespace {

constexpr FRU_AREA AREAS[] = {FRU_AREA_CHASSIS, FRU_AREA_BOARD, FRU_AREA_PRODUCT};

/// Reads every field of the areas that can be opened, and returns their ids.
std::vector<FRU_AREA> readAll(FRUData& fru)
{
    std::vector<FRU_AREA> opened;
    for (const FRU_AREA id : AREAS) {
        try {
            FRUArea* const area = fru.getAreaObject(id, FRUArea::CSUM_CHECK);
            for (const FRUMember* const member : area->getMembers()) {
                std::string value;
                unsigned char typeLength = 0;
                fru.getItem(id, member->getItem(), value, typeLength, FRUArea::CSUM_CHECK);
            }
            opened.push_back(id);
        } catch (const TAVLib::PException&) {
            // Absent or damaged: there is nothing to write back.
        }
    }
    return opened;
}

}

TEST(FRUSamples, AreTheSameAfterEveryAreaIsWrittenBack)
{
    const TraceCapture trace;
    unsigned int areas = 0;
    for (const std::string& path : sampleImages()) {
        const Bytes image = readFile(path);
        MemoryDevice device(image);
        std::vector<FRU_AREA> opened;
        try {
            FRUData fru(device);
            opened = readAll(fru);
            for (const FRU_AREA id : opened) {
                // An update of a field that no area has marks the area, and changes nothing.
                std::string value = "x";
                fru.updateItem(id, FRU_ITEM_TERMINATOR, value);
            }
            fru.syncFRU();
        } catch (const TAVLib::PException& e) {
            EXPECT_TRUE(opened.empty()) << path << ": " << e.getMessage();
        }
        EXPECT_EQ(device.bytes, image) << path;
        areas += static_cast<unsigned int>(opened.size());
    }
    // Most of them have areas that were really written.
    EXPECT_GE(areas, sampleImages().size());
}

TEST(FRUSamples, HeaderIsWrittenBackAsItWas)
{
    const TraceCapture trace;
    unsigned int headers = 0;
    for (const std::string& path : sampleImages()) {
        const Bytes image = readFile(path);
        MemoryDevice device(image);
        try {
            FRUData fru(device);
            std::string value = "x";
            fru.updateItem(FRU_AREA_COMMON_HEADER, FRU_ITEM_TERMINATOR, value);
            fru.syncFRU();
            EXPECT_EQ(device.takeAccesses(), Lines({"r0+8", "w0+6"})) << path;
            ++headers;
        } catch (const TAVLib::PException&) {
            // No common header, or one with a wrong checksum.
        }
        EXPECT_EQ(device.bytes, image) << path;
    }
    EXPECT_GE(headers, 5U);
}
