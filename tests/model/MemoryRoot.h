// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TESTS_MODEL_MEMORYROOT_H
#define RECORDKIT_TESTS_MODEL_MEMORYROOT_H

#include <cstdlib>
#include <memory>
#include <string>
#include <unistd.h>

#include "support/ScratchRoot.h"

namespace testing_support {

/// A scratch root in the machine's memory, where that has a folder: thousands of sequences with
/// files would wait for a disk.
inline std::unique_ptr<ScratchRoot> makeMemoryRoot()
{
    constexpr const char* MEMORY_FOLDER = "/dev/shm";
    if (::access(MEMORY_FOLDER, W_OK) != 0) {
        return std::make_unique<ScratchRoot>();
    }
    const char* const set = std::getenv("TMPDIR");
    const std::string before = set == nullptr ? "" : set;
    ::setenv("TMPDIR", MEMORY_FOLDER, 1);
    auto root = std::make_unique<ScratchRoot>();
    if (set == nullptr) {
        ::unsetenv("TMPDIR");
    } else {
        ::setenv("TMPDIR", before.c_str(), 1);
    }
    return root;
}

}

#endif
