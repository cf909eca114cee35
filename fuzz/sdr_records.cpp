// SPDX-License-Identifier: Apache-2.0
// Every record of a repository described field by field, named and checked.
#include "Fuzz.h"
#include "support/SdrProperties.h"

using namespace recordkit::inspect;

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size)
{
    const std::string content(data, data + size);
    for (const SdrFormat format : {SdrFormat::DUMP, SdrFormat::RESPONSES}) {
        fuzz::expect(testing_support::brokenSdrProperty(content, format).empty());
    }
    return 0;
}
