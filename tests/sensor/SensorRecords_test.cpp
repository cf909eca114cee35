// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <recordkit/sensor/CompactSensorRecord.h>
#include <recordkit/sensor/FullSensorRecord.h>

#include "support/Bytes.h"
#include "support/Failures.h"

using namespace TAVLib::RecordKit;
using namespace testing_support;

namespace {

template <typename Record> struct Layout;
template <> struct Layout<FullSensorRecord> {
    static constexpr unsigned int FIXED = 48;
    static constexpr unsigned int POSITIVE = 42;
    static constexpr unsigned int NEGATIVE = 43;
};
template <> struct Layout<CompactSensorRecord> {
    static constexpr unsigned int FIXED = 32;
    static constexpr unsigned int POSITIVE = 25;
    static constexpr unsigned int NEGATIVE = 26;
};

template <typename Record> class SensorRecord : public testing::Test {
protected:
    static constexpr unsigned int FIXED = Layout<Record>::FIXED;
    static constexpr unsigned int STRING = FIXED - 1; // the type/length byte

    /// Counting bytes with an id string of this type/length byte, and then `tail`.
    static Bytes image(unsigned char typeLength, const Bytes& tail = {})
    {
        Bytes bytes = sequence(FIXED);
        bytes[STRING] = typeLength;
        return bytes + tail;
    }
    /// The whole storage, whatever the length field says.
    static Bytes storage(const Record& record)
    {
        Record copy(record);
        copy.setIDStringLength(16);
        return imageOf(copy);
    }
};
using Records = testing::Types<FullSensorRecord, CompactSensorRecord>;
TYPED_TEST_SUITE(SensorRecord, Records, );

/// One setter, called with a value, and the matching getter.
template <typename Record> struct ByteField {
    unsigned char (Record::*get)() const;
    void (Record::*set)(unsigned char);
    unsigned int offset;
};

template <typename Record> struct WordField {
    unsigned short (Record::*get)() const;
    void (Record::*set)(unsigned short);
    unsigned int offset;
};

}

TYPED_TEST(SensorRecord, ByteFieldsHaveTheirOffsets)
{
    using R = TypeParam;
    const ByteField<R> fields[] = {
        {&R::getRecordType, &R::setRecordType, 3},
        {&R::getRecordLength, &R::setRecordLength, 4},
        {&R::getSensorOwnerID, &R::setSensorOwnerID, 5},
        {&R::getSensorNumber, &R::setSensorNumber, 7},
        {&R::getEntityID, &R::setEntityID, 8},
        {&R::getEntityInstance, &R::setEntityInstance, 9},
        {&R::getSensorInitialization, &R::setSensorInitialization, 10},
        {&R::getSensorCapabilities, &R::setSensorCapabilities, 11},
        {&R::getSensorType, &R::setSensorType, 12},
        {&R::getEvtReadTypeCode, &R::setEvtReadTypeCode, 13},
        {&R::getSensorUnits1, &R::setSensorUnits1, 20},
        {&R::getSensorUnits2, &R::setSensorUnits2, 21},
        {&R::getSensorUnits3, &R::setSensorUnits3, 22},
        {&R::getPositiveGoingThresholdHyst, &R::setPositiveGoingThresholdHyst, Layout<R>::POSITIVE},
        {&R::getNegativeGoingThresholdHyst, &R::setNegativeGoingThresholdHyst, Layout<R>::NEGATIVE},
    };
    for (const ByteField<R>& field : fields) {
        auto record = fromBytes<R>(this->image(0xC0));
        EXPECT_EQ((record.*field.get)(), field.offset);
        (record.*field.set)(0xA5);
        EXPECT_EQ((record.*field.get)(), 0xA5);
        Bytes expected = this->image(0xC0);
        expected[field.offset] = 0xA5;
        EXPECT_EQ(imageOf(record), expected) << field.offset;
    }
}

TYPED_TEST(SensorRecord, WordFieldsAreLowByteFirst)
{
    using R = TypeParam;
    const WordField<R> fields[] = {
        {&R::getRecordID, &R::setRecordID, 0},
        {&R::getAssertEventMask, &R::setAssertEventMask, 14},
        {&R::getDeassertEventMask, &R::setDeassertEventMask, 16},
        {&R::getDiscreteReadMask, &R::setDiscreteReadMask, 18},
    };
    for (const WordField<R>& field : fields) {
        auto record = fromBytes<R>(this->image(0xC0));
        EXPECT_EQ((record.*field.get)(), (field.offset + 1) << 8 | field.offset);
        (record.*field.set)(0x1234);
        EXPECT_EQ((record.*field.get)(), 0x1234);
        Bytes expected = this->image(0xC0);
        expected[field.offset] = 0x34;
        expected[field.offset + 1] = 0x12;
        EXPECT_EQ(imageOf(record), expected) << field.offset;
    }
}

