// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TESTS_SUPPORT_SCRATCHROOT_H
#define RECORDKIT_TESTS_SUPPORT_SCRATCHROOT_H

#include <string>

#include "Bytes.h"

namespace testing_support {

/// A folder of its own that is the system root for its lifetime, with the folders that the
/// firmware expects.
class ScratchRoot {
public:
    ScratchRoot();
    ~ScratchRoot();
    ScratchRoot(const ScratchRoot&) = delete;
    ScratchRoot& operator=(const ScratchRoot&) = delete;

    const std::string& path() const { return root; }
    /// The path below the root.
    std::string at(const std::string& below) const { return root + below; }

private:
    std::string root;
};

bool fileExists(const std::string& path);
Bytes readFile(const std::string& path);
void writeFile(const std::string& path, const Bytes& bytes);
void writeFile(const std::string& path, const std::string& text);
/// Overwrites bytes of a file in place.
void patchFile(const std::string& path, long offset, const Bytes& bytes);
/// Names in a folder, sorted.
std::vector<std::string> listFolder(const std::string& path);
/// Descriptors that this process has open.
std::size_t openDescriptors();

}

#endif
