// SPDX-License-Identifier: Apache-2.0
#include <filesystem>
#include <fmt/format.h>
#include <memory>

#include <recordkit/eeprom/SettingEEPROMData.h>
#include <recordkit/inspect/bytes/Numbers.h>
#include <recordkit/platform/SystemRoot.h>

#include "../Commands.h"
#include "../Errors.h"
#include "../Files.h"
#include "../print/Table.h"
#include "Images.h"
#include "SettingJson.h"

namespace recordkit::tool {

using TAVLib::RecordKit::PanelEEPROMIndex;
using TAVLib::RecordKit::SettingEEPROMData;

namespace {

struct Options {
    ImagesOption images;
    std::string number;
    std::string file;
    std::string from;
    bool isJson = false;
    bool isSure = false;
};

std::string indexFile()
{
    return TAVLib::systemRoot() + PanelEEPROMIndex().getIndexDataFileName();
}

int areaOf(const std::string& text)
{
    const auto last = static_cast<unsigned long>(PanelEEPROMIndex().getIndexLastNumber());
    return static_cast<int>(
        orThrow(parseNumber(text, last),
                usageError(fmt::format("\"{}\" is not an area, expected 0 to {}", text, last))));
}

std::vector<SettingEntry> readIndex(const Options& options)
{
    auto device = options.images.open();
    const PanelEEPROMIndex index;
    std::vector<unsigned char> bytes(static_cast<std::size_t>(index.getIndexLastNumber() + 1) *
                                     index.getIndexSize());
    attempt([&] {
        device.read(index.getIndexEEPROMID(), index.getIndexOffset(), bytes.data(),
                    static_cast<unsigned int>(bytes.size()));
    });
    return parseSettingIndex(bytes);
}

/// The index file's entries; none if the file does not exist.
std::vector<SettingEntry> readIndexFile()
{
    if (!std::filesystem::exists(indexFile())) {
        return {};
    }
    const std::string content = readInput(indexFile());
    return parseSettingIndex(std::vector<unsigned char>(content.begin(), content.end()));
}

/// How an entry differs from the master copy, apart from being in use.
std::string fileText(const SettingEntry& entry, const std::vector<SettingEntry>& file)
{
    const auto at = static_cast<std::size_t>(entry.number);
    if (at >= file.size()) {
        return file.empty() ? "no file" : "missing";
    }
    const SettingEntry& master = file[at];
    const bool isSame = entry.areaNumber == master.areaNumber && entry.eeprom == master.eeprom &&
                        entry.offset == master.offset && entry.size == master.size;
    return isSame ? "same" : "DIFFERS";
}

void list(const Options& options, bool hasColour)
{
    const std::vector<SettingEntry> entries = readIndex(options);
    const std::vector<SettingEntry> file = readIndexFile();
    std::vector<std::string> problems = layoutProblems(entries);
    const Table table({{"AREA", 4},
                       {"VALID", 5},
                       {"EEPROM", 6},
                       {"OFFSET", 6},
                       {"SIZE", 5},
                       {"CHECKSUM", 8},
                       {"INDEX FILE", 0}},
                      hasColour);
    std::string text = table.header();
    Json json = Json::array();
    for (const SettingEntry& entry : entries) {
        const bool isNamed = entry.areaNumber == entry.number;
        if (entry.isValid && (!entry.isChecksumRight || !isNamed)) {
            problems.push_back(fmt::format("entry {} is damaged: {}", entry.number,
                                           entry.isChecksumRight
                                               ? fmt::format("it names area {}", entry.areaNumber)
                                               : "its checksum is wrong"));
        }
        const std::string master = fileText(entry, file);
        table.append({{std::to_string(entry.number)},
                      {entry.isValid ? "yes" : "no"},
                      {std::to_string(entry.eeprom)},
                      {std::to_string(entry.offset)},
                      {std::to_string(entry.size)},
                      {entry.isChecksumRight ? "right" : "WRONG",
                       entry.isChecksumRight ? Style::PLAIN : Style::ALARM},
                      {master, master == "DIFFERS" ? Style::ALARM : Style::PLAIN}},
                     text);
        Json each = toJson(std::vector<SettingEntry>{entry})[0];
        each["checksum_right"] = entry.isChecksumRight;
        each["index_file"] = master;
        json.push_back(each);
    }
    if (options.isJson) {
        fmt::print("{}", indented({{"entries", json}, {"problems", problems}}));
    } else {
        fmt::print("{}", text);
        for (const std::string& problem : problems) {
            fmt::print("PROBLEM  {}\n", problem);
        }
    }
    if (!problems.empty()) {
        throw dataError(fmt::format("{} problems in the index", problems.size()));
    }
}

void read(const Options& options)
{
    const int area = areaOf(options.number);
    auto device = options.images.open();
    SettingEEPROMData settings(device);
    std::string content;
    attempt([&] { content = settings.read(area, nullptr); });
    if (options.file.empty()) {
        std::fwrite(content.data(), 1, content.size(), stdout);
        return;
    }
    writeOutput(options.file, content);
    fmt::print("area {}: {} bytes written to {}\n", area, content.size(), options.file);
}

void write(const Options& options)
{
    const int area = areaOf(options.number);
    std::string content = readInput(options.file);
    auto device = options.images.open();
    SettingEEPROMData settings(device);
    int length = 0;
    attempt([&] { length = settings.write(area, content); });
    fmt::print("area {}: {} bytes of {} written, valid\n", area, length, inputName(options.file));
}

void initialise(const Options& options)
{
    const int area = options.number.empty() ? -1 : areaOf(options.number);
    auto device = options.images.open();
    SettingEEPROMData settings(device);
    attempt([&] { settings.initializeIndexData(area); });
    fmt::print("{} taken from {}\n", area == -1 ? "every entry" : fmt::format("entry {}", area),
               indexFile());
}

void invalidate(const Options& options)
{
    if (!options.isSure) {
        throw usageError("every setting area would be marked as not valid; say --yes for that");
    }
    auto device = options.images.open();
    const std::vector<SettingEntry> before = readIndex(options);
    SettingEEPROMData settings(device);
    attempt([&] { settings.setAllInvalid(); });
    for (const SettingEntry& entry : before) {
        if (entry.isValid) {
            fmt::print("area {}: not valid any more\n", entry.number);
        }
    }
}

void index(const Options& options)
{
    if (options.isJson == !options.from.empty()) {
        throw usageError("expected --json or --from FILE");
    }
    if (options.isJson) {
        const std::vector<SettingEntry> entries = readIndex(options);
        fmt::print("{}", indented({{"entries", toJson(entries)}}));
        return;
    }
    std::vector<unsigned char> bytes;
    try {
        bytes = settingIndexFrom(readInput(options.from));
    } catch (const Error& e) {
        throw CommandError(statusOf(e), inputName(options.from) + ": " + e.what());
    }
    std::error_code error;
    std::filesystem::create_directories(std::filesystem::path(indexFile()).parent_path(), error);
    writeOutput(indexFile(), std::string(bytes.begin(), bytes.end()));
    fmt::print("{} written, {} entries\n", indexFile(), parseSettingIndex(bytes).size());
}

}

void addSettingCommands(CLI::App& eeprom, Globals& globals)
{
    CLI::App* const setting = addCommand(eeprom, "setting", "The setting areas and their index",
                                         "recordkit eeprom setting list --images board");
    setting->require_subcommand(1);
    const auto options = std::make_shared<Options>();
    const auto add = [&](const char* name, const char* description, const char* example) {
        CLI::App* const command = addCommand(*setting, name, description, example);
        options->images.addTo(*command);
        return command;
    };
    CLI::App* command = add("list", "List the entries of the index, and what is wrong with them",
                            "recordkit eeprom setting list --images board");
    command->add_flag("--json", options->isJson, "JSON instead of a table");
    command->callback([options, &globals] { list(*options, globals.wantsColour()); });

    command = add("read", "Read a valid area", "recordkit eeprom setting read 3 area3.bin");
    command->add_option("N", options->number, "Area, 0 to 26")->required();
    command->add_option("FILE", options->file, "Where to; standard output without it");
    command->callback([options] { read(*options); });

    command = add("write", "Write an area, which makes it valid",
                  "recordkit eeprom setting write 3 area3.bin");
    command->add_option("N", options->number, "Area, 0 to 26")->required();
    command->add_option("FILE", options->file, "What; - for standard input")->required();
    command->callback([options] { write(*options); });

    command = add("init", "Take the index, or one entry, from the index file",
                  "recordkit --root board eeprom setting init --images board");
    command->add_option("N", options->number, "Entry, 0 to 26; all of them without it");
    command->callback([options] { initialise(*options); });

    command = add("invalidate", "Mark every area as not valid",
                  "recordkit eeprom setting invalidate --yes");
    command->add_flag("--yes", options->isSure, "Really do it");
    command->callback([options] { invalidate(*options); });

    command = add("index", "Export the index, or make an index file from an export",
                  "recordkit --root board eeprom setting index --from areas.json");
    command->add_flag("--json", options->isJson, "Export the index of the images");
    command->add_option("--from", options->from, "Make the index file; - for standard input")
        ->type_name("FILE");
    command->callback([options] { index(*options); });
}

}