TYPED_TEST(SensorRecord, ChannelAndLunShareAByte)
{
    Bytes bytes = this->image(0xC0);
    bytes[6] = 0xFF;
    auto record = fromBytes<TypeParam>(bytes);
    EXPECT_EQ(record.getChannelNumber(), 15);
    EXPECT_EQ(record.getSensorOwnerLUN(), 3);
    record.setChannelNumber(0x12);
    EXPECT_EQ(imageOf(record)[6], 0x2F);
    record.setSensorOwnerLUN(0xFD);
    EXPECT_EQ(imageOf(record)[6], 0x2D);
    bytes[6] = 0;
    load(record, bytes);
    record.setChannelNumber(0x1F);
    EXPECT_EQ(imageOf(record)[6], 0xF0);
    record.setSensorOwnerLUN(0xFF);
    EXPECT_EQ(imageOf(record)[6], 0xF3);
}

TYPED_TEST(SensorRecord, AnalogDataFormatIsInTheUnits)
{
    TypeParam record;
    for (unsigned int format = 0; format < 4; ++format) {
        record.setSensorUnits1(static_cast<unsigned char>(format << 6 | 0x3F));
        EXPECT_EQ(record.getAnalogDataFormat(), format);
    }
}

TYPED_TEST(SensorRecord, NewRecordIsZero)
{
    const TypeParam record;
    EXPECT_EQ(imageOf(record), Bytes(this->FIXED, 0));
    EXPECT_EQ(this->storage(record), [this] {
        Bytes zero(this->FIXED + 16, 0);
        zero[this->STRING] = 16;
        return zero;
    }());
}

TYPED_TEST(SensorRecord, ImageWithoutAStringIsTaken)
{
    auto record = fromBytes<TypeParam>(this->image(0xD0, Bytes(16, 0x77)));
    ASSERT_TRUE(load(record, this->image(0xC0)));
    EXPECT_EQ(record.getSerializedSize(), this->FIXED);
    EXPECT_EQ(record.getCurrentRecordLength(), this->FIXED - 5);
    // The tail is cleared.
    EXPECT_EQ(part(this->storage(record), this->FIXED, 16), Bytes(16, 0));
}

TYPED_TEST(SensorRecord, ShortImageIsRefusedAndChangesNothing)
{
    auto record = fromBytes<TypeParam>(this->image(0xC2, {'A', 'B'}));
    for (unsigned int length = 0; length < this->FIXED; ++length) {
        EXPECT_FALSE(load(record, Bytes(length, 0xEE)));
    }
    EXPECT_EQ(imageOf(record), this->image(0xC2, {'A', 'B'}));
}

TYPED_TEST(SensorRecord, CutStringLeavesAHalfUpdatedRecord)
{
    auto record = fromBytes<TypeParam>(this->image(0xC3, {'o', 'l', 'd'}));
    Bytes cut = Bytes(this->FIXED, 0x55) + Bytes({'n', 'e'});
    cut[this->STRING] = 0xC5;
    EXPECT_FALSE(load(record, cut));
    // The fixed part is new, the string is the old one.
    EXPECT_EQ(record.getSensorNumber(), 0x55);
    EXPECT_EQ(record.getIDStringLength(), 5U);
    EXPECT_EQ(imageOf(record), part(cut, 0, this->FIXED) + Bytes({'o', 'l', 'd', 0, 0}));
}

TYPED_TEST(SensorRecord, EveryStringLengthIsTakenWhole)
{
    for (unsigned char length = 0; length <= 16; ++length) {
        const Bytes bytes =
            this->image(static_cast<unsigned char>(0xC0 | length), sequence(length, 'A'));
        TypeParam record;
        if (length > 0) {
            EXPECT_FALSE(load(record, part(bytes, 0, bytes.size() - 1)));
        }
        ASSERT_TRUE(load(record, bytes));
        EXPECT_EQ(imageOf(record), bytes);
        // Bytes after the string are ignored.
        ASSERT_TRUE(load(record, bytes + Bytes({0xEE, 0xEE})));
        EXPECT_EQ(imageOf(record), bytes);
        EXPECT_EQ(record.getCurrentRecordLength(), this->FIXED + length - 5);
    }
}

