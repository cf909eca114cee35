// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_PRINT_PROGRESS_H
#define RECORDKIT_TOOL_PRINT_PROGRESS_H

#include <cstddef>

namespace recordkit::tool {

/// A progress bar on standard error if that is a terminal, redrawn for each percent and erased at
/// the end. Short work shows no bar.
class Progress {
public:
    explicit Progress(std::size_t count);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    void show(std::size_t done);

private:
    std::size_t total;
    bool isShown;
    int shown = -1;
};

}

#endif
