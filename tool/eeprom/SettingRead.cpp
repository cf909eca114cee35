// SPDX-License-Identifier: Apache-2.0
#include <fmt/format.h>

#include <recordkit/eeprom/SettingEEPROMData.h>

#include "../Commands.h"
#include "SettingStore.h"

namespace recordkit::tool {

namespace {

void run(const Arguments& arguments)
{
    const auto area = static_cast<int>(arguments.number("N"));
    auto device = openImages(arguments);
    TAVLib::RecordKit::SettingEEPROMData settings(device);
    std::string content;
    attempt([&] { content = settings.read(area, nullptr); });
    writeRead(arguments, content, fmt::format("area {}", area));
}

}

Command settingReadCommand()
{
    return {"eeprom setting read",
            "Read a valid area",
            "recordkit eeprom setting read 3 area3.bin",
            {settingArea("Area, 0 to 26"),
             argument("FILE", "Output file (default: standard output)").optional(), images()},
            Answer::TEXT,
            run};
}

}
