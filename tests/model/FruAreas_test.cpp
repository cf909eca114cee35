// SPDX-License-Identifier: Apache-2.0
// FRU fields, areas and whole images that are read, edited and written back, by their rules.
#include <gtest/gtest.h>
#include <optional>

#include <recordkit/fru/FRUData.h>

#include "FruRules.h"

namespace {

using namespace testing_support;

constexpr std::size_t DEVICE_SIZE = 2600;
constexpr const char* UNWRITTEN = "unwritten";
constexpr unsigned char UNWRITTEN_BYTE = 0xB7;

enum Operation {
    // What happens to the device.
    PUT,       ///< offset; bytes
    FAIL_FROM, ///< access from now on
    FAIL_OTHERWISE_FROM,
    FAIL_NO_MORE,
    // One area.
    OPEN_AREA, ///< offset, id, mode
    AREA_GET_ITEM,
    AREA_GET_ITEM_MEMBER,
    AREA_GET_ITEM_DATA,
    AREA_UPDATE_ITEM, ///< item; value
    AREA_UNUSED_UPDATE,
    AREA_LENGTH_UPDATE,
    AREA_SYNC_ITEM,
    AREA_SYNC,
    AREA_CLEAR_DIRTY,
    AREA_CALC_CHECKSUM, ///< count; bytes
    AREA_READ_DATA,     ///< fixed size, mode
    AREA_SET_DATA,      ///< id of the table; bytes
    AREA_SET_END_DATA,  ///< position; bytes
    // A whole image.
    OPEN_DATA, ///< layout, or -1 for the default
    GET_AREA_OFFSET,
    GET_AREA_OBJECT, ///< id, mode
    GET_ITEM,        ///< id, item, mode
    GET_ITEM_AND_TYPE_LENGTH,
    GET_ITEM_DATA, ///< id, item
    UPDATE_ITEM,   ///< id, item; value
    SYNC_ITEM,     ///< id, item
    SYNC_FRU,
    GET_CONSTANTS,
    // One field.
    NEW_FIXED_MEMBER, ///< item; bytes
    NEW_CODED_MEMBER, ///< item; bytes from the type/length byte on
    NEW_RESERVED_MEMBER,
    SET_TYPE_LENGTH_TO,
    SET_TYPE_LENGTH,
    SET_MEMBER_DATA,
    OPERATIONS
};

constexpr long long NO_LAYOUT = -1;
constexpr const char* NOTHING_OPEN = "nothing is open";
/// After a reading that failed: no position is inside such an area.
constexpr const char* NO_SIZE = "the area has no size";

/// A field as bytes that can be compared: item, whether coded, type/length byte, length, value.
Bytes image(int item, bool isCoded, unsigned int typeLength, unsigned int length, const Bytes& data)
{
    return Bytes({static_cast<unsigned char>(item), static_cast<unsigned char>(isCoded ? 1 : 0),
                  static_cast<unsigned char>(typeLength), static_cast<unsigned char>(length >> 8),
                  static_cast<unsigned char>(length & 0xFF)}) +
           data;
}

std::string memberName(const std::string& owner, std::size_t index)
{
    return fmt::format("{} field {:02}", owner, index);
}

std::string areaState(int id, int offset, unsigned int size, bool dirty, std::size_t members)
{
    return fmt::format("area {} at {} size {} dirty {} with {} fields", id, offset, size, dirty,
                       members);
}

/// The device below the library: notes an access without a buffer.
class WatchedDevice : public MemoryDevice {
public:
    WatchedDevice() : MemoryDevice(Bytes(DEVICE_SIZE, 0)) {}

    int read(unsigned int offset, unsigned int length, unsigned char* buffer) override
    {
        withoutBuffer = withoutBuffer || buffer == nullptr;
        return MemoryDevice::read(offset, length, buffer);
    }
    int write(unsigned int offset, unsigned int length, const unsigned char* buffer) override
    {
        withoutBuffer = withoutBuffer || buffer == nullptr;
        return MemoryDevice::write(offset, length, buffer);
    }

