// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TESTS_PLATFORM_FILES_H
#define RECORDKIT_TESTS_PLATFORM_FILES_H

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

namespace platform_tests {

/// A folder of its own for the lifetime of the object.
class ScratchFolder {
public:
    ScratchFolder()
        : folder((std::filesystem::temp_directory_path() / "platform-test-XXXXXX").string())
    {
        if (::mkdtemp(folder.data()) == nullptr) {
            throw std::runtime_error("no scratch folder could be made: " + folder);
        }
    }
    ~ScratchFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(folder, ignored);
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    const std::string& path() const { return folder; }
    std::string at(const std::string& name) const { return folder + "/" + name; }

private:
    std::string folder;
};

inline std::string readFile(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        throw std::runtime_error(path + " cannot be read");
    }
    return {std::istreambuf_iterator<char>(file), {}};
}

inline void writeFile(const std::string& path, const std::string& content)
{
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    if (!(file << content).flush()) {
        throw std::runtime_error(path + " cannot be written");
    }
}

inline bool fileExists(const std::string& path)
{
    return std::filesystem::exists(std::filesystem::symlink_status(path));
}

/// Descriptors that this process has open.
inline std::size_t openDescriptors()
{
    const std::filesystem::directory_iterator all("/proc/self/fd");
    return static_cast<std::size_t>(std::distance(begin(all), end(all)));
}

/// A system board that no machine has, so that its files can be written and removed.
constexpr unsigned char BOARD = 250;

}

#endif
