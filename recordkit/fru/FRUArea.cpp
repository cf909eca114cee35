// SPDX-License-Identifier: Apache-2.0
#include <recordkit/fru/FRUArea.h>

#include <algorithm>
#include <memory>
#include <numeric>

#include <recordkit/fru/FRUTables.h>
#include <recordkit/platform/PException.h>
#include <recordkit/serial/Failure.h>

using TAVLib::MESSAGE_FRU;
using TAVLib::MESSAGE_TEXT;
using TAVLib::throwFRUError;
using TAVLib::throwFRUText;
using TAVLib::traceFRUError;

namespace {

/// More than a coded field can claim beyond its area.
constexpr unsigned int ZEROES_BEHIND_AREA = 128;

constexpr int FIRST_INFORMATION_AREA = 1;
constexpr int LAST_INFORMATION_AREA = 49;
constexpr int FIRST_CPU_AREA = 50;
constexpr int LAST_CPU_AREA = 58;

bool isCpuArea(FRU_AREA id)
{
    return id >= FIRST_CPU_AREA && id <= LAST_CPU_AREA;
}

/// The first `length` bytes of a value; missing bytes are zero.
std::string sized(const std::string& value, unsigned int length)
{
    std::string bytes = value;
    bytes.resize(length, '\0');
    return bytes;
}

}

FRUArea::FRUArea(TAVLib::FRURWif& device, int areaOffset, FRU_AREA id, CSUM_MODE mode)
    : rw(device), offset(areaOffset), size(0), areaId(id), dirty(false)
{
    const FRUAreaTbl* const row = findFRUArea(id);
    if (row == nullptr) {
        throwFRUError(MESSAGE_FRU, "FRUArea Constractor :: Not Support alloc table. id=%d", id);
    }
    std::unique_ptr<unsigned char[]> buf;
    try {
        buf.reset(readAreaData(row->size, mode));
    } catch (const TAVLib::PException&) {
        traceFRUError(TAVLib::LEVEL_ERROR, "FRUArea::FRUArea readAreaData");
        throw;
    }
    unsigned short pos = 0;
    setAreaData(buf.get(), &pos, row->members);
    if (hasLengthByte()) {
        setAreaEndData(buf.get(), pos);
    }
}

FRUArea::~FRUArea() = default;

unsigned char* FRUArea::readAreaData(unsigned int fixedSize, CSUM_MODE mode)
{
    // The size is stored in eight bits: that of an area of 256 bytes or more is taken modulo 256.
    size = static_cast<unsigned char>(fixedSize);
    if (hasLengthByte()) {
        unsigned char head[2] = {};
        readDevice(static_cast<unsigned int>(offset), sizeof head, head,
                   "FRUArea::readAreaData(2Byte read)");
        size = static_cast<unsigned char>(head[1] * FRU_LENGTH_UNIT);
    }
    if (size == 0) {
        throwFRUText(MESSAGE_TEXT, "FRUArea::readAreaData area_length is 0 ");
    }
    auto buf = std::make_unique<unsigned char[]>(size + ZEROES_BEHIND_AREA);
    readDevice(static_cast<unsigned int>(offset), size, buf.get(), "FRUArea::readAreaData read");
    if (!isCpuArea(areaId) && mode == CSUM_CHECK && calcChecksum(buf.get(), size) != 0) {
        throwFRUError(MESSAGE_TEXT, "CheckSum(%d)", areaId);
    }
    return buf.release();
}

void FRUArea::setAreaData(unsigned char* buf, unsigned short* pos, const FRUMemberTbl* table)
{
    *pos = 0;
    for (const FRUMemberTbl* row = table; row->item != FRU_ITEM_TERMINATOR; ++row) {
        // An end marker in place of a field: the rest of the table is absent.
        if (row->size == 0 && buf[*pos] == FRU_END_OF_FIELDS) {
            return;
        }
        // Checked by the row's size, so that a coded field is not bounded: existing images have
        // such fields.
        if (*pos + row->size > size) {
            throwFRUError(MESSAGE_TEXT, "Table length Abnormal. area_id=%d", areaId);
        }
        const FRUMember member(buf + *pos, row->item, row->size);
        members.append(member);
        *pos = static_cast<unsigned short>(*pos + member.getLength() +
                                           (member.getHasTypeLength() ? 1 : 0));
    }
}