TYPED_TEST(SensorRecord, LengthFieldAboveSixteenStaysAndReadsAsZeroes)
{
    for (unsigned char length = 17; length <= 31; ++length) {
        const Bytes bytes =
            this->image(static_cast<unsigned char>(0xC0 | length), sequence(16, 'A'));
        TypeParam record;
        EXPECT_FALSE(load(record, part(bytes, 0, bytes.size() - 1)));
        ASSERT_TRUE(load(record, bytes));
        EXPECT_EQ(record.getIDStringLength(), length);
        EXPECT_EQ(record.getSerializedSize(), this->FIXED + length);
        EXPECT_EQ(imageOf(record), bytes + Bytes(length - 16U, 0));
        Bytes string(40, 0xEE);
        EXPECT_EQ(record.getIDStringBytes(string.data(), 40), length);
        EXPECT_EQ(string, sequence(16, 'A') + Bytes(length - 16U, 0) + Bytes(40U - length, 0xEE));
    }
}

TYPED_TEST(SensorRecord, ShortBufferStaysUntouched)
{
    const auto record = fromBytes<TypeParam>(this->image(0xC2, {'A', 'B'}));
    Bytes buffer(80, 0xEE);
    EXPECT_EQ(record.getSerialized(buffer.data(), this->FIXED + 1), 0U);
    EXPECT_EQ(buffer, Bytes(80, 0xEE));
    EXPECT_EQ(record.getSerialized(buffer.data(), 80), this->FIXED + 2);
    EXPECT_EQ(part(buffer, this->FIXED + 2, 1), Bytes({0xEE}));
}

TYPED_TEST(SensorRecord, StringTypeAndLengthShareAByte)
{
    TypeParam record;
    unsigned char& byte = *record.getIDStringStruct();
    EXPECT_EQ(record.getIDStringStruct(), record.getIDStringStructConst());
    byte = 0xFF;
    record.setIDStringType(1);
    EXPECT_EQ(byte, 0x7F);
    record.setIDStringType(0xFE);
    EXPECT_EQ(byte, 0xBF);
    EXPECT_EQ(record.getIDStringType(), 2);
    record.setIDStringLength(15);
    EXPECT_EQ(byte, 0xAF);
    record.setIDStringLength(16);
    EXPECT_EQ(byte, 0xB0);
    record.setIDStringLength(40);
    EXPECT_EQ(byte, 0xB0);
    record.setIDStringLength(0);
    EXPECT_EQ(byte, 0xA0);
    record.setIDStringLength(~0U);
    EXPECT_EQ(byte, 0xB0);
}

TYPED_TEST(SensorRecord, StringIsSetWithItsLengthAndTheRecordLength)
{
    auto record = fromBytes<TypeParam>(this->image(0x30, Bytes(16, 0x77)));
    record.setIDStringBytes(textBytes("ABCD").data(), 4, 3);
    const Bytes storage = this->storage(record);
    EXPECT_EQ(*record.getIDStringStructConst(), 0xE4); // bit 5 stays
    EXPECT_EQ(record.getRecordLength(), this->FIXED + 4 - 5);
    // The bytes after the new string stay too.
    EXPECT_EQ(part(storage, this->FIXED, 16), textBytes("ABCD") + Bytes(12, 0x77));
    EXPECT_EQ(record.getIDStringType(), 3);
    record.setIDStringBytes(textBytes("0123456789ABCDEF").data(), 16, 2);
    EXPECT_EQ(record.getIDStringLength(), 16U);
    EXPECT_EQ(record.getRecordLength(), this->FIXED + 16 - 5);
}

TYPED_TEST(SensorRecord, StringOfMoreThanSixteenBytesThrowsAndChangesNothing)
{
    auto record = fromBytes<TypeParam>(this->image(0xC2, {'A', 'B'}));
    const Bytes before = this->storage(record);
    EXPECT_EQ(thrownBy([&] { record.setIDStringBytes(sequence(17).data(), 17, 3); }),
              "1:83:0x0700 act 1 det 0x0B00 msg 20034 (setIDStringBytes(len), 17)");
    EXPECT_EQ(this->storage(record), before);
    EXPECT_EQ(record.getIDStringLength(), 2U);
}

