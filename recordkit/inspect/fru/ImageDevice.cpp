// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/fru/ImageDevice.h>

#include <algorithm>
#include <fmt/format.h>

#include <recordkit/inspect/bytes/Error.h>

namespace recordkit::inspect {

int ImageDevice::read(unsigned int offset, unsigned int length, unsigned char* buffer)
{
    check(offset, length);
    std::copy_n(bytes.begin() + static_cast<long>(offset), length, buffer);
    return static_cast<int>(length);
}

int ImageDevice::write(unsigned int offset, unsigned int length, const unsigned char* buffer)
{
    check(offset, length);
    std::copy_n(buffer, length, bytes.begin() + static_cast<long>(offset));
    return static_cast<int>(length);
}

void ImageDevice::check(unsigned int offset, unsigned int length) const
{
    if (offset > bytes.size() || length > bytes.size() - offset) {
        throw DataError(
            fmt::format("{} bytes at offset {} are not within the {} bytes of the image", length,
                        offset, bytes.size()));
    }
}

}
