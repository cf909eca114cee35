// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_DESCRIPTOR_H
#define RECORDKIT_TOOL_DESCRIPTOR_H

#include <string>
#include <utility>

#include <unistd.h>

#include <recordkit/posix/File.h>

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

/// Whether an open file begins with these bytes.
inline bool beginsWith(int fd, const std::string& expected)
{
    std::string content(expected.size(), '\0');
    std::size_t done = 0;
    return TAVLib::posix::readAt(fd, 0, content.data(), content.size(), done) &&
           content == expected;
}

/// Whether it contains nothing else.
inline bool hasContent(int fd, const std::string& expected)
{
    char next = '\0';
    std::size_t more = 0;
    return beginsWith(fd, expected) && TAVLib::posix::readAt(fd, expected.size(), &next, 1, more) &&
           more == 0;
}

}

#endif
