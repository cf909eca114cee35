// SPDX-License-Identifier: Apache-2.0
#include <recordkit/hardware/PCIBOXInfo.h>

#include <algorithm>
#include <string>

#include <recordkit/serial/Failure.h>

#include "StatusWords.h"

namespace TAVLib::RecordKit {

namespace {

constexpr unsigned char NOT_CONNECTED = 255;

enum BlockOffset { CONNECTED_ID = 0, PORT_NO = 1, SLOT_COUNT = 2 };

/// Size of a block without its slots.
constexpr unsigned int BLOCK_HEADER_SIZE = 3;

bool isBelow(int index, std::size_t size)
{
    return index >= 0 && static_cast<std::size_t>(index) < size;
}

void traceOutOfRange(const char* text, int index, std::size_t size)
{
    const std::string range =
        "out of range:" + std::to_string(index) + ", size=" + std::to_string(size);
    traceNotFound(PCI_BOX_INFO_LOCATION, text, range.c_str());
}

/// Where the next block begins.
const unsigned char* nextBlock(const unsigned char* block)
{
    return block + BLOCK_HEADER_SIZE + 2 * block[SLOT_COUNT];
}

}

PCIBOXInfo::~PCIBOXInfo() = default;

void PCIBOXInfo::getLinkCards(std::vector<int>& numbers) const
{
    numberElements(numbers, cards.size());
}

unsigned char PCIBOXInfo::getConnectedId(int card) const
{
    return isParamError(card, 0) ? NOT_CONNECTED
                                 : cards[static_cast<std::size_t>(card)].connectedId;
}

bool PCIBOXInfo::isConnected(int card) const
{
    return getConnectedId(card) != NOT_CONNECTED;
}

unsigned char PCIBOXInfo::getPortNo(int card) const
{
    return isParamError(card, 0) ? NOT_CONNECTED : cards[static_cast<std::size_t>(card)].portNo;
}

unsigned short PCIBOXInfo::getPCISlotStatus(int card, int slot) const
{
    if (isParamError(card, slot)) {
        return 0;
    }
    return slotStatus[static_cast<std::size_t>(card)][static_cast<std::size_t>(slot)];
}

void PCIBOXInfo::getPCISlots(int card, std::vector<int>& slots) const
{
    numberElements(slots,
                   isParamError(card, 0) ? 0 : slotStatus[static_cast<std::size_t>(card)].size());
}

bool PCIBOXInfo::isParamError(int card, int slot) const
{
    if (!isBelow(card, cards.size())) {
        traceOutOfRange("isParamError(lnkc)", card, cards.size());
        return true;
    }
    const std::size_t slots = slotStatus[static_cast<std::size_t>(card)].size();
    if (!isBelow(slot, slots)) {
        traceOutOfRange("isParamError(slotNum)", slot, slots);
        return true;
    }
    return false;
}

unsigned int PCIBOXInfo::getSerializedSize() const
{
    std::size_t size = HEADER_SIZE + BLOCK_HEADER_SIZE * cards.size();
    for (const StatusWords& words : slotStatus) {
        size += 2 * words.size();
    }
    return static_cast<unsigned int>(size);
}

unsigned int PCIBOXInfo::getSerialized(unsigned char* buffer, unsigned int length) const
{
    const unsigned int size = getSerializedSize();
    if (size > length) {
        traceLengthError(PCI_BOX_INFO_LOCATION, "getSerialized", length, size);
        return 0;
    }
    unsigned char* at = std::copy_n(header, HEADER_SIZE, buffer);
    for (std::size_t card = 0; card < cards.size(); ++card) {
        *at++ = cards[card].connectedId;
        *at++ = cards[card].portNo;
        *at++ = cards[card].slotCount;
        at = writeWords(slotStatus[card], at);
    }
    return size;
}

bool PCIBOXInfo::setSerialized(const unsigned char* data, unsigned int length)
{
    unsigned int needed = HEADER_SIZE;
    unsigned int count = 0;
    if (length >= HEADER_SIZE && get_bit(data[PEXU_FLAGS], 0, 1) != 0) {
        count = data[CARD_COUNT];
        needed += BLOCK_HEADER_SIZE * count;
        const unsigned char* block = data + HEADER_SIZE;
        for (unsigned int card = 0; card < count; ++card) {
            // One byte per slot, although a slot has two: looser than the image, see the header.
            needed += block[SLOT_COUNT];
            block = nextBlock(block);
        }
    }
    if (needed > length) {
        traceLengthError(PCI_BOX_INFO_LOCATION, "setSerialized", length, needed);
        return false;
    }
    // Get all the memory first: if there is none, cards and slots still belong to one image. Lists
    // beyond the cards are never read.
    cards.reserve(count);
    slotStatus.resize(std::max<std::size_t>(count, slotStatus.size()));
    const unsigned char* block = data + HEADER_SIZE;
    for (unsigned int card = 0; card < count; ++card) {
        slotStatus[card].reserve(block[SLOT_COUNT]);
        block = nextBlock(block);
    }
    std::copy_n(data, HEADER_SIZE, header);
    cards.clear();
    slotStatus.resize(count);
    block = data + HEADER_SIZE;
    for (StatusWords& words : slotStatus) {
        cards.push_back({block[CONNECTED_ID], block[PORT_NO], block[SLOT_COUNT]});
        readWords(block + BLOCK_HEADER_SIZE, block[SLOT_COUNT], words);
        block = nextBlock(block);
    }
    return true;
}

}
