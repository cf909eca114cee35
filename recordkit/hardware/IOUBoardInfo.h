// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_HARDWARE_IOUBOARDINFO_H
#define RECORDKIT_HARDWARE_IOUBOARDINFO_H

#include <recordkit/hardware/SlotBoardInfo.h>

namespace TAVLib::RecordKit {

/// One I/O unit board. Failures have location 0x0600.
///
/// | byte | width | meaning          |
/// |------|-------|------------------|
/// | 0    | 1     | bit 3: divided   |
/// | 0    |       | as SlotBoardInfo |
class RECORDKIT_API IOUBoardInfo : public SlotBoardInfo {
public:
    IOUBoardInfo();
    ~IOUBoardInfo() override;

    bool isDivided() const { return flag(3); }
};

}

#endif