    bool withoutBuffer = false;
};

class Library : public Subject {
public:
    Lines perform(const Step& step) override
    {
        const TraceCapture trace;
        Lines seen;
        try {
            seen = call(step);
        } catch (const TAVLib::PException& e) {
            seen = {describe(e)};
        } catch (const OtherFailure&) {
            seen = {OTHER_FAILURE};
        }
        if (device.withoutBuffer) {
            seen.push_back("an access without a buffer");
        }
        contents.clear();
        if (area) {
            seen.push_back(note("the area", *area));
        }
        for (const auto& [id, opened] : seenAreas) {
            seen.push_back(note("area " + std::to_string(id), *opened));
        }
        if (member) {
            contents["the field"] = imageOfMember(*member);
        }
        return joined(joined(seen, device.takeAccesses()), trace.lines());
    }

    const Medium& medium() override
    {
        contents["device"] = device.bytes;
        return contents;
    }

private:
    static Bytes imageOfMember(const FRUMember& m)
    {
        return image(m.getItem(), m.getHasTypeLength(), m.getTypeLength(), m.getLength(),
                     textBytes(m.getData()));
    }

    std::string note(const std::string& name, const FRUArea& a)
    {
        std::size_t i = 0;
        for (const FRUMember* const m : a.getMembers()) {
            contents[memberName(name, i++)] = imageOfMember(*m);
        }
        return areaState(a.getAreaId(), a.getOffset(), a.getSize(), a.isDirty(), i);
    }

    Lines call(const Step& step)
    {
        const int first = static_cast<int>(step.number(0));
        switch (step.operation) {
        case PUT:
            std::copy(step.bytes.begin(), step.bytes.end(), device.bytes.begin() + first);
            return {};
        case FAIL_FROM:
            device.failFrom(device.accessCount() + static_cast<std::size_t>(first));
            return {};
        case FAIL_OTHERWISE_FROM:
            device.failOtherwiseFrom(device.accessCount() + static_cast<std::size_t>(first));
            return {};
        case FAIL_NO_MORE:
            device.failNoMore();
            return {};
        default:
            if (step.operation < OPEN_DATA) {
                return callArea(step);
            }
            return step.operation < NEW_FIXED_MEMBER ? callData(step) : callMember(step);
        }
    }

    Lines callArea(const Step& step)
    {
        const int first = static_cast<int>(step.number(0));
        const auto item = static_cast<FRU_ITEM>(first);
        if (step.operation == OPEN_AREA) {
            area.reset();
            area = std::make_unique<FRUArea>(device, first, static_cast<FRU_AREA>(step.number(1)),
                                             static_cast<FRUArea::CSUM_MODE>(step.number(2)));
            return {"opened"};
        }
        if (!area) {
            return {NOTHING_OPEN};
        }
        std::string text = UNWRITTEN;
        switch (step.operation) {
        case AREA_GET_ITEM:
            area->getItem(item, text);
            return {hex(text)};
        case AREA_GET_ITEM_MEMBER:
            return {hex(imageOfMember(*area->getItemMember(item)))};
        case AREA_GET_ITEM_DATA: {
            Bytes buffer(80000, UNWRITTEN_BYTE);
            area->getItemData(item, buffer.data());
            return {shownBuffer(buffer)};
        }
        case AREA_UPDATE_ITEM: {
            std::string value(step.bytes.begin(), step.bytes.end());
            return changed(value, [&] { area->updateItem(item, value); });
        }
        case AREA_UNUSED_UPDATE:
            area->unusedUpdate(static_cast<short>(first));
            return {};
        case AREA_LENGTH_UPDATE:
            area->lengthUpdate(static_cast<short>(first));
            return {};
        case AREA_SYNC_ITEM:
            area->syncItem(item);
            return {};
        case AREA_SYNC:
            area->syncFRU();
            return {fmt::format("{}", area->calcAreaSize())};
        case AREA_CLEAR_DIRTY:
            area->clearDirty();
            return {};
        case AREA_CALC_CHECKSUM: {
            Bytes bytes = step.bytes;
            return {fmt::format(
                "{}", area->calcChecksum(bytes.data(),
                                         static_cast<unsigned int>(std::min<std::size_t>(
                                             static_cast<std::size_t>(first), bytes.size()))))};
        }
        case AREA_READ_DATA: {
            const std::unique_ptr<unsigned char[]> bytes(area->readAreaData(
                static_cast<unsigned int>(first), static_cast<FRUArea::CSUM_MODE>(step.number(1))));
            return {hex(Bytes(bytes.get(), bytes.get() + area->getSize()))};
        }
        case AREA_SET_DATA: {
            if (area->getSize() == 0) {
                return {NO_SIZE};
            }
            Bytes bytes = callersBuffer(step.bytes);
            std::vector<FRUMemberTbl> table;
            for (const fru_rules::Row& row : rowsOf(step.number(0))) {
                table.push_back({static_cast<FRU_ITEM>(row.item), row.size});
            }
            table.push_back({FRU_ITEM_TERMINATOR, 0});
            unsigned short pos = 7;
            area->setAreaData(bytes.data(), &pos, table.data());
            return {fmt::format("{}", pos)};
        }
        default: {
            if (area->getSize() == 0) {
                return {NO_SIZE};
            }
            Bytes bytes = callersBuffer(step.bytes);
            area->setAreaEndData(bytes.data(),
                                 static_cast<unsigned short>(step.number(0) % area->getSize()));
            return {};
        }
        }
    }

