// SPDX-License-Identifier: Apache-2.0
// The tables that name processors: the first line of the input is the code to look up, the rest the
// table.
#include <algorithm>
#include <filesystem>

#include <recordkit/util/Util.h>

#include "Fuzz.h"
#include "support/ScratchRoot.h"

using namespace testing_support;
using TAVLib::RecordKit::Util;

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size)
{
    static const ScratchRoot root;
    static const std::string folder = root.at("/etc/tav/common");
    static const bool isMade = std::filesystem::create_directories(folder);
    fuzz::dropTraces();
    const unsigned char* const end = data + size;
    const unsigned char* const lineEnd = std::find(data, end, '\n');
    const std::string code(data, lineEnd);
    const std::string table(lineEnd == end ? end : lineEnd + 1, end);
    writeFile(folder + "/cpu_ca_number.csv", table);
    const std::string untouched(size + 1, 'x'); // longer than anything that can be found
    std::string found = untouched;
    const int result = Util::convertCPUPartNumber(code, found, 0);
    fuzz::expect(isMade && (result == 0) != (found == untouched));
    fuzz::expect(result != 0 || table.find(code) != std::string::npos || code.empty() ||
                 table.find_first_of("\"\r\\") != std::string::npos);
    Util::replaceRegisteredTrademark(found);
    return 0;
}