void FRUArea::setAreaEndData(unsigned char* buf, unsigned short pos)
{
    if (areaId == FRU_AREA_INTERNAL_A || areaId == FRU_AREA_INTERNAL_B) {
        // The image's bytes in between are not kept.
        members.append(FRUMember(pos + 1U < size ? size - 1U - pos : 0U));
        members.append(FRUMember(buf + size - 1, FRU_ITEM_CHECKSUM, 1));
        return;
    }
    while (buf[pos] != FRU_END_OF_FIELDS) {
        if (pos + 1 > size) {
            return;
        }
        const FRUMember custom(buf + pos, FRU_ITEM_CUSTOM, 0);
        members.append(custom);
        pos = static_cast<unsigned short>(pos + 1 + custom.getLength());
    }
    if (pos + 1 > size) {
        throwFRUError(MESSAGE_TEXT, "End Code Area offset Abnormal. area_id=%d", areaId);
    }
    members.append(FRUMember(buf + pos, FRU_ITEM_END_MARKER, 1));
    ++pos;
    if (pos + 1 > size) {
        throwFRUError(MESSAGE_TEXT, "Unused space Area offset Abnormal. area_id=%d", areaId);
    }
    const unsigned int unused = size - 1U - pos;
    FRUMember space(unused);
    space.setData(std::string(buf + pos, buf + pos + unused));
    members.append(space);
    members.append(FRUMember(buf + size - 1, FRU_ITEM_CHECKSUM, 1));
}

unsigned char FRUArea::calcChecksum(unsigned char* buf, unsigned int n)
{
    return static_cast<unsigned char>(std::accumulate(buf, buf + n, 0U));
}

unsigned int FRUArea::calcAreaSize()
{
    unsigned int sum = 0;
    for (const FRUMember* const member : getMembers()) {
        sum += member->getLength() + (member->getHasTypeLength() ? 1U : 0U);
    }
    return sum;
}

FRUMember* FRUArea::getItemMember(FRU_ITEM item)
{
    FRUMember* const member = find(item);
    if (member == nullptr) {
        throwFRUError(MESSAGE_FRU, "FRUData::getItemMember Not Found item. (item%d)", item);
    }
    return member;
}

void FRUArea::getItem(FRU_ITEM item, std::string& out)
{
    const FRUMember* const member = find(item);
    if (member != nullptr) {
        out = member->getData();
    }
}

void FRUArea::getItemData(FRU_ITEM item, unsigned char* out)
{
    const FRUMember* const member = find(item);
    if (member != nullptr) {
        const std::string data = member->getData();
        std::copy(data.begin(), data.end(), out);
    }
}

void FRUArea::updateItem(FRU_ITEM item, std::string& value)
{
    FRUMember* const member = find(item);
    if (member == nullptr) {
        // Marked anyway: callers write such an area back and rely on it.
        dirty = true;
        return;
    }
    if (member->getHasTypeLength()) {
        unusedUpdate(static_cast<short>(static_cast<int>(value.size()) -
                                        (member->getTypeLength() & FRU_LENGTH_BITS)));
    } else if (member->getLength() > 1 && value.size() < member->getLength()) {
        // Pad the caller's own string: callers show it afterwards as it was stored.
        value.resize(member->getLength(), '\0');
    }
    member->setData(value);
    member->settypelength();
    dirty = true;
}

void FRUArea::unusedUpdate(short delta)
{
    FRUMember* const unused = find(FRU_ITEM_RESERVED);
    if (unused == nullptr) {
        lengthUpdate(delta);
        return;
    }
    const auto rest = static_cast<short>(unused->getLength() - delta);
    if (rest < 0) {
        // The negative remainder: the length byte shrinks, though the area grows. syncFRU writes
        // the whole area with a length of its own.
        lengthUpdate(rest);
    }
    *unused = FRUMember(rest < 0 ? 0U : static_cast<unsigned int>(rest));
}