    /// The result of a call that changes the caller's text, whether it throws or not.
    template <typename Call> static Lines changed(std::string& value, const Call& call)
    {
        std::string how = "done";
        try {
            call();
        } catch (const TAVLib::PException& e) {
            how = describe(e);
        } catch (const OtherFailure&) {
            how = OTHER_FAILURE;
        }
        return {how, hex(value)};
    }

    static std::string shownBuffer(Bytes& buffer)
    {
        std::size_t used = buffer.size();
        while (used > 0 && buffer[used - 1] == UNWRITTEN_BYTE) {
            --used;
        }
        return hex(part(buffer, 0, used));
    }

    /// What the headers ask of a caller's buffer.
    Bytes callersBuffer(Bytes bytes) const
    {
        bytes.resize(area->getSize());
        bytes.resize(bytes.size() + 65, 0);
        return bytes;
    }

public:
    static std::vector<fru_rules::Row> rowsOf(long long id)
    {
        for (const fru_rules::Layout& layout : fru_rules::layouts()) {
            if (layout.id == id) {
                return layout.rows;
            }
        }
        return {};
    }

private:
    Lines callData(const Step& step)
    {
        const auto id = static_cast<FRU_AREA>(step.number(0));
        const auto item = static_cast<FRU_ITEM>(step.number(1));
        const auto mode = static_cast<FRUArea::CSUM_MODE>(step.number(2));
        if (step.operation == OPEN_DATA) {
            seenAreas.clear();
            data.reset();
            data = step.number(0) == NO_LAYOUT
                       ? std::make_unique<FRUData>(device)
                       : std::make_unique<FRUData>(device, static_cast<FRU_CPU>(step.number(0)));
            return {"opened"};
        }
        if (!data) {
            return {NOTHING_OPEN};
        }
        std::string text = UNWRITTEN;
        switch (step.operation) {
        case GET_AREA_OFFSET:
            return {fmt::format("{}", data->getAreaOffset(id))};
        case GET_AREA_OBJECT:
            seenAreas[id] =
                data->getAreaObject(id, static_cast<FRUArea::CSUM_MODE>(step.number(1)));
            return {"opened"};
        case GET_ITEM:
            return changed(text, [&] { data->getItem(id, item, text, mode); });
        case GET_ITEM_AND_TYPE_LENGTH: {
            unsigned char typeLength = UNWRITTEN_BYTE;
            const Lines seen =
                changed(text, [&] { data->getItem(id, item, text, typeLength, mode); });
            return joined(seen, {fmt::format("type/length {}", typeLength)});
        }
        case GET_ITEM_DATA: {
            Bytes buffer(80000, UNWRITTEN_BYTE);
            data->getItemData(id, item, buffer.data());
            return {shownBuffer(buffer)};
        }
        case UPDATE_ITEM: {
            std::string value(step.bytes.begin(), step.bytes.end());
            return changed(value, [&] { data->updateItem(id, item, value); });
        }
        case SYNC_ITEM:
            data->syncItem(id, item);
            return {};
        case SYNC_FRU:
            data->syncFRU();
            return {};
        default:
            return {fmt::format("{} {} {}", data->getFSB(), data->getModelCode(),
                                data->isDivideEnabled())};
        }
    }

