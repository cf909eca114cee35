// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TESTS_MODEL_FRURULES_H
#define RECORDKIT_TESTS_MODEL_FRURULES_H

#include <fmt/format.h>

#include "Model.h"
#include "fru/MemoryDevice.h"

namespace testing_support {

/// The rules of FRU areas and images, in the plainest form.
namespace fru_rules {

constexpr int CUSTOM = 11;
constexpr int END_MARKER = 12;
constexpr int RESERVED = 13;
constexpr int CHECKSUM = 14;
constexpr int AREA_LENGTH = 1;
constexpr int TERMINATOR = 87; ///< no field's item
constexpr unsigned char END_BYTE = 0xC1;

struct Row {
    int item;
    unsigned int size;
};

struct Layout {
    int id;
    unsigned int fixedSize;
    std::vector<Row> rows;
};

inline const std::vector<Layout>& layouts()
{
    static const std::vector<Layout> all = {
        {0, 8, {{0, 1}, {19, 1}, {20, 1}, {21, 1}, {22, 1}, {23, 1}}},
        {1, 0, {{0, 1}, {1, 1}, {16, 1}, {6, 13}, {77, 1}, {78, 1}, {79, 2}, {80, 72}, {17, 19}}},
        {2,
         0,
         {{0, 1},
          {1, 1},
          {25, 1},
          {26, 1},
          {27, 1},
          {28, 1},
          {29, 1},
          {30, 1},
          {31, 1},
          {32, 6},
          {33, 6},
          {34, 6},
          {35, 6},
          {17, 190}}},
        {3, 0, {{0, 1}, {1, 1}, {8, 1}, {5, 0}, {6, 0}}},
        {4, 0, {{0, 1}, {1, 1}, {2, 1}, {18, 3}, {3, 0}, {4, 0}, {6, 0}, {5, 0}, {10, 0}}},
        {5,
         0,
         {{0, 1},
          {1, 1},
          {2, 1},
          {3, 0},
          {4, 0},
          {5, 0},
          {7, 0},
          {6, 0},
          {9, 0},
          {10, 0},
          {38, 0},
          {39, 0},
          {15, 0}}},
        {50,
         14,
         {{60, 1},
          {57, 2},
          {50, 1},
          {51, 1},
          {52, 1},
          {53, 1},
          {54, 1},
          {55, 1},
          {56, 1},
          {58, 1},
          {13, 2}}},
        {51, 13, {{59, 6}, {4, 1}, {13, 1}, {85, 2}, {13, 2}}},
        {52, 15, {{81, 2}, {13, 2}, {64, 2}, {65, 2}, {83, 2}, {84, 2}, {67, 1}, {68, 1}}},
        {53,
         34,
         {{13, 2},
          {13, 2},
          {13, 4},
          {13, 1},
          {13, 2},
          {13, 2},
          {13, 2},
          {13, 1},
          {13, 1},
          {13, 4},
          {13, 2},
          {69, 2},
          {13, 2},
          {13, 1},
          {13, 1},
          {13, 4}}},
        {54, 8, {{60, 4}, {70, 1}, {13, 2}}},
        {55, 18, {{5, 7}, {71, 8}, {13, 2}}},
        {56, 6, {{72, 1}, {73, 1}, {13, 1}, {13, 2}}},
        {57, 11, {{74, 4}, {75, 1}, {13, 1}, {13, 1}, {76, 1}, {13, 2}}},
        {58, 9, {{86, 8}}},
    };
    return all;
}

inline Failure failed(int message, const std::string& text, int second = 0)
{
    return failure(128, 13, 1, 1, message, {text, std::to_string(second)});
}

/// The device that the rules see.
class Device {
public:
    explicit Device(Bytes image) : bytes(std::move(image)) {}

    Bytes read(unsigned int offset, unsigned int length)
    {
        note("r", offset, length);
        Bytes taken(length, 0xEE);
        for (unsigned int i = 0; i < length; ++i) {
            if (offset + i < bytes.size()) {
                taken[i] = bytes[offset + i];
            }
        }
        return taken;
    }
    void write(unsigned int offset, const Bytes& data)
    {
        note("w", offset, data.size());
        if (offset > bytes.size() || data.size() > bytes.size() - offset) {
            throw FailureKind::DEVICE;
        }
        std::copy(data.begin(), data.end(), bytes.begin() + static_cast<long>(offset));
    }
    void failFrom(std::size_t access, FailureKind how)
    {
        firstFailure = count + access;
        kind = how;
    }
    void failNoMore() { firstFailure = ~std::size_t{0}; }
    Lines takeAccesses() { return std::exchange(accesses, {}); }
    /// Trace lines that the rules write.
    void trace(int level, const std::string& text)
    {
        traces.push_back(traceLine(128, 13, level, text));
    }
    Lines takeTraces() { return std::exchange(traces, {}); }

