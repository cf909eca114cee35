// SPDX-License-Identifier: Apache-2.0
#include "OpenSELFile.h"

#include <unistd.h>

namespace TAVLib::RecordKit {

OpenSELFile::OpenSELFile(BMCSELDataFile& owner, const std::string& name)
    : store(owner), fd(store.openFile(name))
{
}

OpenSELFile::~OpenSELFile()
{
    if (isOpen()) {
        store.closeFile(fd);
    }
}

bool OpenSELFile::seek(unsigned long offset)
{
    return store.lseek(fd, static_cast<long>(offset), SEEK_SET) >= 0;
}

long OpenSELFile::read(unsigned char* buffer, unsigned int size)
{
    return store.read(fd, buffer, size);
}

long OpenSELFile::lookAt(unsigned long offset, const unsigned char*& bytes)
{
    unsigned char* const buffer = slots.get();
    bytes = buffer;
    return ::pread(fd, buffer, BYTES_AT_ONCE, static_cast<off_t>(offset));
}

}
