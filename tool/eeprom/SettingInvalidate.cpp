// SPDX-License-Identifier: Apache-2.0
#include <fmt/format.h>

#include <recordkit/eeprom/SettingEEPROMData.h>

#include "../Commands.h"
#include "../Errors.h"
#include "../print/Output.h"
#include "SettingStore.h"

namespace recordkit::tool {

namespace {

void run(const Arguments& arguments)
{
    if (!arguments.has("--yes")) {
        throw usageError("this marks every setting area invalid; pass --yes to confirm");
    }
    const std::vector<SettingEntry> before = readSettingIndex(arguments);
    auto device = openImages(arguments);
    TAVLib::RecordKit::SettingEEPROMData settings(device);
    attempt([&] { settings.setAllInvalid(); });
    for (const SettingEntry& entry : before) {
        if (entry.isValid) {
            print(fmt::format("area {}: invalidated\n", entry.number));
        }
    }
}

}

Command settingInvalidateCommand()
{
    return {"eeprom setting invalidate",
            "Mark every area as not valid",
            "recordkit eeprom setting invalidate --yes",
            {flag("--yes", "Confirm"), images()},
            Answer::TEXT,
            run};
}

}