    Bytes bytes;

private:
    void note(const char* what, unsigned int offset, std::size_t length)
    {
        accesses.push_back(fmt::format("{}{}+{}", what, offset, length));
        if (++count >= firstFailure) {
            throw kind;
        }
    }

    Lines accesses;
    Lines traces;
    std::size_t count = 0;
    std::size_t firstFailure = ~std::size_t{0};
    FailureKind kind = FailureKind::DEVICE;
};

struct Member {
    int item = 0;
    unsigned int typeLength = 0;
    bool isCoded = false;
    unsigned int length = 0; ///< 16 bits
    Bytes data;

    static Member fixed(int item, const Bytes& value)
    {
        return {item, 0, false, static_cast<unsigned int>(value.size() % 65536), value};
    }
    static Member reserved(unsigned int size) { return fixed(RESERVED, Bytes(size, 0)); }

    /// What the type/length byte of a coded field is after a change.
    void declareLength()
    {
        if (isCoded) {
            typeLength = (data.size() | 0xC0) % 256;
            length = static_cast<unsigned int>(data.size() % 65536);
        }
    }
    /// The value with the declared length.
    Bytes sized() const
    {
        Bytes value = data;
        value.resize(length, 0);
        return value;
    }
};

/// The bytes of an area, with zeroes as far as anyone looks beyond them.
class Image {
public:
    explicit Image(Bytes image) : bytes(std::move(image)) {}
    unsigned char at(std::size_t place) const { return place < bytes.size() ? bytes[place] : 0; }
    Bytes from(std::size_t place, std::size_t length) const
    {
        Bytes taken;
        for (std::size_t i = 0; i < length; ++i) {
            taken.push_back(at(place + i));
        }
        return taken;
    }
    Member coded(int item, std::size_t place) const
    {
        Member member;
        member.item = item;
        member.typeLength = at(place);
        member.isCoded = true;
        member.length = at(place) % 64;
        member.data = from(place + 1, member.length);
        return member;
    }

private:
    Bytes bytes;
};

inline unsigned char sumOf(const Bytes& bytes, std::size_t count)
{
    unsigned int sum = 0;
    for (std::size_t i = 0; i < count && i < bytes.size(); ++i) {
        sum += bytes[i];
    }
    return static_cast<unsigned char>(sum % 256);
}

/// A number kept to 16 bits with a sign.
inline int signed16(long long number)
{
    const long long low = number & 0xFFFF;
    return static_cast<int>(low >= 0x8000 ? low - 0x10000 : low);
}

class Area {
public:
    Area(Device& device, int areaOffset, int areaId, int mode)
        : rw(device), offset(areaOffset), id(areaId)
    {
        const Layout* layout = nullptr;
        for (const Layout& one : layouts()) {
            if (one.id == areaId) {
                layout = &one;
            }
        }
        if (layout == nullptr) {
            throw failed(20004,
                         fmt::format("FRUArea Constractor :: Not Support alloc table. id={}", id));
        }
        Bytes bytes;
        try {
            bytes = readAreaData(layout->fixedSize, mode);
        } catch (const Failure&) {
            rw.trace(0, "FRUArea::FRUArea readAreaData");
            throw;
        } catch (FailureKind kind) {
            if (kind == FailureKind::DEVICE) {
                rw.trace(0, "FRUArea::FRUArea readAreaData");
            }
            throw;
        }
        const Image image(bytes);
        const unsigned int pos = setAreaData(image, layout->rows);
        if (isInformationArea()) {
            setAreaEndData(image, pos);
        }
    }

    Bytes readAreaData(unsigned int fixedSize, int mode)
    {
        size = fixedSize % 256;
        if (isInformationArea()) {
            size = read(2, "FRUArea::readAreaData(2Byte read)")[1] * 8U % 256;
        }
        if (size == 0) {
            throw failed(20003, "FRUArea::readAreaData area_length is 0 ");
        }
        const Bytes bytes = read(size, "FRUArea::readAreaData read");
        const bool isProcessorBlock = id >= 50 && id <= 58;
        if (!isProcessorBlock && mode == 0 && sumOf(bytes, size) != 0) {
            throw failed(20003, fmt::format("CheckSum({})", id));
        }
        return bytes;
    }

