// SPDX-License-Identifier: Apache-2.0
// Memory modules of every generation, as images and as hex dumps; compared and audited.
#include <recordkit/inspect/bytes/Hex.h>
#include <recordkit/inspect/memory/Spd.h>
#include <recordkit/inspect/memory/SpdAudit.h>
#include <recordkit/inspect/memory/SpdDifference.h>

#include "Fuzz.h"

using namespace recordkit::inspect;

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size)
{
    fuzz::attempt([&] {
        const Bytes image = parseImage("input", std::string(data, data + size));
        const Spd spd = parseSpd(image);
        fuzz::expect(compareSpdImages(image, image).empty());
        // The second half of an input, if it is a module as well, is another one.
        const Bytes half(image.begin() + static_cast<std::ptrdiff_t>(image.size() / 2),
                         image.end());
        auditSpdModules({spd, spd}, 0);
        const Spd other = parseSpd(half);
        fuzz::expect(!compareSpdImages(image, half).empty());
        auditSpdModules({spd, other, spd}, 0);
    });
    return 0;
}