TYPED_TEST(SensorRecord, StringIsReadUpToTheBuffer)
{
    const auto record = fromBytes<TypeParam>(this->image(0xCA, sequence(10, 'A')));
    Bytes buffer(12, 0xEE);
    EXPECT_EQ(record.getIDStringBytes(buffer.data(), 3), 3U);
    EXPECT_EQ(buffer, sequence(3, 'A') + Bytes(9, 0xEE));
    EXPECT_EQ(record.getIDStringBytes(buffer.data(), 0), 0U);
    EXPECT_EQ(record.getIDStringBytes(buffer.data(), 12), 10U);
    EXPECT_EQ(buffer, sequence(10, 'A') + Bytes(2, 0xEE));
    EXPECT_EQ(TypeParam().getIDStringBytes(buffer.data(), 12), 0U);
}

TYPED_TEST(SensorRecord, WorksThroughEachOfItsBases)
{
    auto record = fromBytes<TypeParam>(this->image(0xC2, {'A', 'B'}));
    TAVLib::SerializableObject& image = record;
    RecordSensorCommon& common = record;
    RecordHeader& header = record;
    EXPECT_EQ(imageOf(image), this->image(0xC2, {'A', 'B'}));
    common.setSensorNumber(0x99);
    header.setRecordID(0x4711);
    EXPECT_EQ(imageOf(image)[7], 0x99);
    EXPECT_EQ(imageOf(image)[0], 0x11);
    EXPECT_TRUE(load(image, this->image(0xC0)));
    EXPECT_EQ(common.getSensorNumber(), 7);
    EXPECT_EQ(common.getCurrentRecordLength(), this->FIXED - 5);
}

TYPED_TEST(SensorRecord, CopiesHaveImagesOfTheirOwn)
{
    auto record = fromBytes<TypeParam>(this->image(0xC2, {'A', 'B'}));
    TypeParam copy(record);
    TypeParam assigned;
    assigned = record;
    record.setSensorNumber(0x99);
    EXPECT_EQ(copy.getSensorNumber(), 7);
    EXPECT_EQ(assigned.getSensorNumber(), 7);
    copy.setSensorNumber(0x11);
    EXPECT_EQ(record.getSensorNumber(), 0x99);
    const TypeParam& itself = assigned;
    assigned = itself;
    EXPECT_EQ(imageOf(assigned), this->image(0xC2, {'A', 'B'}));
}

TEST(RecordSensorCommon, LongestStringHasSixteenBytes)
{
    EXPECT_EQ(RecordSensorCommon::VARIABLE_FIELD_LENGTH + 0, 16U);
}

namespace {

/// Says when it goes.
template <typename Record> struct Watched : Record {
    explicit Watched(bool& flag) : isGone(flag) {}
    ~Watched() override { isGone = true; }
    bool& isGone;
};

template <typename Record> void expectLoadedFromItself(std::size_t fixedSize)
{
    Bytes image = sequence(fixedSize - 1, 1) + Bytes({0xC5}) + textBytes("FAN 1");
    auto record = fromBytes<Record>(image);
    // The image begins fixedSize - 1 bytes before the type/length byte.
    const unsigned char* const own = record.getIDStringStruct() - (fixedSize - 1);
    EXPECT_TRUE(record.setSerialized(own, static_cast<unsigned int>(image.size())));
    EXPECT_EQ(imageOf(record), image);
    // What was after a string that got shorter is zero.
    record.setIDStringLength(3);
    EXPECT_TRUE(record.setSerialized(own, static_cast<unsigned int>(fixedSize + 16)));
    EXPECT_EQ(part(Bytes(own, own + fixedSize + 16), fixedSize, 16),
              textBytes("FAN") + Bytes(13, 0));
}

}

TEST(FullSensorRecord, IsLoadedFromItsOwnImage)
{
    expectLoadedFromItself<FullSensorRecord>(48);
}

TEST(CompactSensorRecord, IsLoadedFromItsOwnImage)
{
    expectLoadedFromItself<CompactSensorRecord>(32);
}

TEST(SensorRecords, AreDeletedWholeThroughEitherBase)
{
    bool isGone = false;
    delete static_cast<TAVLib::SerializableObject*>(new Watched<FullSensorRecord>(isGone));
    EXPECT_TRUE(isGone);
    isGone = false;
    delete static_cast<TAVLib::SerializableObject*>(new Watched<CompactSensorRecord>(isGone));
    EXPECT_TRUE(isGone);
    isGone = false;
    delete static_cast<RecordHeader*>(new Watched<CompactSensorRecord>(isGone));
    EXPECT_TRUE(isGone);
}
