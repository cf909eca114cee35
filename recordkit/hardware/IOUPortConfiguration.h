// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_HARDWARE_IOUPORTCONFIGURATION_H
#define RECORDKIT_HARDWARE_IOUPORTCONFIGURATION_H

#include <recordkit/serial/FixedSizeSerializableObject.h>

namespace TAVLib::RecordKit {

/// Which ports of the logical I/O units run as PCI Express.
///
/// | byte | width | meaning                                                       |
/// |------|-------|---------------------------------------------------------------|
/// | 0    | 1     | bits 2 to 7: port 2 to 7 is PCI Express; bits 0 and 1 carried |
///
/// Ports are 2 to 7; any other throws PException (module 83, location 0x0800, action 1, detail
/// 0x0B00, message 20034) with "IOUPortConfiguration::setLIOUA_PCIExp" or
/// "IOUPortConfiguration::isLIOUA_PCIExp" and the port.
class RECORDKIT_API IOUPortConfiguration : public FixedSizeSerializableObject {
public:
    void setLIOUA_PCIExp(unsigned int port, bool on);
    bool isLIOUA_PCIExp(unsigned int port) const;

    unsigned int getSerializedSize() const override { return SIZE; }

protected:
    unsigned char* getInternalData() const override { return image; }

private:
    enum Offset { PORTS = 0, SIZE = 1 };

    mutable unsigned char image[SIZE] = {};
};

}

#endif