    Lines callMember(const Step& step)
    {
        const auto item = static_cast<FRU_ITEM>(step.number(0));
        const Bytes exact = step.bytes;
        switch (step.operation) {
        case NEW_FIXED_MEMBER:
            if (!exact.empty()) {
                member.emplace(exact.data(), item, static_cast<unsigned int>(exact.size()));
            }
            return {};
        case NEW_CODED_MEMBER: {
            Bytes bytes = exact;
            bytes.resize(64);
            member.emplace(bytes.data(), item, 0U);
            return {};
        }
        case NEW_RESERVED_MEMBER:
            member.emplace(static_cast<unsigned int>(step.number(0)));
            return {};
        default:
            break;
        }
        if (!member) {
            return {NOTHING_OPEN};
        }
        if (step.operation == SET_TYPE_LENGTH_TO) {
            member->settypelength(static_cast<unsigned char>(step.number(0)));
        } else if (step.operation == SET_TYPE_LENGTH) {
            member->settypelength();
        } else {
            member->setData(std::string(exact.begin(), exact.end()));
        }
        return {};
    }

    WatchedDevice device;
    std::unique_ptr<FRUArea> area;
    std::unique_ptr<FRUData> data;
    std::map<int, const FRUArea*> seenAreas;
    std::optional<FRUMember> member;
    Medium contents;
};

class Rules : public Subject {
public:
    Lines perform(const Step& step) override
    {
        Lines seen;
        try {
            seen = call(step);
        } catch (const Failure& failed) {
            seen = {failed.text};
        } catch (FailureKind kind) {
            seen = {textOf(kind)};
        }
        contents.clear();
        if (area) {
            seen.push_back(note("the area", *area));
        }
        for (const auto& [id, opened] : seenAreas) {
            seen.push_back(note("area " + std::to_string(id), *opened));
        }
        if (member) {
            contents["the field"] = imageOfMember(*member);
        }
        return joined(joined(seen, device.takeAccesses()), device.takeTraces());
    }

    const Medium& medium() override
    {
        contents["device"] = device.bytes;
        return contents;
    }

private:
    static std::string textOf(FailureKind kind)
    {
        return kind == FailureKind::DEVICE ? deviceFailure() : OTHER_FAILURE;
    }

    static Bytes imageOfMember(const fru_rules::Member& m)
    {
        return image(m.item, m.isCoded, m.typeLength, m.length, m.data);
    }

    std::string note(const std::string& name, const fru_rules::Area& a)
    {
        std::size_t i = 0;
        for (const fru_rules::Member& m : a.members) {
            contents[memberName(name, i++)] = imageOfMember(m);
        }
        return areaState(a.id, a.offset, a.size, a.dirty, i);
    }

    Lines call(const Step& step)
    {
        const auto first = static_cast<std::size_t>(step.number(0));
        switch (step.operation) {
        case PUT:
            std::copy(step.bytes.begin(), step.bytes.end(),
                      device.bytes.begin() + static_cast<long>(first));
            return {};
        case FAIL_FROM:
            device.failFrom(first, FailureKind::DEVICE);
            return {};
        case FAIL_OTHERWISE_FROM:
            device.failFrom(first, FailureKind::OTHER);
            return {};
        case FAIL_NO_MORE:
            device.failNoMore();
            return {};
        default:
            if (step.operation < OPEN_DATA) {
                return callArea(step);
            }
            return step.operation < NEW_FIXED_MEMBER ? callData(step) : callMember(step);
        }
    }

