// SPDX-License-Identifier: Apache-2.0
// The machine, its root, and the conversion of the firmware update.
#include <recordkit/platform/CommonUtil.h>
#include <recordkit/platform/FirmupFile.h>
#include <recordkit/platform/SystemRoot.h>

#ifndef BOARD_ROOT
#define BOARD_ROOT ""
#endif

// A copy command of the library gives this to a shell, so it is never made from input.
std::string TAVLib::systemRoot()
{
    return BOARD_ROOT;
}

unsigned char TAVLib::FirmupFile::BCDtoBin(char bcd)
{
    const auto digits = static_cast<unsigned char>(bcd);
    return static_cast<unsigned char>((digits >> 4) * 10 + (digits & 15));
}

int CommonUtil::getMaxUnitNum(int kind)
{
    switch (kind) {
    case SYSTEM_BOARDS:
        return 4;
    case LOGICAL_IO_UNITS:
        return 4;
    default:
        return 0;
    }
}

int CommonUtil::getMaxPartitionNum()
{
    return 4;
}

int CommonUtil::getSBBoardType(unsigned char sbNo, unsigned char kind)
{
    // Kind 3 with the answer 2 is what chooses another table of part numbers. A firmware reads it
    // from the board; here, the upper two have the newer type.
    constexpr unsigned char TYPE_KIND = 3;
    constexpr int NEWER_TYPE = 2;
    return kind == TYPE_KIND && (sbNo == 2 || sbNo == 3) ? NEWER_TYPE : 0;
}
