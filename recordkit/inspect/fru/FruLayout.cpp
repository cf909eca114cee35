// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/fru/FruLayout.h>

#include <algorithm>
#include <fmt/format.h>
#include <vector>

#include <recordkit/inspect/bytes/Error.h>
#include <recordkit/inspect/fru/FruImage.h>
#include <recordkit/inspect/fru/FruNames.h>

namespace recordkit::inspect {

namespace {

/// An area on its way to its place.
struct Block {
    FRU_AREA id;
    FruExtent old; ///< size 0 for a new one
    std::string bytes;
    bool isTouched = true;   ///< has other bytes or another place
    unsigned int offset = 0; ///< the new one

    unsigned int end() const { return offset + static_cast<unsigned int>(bytes.size()); }
};

void setHeader(std::string& image, FRU_AREA id, unsigned int offset)
{
    image[headerOffset(id)] = static_cast<char>(offset / FRU_LENGTH_UNIT);
}

void setHeaderChecksum(std::string& image)
{
    const FruChecksum checksum = checksumOf(image, 0, FRU_HEADER_SIZE - 1, FRU_HEADER_SIZE - 1);
    image[checksum.offset] = static_cast<char>(checksum.expected);
}

/// The areas of an image with their new bytes, by offset.
std::vector<Block> keptBlocks(const FruImage& image, const std::string& bytes,
                              const FruBlocks& changed)
{
    std::vector<Block> blocks;
    for (const FRU_AREA id : headerAreas()) {
        for (const FruExtent& extent : image.extents) {
            if (extent.name == fruAreaName(id)) {
                const auto found = changed.find(id);
                const bool isChanged = found != changed.end();
                blocks.push_back(
                    {id, extent,
                     isChanged ? found->second : bytes.substr(extent.offset, extent.size),
                     isChanged});
            }
        }
    }
    std::sort(blocks.begin(), blocks.end(),
              [](const Block& a, const Block& b) { return a.old.offset < b.old.offset; });
    return blocks;
}

/// Assigns each block its new place: its old one, or the end of a block before that changed.
void place(std::vector<Block>& blocks)
{
    unsigned int end = 0;
    for (Block& block : blocks) {
        block.offset = std::max(block.old.offset, toLengthUnit(end));
        block.isTouched = block.isTouched || block.offset != block.old.offset;
        end = block.isTouched && !block.bytes.empty() ? block.end() : end;
    }
}

/// Puts a new block into the first gap that is large enough.
void insert(std::vector<Block>& blocks, Block block)
{
    unsigned int end = FRU_HEADER_SIZE;
    auto next = blocks.begin();
    for (; next != blocks.end(); ++next) {
        block.offset = toLengthUnit(end);
        if (next->bytes.empty()) {
            continue;
        }
        if (block.end() <= next->offset) {
            break;
        }
        end = next->end();
    }
    block.offset = toLengthUnit(end);
    blocks.insert(next, block);
}

void checkRoom(const std::vector<Block>& blocks, std::size_t size)
{
    unsigned int end = 0;
    bool isFar = false;
    for (const Block& block : blocks) {
        if (block.isTouched && !block.bytes.empty()) {
            end = std::max(end, block.end());
            isFar = isFar || block.offset > MAX_UNIT_BYTES;
        }
    }
    if (end > size) {
        throw DataError(fmt::format("the areas would take {} bytes, the image has {}", end, size));
    }
    if (isFar) {
        throw DataError(fmt::format("an area would begin after offset {}, the last that the common "
                                    "header can say",
                                    MAX_UNIT_BYTES));
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
            if (block.offset < other.end() && other.offset < block.end()) {
                throw DataError(fmt::format("bytes {} to {} would be written over; they belong to "
                                            "no area, but are not blank",
                                            other.offset, other.end() - 1));
            }
        }
    }
}

}

const std::vector<FRU_AREA>& headerAreas()
{
    static const std::vector<FRU_AREA> all = {FRU_AREA_INTERNAL_A, FRU_AREA_CHASSIS, FRU_AREA_BOARD,
                                              FRU_AREA_PRODUCT, FRU_AREA_MULTIRECORD};
    return all;
}

std::size_t headerOffset(FRU_AREA id)
{
    const auto& all = headerAreas();
    return static_cast<std::size_t>(std::find(all.begin(), all.end(), id) - all.begin()) + 1;
}

unsigned int toLengthUnit(unsigned int bytes)
{
    return (bytes + FRU_LENGTH_UNIT - 1) / FRU_LENGTH_UNIT * FRU_LENGTH_UNIT;
}

std::string placeFruBlocks(const std::string& bytes, const FruBlocks& changed)
{
    const FruImage image = parseFruImage(bytes);
    std::vector<Block> blocks = keptBlocks(image, bytes, changed);
    place(blocks);
    for (const FRU_AREA id : headerAreas()) {
        const auto found = changed.find(id);
        const bool isKept = std::any_of(blocks.begin(), blocks.end(),
                                        [id](const Block& block) { return block.id == id; });
        if (found != changed.end() && !isKept) {
            insert(blocks, {id, {}, found->second});
        }
    }
    checkRoom(blocks, bytes.size());
    checkOverwritten(blocks, image, bytes);

    std::string result = bytes;
    blocks.erase(std::remove_if(blocks.begin(), blocks.end(),
                                [](const Block& block) { return !block.isTouched; }),
                 blocks.end());
    for (const Block& block : blocks) {
        std::fill_n(result.begin() + static_cast<long>(block.old.offset), block.old.size, '\0');
    }
    for (const Block& block : blocks) {
        std::copy(block.bytes.begin(), block.bytes.end(),
                  result.begin() + static_cast<long>(block.offset));
        setHeader(result, block.id, block.bytes.empty() ? 0 : block.offset);
    }
    setHeaderChecksum(result);
    return result;
}

std::string resizeFruImage(const std::string& bytes, std::size_t size)
{
    const FruImage image = parseFruImage(bytes);
    if (!image.isFru) {
        throw DataError(image.headerProblems.front());
    }
    for (const FruExtent& extent : image.map(bytes)) {
        // An internal use area that comes last extends to the end of the image.
        const bool isBlankPart =
            extent.name == FREE_BYTES ||
            (extent.name == fruAreaName(FRU_AREA_INTERNAL_A) && extent.end() == bytes.size() &&
             extent.offset < size && isBlank(ByteView(bytes).part(size)));
        if (extent.end() > size && !isBlankPart) {
            throw DataError(fmt::format("{} ({} to {}) would be cut off at {} bytes", extent.name,
                                        extent.offset, extent.end() - 1, size));
        }
    }
    std::string result = bytes;
    result.resize(size, bytes.back() == '\xFF' ? '\xFF' : '\0');
    return result;
}

}
