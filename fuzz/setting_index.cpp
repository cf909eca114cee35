// SPDX-License-Identifier: Apache-2.0
// The index of setting areas. One that can be made of the entries has no problems, and yields the
// same entries again.
#include <recordkit/inspect/eeprom/SettingIndex.h>

#include "Fuzz.h"

using namespace recordkit::inspect;

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size)
{
    const std::vector<SettingEntry> entries = parseSettingIndex({data, size});
    indexProblems(entries);
    fuzz::attempt([&] {
        const Bytes index = makeSettingIndex(entries);
        const std::vector<SettingEntry> made = parseSettingIndex(index);
        fuzz::expect(indexProblems(made).empty());
        fuzz::expect(makeSettingIndex(made) == index);
    });
    return 0;
}
