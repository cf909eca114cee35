// SPDX-License-Identifier: Apache-2.0
#include <recordkit/hardware/GSPBBoardInfo.h>

#include <algorithm>

#include <recordkit/serial/Failure.h>

#include "StatusWords.h"

namespace TAVLib::RecordKit {

namespace {

constexpr unsigned char NOT_CONNECTED = 0xFF;

int numberOf(unsigned char unit)
{
    return unit == NOT_CONNECTED ? -1 : unit;
}

}

GSPBBoardInfo::~GSPBBoardInfo() = default;

unsigned short GSPBBoardInfo::getGbEPortStatus(unsigned int port) const
{
    return statusOf(gbeStatus, port, GSPB_BOARD_INFO_LOCATION, "getGbEPortStatus()",
                    "not found GbE Port");
}

unsigned short GSPBBoardInfo::getSASPortStatus(unsigned int port) const
{
    return statusOf(sasStatus, port, GSPB_BOARD_INFO_LOCATION, "getSASPortStatus()",
                    "not found SAS Port");
}

int GSPBBoardInfo::getConnectedPCIBox(unsigned int port) const
{
    return numberOf(entryOf(port, "getConnectedPCIBox()").pciBox);
}

int GSPBBoardInfo::getConnectedLogicalPCIBox(unsigned int port) const
{
    return numberOf(entryOf(port, "getConnectedLogicalPCIBox()").logicalPCIBox);
}

void GSPBBoardInfo::getGbEPorts(std::vector<int>& ports)
{
    numberElements(ports, gbeStatus.size());
}

void GSPBBoardInfo::getSASPorts(std::vector<int>& ports)
{
    numberElements(ports, sasStatus.size());
}

void GSPBBoardInfo::getPCIBoxPorts(std::vector<int>& ports)
{
    numberElements(ports, pciBoxCount);
}

unsigned int GSPBBoardInfo::getSerialized(unsigned char* buffer, unsigned int length) const
{
    const unsigned int size = getSerializedSize();
    if (size > length) {
        traceLengthError(GSPB_BOARD_INFO_LOCATION, "getSerialized", length, size);
        return 0;
    }
    unsigned char* at = writeWords(gbeStatus, std::copy_n(header, HEADER_SIZE, buffer));
    *at++ = sasCount;
    at = writeWords(sasStatus, at);
    *at++ = pciBoxCount;
    for (unsigned int port = 0; port < pciBoxCount; ++port) {
        *at++ = pciBoxes[port].pciBox;
        *at++ = pciBoxes[port].logicalPCIBox;
    }
    return size;
}

bool GSPBBoardInfo::setSerialized(const unsigned char* data, unsigned int length)
{
    const unsigned char* const gbe = data + HEADER_SIZE;
    const unsigned char* const sas = gbe + 2 * data[GBE_COUNT];
    const unsigned char* const box = sas + 1 + 2 * sas[0];
    const unsigned int needed = LEAST_SIZE + 2U * (data[GBE_COUNT] + sas[0] + box[0]);
    if (needed > length) {
        traceLengthError(GSPB_BOARD_INFO_LOCATION, "setSerialized", length, needed);
        return false;
    }
    // Everything that can fail comes first, so that the counts always match the lists.
    std::vector<CONNECTED_UNIT_INFO> newBoxes(box[0]);
    for (std::size_t port = 0; port < newBoxes.size(); ++port) {
        newBoxes[port] = {box[1 + 2 * port], box[2 + 2 * port]};
    }
    gbeStatus.reserve(data[GBE_COUNT]);
    sasStatus.reserve(sas[0]);
    // Not cleared first: callers collect the entries of several images in one object.
    pciBoxes.insert(pciBoxes.end(), newBoxes.begin(), newBoxes.end());

    std::copy_n(data, HEADER_SIZE, header);
    readWords(gbe, header[GBE_COUNT], gbeStatus);
    sasCount = sas[0];
    readWords(sas + 1, sasCount, sasStatus);
    pciBoxCount = box[0];
    return true;
}

const GSPBBoardInfo::CONNECTED_UNIT_INFO& GSPBBoardInfo::entryOf(unsigned int port,
                                                                 const char* method) const
{
    if (port >= pciBoxes.size()) {
        throwNotFound(GSPB_BOARD_INFO_LOCATION, method, "not found PCI_Box Port");
    }
    return pciBoxes[port];
}

}
