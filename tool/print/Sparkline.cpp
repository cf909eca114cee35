// SPDX-License-Identifier: Apache-2.0
#include "Sparkline.h"

#include <algorithm>
#include <iterator>
#include <vector>

namespace recordkit::tool {

Sparkline sparkline(const std::map<unsigned int, std::size_t>& counts, unsigned int step,
                    std::size_t room)
{
    constexpr const char* BARS[] = {" ", "▁", "▂", "▃", "▄", "▅", "▆", "▇", "█"};
    constexpr std::size_t HEIGHTS = std::size(BARS) - 1;
    const unsigned int first = counts.begin()->first;
    const std::size_t steps = (counts.rbegin()->first - first) / step + 1;
    const std::size_t together = (steps + room - 1) / room;
    std::vector<std::size_t> sums((steps + together - 1) / together);
    for (const auto& [second, count] : counts) {
        sums[(second - first) / step / together] += count;
    }
    const std::size_t most = std::max<std::size_t>(1, *std::max_element(sums.begin(), sums.end()));
    Sparkline line;
    for (const std::size_t sum : sums) {
        line.bars += BARS[(sum * HEIGHTS + most - 1) / most];
    }
    line.step = static_cast<unsigned int>(step * together);
    return line;
}

}
