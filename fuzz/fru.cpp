// SPDX-License-Identifier: Apache-2.0
// FRU images in both layouts: opened, every item of every area read, edited and written back. The
// first byte of the input chooses; the others are the device. Then its multirecords are decoded,
// and also the input itself as a record of the type that its second byte names: every byte of a
// record is in a field, and no field goes beyond it.
#include <algorithm>
#include <set>
#include <vector>

#include <recordkit/fru/FRUData.h>
#include <recordkit/host/TraceLog.h>
#include <recordkit/inspect/fru/FruImage.h>
#include <recordkit/platform/PException.h>

#include "Fuzz.h"

namespace {

/// Nothing after its end can be read.
class Device : public TAVLib::FRURWif {
public:
    Device(const unsigned char* data, std::size_t size) : bytes(data, data + size) {}

    int read(unsigned int offset, unsigned int length, unsigned char* buffer) override
    {
        check(offset, length);
        std::copy_n(bytes.begin() + static_cast<long>(offset), length, buffer);
        return static_cast<int>(length);
    }
    int write(unsigned int offset, unsigned int length, const unsigned char* buffer) override
    {
        check(offset, length);
        std::copy_n(buffer, length, bytes.begin() + static_cast<long>(offset));
        return static_cast<int>(length);
    }

private:
    void check(unsigned int offset, unsigned int length) const
    {
        if (offset > bytes.size() || length > bytes.size() - offset) {
            throw TAVLib::PException(1, 200, 1, 1, 1, 20031, reinterpret_cast<long>("end"), 0, 0, 0,
                                     0, 0, 0, 0);
        }
    }

    std::vector<unsigned char> bytes;
};

template <typename Action> void attempt(const Action& action)
{
    try {
        action();
    } catch (const TAVLib::PException&) {
        // How the library reports a damaged image. Anything else is a finding.
    }
}

void useItem(FRUData& fru, FRU_AREA area, FRU_ITEM item, FRUArea::CSUM_MODE mode,
             const std::string& value)
{
    attempt([&] {
        std::string out;
        fru.getItem(area, item, out, mode);
    });
    attempt([&] {
        std::string out;
        unsigned char typeLength = 0;
        fru.getItem(area, item, out, typeLength, mode);
    });
    attempt([&] {
        unsigned char out[256];
        fru.getItemData(area, item, out);
    });
    attempt([&] {
        std::string changed = value;
        fru.updateItem(area, item, changed);
    });
    attempt([&] { fru.syncItem(area, item); });
}

/// The items that an area has, those computed from others, and one that no area has.
std::set<FRU_ITEM> itemsOf(FRUData& fru, FRU_AREA area, FRUArea::CSUM_MODE mode)
{
    std::set<FRU_ITEM> items = {FRU_ITEM_TERMINATOR};
    attempt([&] {
        for (const FRUMember* const member : fru.getAreaObject(area, mode)->getMembers()) {
            items.insert(member->getItem());
        }
        items.insert({FRU_ITEM_CPU_MODEL, FRU_ITEM_CPU_CORE_HIGH, FRU_ITEM_CPU_CORE_LOW2,
                      FRU_ITEM_CPU_CORE_FLAG});
    });
    return items;
}

void checkRecord(const recordkit::inspect::MultiRecord& record, unsigned int offset,
                 std::size_t size)
{
    std::vector<bool> isShown(size, false);
    for (const recordkit::inspect::MultiRecordField& field : record.fields) {
        fuzz::expect(field.offset >= offset && field.width > 0);
        fuzz::expect(field.offset - offset + field.width <= size);
        fuzz::expect(field.low <= field.high && field.high < 8 * field.width);
        fuzz::expect(record.findField(field.name) != nullptr);
        std::fill_n(isShown.begin() + static_cast<long>(field.offset - offset), field.width, true);
    }
    fuzz::expect(std::count(isShown.begin(), isShown.end(), false) == 0);
    fuzz::expect(record.missing == 0 || record.missing > size);
}

void decodeRecords(const unsigned char* data, std::size_t size)
{
    using namespace recordkit::inspect;
    for (const FruMultiRecord& record : parseFruImage(std::string(data, data + size)).records) {
        const auto length = static_cast<unsigned int>(record.bytes.size());
        checkRecord(record.content, record.extent.end() - length, length);
    }
    if (size != 0) {
        const ByteView bytes = ByteView(data, size).part(1, 0xFF);
        const std::vector<MultiRecord> records =
            decodeMultiRecords({{data[0], 8, bytes}, {data[0], 8, bytes}});
        checkRecord(records.at(0), 8, bytes.size());
        compareLoadAndSupply(records);
    }
}

}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size)
{
    static const auto before = TAVLib::host::setTraceSink([](const TAVLib::host::TraceLine&) {});
    if (size == 0) {
        return 0;
    }
    decodeRecords(data + 1, size - 1);
    const FRU_CPU layout = (data[0] & 1) != 0 ? FRU_CPU_ROM : FRU_CPU_NONE;
    const auto mode = (data[0] & 2) != 0 ? FRUArea::CSUM_IGNORE : FRUArea::CSUM_CHECK;
    const std::string value((data[0] >> 2) & 0x3F, 'x');
    Device device(data + 1, size - 1);
    attempt([&] {
        FRUData fru(device, layout);
        for (int area = FRU_AREA_COMMON_HEADER; area <= FRU_AREA_CPU_OTHER + 1; ++area) {
            const auto id = static_cast<FRU_AREA>(area);
            for (const FRU_ITEM item : itemsOf(fru, id, mode)) {
                useItem(fru, id, item, mode, value);
            }
        }
        fru.syncFRU();
    });
    return 0;
}
