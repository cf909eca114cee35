// SPDX-License-Identifier: Apache-2.0
// Images made to break readers. Each is opened, read completely, edited and written back; the tests
// check what the result must be, and the sanitizers see the rest.
#include <gtest/gtest.h>

#include <recordkit/fru/FRUData.h>

#include "MemoryDevice.h"

using namespace testing_support;

namespace {

constexpr FRU_AREA AREAS[] = {FRU_AREA_INTERNAL_A, FRU_AREA_INTERNAL_B, FRU_AREA_CHASSIS,
                              FRU_AREA_BOARD,      FRU_AREA_PRODUCT,    FRU_AREA_MULTIRECORD};

/// A header with a right checksum; areas at these offsets in units of 8 bytes.
Bytes header(unsigned char internal, unsigned char chassis, unsigned char board,
             unsigned char product, unsigned char records)
{
    return withChecksum({1, internal, chassis, board, product, records, 0});
}

Bytes header(unsigned char board)
{
    return header(0, 0, board, 0, 0);
}

/// A device that ends; reads and writes after its end throw.
class EndingDevice : public MemoryDevice {
public:
    explicit EndingDevice(const Bytes& image) : MemoryDevice(image) {}

    int read(unsigned int offset, unsigned int length, unsigned char* buffer) override
    {
        check(offset, length);
        return MemoryDevice::read(offset, length, buffer);
    }
    int write(unsigned int offset, unsigned int length, const unsigned char* buffer) override
    {
        check(offset, length);
        return MemoryDevice::write(offset, length, buffer);
    }

private:
    void check(unsigned int offset, unsigned int length) const
    {
        if (offset > bytes.size() || length > bytes.size() - offset) {
            throw TAVLib::PException(1, 9, 9, 0x12, 0x345, 20031, reinterpret_cast<long>("end"), 0,
                                     0, 0, 0, 0, 0, 0);
        }
    }
};

/// The result of opening an area: "ok", or the failure's text.
std::string opening(FRUData& fru, FRU_AREA id, FRUArea::CSUM_MODE mode)
{
    try {
        fru.getAreaObject(id, mode);
        return "ok";
    } catch (const TAVLib::PException& e) {
        return e.getParameter(0);
    }
}

/// Opens, reads, edits and writes back all there is, whatever fails on the way.
void useWhole(TAVLib::FRURWif& device, FRU_CPU layout)
{
    try {
        FRUData fru(device, layout);
        for (int id = FRU_AREA_COMMON_HEADER; id <= FRU_AREA_CPU_OTHER; ++id) {
            const auto area = static_cast<FRU_AREA>(id);
            if (opening(fru, area, FRUArea::CSUM_IGNORE) != "ok") {
                continue;
            }
            for (int item = 0; item <= FRU_ITEM_TERMINATOR; ++item) {
                std::string value;
                fru.getItem(area, static_cast<FRU_ITEM>(item), value, FRUArea::CSUM_IGNORE);
                if (layout == FRU_CPU_NONE) {
                    value += "longer";
                    try {
                        fru.updateItem(area, static_cast<FRU_ITEM>(item), value);
                    } catch (const TAVLib::PException&) {
                        // An area whose second field is not its length cannot grow.
                    }
                }
            }
            fru.getAreaObject(area, FRUArea::CSUM_IGNORE)->calcAreaSize();
        }
        fru.syncFRU();
    } catch (const TAVLib::PException&) {
        // Reported as text; nothing else is required for such an image.
    }
}

void useWhole(const Bytes& image)
{
    const TraceCapture trace;
    for (const FRU_CPU layout : {FRU_CPU_NONE, FRU_CPU_ROM}) {
        EndingDevice device(image);
        useWhole(device, layout);
        EXPECT_EQ(device.bytes.size(), image.size());
    }
}

std::string boardOpening(const Bytes& image, FRUArea::CSUM_MODE mode = FRUArea::CSUM_CHECK)
{
    const TraceCapture trace;
    EndingDevice device(image);
    FRUData fru(device);
    return opening(fru, FRU_AREA_BOARD, mode);
}

}