    unsigned int setAreaData(const Image& image, const std::vector<Row>& rows)
    {
        unsigned int pos = 0;
        for (const Row& row : rows) {
            if (row.size == 0 && image.at(pos) == END_BYTE) {
                break;
            }
            if (pos + row.size > size) {
                throw failed(20003, fmt::format("Table length Abnormal. area_id={}", id));
            }
            if (row.size == 0) {
                members.push_back(image.coded(row.item, pos));
                pos += members.back().length + 1;
            } else {
                members.push_back(Member::fixed(row.item, image.from(pos, row.size)));
                pos += row.size;
            }
        }
        return pos;
    }

    void setAreaEndData(const Image& image, unsigned int pos)
    {
        if (id == 1 || id == 2) {
            members.push_back(Member::reserved(size - 1 - pos));
            members.push_back(Member::fixed(CHECKSUM, image.from(size - 1, 1)));
            return;
        }
        while (image.at(pos) != END_BYTE) {
            if (pos + 1 > size) {
                return;
            }
            members.push_back(image.coded(CUSTOM, pos));
            pos += members.back().length + 1;
        }
        if (pos + 1 > size) {
            throw failed(20003, fmt::format("End Code Area offset Abnormal. area_id={}", id));
        }
        members.push_back(Member::fixed(END_MARKER, image.from(pos, 1)));
        pos += 1;
        if (pos + 1 > size) {
            throw failed(20003, fmt::format("Unused space Area offset Abnormal. area_id={}", id));
        }
        members.push_back(Member::fixed(RESERVED, image.from(pos, size - 1 - pos)));
        pos = size - 1;
        members.push_back(Member::fixed(CHECKSUM, image.from(pos, 1)));
    }

    unsigned int calcAreaSize() const
    {
        unsigned int total = 0;
        for (const Member& member : members) {
            total += member.length + (member.isCoded ? 1 : 0);
        }
        return total;
    }

    Member* find(int item)
    {
        for (Member& member : members) {
            if (member.item == item) {
                return &member;
            }
        }
        return nullptr;
    }

    Member& getItemMember(int item)
    {
        Member* const member = find(item);
        if (member == nullptr) {
            throw failed(20004,
                         fmt::format("FRUData::getItemMember Not Found item. (item{})", item));
        }
        return *member;
    }

    void updateItem(int item, Bytes& value)
    {
        Member* const member = find(item);
        if (member != nullptr) {
            if (member->isCoded) {
                unusedUpdate(signed16(static_cast<long long>(value.size()) -
                                      static_cast<long long>(member->typeLength % 64)));
            } else if (member->length > 1 && value.size() < member->length) {
                value.resize(member->length, 0);
            }
            member->data = value;
            member->declareLength();
        }
        dirty = true;
    }

    void unusedUpdate(int delta)
    {
        Member* const unused = find(RESERVED);
        if (unused == nullptr) {
            lengthUpdate(delta);
            return;
        }
        const int rest = signed16(static_cast<int>(unused->length) - delta);
        if (rest < 0) {
            // The length byte becomes smaller, not larger.
            lengthUpdate(rest);
            *unused = Member::reserved(0);
        } else {
            *unused = Member::reserved(static_cast<unsigned int>(rest));
        }
    }

    void lengthUpdate(int delta)
    {
        const int second = members.size() < 2 ? TERMINATOR : members[1].item;
        if (second != AREA_LENGTH) {
            throw failed(20004, "FRUArea::lengthUpdate  Not Length on FRUMember(%d)", second);
        }
        Bytes& data = members[1].data;
        const int before = data.empty() ? 0 : data[0];
        data = {static_cast<unsigned char>((before * 8 + delta) / 8 & 0xFF)};
    }

    void syncItem(int item)
    {
        const Member& member = getItemMember(item);
        unsigned int position = static_cast<unsigned int>(offset);
        for (const Member& before : members) {
            if (before.item == item) {
                break;
            }
            position += before.length;
        }
        rw.write(position, member.sized());
    }

    void syncFRU()
    {
        const unsigned int n = calcAreaSize();
        Bytes lengthByte = {static_cast<unsigned char>(n / 8 % 256)};
        updateItem(AREA_LENGTH, lengthByte);
        Bytes image;
        for (const Member& member : members) {
            if (member.item == CHECKSUM) {
                continue;
            }
            if (member.isCoded) {
                image.push_back(static_cast<unsigned char>(member.typeLength));
            }
            image = image + member.sized();
        }
        if (find(CHECKSUM) != nullptr) {
            Bytes sum = {static_cast<unsigned char>((256 - sumOf(image, n - 1)) % 256)};
            updateItem(CHECKSUM, sum);
            image.push_back(sum[0]);
        }
        image.resize(n, 0);
        rw.write(static_cast<unsigned int>(offset), image);
    }

