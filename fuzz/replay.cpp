// SPDX-License-Identifier: Apache-2.0
// Runs a target on every file of the named folders, as the fuzzer would.
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size);

int main(int argc, char** argv)
{
    unsigned int inputs = 0;
    for (int i = 1; i < argc; ++i) {
        for (const auto& entry : std::filesystem::directory_iterator(argv[i])) {
            std::ifstream file(entry.path(), std::ios::binary);
            const std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
            const std::vector<unsigned char> input(bytes.begin(), bytes.end());
            LLVMFuzzerTestOneInput(input.data(), input.size());
            ++inputs;
        }
    }
    std::printf("%u inputs\n", inputs);
    return inputs == 0 ? EXIT_FAILURE : EXIT_SUCCESS;
}
