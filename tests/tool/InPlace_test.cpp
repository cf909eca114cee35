// SPDX-License-Identifier: Apache-2.0
// Writing in place to a device that fails, takes less than it is given, or tears a write.
#include <gtest/gtest.h>

#include "tool/Errors.h"
#include "tool/InPlace.h"

using namespace recordkit::tool;

namespace {

/// What a device does wrong at one call.
enum class Fault { NONE, FAIL, SHORTEN, TEAR, LIE, LOSE_POWER };

/// Bytes in memory that note every write as "offset+size".
class FaultyDevice : public InPlaceTarget {
public:
    FaultyDevice(std::string content, Fault kind, unsigned int call)
        : bytes(std::move(content)), fault(kind), faultyCall(call)
    {
    }

    std::size_t write(std::size_t offset, const char* data, std::size_t size) override
    {
        writes += (writes.empty() ? "" : " ") + std::to_string(offset) + "+" + std::to_string(size);
        const bool isFaulty = calls++ == faultyCall || isDead;
        const std::size_t half = (size + 1) / 2;
        if (!isFaulty || fault == Fault::NONE) {
            bytes.replace(offset, size, data, size);
            return size;
        }
        switch (fault) {
        case Fault::SHORTEN:
            bytes.replace(offset, half, data, half);
            return half;
        case Fault::LIE:
            return size;
        case Fault::TEAR:
            bytes.replace(offset, half, data, half);
            throw fileError("torn");
        case Fault::LOSE_POWER:
            isDead = true;
            throw fileError("dead");
        default:
            throw fileError("failed");
        }
    }

    void synchronise() override { ++synchronised; }

    bool has(std::size_t offset, const std::string& expected) override
    {
        return !isDead && bytes.compare(offset, expected.size(), expected) == 0;
    }

    std::string bytes;
    std::string writes;
    unsigned int calls = 0;
    unsigned int synchronised = 0;

private:
    Fault fault;
    unsigned int faultyCall;
    bool isDead = false;
};

const std::string BEFORE(100, '.');

/// Changes in four pages of 16: bytes 3, 14, 16, 17, 40 and 95 to 99.
std::string changed()
{
    std::string after = BEFORE;
    for (const std::size_t at : {3, 14, 16, 17, 40, 95, 96, 97, 98, 99}) {
        after[at] = 'x';
    }
    return after;
}

std::string writesBy(std::size_t page)
{
    FaultyDevice device(BEFORE, Fault::NONE, 0);
    writeInPlace(device, BEFORE, changed(), page);
    EXPECT_EQ(device.bytes, changed());
    return device.writes;
}

}

TEST(InPlace, WritesWhatDiffersAndNoPageBoundaryIsCrossed)
{
    EXPECT_EQ(writesBy(0), "3+1 14+1 16+2 40+1 95+5");
    EXPECT_EQ(writesBy(8), "3+1 14+1 16+2 40+1 95+1 96+4");
    EXPECT_EQ(writesBy(16), "3+12 16+2 40+1 95+1 96+4");
    EXPECT_EQ(writesBy(32), "3+15 40+1 95+1 96+4");
    EXPECT_EQ(writesBy(64), "3+38 95+5");
    FaultyDevice same(BEFORE, Fault::FAIL, 0);
    writeInPlace(same, BEFORE, BEFORE, 16);
    EXPECT_EQ(same.writes, "");
}

TEST(InPlace, EachPageIsReadBackBeforeTheNextOneIsWritten)
{
    FaultyDevice device(BEFORE, Fault::LIE, 1);
    EXPECT_THROW(writeInPlace(device, BEFORE, changed(), 16), CommandError);
    // The second page is not as it should be: no other is written but those to restore.
    EXPECT_EQ(device.writes, "3+12 16+2 16+2 3+12");
    EXPECT_EQ(device.bytes, BEFORE);
    FaultyDevice together(BEFORE, Fault::LIE, 1);
    EXPECT_THROW(writeInPlace(together, BEFORE, changed(), 0), CommandError);
    EXPECT_EQ(together.bytes, BEFORE);
    EXPECT_EQ(together.calls, 10U);
}

TEST(InPlace, AnyFaultAtAnyCallLeavesTheNewOrTheOldBytes)
{
    const struct {
        Fault fault;
        const char* text; ///< none: the bytes are written in the end
    } FAULTS[] = {{Fault::FAIL, "failed; every byte is again what it was before"},
                  {Fault::TEAR, "torn; every byte is again what it was before"},
                  {Fault::SHORTEN, nullptr}};
    for (const std::size_t page : {0, 8, 16, 32, 64}) {
        FaultyDevice sound(BEFORE, Fault::NONE, 0);
        writeInPlace(sound, BEFORE, changed(), page);
        for (unsigned int call = 0; call < sound.calls; ++call) {
            for (const auto& each : FAULTS) {
                FaultyDevice device(BEFORE, each.fault, call);
                try {
                    writeInPlace(device, BEFORE, changed(), page);
                    EXPECT_EQ(each.text, nullptr);
                    EXPECT_EQ(device.bytes, changed());
                } catch (const CommandError& e) {
                    EXPECT_STREQ(e.what(), each.text);
                    EXPECT_EQ(e.getStatus(), EXIT_FILE);
                    EXPECT_EQ(device.bytes, BEFORE);
                }
            }
        }
    }
}

TEST(InPlace, DeviceThatLosesPowerIsNamedWithTheBytesThatMayDiffer)
{
    FaultyDevice device(BEFORE, Fault::LOSE_POWER, 2);
    try {
        writeInPlace(device, BEFORE, changed(), 16);
        FAIL();
    } catch (const CommandError& e) {
        EXPECT_STREQ(e.what(), "dead; bytes 40 to 40, 16 to 17, 3 to 14 could not be written back "
                               "as they were");
    }
}
