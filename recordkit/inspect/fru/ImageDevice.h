// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_FRU_IMAGEDEVICE_H
#define RECORDKIT_INSPECT_FRU_IMAGEDEVICE_H

#include <string>

#include <recordkit/platform/FRURWif.h>

namespace recordkit::inspect {

/// A FRU device in memory. Throws DataError for an access outside it.
class ImageDevice : public TAVLib::FRURWif {
public:
    explicit ImageDevice(std::string image) : bytes(std::move(image)) {}

    int read(unsigned int offset, unsigned int length, unsigned char* buffer) override;
    int write(unsigned int offset, unsigned int length, const unsigned char* buffer) override;

    const std::string& getBytes() const { return bytes; }

private:
    void check(unsigned int offset, unsigned int length) const;

    std::string bytes;
};

}

#endif
