// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_PRINT_SPARKLINE_H
#define RECORDKIT_TOOL_PRINT_SPARKLINE_H

#include <cstddef>
#include <map>
#include <string>

namespace recordkit::tool {

/// Counts over time as a line of bars, the highest of full height.
struct Sparkline {
    std::string bars;
    unsigned int step = 0; ///< seconds that a bar stands for
};

/// `counts`: by the second in which a step begins, not empty; the steps are `step` seconds long.
/// Where there is not room for a bar for each, a bar stands for several of them. What has any
/// count has a bar that can be seen.
Sparkline sparkline(const std::map<unsigned int, std::size_t>& counts, unsigned int step,
                    std::size_t room);

}

#endif
