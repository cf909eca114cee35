// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_HARDWARE_SASUBOARDINFO_H
#define RECORDKIT_HARDWARE_SASUBOARDINFO_H

#include <recordkit/hardware/SlotBoardInfo.h>

namespace TAVLib::RecordKit {

/// One SAS unit board. Failures have location 0x1800.
///
/// | byte | width | meaning          |
/// |------|-------|------------------|
/// | 0    |       | as SlotBoardInfo |
class RECORDKIT_API SASUBoardInfo : public SlotBoardInfo {
public:
    SASUBoardInfo();
    ~SASUBoardInfo() override;
};

}

#endif