    Device& rw;
    int offset;
    std::vector<Member> members;
    unsigned int size = 0; ///< 8 bits
    int id;
    bool dirty = false;

private:
    bool isInformationArea() const { return id >= 1 && id <= 49; }

    Bytes read(unsigned int length, const char* text)
    {
        try {
            return rw.read(static_cast<unsigned int>(offset), length);
        } catch (FailureKind kind) {
            if (kind == FailureKind::DEVICE) {
                rw.trace(0, text);
            }
            throw;
        }
    }
};

/// A whole image, whose areas are read on first use.
class Data {
public:
    Data(Device& device, int layout) : rw(device), cpu(layout)
    {
        try {
            open(0, cpu == 1 ? 50 : 0, 0, 0);
        } catch (const Failure&) {
            rw.trace(100, "FRURWif::read CommonHeader read");
            throw;
        } catch (FailureKind kind) {
            if (kind == FailureKind::DEVICE) {
                rw.trace(100, "FRURWif::read CommonHeader read");
            }
            throw;
        }
    }

    unsigned int getAreaOffset(int id)
    {
        struct Place {
            int item;
            unsigned int unit;
        };
        const std::map<int, Place> places = {
            {1, {19, 8}},  {2, {19, 8}},  {3, {20, 8}},  {4, {21, 8}},  {5, {22, 8}},
            {6, {23, 8}},  {51, {50, 1}}, {52, {51, 1}}, {53, {52, 1}}, {54, {53, 1}},
            {55, {54, 1}}, {56, {55, 1}}, {57, {56, 1}}, {58, {58, 1}}};
        const auto found = places.find(id);
        if (found == places.end()) {
            return 0;
        }
        const Member& member = areas.at(0)->getItemMember(found->second.item);
        return (member.data.empty() ? 0 : member.data[0]) * found->second.unit;
    }

    Area& getAreaObject(int id, int mode)
    {
        if (areas.count(id) == 0) {
            const unsigned int offset = getAreaOffset(id);
            if (offset == 0) {
                throw failed(20019, fmt::format("FRUData::getAreaObject. parameter={}", id));
            }
            open(id, id, offset, mode);
        }
        return *areas.at(id);
    }

    void getItem(int areaId, int item, int mode, Bytes& out)
    {
        Area& area = getAreaObject(areaId, mode);
        if (item >= 61 && item <= 63) {
            const Bytes core = twoBytesOf(area, 81);
            out = {static_cast<unsigned char>(item == 61   ? core[0] % 16
                                              : item == 62 ? core[1] / 16
                                                           : core[1] % 16)};
        } else if (item == 82) {
            out = {static_cast<unsigned char>(twoBytesOf(area, 81)[0] / 16 % 2)};
        } else if (item == 64 || item == 65 || item == 69 || item == 83 || item == 84 ||
                   item == 85) {
            const Member* const member = area.find(item);
            const bool hasTwo = member != nullptr && member->data.size() == 2;
            out = hasTwo ? Bytes({member->data[1], member->data[0]}) : Bytes({0, 0});
        } else if (const Member* const member = area.find(item); member != nullptr) {
            out = member->data;
        }
    }

    void updateItem(int areaId, int item, Bytes& value)
    {
        if (cpu == 1) {
            throw failed(20003, "Not Support CPU Write");
        }
        getAreaObject(areaId, 0).updateItem(item, value);
    }

    void syncFRU()
    {
        for (auto& [key, area] : areas) {
            if (area->dirty) {
                area->syncFRU();
                area->dirty = false;
            }
        }
    }

    std::map<int, std::unique_ptr<Area>> areas;

private:
    void open(int key, int id, unsigned int offset, int mode)
    {
        auto area = std::make_unique<Area>(rw, static_cast<int>(offset), id, mode);
        areas[key] = std::move(area);
    }

    /// The first two bytes of a field; those that it lacks are 0.
    static Bytes twoBytesOf(Area& area, int item)
    {
        const Member* const member = area.find(item);
        Bytes bytes = member == nullptr ? Bytes() : member->data;
        bytes.resize(2, 0);
        return bytes;
    }

    Device& rw;
    int cpu;
};

}

}

#endif
