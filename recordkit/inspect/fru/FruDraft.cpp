// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/fru/FruDraft.h>

#include <algorithm>
#include <fmt/format.h>

#include <recordkit/inspect/bytes/Error.h>
#include <recordkit/inspect/bytes/Numbers.h>
#include <recordkit/inspect/fru/FruNames.h>

namespace recordkit::inspect {

FruDraft::FruDraft(const std::string& imageBytes, bool repairsChecksums)
    : bytes(imageBytes), fru(parseFruImage(imageBytes))
{
    if (!fru.isFru) {
        throw DataError(fru.headerProblems.front());
    }
    check("common header", fru.header, repairsChecksums);
    for (const FruAreaImage& area : fru.areas) {
        if (area.extent.size != 0) {
            check(area.extent.name + " area", area.checksum, repairsChecksums);
        }
    }
}

void FruDraft::check(const std::string& name, const FruChecksum& checksum, bool repairs)
{
    if (checksum.isRight()) {
        return;
    }
    if (!repairs) {
        throw DataError(fmt::format("{}: checksum {:02X}h at offset {}, expected {:02X}h "
                                    "(--ignore-checksum repairs it)",
                                    name, checksum.stored, checksum.offset, checksum.expected));
    }
    bytes[checksum.offset] = static_cast<char>(checksum.expected);
    notes.push_back(fmt::format("{}: checksum at offset {} repaired, {:02X}h to {:02X}h", name,
                                checksum.offset, checksum.stored, checksum.expected));
}

const FruExtent* FruDraft::findExtent(FRU_AREA id) const
{
    const auto found =
        std::find_if(fru.extents.begin(), fru.extents.end(),
                     [id](const FruExtent& each) { return each.name == fruAreaName(id); });
    return found == fru.extents.end() ? nullptr : &*found;
}

void FruDraft::requireExtent(FRU_AREA id) const
{
    const FruExtent* const extent = findExtent(id);
    if (extent == nullptr) {
        throw DataError(fmt::format("the image has no {} area", fruAreaName(id)));
    }
    checkApart(*extent);
}

void FruDraft::checkApart(const FruExtent& area) const
{
    for (const auto* const others : {&fru.extents, &fru.lost}) {
        for (const FruExtent& other : *others) {
            const bool isItself = other.offset == area.offset && other.name == area.name;
            if (!isItself && other.offset < area.end() && area.offset < other.end()) {
                throw DataError(fmt::format("{} ({} to {}) and {} ({} to {}) overlap", area.name,
                                            area.offset, area.end() - 1, other.name, other.offset,
                                            other.end() - 1));
            }
        }
    }
}

FruAreaContent& FruDraft::area(FRU_AREA id)
{
    const auto known = areas.find(id);
    if (known != areas.end()) {
        return known->second;
    }
    const FruAreaImage* const found = fru.findArea(id);
    if (found == nullptr) {
        throw DataError(fmt::format("the image has no {} area", fruAreaName(id)));
    }
    if (!found->isWhole) {
        throw DataError(found->problems.front());
    }
    checkApart(found->extent);
    return areas[id] = contentOf(*found, bytes);
}

void FruDraft::addArea(const FruAreaContent& area)
{
    if (fru.findArea(area.id) != nullptr || areas.count(area.id) != 0) {
        throw DataError(fmt::format("the image already has a {} area", fruAreaName(area.id)));
    }
    areas[area.id] = area;
}

void FruDraft::removeArea(FRU_AREA id)
{
    const FruAreaImage* const found = fru.findArea(id);
    if (found != nullptr && found->extent.size == 0) {
        throw DataError(found->problems.front());
    }
    requireExtent(id);
    blocks[id] = "";
}

std::vector<FruRecordContent>& FruDraft::records()
{
    if (multirecords) {
        return *multirecords;
    }
    multirecords.emplace();
    const std::string name = fruAreaName(FRU_AREA_MULTIRECORD);
    for (const std::string& problem : fru.problems) {
        if (problem.compare(0, name.size(), name) == 0) {
            throw DataError(problem);
        }
    }
    if (findExtent(FRU_AREA_MULTIRECORD) != nullptr) {
        requireExtent(FRU_AREA_MULTIRECORD);
    }
    for (const FruMultiRecord& record : fru.records) {
        multirecords->push_back(contentOf(record, bytes));
    }
    return *multirecords;
}

void FruDraft::setInternalUse(const std::string& content)
{
    if (content.empty()) {
        throw DataError("internal: no bytes, expected at least one");
    }
    if (findExtent(FRU_AREA_INTERNAL_A) != nullptr) {
        requireExtent(FRU_AREA_INTERNAL_A);
    }
    blocks[FRU_AREA_INTERNAL_A] = content;
}

void FruDraft::removeInternalUse()
{
    requireExtent(FRU_AREA_INTERNAL_A);
    blocks[FRU_AREA_INTERNAL_A] = "";
}

void FruDraft::requireGrowth(const std::string& need) const
{
    if (!mayGrow) {
        throw DataError(need + " (--grow makes room where the image has some)");
    }
}

/// An area as large as it was, or larger by as many units as it needs. The unused bytes keep their
/// places as far as texts do not need them.
std::string FruDraft::encode(FruAreaContent area)
{
    const FruAreaImage* const old = fru.findArea(area.id);
    if (old == nullptr) {
        std::string encoded = encodeFruArea(area);
        if (encoded.size() > MAX_AREA_SIZE) {
            throw DataError(
                fmt::format("{} area: {} bytes needed, and an area has at most {} bytes",
                            fruAreaName(area.id), encoded.size(), MAX_AREA_SIZE));
        }
        return encoded;
    }
    const unsigned int oldUsed = old->extent.size - old->unused - 1;
    const unsigned int used = area.usedSize();
    if (used <= oldUsed) {
        area.unused.insert(0, oldUsed - used, '\0');
        return encodeFruArea(area);
    }
    const unsigned int growth = used - oldUsed;
    if (growth > old->unused) {
        const unsigned int by = toLengthUnit(growth - old->unused);
        const std::string need = fmt::format("{} area: {} more bytes needed, {} free",
                                             old->extent.name, growth, old->unused);
        requireGrowth(need);
        if (old->extent.size + by > MAX_AREA_SIZE) {
            throw DataError(
                fmt::format("{}, and an area has at most {} bytes", need, MAX_AREA_SIZE));
        }
        notes.push_back(fmt::format("{} area: {} bytes larger, {} in all", old->extent.name, by,
                                    old->extent.size + by));
        area.unused.append(by, '\0');
    }
    area.unused.erase(0, growth);
    return encodeFruArea(area);
}

/// What an area shall contain, of any size.
void FruDraft::put(FRU_AREA id, const std::string& content)
{
    const FruExtent* const old = findExtent(id);
    isMoving = isMoving || (!content.empty() && (old == nullptr || content.size() > old->size));
    if (old != nullptr && !content.empty() && content.size() > old->size) {
        requireGrowth(fmt::format("{} area: {} bytes needed, it has {}", fruAreaName(id),
                                  content.size(), old->size));
    }
    blocks[id] = content;
}

/// With a damaged record, an overlap or an area of unknown size, it is unknown which bytes belong
/// to what.
void FruDraft::requireKnownPlaces(const char* otherwise) const
{
    std::vector<std::string> obstacles = fru.problems;
    for (const FruAreaImage& area : fru.areas) {
        if (area.extent.size == 0) {
            obstacles.push_back(area.problems.front());
        }
    }
    if (!obstacles.empty()) {
        throw DataError(fmt::format("{}: {}", otherwise, obstacles.front()));
    }
}

FruDraftResult FruDraft::finish(bool growing)
{
    mayGrow = growing;
    for (const auto& [id, area] : areas) {
        if (blocks.count(id) == 0) {
            put(id, encode(area));
        }
    }
    if (multirecords && (!multirecords->empty() || !fru.records.empty())) {
        put(FRU_AREA_MULTIRECORD, encodeFruRecords(*multirecords));
    }
    const auto internal = blocks.find(FRU_AREA_INTERNAL_A);
    if (internal != blocks.end() && !internal->second.empty()) {
        put(FRU_AREA_INTERNAL_A, internal->second);
    }
    const bool isRemoving = std::any_of(blocks.begin(), blocks.end(),
                                        [](const auto& block) { return block.second.empty(); });
    if (isMoving) {
        requireKnownPlaces("the areas cannot be moved");
    }
    // Without an area, the internal use area before it reaches further.
    if (isRemoving) {
        requireKnownPlaces("no area can be removed");
    }
    FruDraftResult result = {placeFruBlocks(bytes, blocks), notes};
    const FruImage after = parseFruImage(result.bytes);
    for (const FruAreaImage& area : after.areas) {
        if (blocks.count(area.id) != 0) {
            result.notes.push_back(
                fmt::format("{} area: {} free", area.extent.name, counted(area.unused, "byte")));
        }
    }
    for (const FruInternalUse& area : after.internalUse) {
        const auto placed = blocks.find(FRU_AREA_INTERNAL_A);
        if (placed != blocks.end() && area.bytes.size() > placed->second.size()) {
            result.notes.push_back(fmt::format(
                "internal area: extends {} further, to the next area or the end of the image",
                counted(area.bytes.size() - placed->second.size(), "byte")));
        }
    }
    return result;
}

}
