// SPDX-License-Identifier: Apache-2.0
#include <fmt/format.h>
#include <memory>

#include <recordkit/fru/FRUData.h>
#include <recordkit/host/FileFRURWif.h>
#include <recordkit/inspect/bytes/Text.h>
#include <recordkit/inspect/fru/FruEdit.h>
#include <recordkit/inspect/fru/FruImage.h>
#include <recordkit/platform/PException.h>

#include "../Commands.h"
#include "../Errors.h"
#include "../Files.h"

namespace recordkit::tool {

namespace {

struct Options {
    std::string file;
    std::vector<std::string> assignments;
    FruEditOptions edit;
    bool isInPlace = false;
    bool isDryRun = false;
};

/// Writes the bytes that differ in place, one run after another.
void patch(const std::string& file, const std::string& before, const std::string& after)
{
    TAVLib::host::FileFRURWif device(file, true);
    for (std::size_t at = 0; at < after.size();) {
        std::size_t end = at;
        while (end < after.size() && before[end] != after[end]) {
            ++end;
        }
        if (end != at) {
            const std::vector<unsigned char> run(after.begin() + static_cast<long>(at),
                                                 after.begin() + static_cast<long>(end));
            device.write(static_cast<unsigned int>(at), static_cast<unsigned int>(run.size()),
                         run.data());
        }
        at = end + 1;
    }
}

/// Reads the file again, through the library and as a whole, and compares.
void checkWritten(const std::string& file, const FruEditResult& result)
{
    const FruImage expected = parseFruImage(result.bytes);
    TAVLib::host::FileFRURWif device(file);
    FRUData fru(device);
    for (const FruAreaImage& area : expected.areas) {
        for (const FruChange& change : result.changes) {
            if (change.field.compare(0, area.extent.name.size() + 1, area.extent.name + ".") == 0) {
                static_cast<void>(fru.getAreaObject(area.id, FRUArea::CSUM_CHECK));
            }
        }
    }
    if (readInput(file) != result.bytes) {
        throw fileError(file + ": what was written reads back otherwise");
    }
}

FruEditResult editFile(const Options& options, const std::string& bytes)
{
    std::vector<FruEdit> edits;
    for (const std::string& text : options.assignments) {
        edits.push_back(parseFruEdit(text));
    }
    try {
        return editFruImage(bytes, edits, options.edit);
    } catch (const Error& e) {
        throw CommandError(statusOf(e), options.file + ": " + e.what());
    } catch (const TAVLib::PException& e) {
        throw dataError(options.file + ": " + e.getMessage());
    }
}

void set(const Options& options)
{
    const std::string bytes = readInput(options.file);
    const FruEditResult result = editFile(options, bytes);
    if (!options.isDryRun) {
        if (options.isInPlace || isDeviceNode(options.file)) {
            checkLink(options.file);
            patch(options.file, bytes, result.bytes);
        } else {
            writeOutput(options.file, result.bytes);
        }
        checkWritten(options.file, result);
    }
    for (const FruChange& change : result.changes) {
        fmt::print("{}: \"{}\" -> \"{}\"\n", change.field, printable(change.before),
                   printable(change.after));
    }
    for (const std::string& note : result.notes) {
        fmt::print("{}\n", note);
    }
    if (options.isDryRun) {
        fmt::print("nothing was written\n");
    }
}

}

void addFruSet(CLI::App& fru)
{
    const auto options = std::make_shared<Options>();
    CLI::App* const command = addCommand(
        fru, "set", "Change fields of a FRU image, all or none; everything else stays as it is",
        "recordkit fru set board.bin board.serial=SN4711 product.asset-tag=\"Rack 7\"");
    command->add_option("FILE", options->file, "FRU image or kernel node")->required();
    command->add_option("FIELD=VALUE", options->assignments, "As board.serial=SN4711")->required();
    command->add_flag("--grow", options->edit.mayGrow,
                      "Where an area is too small, make it larger and move those behind it");
    command->add_flag("--ignore-checksum", options->edit.repairsChecksums,
                      "Repair wrong checksums of header and areas instead of refusing the image");
    command->add_flag("--in-place", options->isInPlace,
                      "Write the bytes that change where they lie, as is done with device nodes");
    command->add_flag("--dry-run", options->isDryRun, "Say what would change, write nothing");
    command->callback([options] { set(*options); });
}

}