TEST(FRUHostile, AreaLengthsAtTheirLimits)
{
    for (const unsigned char length : {0, 1, 31, 32, 33, 255}) {
        Bytes area = Bytes(2048, 0);
        area[0] = 1;
        area[1] = length;
        area[6] = 0xC1;
        // The byte that the library takes for the checksum, because it stores the size in eight
        // bits.
        const std::size_t size = length * 8 % 256;
        if (size != 0) {
            unsigned char& checksum = area[size - 1];
            checksum = static_cast<unsigned char>(
                0U - std::accumulate(area.begin(), area.begin() + static_cast<long>(size) - 1, 0U));
        }
        const Bytes image = header(1) + area;
        EXPECT_EQ(boardOpening(image), size == 0 ? "FRUArea::readAreaData area_length is 0 " : "ok")
            << int{length};
        useWhole(image);
    }
}

TEST(FRUHostile, OffsetsOutsideTheDevice)
{
    for (const unsigned char offset : {2, 0x7F, 0xFF}) {
        const Bytes image = header(offset, offset, offset, offset, offset) + Bytes(8, 0);
        EXPECT_EQ(boardOpening(image), "end");
        useWhole(image);
    }
}

TEST(FRUHostile, AreasThatOverlap)
{
    const Bytes area = areaOf(32, {0x19, 0, 0, 0, 0xC2, 'A', 'B', 0xC0, 0xC0, 0xC0, 0xC0, 0xC1});
    useWhole(header(1, 1, 1, 1, 1) + area);
    useWhole(header(1, 2, 3, 4, 5) + area + area);
    // An area over the header itself cannot be named: offset 0 is none.
    EXPECT_EQ(boardOpening(header(0, 0, 0, 0, 0)), "FRUData::getAreaObject. parameter=4");
}

TEST(FRUHostile, NoEndMarkerAtAll)
{
    const Bytes image = header(1) + areaOf(16, {0x19, 0, 0, 0, 0xC0, 0xC0, 0xC0, 0xC0, 0xC0, 0xC0});
    EXPECT_EQ(boardOpening(image), "ok");
    useWhole(image);
}

TEST(FRUHostile, EndMarkerAsTheLastByte)
{
    Bytes area = areaOf(16, {0x19, 0, 0, 0, 0xC0, 0xC0, 0xC0, 0xC0, 0xC0, 0xC3, 1, 2, 3});
    area[15] = 0xC1;
    EXPECT_EQ(boardOpening(header(1) + area, FRUArea::CSUM_IGNORE),
              "Unused space Area offset Abnormal. area_id=4");
    useWhole(header(1) + area);
}

TEST(FRUHostile, CodedLengthsBeyondAreaAndDevice)
{
    for (unsigned int place = 6; place < 15; ++place) {
        Bytes fields(13, 0xC0);
        fields[0] = 0x19;
        fields[place - 2] = 0xFF;
        const Bytes image = header(1) + areaOf(16, fields);
        // After a field that ends outside the area there is no place for the table's next field.
        EXPECT_EQ(boardOpening(image), place < 10 ? "Table length Abnormal. area_id=4" : "ok")
            << place;
        useWhole(image);
    }
}

TEST(FRUHostile, LastFieldOfSixtyThreeBytesInAnAreaOfEight)
{
    const TraceCapture trace;
    // Format, length, type, an empty part number, then a serial number whose bytes do not exist.
    EndingDevice device(header(0, 1, 0, 0, 0) + withChecksum({1, 1, 0x17, 0xC0, 0xFF, 'A', 'B'}));
    FRUData fru(device);
    std::string value;
    fru.getItem(FRU_AREA_CHASSIS, FRU_ITEM_SERIAL_NUMBER, value, FRUArea::CSUM_CHECK);
    ASSERT_EQ(value.size(), 63U);
    EXPECT_EQ(value.substr(0, 2), "AB");
    // The checksum byte, then zeroes of the library's own buffer.
    EXPECT_EQ(static_cast<unsigned char>(value[2]), device.bytes.back());
    EXPECT_EQ(value.substr(3), std::string(60, '\0'));
    useWhole(device.bytes);
}

TEST(FRUHostile, AreasInUnusualOrderWithTheInternalOneLast)
{
    const Bytes area =
        areaOf(24, Bytes({0x19, 0, 0, 0, 0xC2, 'A', 'B', 0xC0, 0xC0, 0xC0, 0xC0, 0xC1}));
    const Bytes chassis = areaOf(16, {0x17, 0xC2, 'C', 'D', 0xC0, 0xC1});
    const Bytes image = header(7, 5, 1, 0, 0) + area + Bytes(8, 0) + chassis + areaOf(128, {});
    const TraceCapture trace;
    EndingDevice device(image);
    FRUData fru(device);
    for (const FRU_AREA id : {FRU_AREA_BOARD, FRU_AREA_CHASSIS, FRU_AREA_INTERNAL_A}) {
        EXPECT_EQ(opening(fru, id, FRUArea::CSUM_CHECK), "ok") << id;
    }
    std::string value;
    fru.getItem(FRU_AREA_CHASSIS, FRU_ITEM_PART_NUMBER, value, FRUArea::CSUM_CHECK);
    EXPECT_EQ(value, "CD");
    useWhole(image);
}

