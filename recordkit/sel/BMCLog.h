// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_SEL_BMCLOG_H
#define RECORDKIT_SEL_BMCLOG_H

#include <recordkit/serial/SerializableObject.h>

namespace TAVLib::RecordKit {

/// A raw BMC log record of up to 135 bytes; its contents are not interpreted.
///
/// | byte | width     | meaning   |
/// |------|-----------|-----------|
/// | 0    | up to 135 | raw bytes |
class RECORDKIT_API BMCLog : public SerializableObject {
public:
    /// One byte more than any image fills, so that a zero byte follows the longest one.
    enum Size : unsigned int { BUFFER_SIZE = 136, MAX_SIZE = BUFFER_SIZE - 1 };

    /// 0 and a trace line (module 83, location 0x1600, level 0, message 20008) when `size` is
    /// below the serialized size.
    unsigned int getSerialized(unsigned char* buf, unsigned int size) const override;
    unsigned int getSerializedSize() const override { return validLength; }

    /// Accepts up to 135 bytes and ignores the rest; always true.
    bool setSerialized(const unsigned char* data, unsigned int size) override;

private:
    unsigned char buffer[BUFFER_SIZE] = {};
    unsigned int validLength = 0;
};

}

#endif
