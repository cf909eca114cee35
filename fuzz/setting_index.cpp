// SPDX-License-Identifier: Apache-2.0
// The index of setting areas: as bytes, and as the JSON that `eeprom setting mkindex` takes. An
// index made from JSON has no problems, and yields the same index again.
#include "Fuzz.h"
#include "tool/eeprom/SettingJson.h"

using namespace recordkit::tool;

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size)
{
    const std::vector<SettingEntry> entries = parseSettingIndex({data, size});
    layoutProblems(entries);
    indented(toJson(entries));
    fuzz::attempt([&] {
        const std::vector<unsigned char> index = settingIndexFrom(std::string(data, data + size));
        const std::vector<SettingEntry> made = parseSettingIndex(index);
        fuzz::expect(layoutProblems(made).empty());
        fuzz::expect(settingIndexFrom(toJson(made).dump()) == index);
    });
    return 0;
}
