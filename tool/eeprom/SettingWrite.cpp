// SPDX-License-Identifier: Apache-2.0
#include <fmt/format.h>

#include <recordkit/eeprom/SettingEEPROMData.h>

#include "../Commands.h"
#include "../Files.h"
#include "../print/Output.h"
#include "SettingStore.h"

namespace recordkit::tool {

namespace {

void run(const Arguments& arguments)
{
    const auto area = static_cast<int>(arguments.number("N"));
    std::string content = readContent(arguments);
    auto device = openImages(arguments);
    TAVLib::RecordKit::SettingEEPROMData settings(device);
    int length = 0;
    const std::string file = inputName(arguments.text("FILE"));
    attempt([&] { length = settings.write(area, content); }, file);
    print(fmt::format("area {}: {} bytes of {} written, valid\n", area, length, file));
}

}

Command settingWriteCommand()
{
    return {"eeprom setting write",
            "Write an area, which makes it valid",
            "recordkit eeprom setting write 3 area3.bin",
            {settingArea("Area, 0 to 26"), argument("FILE", "Input file, or - for standard input"),
             images()},
            Answer::TEXT,
            run};
}

}
