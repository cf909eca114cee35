// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_HOST_FILEFRURWIF_H
#define RECORDKIT_HOST_FILEFRURWIF_H

#include <memory>
#include <string>

#include <recordkit/platform/FRURWif.h>

namespace TAVLib::host {

class DeviceFile;

/// A FRU device as a file: an image, or the kernel's node for an EEPROM.
///
/// Failures are thrown as PException (module 200, location 0x0300, action 2, errno as detail) with
/// the operation, its offset and length, the path and the reason in the message.
class RECORDKIT_API FileFRURWif : public FRURWif {
public:
    /// Opens an existing file, only for reading unless `writable`.
    explicit FileFRURWif(const std::string& path, bool writable = false);
    ~FileFRURWif() override;
    FileFRURWif(const FileFRURWif&) = delete;
    FileFRURWif& operator=(const FileFRURWif&) = delete;

    /// Reads all `length` bytes; it is a failure if the file ends before (ENODATA).
    int read(unsigned int offset, unsigned int length, unsigned char* buffer) override;
    /// Writes all `length` bytes at `offset`.
    int write(unsigned int offset, unsigned int length, const unsigned char* buffer) override;

private:
    std::unique_ptr<DeviceFile> file;
};

}

#endif
