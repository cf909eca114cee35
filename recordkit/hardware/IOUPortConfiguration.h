// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_HARDWARE_IOUPORTCONFIGURATION_H
#define RECORDKIT_HARDWARE_IOUPORTCONFIGURATION_H

#include <recordkit/serial/FixedSizeSerializableObject.h>

namespace TAVLib::RecordKit {

/// Which ports of the logical I/O units run as PCI Express.
///
/// | byte | width | meaning                                                                    |
/// |------|-------|----------------------------------------------------------------------------|
/// | 0    | 1     | bit 2: port 2 is PCI Express, bit 3: port 3, bit 4: port 4, bit 5: port 5, |
/// |      |       | bit 6: port 6, bit 7: port 7                                               |
///
/// Bits 0 and 1 are carried unchanged. Ports are 2 to 7; any other throws PException (module 83,
/// location 0x0800, action 1, detail 0x0B00, message 20034) with
/// "IOUPortConfiguration::setLIOUA_PCIExp" or "IOUPortConfiguration::isLIOUA_PCIExp" and the port.
class RECORDKIT_API IOUPortConfiguration : public FixedSizeSerializableObject {
public:
    enum Offset { PORTS = 0, SIZE = 1 };

    void setLIOUA_PCIExp(unsigned int port, bool on);
    bool isLIOUA_PCIExp(unsigned int port) const;

    unsigned int getSerializedSize() const override { return SIZE; }

protected:
    unsigned char* getInternalData() const override { return image; }

private:
    mutable unsigned char image[SIZE] = {};
};

}

#endif
