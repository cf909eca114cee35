// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TESTS_SUPPORT_SAMPLEIMAGES_H
#define RECORDKIT_TESTS_SUPPORT_SAMPLEIMAGES_H

#include <algorithm>
#include <filesystem>
#include <string>
#include <vector>

namespace testing_support {

/// Paths of the sample FRU images, the public ones among them where they are, in a fixed order.
inline std::vector<std::string> sampleImages()
{
    namespace fs = std::filesystem;
    std::vector<std::string> paths;
    for (const char* const folder : {RECORDKIT_EXAMPLE_DATA "/fru", RECORDKIT_PUBLIC_DATA "/fru",
                                     RECORDKIT_PUBLIC_DATA "/fru/other"}) {
        if (!fs::exists(folder)) {
            continue;
        }
        for (const auto& entry : fs::directory_iterator(folder)) {
            if (entry.path().extension() == ".bin") {
                paths.push_back(entry.path().string());
            }
        }
    }
    std::sort(paths.begin(), paths.end());
    return paths;
}

}

#endif
