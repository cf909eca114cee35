// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_VERSION_SYSTEMINFOPARAMETERS_H
#define RECORDKIT_VERSION_SYSTEMINFOPARAMETERS_H

#include <string>

#include <recordkit/serial/FixedSizeSerializableObject.h>

namespace TAVLib::RecordKit {

/// A version text of the system info parameters (IPMI v2.0, table 22-16).
///
/// | byte | width | meaning                                               |
/// |------|-------|-------------------------------------------------------|
/// | 0    | 1     | 0: there is no version                                |
/// | 1    | 3     | carried unchanged                                     |
/// | 4    | 13    | the text, with or without a zero byte at its end      |
class RECORDKIT_API SystemInfoParameters : public FixedSizeSerializableObject {
public:
    enum Offset { VALIDITY = 0, TEXT = 4, SIZE = 17 };
    static constexpr unsigned int TEXT_LENGTH = SIZE - TEXT;

    /// Up to 13 characters, cut at the first zero byte; "-" when there is no version.
    std::string getVersionString() const;

    unsigned int getSerializedSize() const override { return SIZE; }

protected:
    unsigned char* getInternalData() const override { return image; }

private:
    mutable unsigned char image[SIZE] = {};
};

}

#endif