TEST(FRUHostile, SixBitFieldsOfEveryLength)
{
    const TraceCapture trace;
    for (unsigned int length = 1; length <= 63; ++length) {
        const Bytes fields = Bytes({0x19, 0, 0, 0, static_cast<unsigned char>(0x80 | length)}) +
                             sequence(length, 0x40) + Bytes({0xC0, 0xC0, 0xC0, 0xC0, 0xC1});
        EndingDevice device(header(1) + areaOf((fields.size() + 10) / 8 * 8, fields));
        FRUData fru(device);
        std::string value;
        unsigned char typeLength = 0;
        fru.getItem(FRU_AREA_BOARD, FRU_ITEM_MANUFACTURER, value, typeLength, FRUArea::CSUM_CHECK);
        EXPECT_EQ(typeLength, 0x80 | length);
        EXPECT_EQ(value, text(sequence(length, 0x40)));
    }
}

namespace {

/// Gives fewer bytes, or other ones, from its second read on.
class FickleDevice : public TAVLib::FRURWif {
public:
    FickleDevice(Bytes image, bool isShort) : bytes(std::move(image)), givesFewer(isShort) {}

    int read(unsigned int offset, unsigned int length, unsigned char* buffer) override
    {
        ++reads;
        const unsigned int given = givesFewer && reads > 1 ? length / 2 : length;
        for (unsigned int i = 0; i < given; ++i) {
            const unsigned char byte = offset + i < bytes.size() ? bytes[offset + i] : 0;
            buffer[i] = reads > 2 && !givesFewer ? static_cast<unsigned char>(~byte) : byte;
        }
        return static_cast<int>(given);
    }
    int write(unsigned int, unsigned int, const unsigned char*) override { return 0; }

private:
    Bytes bytes;
    bool givesFewer;
    unsigned int reads = 0;
};

}

TEST(FRUHostile, ReaderThatGivesFewerOrOtherBytesLater)
{
    const TraceCapture trace;
    const Bytes area = areaOf(32, {0x19, 0, 0, 0, 0xC2, 'A', 'B', 0xC0, 0xC0, 0xC0, 0xC0, 0xC1});
    for (const bool isShort : {true, false}) {
        FickleDevice device(header(1) + area, isShort);
        FRUData fru(device);
        // A short read leaves zeroes, whose length byte is 0; other bytes have another checksum.
        EXPECT_EQ(opening(fru, FRU_AREA_BOARD, FRUArea::CSUM_CHECK),
                  isShort ? "FRUArea::readAreaData area_length is 0 " : "CheckSum(4)");
        FickleDevice again(header(1) + area, isShort);
        useWhole(again, FRU_CPU_NONE);
    }
}

TEST(FRUHostile, DevicesThatAreTooSmall)
{
    const TraceCapture trace;
    for (std::size_t size = 0; size < 8; ++size) {
        EndingDevice device(Bytes(size, 1));
        EXPECT_EQ(thrownBy([&] { FRUData fru(device); }),
                  "1:9:0x0009 act 18 det 0x0345 msg 20031 (end)")
            << size;
    }
    for (std::size_t size = 8; size < 40; ++size) {
        useWhole(header(1, 1, 1, 1, 1) + Bytes(size - 8, 1));
    }
}

TEST(FRUHostile, OnesAndZeroes)
{
    const TraceCapture trace;
    EndingDevice ones(Bytes(256, 0xFF));
    EXPECT_EQ(thrownBy([&] { FRUData fru(ones); }), fruError(20003, "CheckSum(0)"));
    // All zeroes have a right checksum and no areas.
    EndingDevice zeroes(Bytes(256, 0));
    FRUData fru(zeroes);
    for (const FRU_AREA id : AREAS) {
        EXPECT_EQ(opening(fru, id, FRUArea::CSUM_CHECK),
                  "FRUData::getAreaObject. parameter=" + std::to_string(id));
    }
    useWhole(Bytes(256, 0xFF));
    useWhole(Bytes(256, 0));
}
