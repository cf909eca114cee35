// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_HARDWARE_IOUBOARDINFO_H
#define RECORDKIT_HARDWARE_IOUBOARDINFO_H

#include <recordkit/hardware/SlotBoardInfo.h>

namespace TAVLib::RecordKit {

/// One I/O unit board; its image is that of SlotBoardInfo. Failures have location 0x0600.
class RECORDKIT_API IOUBoardInfo : public SlotBoardInfo {
public:
    IOUBoardInfo();
    ~IOUBoardInfo() override;

    bool isDivided() const { return flag(3); }
};

}

#endif
