// SPDX-License-Identifier: Apache-2.0
// Memory modules of every generation, as images and as hex dumps.
#include <recordkit/inspect/bytes/Hex.h>
#include <recordkit/inspect/memory/Spd.h>

#include "Fuzz.h"

using namespace recordkit::inspect;

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size)
{
    fuzz::attempt([&] { parseSpd(parseImage("input", std::string(data, data + size))); });
    return 0;
}
