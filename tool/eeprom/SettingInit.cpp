// SPDX-License-Identifier: Apache-2.0
#include <fmt/format.h>

#include <recordkit/eeprom/SettingEEPROMData.h>

#include "../Commands.h"
#include "../print/Output.h"
#include "SettingStore.h"

namespace recordkit::tool {

namespace {

void run(const Arguments& arguments)
{
    const auto entry = arguments.find("N");
    auto device = openImages(arguments);
    TAVLib::RecordKit::SettingEEPROMData settings(device);
    constexpr int ALL = -1;
    attempt([&] { settings.initializeIndexData(entry ? static_cast<int>(*entry) : ALL); });
    print(fmt::format("{} copied from {}\n",
                      entry ? fmt::format("entry {}", *entry) : "every entry", settingIndexFile()));
}

}

Command settingInitCommand()
{
    return {"eeprom setting init",
            "Copy the index, or one entry, from the index file",
            "recordkit --root board eeprom setting init --images board",
            {settingArea("Entry, 0 to 26 (default: all)").optional(), images()},
            Answer::TEXT,
            run};
}

}
