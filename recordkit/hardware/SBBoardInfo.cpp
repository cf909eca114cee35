// SPDX-License-Identifier: Apache-2.0
#include <recordkit/hardware/SBBoardInfo.h>

#include <recordkit/serial/ByteOrder.h>
#include <recordkit/serial/Failure.h>

namespace TAVLib::RecordKit {

namespace {

unsigned int countBits(const unsigned char* bytes, unsigned int count)
{
    unsigned int bits = 0;
    for (unsigned int i = 0; i < count; ++i) {
        for (unsigned int bit = 0; bit < 8; ++bit) {
            bits += get_bit(bytes[i], bit, 1);
        }
    }
    return bits;
}

}

unsigned int SBBoardInfo::getCPUSocketNum() const
{
    return countBits(image + CPU_MAP, 1);
}

unsigned int SBBoardInfo::getDIMMSocketNum() const
{
    return countBits(image + DIMM_MAP, 4);
}

unsigned short SBBoardInfo::getCPUStatus(CPUIndex cpu) const
{
    if (cpu >= CPUS) {
        throwIndexError(SB_BOARD_INFO_LOCATION, "getCPUStatus(cpuNum)", cpu);
    }
    return readLE16(image + CPU_STATUS + 2 * cpu);
}

unsigned short SBBoardInfo::getDIMMStatus(DIMMIndex dimm) const
{
    if (dimm >= DIMMS) {
        throwIndexError(SB_BOARD_INFO_LOCATION, "getDIMMStatus(dimmNum)", dimm);
    }
    return readLE16(image + DIMM_STATUS + 2 * dimm);
}

}
