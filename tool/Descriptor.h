// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_DESCRIPTOR_H
#define RECORDKIT_TOOL_DESCRIPTOR_H

#include <utility>

#include <unistd.h>

namespace recordkit::tool {

/// An open file or folder, closed at the end of its life; -1 for none.
class Descriptor {
public:
    explicit Descriptor(int opened = -1) : fd(opened) {}
    ~Descriptor() { reset(-1); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int get() const { return fd; }
    bool isOpen() const { return fd != -1; }
    /// Closes it, and takes another.
    void reset(int opened)
    {
        const int before = std::exchange(fd, opened);
        if (before != -1) {
            ::close(before);
        }
    }

private:
    int fd;
};

}

#endif
