// SPDX-License-Identifier: Apache-2.0
#include <recordkit/hardware/SASUBoardInfo.h>

#include <recordkit/serial/Failure.h>

namespace TAVLib::RecordKit {

SASUBoardInfo::SASUBoardInfo() : SlotBoardInfo(SASU_BOARD_INFO_LOCATION)
{
}

SASUBoardInfo::~SASUBoardInfo() = default;

}
