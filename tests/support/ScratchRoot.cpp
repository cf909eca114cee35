// SPDX-License-Identifier: Apache-2.0
#include "ScratchRoot.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include <recordkit/host/HostRoot.h>

namespace testing_support {

namespace fs = std::filesystem;

ScratchRoot::ScratchRoot()
{
    std::string pattern = (fs::temp_directory_path() / "recordkit-test-XXXXXX").string();
    if (::mkdtemp(pattern.data()) == nullptr) {
        throw std::runtime_error("no scratch folder could be made: " + pattern);
    }
    root = pattern;
    for (const char* folder : {"/tmp", "/var/tmp", "/var/tav/fmem/ipmi"}) {
        fs::create_directories(root + folder);
    }
    TAVLib::host::setSystemRoot(root);
}

ScratchRoot::~ScratchRoot()
{
    TAVLib::host::setSystemRoot("");
    std::error_code ignored;
    fs::remove_all(root, ignored);
}

bool fileExists(const std::string& path)
{
    return fs::exists(path);
}

Bytes readFile(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        throw std::runtime_error(path + " cannot be read");
    }
    // As one block: tests of faults read large files thousands of times.
    std::ostringstream content;
    content << file.rdbuf();
    return textBytes(content.str());
}

void writeFile(const std::string& path, const Bytes& bytes)
{
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<long>(bytes.size()));
    if (!file.flush()) {
        throw std::runtime_error(path + " cannot be written");
    }
}

void writeFile(const std::string& path, const std::string& text)
{
    writeFile(path, textBytes(text));
}

void patchFile(const std::string& path, long offset, const Bytes& bytes)
{
    Bytes content = readFile(path);
    std::copy(bytes.begin(), bytes.end(), content.begin() + offset);
    writeFile(path, content);
}

std::vector<std::string> listFolder(const std::string& path)
{
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(path)) {
        names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

std::size_t openDescriptors()
{
    return listFolder("/proc/self/fd").size();
}

}
