// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_BENCH_FRUIMAGES_H
#define RECORDKIT_BENCH_FRUIMAGES_H

#include <vector>

namespace bench {

/// Sample images for a device of that size: chassis, board and product area in 256 bytes; all areas
/// in 2 KiB; a processor's ROM in 128.
const std::vector<unsigned char>& smallFru();
const std::vector<unsigned char>& largeFru();
const std::vector<unsigned char>& cpuRom();

}

#endif
