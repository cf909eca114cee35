// SPDX-License-Identifier: Apache-2.0
#include <recordkit/eeprom/EFIBackupEEPROMIndex.h>

#include <algorithm>

#include "Checksum.h"
#include "EFIBackupGroup.h"

namespace TAVLib::RecordKit {

namespace {

constexpr unsigned char STATE_VALID = 1;
constexpr unsigned char STATE_INVALID = 0;
constexpr unsigned char STATE_UNKNOWN = 0xFF;

/// Position of a block's byte among the flags; FLAGS_SIZE or more for a block without one.
unsigned int flagByteOf(unsigned int p, unsigned int b, unsigned int n)
{
    return groupOf(p, b) * EFIBackupEEPROMIndex::GROUP_SIZE + (n >> 1);
}

/// The nibble of a block: odd blocks have the low one.
unsigned char nibbleOf(unsigned int n)
{
    return n % 2 != 0 ? 0x0F : 0xF0;
}

/// The bytes of a serial as a record stores them; missing ones are 0.
std::string serialBytes(const std::string& serial)
{
    std::string bytes = serial;
    bytes.resize(EFIBackupEEPROMIndex::SERIAL_SIZE, '\0');
    return bytes;
}

}

std::atomic<unsigned char> EFIBackupEEPROMIndex::IndexState{STATE_UNKNOWN};
std::atomic<unsigned char> EFIBackupEEPROMIndex::clrinfo[FLAGS_SIZE] = {};

EFIBackupEEPROMIndex::EFIBackupEEPROMIndex() = default;
EFIBackupEEPROMIndex::~EFIBackupEEPROMIndex() = default;

void EFIBackupEEPROMIndex::setIndexState(bool valid)
{
    IndexState = valid ? STATE_VALID : STATE_INVALID;
}

bool EFIBackupEEPROMIndex::getIndexState() const
{
    return IndexState == STATE_VALID;
}

unsigned int EFIBackupEEPROMIndex::getAreaEEPROMID(unsigned int p, unsigned int b) const
{
    return p < PARTITIONS && b < BANKS ? FIRST_AREA_EEPROM + BANKS * p + b : ~0U;
}

void EFIBackupEEPROMIndex::setChecksum()
{
    image[CHECKSUM] = complementOf(sumOf(image + CHECKSUM + 1, INDEX_SIZE - 1));
}

bool EFIBackupEEPROMIndex::isChecksum() const
{
    return sumOf(image, INDEX_SIZE) == 0;
}

void EFIBackupEEPROMIndex::setClrFlag(unsigned int p, unsigned int b, unsigned int n, bool set)
{
    constexpr unsigned char SET_NIBBLES = 0x11;
    const unsigned int at = flagByteOf(p, b, n);
    if (at >= FLAGS_SIZE) {
        return;
    }
    const unsigned char nibble = nibbleOf(n);
    const unsigned char others = clrinfo[at] & static_cast<unsigned char>(~nibble);
    const auto flags = static_cast<unsigned char>(others | (set ? SET_NIBBLES & nibble : 0));
    image[FLAGS + at] = flags;
    clrinfo[at] = flags;
}

bool EFIBackupEEPROMIndex::getClrBlockState(unsigned int p, unsigned int b, unsigned int n) const
{
    const unsigned int at = flagByteOf(p, b, n);
    return at < FLAGS_SIZE && (clrinfo[at] & nibbleOf(n)) != 0;
}

unsigned int EFIBackupEEPROMIndex::getClrBlockNumber(unsigned int address) const
{
    return address >> 12;
}

void EFIBackupEEPROMIndex::getClrBlockAddress(unsigned int n, unsigned int& start,
                                              unsigned int& end) const
{
    start = n * BLOCK_SIZE;
    end = start + BLOCK_SIZE - 1;
}

int EFIBackupEEPROMIndex::getIndexPoint(int p, int b, int n) const
{
    return FLAGS +
           static_cast<int>(GROUP_SIZE *
                            groupOf(static_cast<unsigned int>(p), static_cast<unsigned int>(b))) +
           (n >> 1);
}

bool EFIBackupEEPROMIndex::checkSerialInfo(const std::string& serial) const
{
    return serial.size() >= SERIAL_SIZE &&
           std::equal(serial.begin(), serial.begin() + SERIAL_SIZE, image + SERIAL,
                      [](char a, unsigned char b) { return static_cast<unsigned char>(a) == b; });
}

void EFIBackupEEPROMIndex::setIndexValidFlag(bool valid, const std::string& serial)
{
    std::fill_n(image, INDEX_SIZE, static_cast<unsigned char>(0));
    if (valid) {
        const std::string bytes = serialBytes(serial);
        std::copy(bytes.begin(), bytes.end(), image + SERIAL);
        setChecksum();
    }
    expandClrFlags();
}

void EFIBackupEEPROMIndex::expandClrFlags()
{
    // Each byte is independent, so no order among them is needed; the stores' locks order the rest.
    for (unsigned int i = 0; i < FLAGS_SIZE; ++i) {
        clrinfo[i].store(image[FLAGS + i], std::memory_order_relaxed);
    }
}

}
