// SPDX-License-Identifier: Apache-2.0
#include "LockedFile.h"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

#include <recordkit/platform/LockedFile.h>
#include <recordkit/platform/PException.h>

namespace testing_support {

LockedFileAnswers lockedFileAnswers;

}

using testing_support::lockedFileAnswers;

namespace TAVLib {

namespace {

long orThrow(long result)
{
    if (result == -1) {
        throw PException(1, 9, 9, 0x12, static_cast<unsigned short>(errno), 20031, 0, 0, 0, 0, 0, 0,
                         0, 0);
    }
    return result;
}

int openFile(const std::string& name)
{
    if (lockedFileAnswers.beforeOpen) {
        lockedFileAnswers.beforeOpen();
    }
    return static_cast<int>(orThrow(::open(name.c_str(), O_RDWR | O_CREAT, 0644)));
}

}

class LockedFile::State {
public:
    int fd;
};

LockedFile::LockedFile(const std::string& path) : state(new State{openFile(path)})
{
}

LockedFile::~LockedFile()
{
    ::close(state->fd);
    delete state;
}

long LockedFile::lseek(long offset, int whence)
{
    return orThrow(::lseek(state->fd, offset, whence)) + lockedFileAnswers.placesOff;
}

int LockedFile::read(void* buffer, unsigned int length)
{
    return static_cast<int>(
        orThrow(::read(state->fd, buffer, length - lockedFileAnswers.bytesLess)));
}

int LockedFile::write(const void* buffer, unsigned int length)
{
    return static_cast<int>(
        orThrow(::write(state->fd, buffer, length - lockedFileAnswers.bytesLess)));
}

void LockedFile::truncFile(long length)
{
    lockedFileAnswers.truncations.push_back(length);
    orThrow(::ftruncate(state->fd, length));
}

}
