// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_HARDWARE_SASUBOARDINFO_H
#define RECORDKIT_HARDWARE_SASUBOARDINFO_H

#include <recordkit/hardware/SlotBoardInfo.h>

namespace TAVLib::RecordKit {

/// One SAS unit board; its image is that of SlotBoardInfo, without a division. Failures have
/// location 0x1800.
class RECORDKIT_API SASUBoardInfo : public SlotBoardInfo {
public:
    SASUBoardInfo();
    ~SASUBoardInfo() override;
};

}

#endif
