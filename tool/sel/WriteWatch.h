// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_SEL_WRITEWATCH_H
#define RECORDKIT_TOOL_SEL_WRITEWATCH_H

#include <string>
#include <vector>

namespace recordkit::tool {

/// Waits for writes to the working files of some boards, and for the ends of rotations.
class WriteWatch {
public:
    /// Starts watching; throws CommandError (file).
    explicit WriteWatch(const std::vector<unsigned char>& boards);
    ~WriteWatch();
    WriteWatch(const WriteWatch&) = delete;
    WriteWatch& operator=(const WriteWatch&) = delete;

    /// Returns once one of the files was written since the last call.
    void wait() const;

private:
    void watch(const std::string& folder, unsigned int events);

    int fd;
    std::vector<std::string> names; ///< of files whose changes matter
};

}

#endif
