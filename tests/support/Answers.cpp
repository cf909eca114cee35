// SPDX-License-Identifier: Apache-2.0
#include "Answers.h"

#include <filesystem>
#include <stdexcept>

#include "Process.h"
#include "ScratchRoot.h"

namespace testing_support {

std::string contentOf(const std::string& path)
{
    const bool isPacked = std::filesystem::path(path).extension() == ".gz";
    if (!isPacked && fileExists(path)) {
        const Bytes bytes = readFile(path);
        return std::string(bytes.begin(), bytes.end());
    }
    const Outcome unpacked = run({"gzip", "-dc", isPacked ? path : path + ".gz"});
    if (unpacked.status != 0) {
        throw std::runtime_error(path + ": " + unpacked.err);
    }
    return unpacked.out;
}

}