    Lines callArea(const Step& step)
    {
        const int first = static_cast<int>(step.number(0));
        if (step.operation == OPEN_AREA) {
            area.reset();
            area = std::make_unique<fru_rules::Area>(
                device, first, static_cast<int>(step.number(1)), static_cast<int>(step.number(2)));
            return {"opened"};
        }
        if (!area) {
            return {NOTHING_OPEN};
        }
        switch (step.operation) {
        case AREA_GET_ITEM: {
            const fru_rules::Member* const found = area->find(first);
            return {found == nullptr ? hex(std::string(UNWRITTEN)) : hex(found->data)};
        }
        case AREA_GET_ITEM_MEMBER:
            return {hex(imageOfMember(area->getItemMember(first)))};
        case AREA_GET_ITEM_DATA:
            return {shownData(area->find(first))};
        case AREA_UPDATE_ITEM: {
            Bytes value = step.bytes;
            return changed(value, [&] { area->updateItem(first, value); });
        }
        case AREA_UNUSED_UPDATE:
            area->unusedUpdate(fru_rules::signed16(first));
            return {};
        case AREA_LENGTH_UPDATE:
            area->lengthUpdate(fru_rules::signed16(first));
            return {};
        case AREA_SYNC_ITEM:
            area->syncItem(first);
            return {};
        case AREA_SYNC:
            area->syncFRU();
            return {fmt::format("{}", area->calcAreaSize())};
        case AREA_CLEAR_DIRTY:
            area->dirty = false;
            return {};
        case AREA_CALC_CHECKSUM:
            return {
                fmt::format("{}", fru_rules::sumOf(step.bytes, static_cast<std::size_t>(first)))};
        case AREA_READ_DATA:
            return {hex(area->readAreaData(static_cast<unsigned int>(first),
                                           static_cast<int>(step.number(1))))};
        case AREA_SET_DATA:
            if (area->size == 0) {
                return {NO_SIZE};
            }
            return {fmt::format("{}", area->setAreaData(callersBuffer(step.bytes),
                                                        Library::rowsOf(step.number(0))))};
        default:
            if (area->size == 0) {
                return {NO_SIZE};
            }
            area->setAreaEndData(callersBuffer(step.bytes),
                                 static_cast<unsigned int>(step.number(0) % area->size));
            return {};
        }
    }

    template <typename Call> static Lines changed(Bytes& value, const Call& call)
    {
        std::string how = "done";
        try {
            call();
        } catch (const Failure& failed) {
            how = failed.text;
        } catch (FailureKind kind) {
            how = textOf(kind);
        }
        return {how, hex(value)};
    }

    /// What a buffer shows: bytes at its end that look unwritten do not count.
    static std::string shownData(const fru_rules::Member* found)
    {
        Bytes shown = found == nullptr ? Bytes() : found->data;
        while (!shown.empty() && shown.back() == UNWRITTEN_BYTE) {
            shown.pop_back();
        }
        return hex(shown);
    }

    fru_rules::Image callersBuffer(Bytes bytes) const
    {
        bytes.resize(area->size);
        return fru_rules::Image(bytes);
    }

    Lines callData(const Step& step)
    {
        const int id = static_cast<int>(step.number(0));
        const int item = static_cast<int>(step.number(1));
        const int mode = static_cast<int>(step.number(2));
        if (step.operation == OPEN_DATA) {
            seenAreas.clear();
            data.reset();
            data = std::make_unique<fru_rules::Data>(device, id);
            return {"opened"};
        }
        if (!data) {
            return {NOTHING_OPEN};
        }
        Bytes out = textBytes(UNWRITTEN);
        switch (step.operation) {
        case GET_AREA_OFFSET:
            return {fmt::format("{}", data->getAreaOffset(id))};
        case GET_AREA_OBJECT:
            seenAreas[id] = &data->getAreaObject(id, item);
            return {"opened"};
        case GET_ITEM:
            return changed(out, [&] { data->getItem(id, item, mode, out); });
        case GET_ITEM_AND_TYPE_LENGTH: {
            unsigned int typeLength = UNWRITTEN_BYTE;
            const Lines seen = changed(out, [&] {
                typeLength = data->getAreaObject(id, mode).getItemMember(item).typeLength;
                data->getItem(id, item, mode, out);
            });
            return joined(seen, {fmt::format("type/length {}", typeLength)});
        }
        case GET_ITEM_DATA:
            return {shownData(data->getAreaObject(id, 0).find(item))};
        case UPDATE_ITEM: {
            Bytes value = step.bytes;
            return changed(value, [&] { data->updateItem(id, item, value); });
        }
        case SYNC_ITEM:
            data->getAreaObject(id, 0).syncItem(item);
            return {};
        case SYNC_FRU:
            data->syncFRU();
            return {};
        default:
            return {"0 0 false"};
        }
    }

