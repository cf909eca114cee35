// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_HOST_FILEFRURWIF_H
#define RECORDKIT_HOST_FILEFRURWIF_H

#include <memory>
#include <string>

#include <recordkit/platform/FRURWif.h>

namespace TAVLib::host {

class DeviceFile;

/// A FRU device in a file: an image, or the node that the kernel gives an EEPROM.
///
/// Failures are thrown as PException (module 200, location 0x0300, action 2, errno as detail) with
/// the operation, its offset and length, the path and the reason in the message.
class RECORDKIT_API FileFRURWif : public FRURWif {
public:
    /// Opens a file that exists, for reading alone unless `writable`.
    explicit FileFRURWif(const std::string& path, bool writable = false);
    ~FileFRURWif() override;
    FileFRURWif(const FileFRURWif&) = delete;
    FileFRURWif& operator=(const FileFRURWif&) = delete;

    /// Reads all of `length` bytes; a file that ends before is a failure (ENODATA).
    int read(unsigned int offset, unsigned int length, unsigned char* buffer) override;
    /// Writes all of `length` bytes where they belong.
    int write(unsigned int offset, unsigned int length, const unsigned char* buffer) override;

private:
    std::unique_ptr<DeviceFile> file;
};

}

#endif
