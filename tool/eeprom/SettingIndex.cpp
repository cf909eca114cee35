// SPDX-License-Identifier: Apache-2.0
#include <filesystem>

#include <fmt/format.h>

#include "../Commands.h"
#include "../Errors.h"
#include "../Files.h"
#include "../OutputFile.h"
#include "../print/Listing.h"
#include "../print/Output.h"
#include "SettingJson.h"
#include "SettingStore.h"

namespace recordkit::tool {

namespace {

constexpr Column<SettingEntry> COLUMNS[] = {
    {"number", "AREA", 4, [](const SettingEntry& entry) { return Value(entry.number); }},
    {"valid", "VALID", 5, [](const SettingEntry& entry) { return Value(entry.isValid); }},
    {"eeprom", "EEPROM", 6, [](const SettingEntry& entry) { return Value(entry.eeprom); }},
    {"offset", "OFFSET", 6, [](const SettingEntry& entry) { return Value(entry.offset); }},
    {"size", "SIZE", 0, [](const SettingEntry& entry) { return Value(entry.size); }},
};

void run(const Arguments& arguments)
{
    if (!arguments.has("--from")) {
        printListing(readSettingIndex(arguments), COLUMNS, arguments.layout());
        return;
    }
    const std::string from = arguments.text("--from");
    const Bytes bytes =
        naming(inputName(from), [&] { return settingIndexFrom(readInput(from, LARGE_LIMIT)); });
    std::error_code error;
    std::filesystem::create_directories(std::filesystem::path(settingIndexFile()).parent_path(),
                                        error);
    writeOutput(settingIndexFile(), ByteView(bytes).text());
    print(fmt::format("{} written, {} entries\n", settingIndexFile(),
                      parseSettingIndex(bytes).size()));
}

}

Command settingIndexCommand()
{
    return {"eeprom setting index",
            "Export the index, or create an index file from an export",
            "recordkit eeprom setting index --json > areas.json && "
            "recordkit --root board eeprom setting index --from areas.json",
            {text("--from", "FILE",
                  "Create the index file from a JSON export; - for standard "
                  "input"),
             images()},
            Answer::TABLE,
            run,
            "Areas that overlap each other or the index, or extend beyond their EEPROM, are "
            "refused."};
}

}