    Lines callMember(const Step& step)
    {
        const int item = static_cast<int>(step.number(0));
        switch (step.operation) {
        case NEW_FIXED_MEMBER:
            if (!step.bytes.empty()) {
                member = fru_rules::Member::fixed(item, step.bytes);
            }
            return {};
        case NEW_CODED_MEMBER:
            member = fru_rules::Image(step.bytes).coded(item, 0);
            return {};
        case NEW_RESERVED_MEMBER:
            member = fru_rules::Member::reserved(static_cast<unsigned int>(step.number(0)));
            return {};
        default:
            break;
        }
        if (!member) {
            return {NOTHING_OPEN};
        }
        if (step.operation == SET_TYPE_LENGTH_TO) {
            member->typeLength = static_cast<unsigned int>(step.number(0) & 0xFF) | 0xC0;
            member->length = static_cast<unsigned int>(step.number(0) & 0xFF);
        } else if (step.operation == SET_TYPE_LENGTH) {
            member->declareLength();
        } else {
            member->data = step.bytes;
        }
        return {};
    }

    fru_rules::Device device{Bytes(DEVICE_SIZE, 0)};
    std::unique_ptr<fru_rules::Area> area;
    std::unique_ptr<fru_rules::Data> data;
    std::map<int, const fru_rules::Area*> seenAreas;
    std::optional<fru_rules::Member> member;
    Medium contents;
};

/// A coded field; mostly a short one.
Bytes anyField(Random& random)
{
    const std::size_t length = random.oneIn(10) ? random.below(64) : random.below(9);
    if (length == 1 && random.oneIn(2)) {
        return {0x41, random.byte()}; // C1h would be the end marker
    }
    const auto type = static_cast<unsigned char>(random.oneOf({0x00, 0x40, 0x80, 0xC0, 0xC0}));
    return Bytes({static_cast<unsigned char>(type | length)}) + random.bytes(length);
}

/// An area of an information image; one in three has something odd about it.
Bytes anyArea(Random& random, int id)
{
    Bytes area = {1, 0};
    const bool isInternal = id == 1 || id == 2;
    if (isInternal) {
        area = area + random.bytes(id == 1 ? 109 + random.below(12) : 221 + random.below(12));
    } else {
        area = area + random.bytes(id == 3 ? 1 : id == 4 ? 4 : 1);
        const unsigned int fields = random.below(id == 5 ? 14 : 9);
        for (unsigned int i = 0; i < fields; ++i) {
            area = area + anyField(random);
        }
        if (!random.oneIn(15)) {
            area.push_back(0xC1);
        }
        area =
            area + (random.oneIn(3) ? random.bytes(random.below(20)) : Bytes(random.below(20), 0));
    }
    std::size_t eights = area.size() / 8 + 1;
    if (random.oneIn(12)) {
        eights = random.oneIn(3) ? random.below(256) : random.below(8);
    }
    area[1] = static_cast<unsigned char>(eights);
    area.resize(std::max<std::size_t>(eights * 8 % 256, 2), 0);
    area.back() = 0;
    unsigned int sum = 0;
    for (const unsigned char byte : area) {
        sum += byte;
    }
    area.back() = static_cast<unsigned char>(256 - sum % 256);
    if (random.oneIn(15)) {
        area[random.below(static_cast<unsigned int>(area.size()))] ^= 0x20;
    }
    return area;
}

int anyAreaId(Random& random)
{
    if (random.oneIn(12)) {
        return random.oneIn(2) ? random.between(-1, 60) : 6;
    }
    return random.oneIn(4) ? random.between(50, 58) : random.between(0, 5);
}

/// An item of an area's table, or another one.
int anyItem(Random& random, int id)
{
    if (random.oneIn(4)) {
        return random.oneIn(4) ? random.between(-2, 90) : random.between(11, 14);
    }
    const std::vector<fru_rules::Row> rows = Library::rowsOf(id);
    return rows.empty() ? random.between(0, 20)
                        : rows[random.below(static_cast<unsigned int>(rows.size()))].item;
}

Bytes anyValue(Random& random)
{
    if (random.oneIn(60)) {
        return Bytes(random.oneIn(4) ? 32000 + random.below(40000) : random.below(400), 0x56);
    }
    return random.bytes(random.oneIn(5) ? random.below(70) : random.below(16));
}

int anyDelta(Random& random)
{
    return random.oneIn(6) ? random.between(-33000, 33000) : random.between(-40, 40);
}

int anyMode(Random& random)
{
    return random.oneIn(10) ? random.between(-1, 3) : random.between(0, 1);
}

void addDeviceStep(Random& random, Steps& steps)
{
    if (random.oneIn(6)) {
        steps.push_back({FAIL_NO_MORE, {}, {}});
    } else if (random.oneIn(3)) {
        steps.push_back({FAIL_OTHERWISE_FROM, {random.between(1, 4)}, {}});
    } else if (random.oneIn(2)) {
        steps.push_back({PUT, {random.below(400)}, random.bytes(random.below(12))});
    } else {
        steps.push_back({FAIL_FROM, {random.between(1, 4)}, {}});
    }
}

Steps generateArea(Random& random)
{
    const int id = anyAreaId(random);
    const int offset = static_cast<int>(random.below(30)) * 8;
    Steps steps;
    if (id >= 1 && id <= 5) {
        steps.push_back({PUT, {offset}, anyArea(random, id)});
    } else if (random.oneIn(2)) {
        Bytes block = random.bytes(34);
        block[7] = static_cast<unsigned char>(256 - fru_rules::sumOf(block, 7));
        steps.push_back({PUT, {offset}, block});
    }
    steps.push_back({OPEN_AREA, {offset, id, anyMode(random)}, {}});
    const int count = random.between(1, 8);
    for (int i = 0; i < count; ++i) {
        if (random.oneIn(12)) {
            addDeviceStep(random, steps);
            continue;
        }
        Step step;
        step.operation =
            random.oneIn(3) ? AREA_UPDATE_ITEM : random.between(AREA_GET_ITEM, AREA_SET_END_DATA);
        switch (step.operation) {
        case AREA_UPDATE_ITEM:
            step.numbers = {anyItem(random, id)};
            step.bytes = anyValue(random);
            break;
        case AREA_UNUSED_UPDATE:
        case AREA_LENGTH_UPDATE:
            step.numbers = {anyDelta(random)};
            break;
        case AREA_CALC_CHECKSUM:
            step.numbers = {random.below(12)};
            step.bytes = random.bytes(random.below(12));
            break;
        case AREA_READ_DATA:
            step.numbers = {random.oneIn(4) ? random.below(300) : random.below(20),
                            anyMode(random)};
            break;
        case AREA_SET_DATA:
            step.numbers = {random.oneIn(4) ? anyAreaId(random) : id};
            step.bytes = anyArea(random, random.between(3, 5));
            break;
        case AREA_SET_END_DATA:
            step.numbers = {random.below(60)};
            step.bytes = anyArea(random, random.between(3, 5));
            break;
        default:
            step.numbers = {anyItem(random, id)};
            break;
        }
        steps.push_back(step);
    }
    return steps;
}

/// A header that points to areas which follow it, and these areas.
void addInformationImage(Random& random, Steps& steps)
{
    Bytes header(8, 0);
    header[0] = 1;
    std::size_t eights = 1;
    for (const int id : {1, 3, 4, 5}) {
        if (random.oneIn(5)) {
            continue;
        }
        const int layout = id == 1 ? random.between(1, 2) : id;
        const Bytes area = anyArea(random, layout);
        header[id == 1 ? 1 : static_cast<std::size_t>(id) - 1] = static_cast<unsigned char>(eights);
        steps.push_back({PUT, {static_cast<long long>(eights * 8)}, area});
        eights += area.size() / 8 + 1;
    }
    header[5] = static_cast<unsigned char>(random.below(2) * eights);
    if (random.oneIn(20)) {
        header[random.below(6)] = random.byte();
    }
    header[7] = static_cast<unsigned char>(256 - fru_rules::sumOf(header, 7));
    if (random.oneIn(20)) {
        header[6] ^= 1;
    }
    steps.push_back({PUT, {0}, header});
}

void addProcessorRom(Random& random, Steps& steps)
{
    Bytes rom = random.bytes(300);
    // Offsets of the blocks, one after the other, and at times none.
    const unsigned int sizes[] = {13, 15, 34, 8, 18, 6, 11, 9};
    unsigned int at = 14;
    for (std::size_t i = 0; i < 8; ++i) {
        rom[3 + i] = static_cast<unsigned char>(random.oneIn(6) ? 0 : at);
        at += sizes[i];
    }
    steps.push_back({PUT, {0}, rom});
}

Steps generateData(Random& random)
{
    Steps steps;
    const bool isRom = random.oneIn(3);
    if (isRom) {
        addProcessorRom(random, steps);
    } else {
        addInformationImage(random, steps);
    }
    if (random.oneIn(20)) {
        addDeviceStep(random, steps);
    }
    steps.push_back(
        {OPEN_DATA,
         {random.oneIn(20) ? random.between(-1, 2) : (isRom ? 1 : random.between(-1, 0))},
         {}});
    const int count = random.between(2, 9);
    for (int i = 0; i < count; ++i) {
        if (random.oneIn(12)) {
            addDeviceStep(random, steps);
            continue;
        }
        const int id = random.oneIn(8) ? anyAreaId(random)
                       : isRom         ? random.between(51, 58)
                                       : static_cast<int>(random.oneOf({0, 1, 2, 3, 4, 4, 5, 5}));
        int item = anyItem(random, id);
        if (isRom && random.oneIn(4)) {
            item = static_cast<int>(random.oneOf({61, 62, 63, 64, 65, 69, 81, 82, 83, 84, 85}));
        }
        Step step;
        step.operation =
            random.oneIn(4) ? UPDATE_ITEM : random.between(GET_AREA_OFFSET, GET_CONSTANTS);
        switch (step.operation) {
        case GET_AREA_OBJECT:
            step.numbers = {id, anyMode(random)};
            break;
        case UPDATE_ITEM:
            step.numbers = {id, item};
            step.bytes = anyValue(random);
            break;
        default:
            step.numbers = {id, item, anyMode(random)};
            break;
        }
        steps.push_back(step);
    }
    return steps;
}

Steps generateMember(Random& random)
{
    Steps steps;
    const int count = random.between(1, 6);
    for (int i = 0; i < count; ++i) {
        Step step;
        step.operation = i == 0 ? random.between(NEW_FIXED_MEMBER, NEW_RESERVED_MEMBER)
                                : random.between(NEW_FIXED_MEMBER, OPERATIONS - 1);
        step.numbers = {random.oneIn(3) ? random.below(300) : random.below(90)};
        step.bytes = random.oneIn(200) ? Bytes(65530 + random.below(20), 0x33) : anyValue(random);
        if (step.operation == NEW_CODED_MEMBER) {
            step.bytes = anyField(random);
        }
        if (step.operation == NEW_RESERVED_MEMBER && random.oneIn(100)) {
            step.numbers = {65530 + random.below(20)};
        }
        steps.push_back(step);
    }
    return steps;
}

std::string print(const Step& step)
{
    const char* const names[] = {"put to the device at",
                                 "device.failFrom",
                                 "device.failOtherwiseFrom",
                                 "device.failNoMore",
                                 "area: FRUArea",
                                 "area.getItem",
                                 "area.getItemMember",
                                 "area.getItemData",
                                 "area.updateItem",
                                 "area.unusedUpdate",
                                 "area.lengthUpdate",
                                 "area.syncItem",
                                 "area.syncFRU",
                                 "area.clearDirty",
                                 "area.calcChecksum",
                                 "area.readAreaData",
                                 "area.setAreaData by the table of area",
                                 "area.setAreaEndData at",
                                 "data: FRUData",
                                 "data.getAreaOffset",
                                 "data.getAreaObject",
                                 "data.getItem",
                                 "data.getItem with type/length",
                                 "data.getItemData",
                                 "data.updateItem",
                                 "data.syncItem",
                                 "data.syncFRU",
                                 "data.getFSB and so on",
                                 "member: FRUMember",
                                 "member: FRUMember coded",
                                 "member: FRUMember reserved",
                                 "member.settypelength",
                                 "member.settypelength",
                                 "member.setData"};
    return callOf(names[step.operation], step);
}

void compareFru(Steps (*generate)(Random&), unsigned int sequences, unsigned int firstSeed)
{
    Comparison comparison;
    comparison.library = [] { return std::make_unique<Library>(); };
    comparison.rules = [] { return std::make_unique<Rules>(); };
    comparison.generate = generate;
    comparison.print = print;
    compare(comparison, sequences, firstSeed);
}

TEST(FruModel, MembersKeepTheirRules)
{
    compareFru(generateMember, 10000, 61000);
}

TEST(FruModel, AreasKeepTheirRules)
{
    compareFru(generateArea, 30000, 162000);
}

TEST(FruModel, ImagesKeepTheirRules)
{
    compareFru(generateData, 30000, 263000);
}

}
