// SPDX-License-Identifier: Apache-2.0
#include <recordkit/host/FileFRURWif.h>

#include "DeviceFile.h"

namespace TAVLib::host {

FileFRURWif::FileFRURWif(const std::string& path, bool writable)
    : file(std::make_unique<DeviceFile>(FILE_FRU_LOCATION, path, writable))
{
}

FileFRURWif::~FileFRURWif() = default;

int FileFRURWif::read(unsigned int offset, unsigned int length, unsigned char* buffer)
{
    return file->read(offset, length, buffer);
}

int FileFRURWif::write(unsigned int offset, unsigned int length, const unsigned char* buffer)
{
    return file->write(offset, length, buffer);
}

}
