// SPDX-License-Identifier: Apache-2.0
#include "Progress.h"

#include <cstdio>
#include <string>

#include "Output.h"

namespace recordkit::tool {

namespace {

/// Shorter work ends before a bar could be read.
constexpr std::size_t WORTH_A_BAR = 2000;

}

Progress::Progress(std::size_t count)
    : total(count), isShown(wantsProgress() && count >= WORTH_A_BAR)
{
}

Progress::~Progress()
{
    if (isShown) {
        std::fputs("\r\033[K", stderr);
    }
}

void Progress::show(std::size_t done)
{
    const auto percent = static_cast<int>(done * 100 / total);
    if (isShown && percent != shown) {
        shown = percent;
        constexpr int WIDTH = 25;
        const int width = percent * WIDTH / 100;
        std::fprintf(stderr, "\r[%s%s] %d %%", std::string(width, '#').c_str(),
                     std::string(WIDTH - width, ' ').c_str(), percent);
    }
}

}
