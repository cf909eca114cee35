// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/fru/FruLayout.h>

#include <algorithm>
#include <fmt/format.h>
#include <vector>

#include <recordkit/fru/FRUData.h>
#include <recordkit/fru/FRUTables.h>
#include <recordkit/inspect/bytes/Error.h>
#include <recordkit/inspect/fru/FruImage.h>
#include <recordkit/inspect/fru/FruNames.h>
#include <recordkit/inspect/fru/ImageDevice.h>

namespace recordkit::inspect {

namespace {

/// An area on its way to a new place.
struct Block {
    FRU_ITEM offsetItem;
    FruExtent old;
    std::string bytes;
    unsigned int offset; ///< the new one
};

/// The area with additional zero bytes before its checksum; its length byte and its checksum are
/// updated.
std::string grown(const std::string& area, unsigned int by)
{
    std::string bytes = area;
    bytes.insert(bytes.size() - 1, by, '\0');
    bytes[1] = static_cast<char>(bytes.size() / FRU_LENGTH_UNIT);
    const auto last = static_cast<unsigned int>(bytes.size() - 1);
    bytes.back() = static_cast<char>(checksumOf(bytes, 0, last, last).expected);
    return bytes;
}

std::vector<Block> blocksOf(const FruImage& image, const std::string& bytes,
                            const std::map<FRU_AREA, unsigned int>& growth)
{
    std::vector<Block> blocks;
    const auto add = [&](FRU_ITEM item, const FruExtent& extent, unsigned int by) {
        const std::string area = bytes.substr(extent.offset, extent.size);
        blocks.push_back({item, extent, by == 0 ? area : grown(area, by), extent.offset});
    };
    for (const FruAreaImage& area : image.areas) {
        const auto found = growth.find(area.id);
        add(findFRUArea(area.id)->offsetItem, area.extent,
            found == growth.end() ? 0 : found->second);
    }
    for (const FruInternalUse& internal : image.internalUse) {
        add(FRU_ITEM_INTERNAL_OFFSET, internal.extent, 0);
    }
    for (const FruExtent& extent : image.extents) {
        if (extent.name == fruAreaName(FRU_AREA_MULTIRECORD)) {
            add(FRU_ITEM_MULTIRECORD_OFFSET, extent, 0);
        }
    }
    std::sort(blocks.begin(), blocks.end(),
              [](const Block& a, const Block& b) { return a.old.offset < b.old.offset; });
    return blocks;
}

/// Assigns each block its new place: its old one, or the end of the block before.
void place(std::vector<Block>& blocks, std::size_t size)
{
    unsigned int end = 0;
    for (Block& block : blocks) {
        block.offset = std::max(block.old.offset, toLengthUnit(end));
        end = block.offset + static_cast<unsigned int>(block.bytes.size());
    }
    constexpr unsigned int LARGEST_OFFSET = 0xFF * FRU_LENGTH_UNIT;
    if (end > size || (!blocks.empty() && blocks.back().offset > LARGEST_OFFSET)) {
        throw DataError(fmt::format("the areas would take {} bytes, the image has {}", end, size));
    }
}

/// Refuses to overwrite bytes that belonged to no area, unless they are blank.
void checkOverwritten(const std::vector<Block>& blocks, const FruImage& image,
                      const std::string& bytes)
{
    for (const FruExtent& other : image.map(bytes)) {
        if (other.name != OTHER_BYTES) {
            continue;
        }
        for (const Block& block : blocks) {
            const auto end = block.offset + static_cast<unsigned int>(block.bytes.size());
            if (block.offset < other.end() && other.offset < end) {
                throw DataError(fmt::format("bytes {} to {} would be written over; they belong to "
                                            "no area, but are not blank",
                                            other.offset, other.end() - 1));
            }
        }
    }
}

}

unsigned int toLengthUnit(unsigned int bytes)
{
    return (bytes + FRU_LENGTH_UNIT - 1) / FRU_LENGTH_UNIT * FRU_LENGTH_UNIT;
}

std::string growAreas(const std::string& bytes, const std::map<FRU_AREA, unsigned int>& growth)
{
    const FruImage image = parseFruImage(bytes);
    std::vector<Block> blocks = blocksOf(image, bytes, growth);
    place(blocks, bytes.size());
    checkOverwritten(blocks, image, bytes);

    std::string result = bytes;
    ImageDevice header(bytes);
    FRUData fru(header);
    for (const Block& block : blocks) {
        // The block before will cover the bytes that a move leaves, except those that align it.
        std::fill_n(result.begin() + static_cast<long>(block.old.offset), block.old.size, '\0');
    }
    for (const Block& block : blocks) {
        std::copy(block.bytes.begin(), block.bytes.end(),
                  result.begin() + static_cast<long>(block.offset));
        std::string offset(1, static_cast<char>(block.offset / FRU_LENGTH_UNIT));
        fru.updateItem(FRU_AREA_COMMON_HEADER, block.offsetItem, offset);
    }
    // The library leaves the header's pad and checksum unchanged.
    fru.syncFRU();
    const FruChecksum checksum = parseFruImage(header.getBytes()).header;
    std::copy_n(header.getBytes().begin(), checksum.offset, result.begin());
    result[checksum.offset] = static_cast<char>(checksum.expected);
    return result;
}

}
