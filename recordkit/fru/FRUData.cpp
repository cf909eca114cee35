// SPDX-License-Identifier: Apache-2.0
#include <recordkit/fru/FRUData.h>

#include <utility>

#include <recordkit/fru/FRUTables.h>
#include <recordkit/platform/PException.h>
#include <recordkit/serial/BitField.h>
#include <recordkit/serial/Failure.h>

using TAVLib::get_bit;

namespace {

/// The bytes of a two-byte field; missing ones are 0.
struct TwoBytes {
    explicit TwoBytes(const std::string& data)
        : first(data.empty() ? 0 : static_cast<unsigned char>(data[0])),
          second(data.size() < 2 ? 0 : static_cast<unsigned char>(data[1]))
    {
    }
    unsigned char first;
    unsigned char second;
};

std::string oneByte(unsigned char byte)
{
    return std::string(1, static_cast<char>(byte));
}

/// High byte first; only a value of exactly two bytes is a number.
std::string highByteFirst(const std::string& data)
{
    const TwoBytes bytes(data.size() == 2 ? data : std::string());
    return oneByte(bytes.second) + oneByte(bytes.first);
}

}

FRUData::FRUData(TAVLib::FRURWif& device) : FRUData(device, FRU_CPU_NONE)
{
}

FRUData::FRUData(TAVLib::FRURWif& device, FRU_CPU layout) : rw(device), cpu(layout)
{
    const FRU_AREA header = cpu == FRU_CPU_ROM ? FRU_AREA_CPU_HEADER : FRU_AREA_COMMON_HEADER;
    try {
        areas.emplace(FRU_AREA_COMMON_HEADER,
                      std::make_unique<FRUArea>(rw, 0, header, FRUArea::CSUM_CHECK));
    } catch (const TAVLib::PException&) {
        TAVLib::traceFRUError(TAVLib::LEVEL_DEVICE, "FRURWif::read CommonHeader read");
        throw;
    }
}

FRUData::~FRUData() = default;

unsigned int FRUData::getAreaOffset(FRU_AREA id)
{
    constexpr unsigned int CPU_UNIT = 1;
    FRU_ITEM item = FRU_ITEM_MULTIRECORD_OFFSET;
    if (id != FRU_AREA_MULTIRECORD) {
        const FRUAreaTbl* const row = findFRUArea(id);
        if (row == nullptr || row->offsetItem == FRU_ITEM_TERMINATOR) {
            return 0;
        }
        item = row->offsetItem;
    }
    const TwoBytes offset(areas[FRU_AREA_COMMON_HEADER]->getItemMember(item)->getData());
    return offset.first * (id < FRU_AREA_CPU_HEADER ? FRU_LENGTH_UNIT : CPU_UNIT);
}

FRUArea* FRUData::getAreaObject(FRU_AREA id, FRUArea::CSUM_MODE mode)
{
    const auto known = areas.find(id);
    if (known != areas.end()) {
        return known->second.get();
    }
    const unsigned int offset = getAreaOffset(id);
    if (offset == 0) {
        TAVLib::throwFRUError(TAVLib::MESSAGE_REFUSED, "FRUData::getAreaObject. parameter=%d", id);
    }
    auto area = std::make_unique<FRUArea>(rw, static_cast<int>(offset), id, mode);
    return areas.emplace(id, std::move(area)).first->second.get();
}

void FRUData::getItem(FRU_AREA area, FRU_ITEM item, std::string& out, FRUArea::CSUM_MODE mode)
{
    FRUArea* const object = getAreaObject(area, mode);
    std::string core;
    switch (item) {
    case FRU_ITEM_CPU_MODEL:
    case FRU_ITEM_CPU_CORE_HIGH:
    case FRU_ITEM_CPU_CORE_LOW2:
    case FRU_ITEM_CPU_CORE_FLAG:
        object->getItem(FRU_ITEM_CPU_CORE0, core);
        break;
    case FRU_ITEM_CPU_CORE1:
    case FRU_ITEM_CPU_CORE2:
    case FRU_ITEM_CPU_CACHE_SIZE:
    case FRU_ITEM_CPU_CORE3:
    case FRU_ITEM_CPU_CORE4:
    case FRU_ITEM_CPU_SPEED:
        object->getItem(item, core);
        out = highByteFirst(core);
        return;
    default:
        object->getItem(item, out);
        return;
    }
    const TwoBytes bytes(core);
    switch (item) {
    case FRU_ITEM_CPU_MODEL:
        out = oneByte(get_bit(bytes.first, 0, 4));
        break;
    case FRU_ITEM_CPU_CORE_HIGH:
        out = oneByte(get_bit(bytes.second, 4, 4));
        break;
    case FRU_ITEM_CPU_CORE_LOW2:
        out = oneByte(get_bit(bytes.second, 0, 4));
        break;
    default:
        out = oneByte(get_bit(bytes.first, 4, 1));
        break;
    }
}

void FRUData::getItem(FRU_AREA area, FRU_ITEM item, std::string& out, unsigned char& typelength,
                      FRUArea::CSUM_MODE mode)
{
    const FRUMember* const member = getAreaObject(area, mode)->getItemMember(item);
    getItem(area, item, out, mode);
    typelength = member->getTypeLength();
}

void FRUData::getItemData(FRU_AREA area, FRU_ITEM item, unsigned char* out)
{
    getAreaObject(area, FRUArea::CSUM_CHECK)->getItemData(item, out);
}

void FRUData::updateItem(FRU_AREA area, FRU_ITEM item, std::string& value)
{
    if (cpu == FRU_CPU_ROM) {
        TAVLib::throwFRUText(TAVLib::MESSAGE_TEXT, "Not Support CPU Write");
    }
    getAreaObject(area, FRUArea::CSUM_CHECK)->updateItem(item, value);
}

void FRUData::syncItem(FRU_AREA area, FRU_ITEM item)
{
    getAreaObject(area, FRUArea::CSUM_CHECK)->syncItem(item);
}

void FRUData::syncFRU()
{
    for (const auto& [id, area] : areas) {
        if (area->isDirty()) {
            area->syncFRU();
            area->clearDirty();
        }
    }
}
