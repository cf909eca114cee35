// SPDX-License-Identifier: Apache-2.0
// Memory modules, as images and as hex dumps.
#include "Fuzz.h"
#include "tool/spd/Spd.h"
#include "tool/text/HexDump.h"

using namespace recordkit::tool;

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size)
{
    fuzz::attempt(
        [&] { indented(toJson(parseSpd(parseImage("input", std::string(data, data + size))))); });
    return 0;
}