void FRUArea::lengthUpdate(short delta)
{
    constexpr std::size_t LENGTH_MEMBER = 1;
    const bool isThere = getMembers().size() > LENGTH_MEMBER;
    FRUMember* const member = isThere ? getMembers()[LENGTH_MEMBER] : nullptr;
    const FRU_ITEM found = isThere ? member->getItem() : FRU_ITEM_TERMINATOR;
    if (found != FRU_ITEM_AREA_LENGTH) {
        // The text is passed unchanged, with its placeholder; the item is the next parameter.
        throwFRUText(MESSAGE_FRU, "FRUArea::lengthUpdate  Not Length on FRUMember(%d)", found);
    }
    const std::string old = sized(member->getData(), 1);
    const int bytes =
        static_cast<unsigned char>(old[0]) * static_cast<int>(FRU_LENGTH_UNIT) + delta;
    member->setData(std::string(1, static_cast<char>(bytes / static_cast<int>(FRU_LENGTH_UNIT))));
}

void FRUArea::syncItem(FRU_ITEM item)
{
    const FRUMember* const member = getItemMember(item);
    // Type/length bytes are not counted: only items of areas without them are written one by one.
    unsigned int position = static_cast<unsigned int>(offset);
    for (const FRUMember* const before : getMembers()) {
        if (before == member) {
            break;
        }
        position += before->getLength();
    }
    // The terminating zero of the text gives an empty field an address too.
    const std::string bytes = sized(member->getData(), member->getLength() + 1U);
    const std::vector<unsigned char> buffer(bytes.begin(), bytes.end());
    rw.write(position, member->getLength(), buffer.data());
}

void FRUArea::syncFRU()
{
    const unsigned int total = calcAreaSize();
    std::string lengthByte(1, static_cast<char>(total / FRU_LENGTH_UNIT));
    updateItem(FRU_ITEM_AREA_LENGTH, lengthByte);

    std::vector<unsigned char> buffer;
    buffer.reserve(total);
    for (const FRUMember* const member : getMembers()) {
        if (member->getItem() == FRU_ITEM_CHECKSUM) {
            continue;
        }
        if (member->getHasTypeLength()) {
            buffer.push_back(member->getTypeLength());
        }
        const std::string bytes = sized(member->getData(), member->getLength());
        buffer.insert(buffer.end(), bytes.begin(), bytes.end());
    }
    if (find(FRU_ITEM_CHECKSUM) != nullptr) {
        const auto sum = calcChecksum(buffer.data(), static_cast<unsigned int>(buffer.size()));
        const auto checksum = static_cast<unsigned char>(0U - sum);
        std::string value(1, static_cast<char>(checksum));
        updateItem(FRU_ITEM_CHECKSUM, value);
        buffer.push_back(checksum);
    }
    buffer.resize(total);
    rw.write(static_cast<unsigned int>(offset), total, buffer.data());
}

bool FRUArea::hasLengthByte() const
{
    return areaId >= FIRST_INFORMATION_AREA && areaId <= LAST_INFORMATION_AREA;
}

FRUMember* FRUArea::find(FRU_ITEM item) const
{
    const auto found =
        std::find_if(getMembers().begin(), getMembers().end(),
                     [item](const FRUMember* member) { return member->getItem() == item; });
    return found == getMembers().end() ? nullptr : *found;
}

void FRUArea::readDevice(unsigned int at, unsigned int length, unsigned char* buffer,
                         const char* text)
{
    try {
        rw.read(at, length, buffer);
    } catch (const TAVLib::PException&) {
        traceFRUError(TAVLib::LEVEL_ERROR, text);
        throw;
    }
}

FRUArea::MemberList::~MemberList()
{
    for (const FRUMember* const member : list) {
        delete member;
    }
}

void FRUArea::MemberList::append(const FRUMember& member)
{
    auto owned = std::make_unique<FRUMember>(member);
    list.push_back(owned.get());
    static_cast<void>(owned.release());
}
