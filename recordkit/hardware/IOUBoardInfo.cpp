// SPDX-License-Identifier: Apache-2.0
#include <recordkit/hardware/IOUBoardInfo.h>

#include <recordkit/serial/Failure.h>

namespace TAVLib::RecordKit {

IOUBoardInfo::IOUBoardInfo() : SlotBoardInfo(IOU_BOARD_INFO_LOCATION)
{
}

IOUBoardInfo::~IOUBoardInfo() = default;

}
