// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_VERSION_GSWBVERSION_H
#define RECORDKIT_VERSION_GSWBVERSION_H

#include <string>

#include <recordkit/serial/FixedSizeSerializableObject.h>

namespace TAVLib::RecordKit {

/// Versions of a GSWB: the running banks, and what is online and offline.
///
/// | byte | width | meaning                              |
/// |------|-------|--------------------------------------|
/// | 0    | 2 x 1 | running bank, first and second value |
/// | 2    | 3     | online version 1: V, L and A numbers |
/// | 5    | 3     | online version 2: V, L and A numbers |
/// | 8    | 2     | offline version 1: V and L numbers   |
/// | 10   | 2     | offline version 2: V and L numbers   |
class RECORDKIT_API GSWBVersion : public FixedSizeSerializableObject {
public:
    enum Offset { BANKS = 0, ONLINE_1 = 2, ONLINE_2 = 5, OFFLINE_1 = 8, OFFLINE_2 = 10, SIZE = 12 };

    void getRunningBank(unsigned char& first, unsigned char& second) const;
    /// "V01L02-A03" each; "-" for one that is all 0.
    void getOnlineVersion(std::string& first, std::string& second);
    /// "V012L000" each; "-" for one that is all 0.
    void getOfflineVersion(std::string& first, std::string& second);

    unsigned int getSerializedSize() const override { return SIZE; }
    /// The image, 12 bytes, for reading and writing.
    unsigned char* getInternalData() const override { return image; }

private:
    std::string onlineText(Offset at) const;
    std::string offlineText(Offset at) const;

    mutable unsigned char image[SIZE] = {};
};

}

#endif
