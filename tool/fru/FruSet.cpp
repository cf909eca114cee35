// SPDX-License-Identifier: Apache-2.0
#include <fmt/format.h>

#include <recordkit/fru/FRUData.h>
#include <recordkit/inspect/bytes/Text.h>
#include <recordkit/inspect/fru/FruEdit.h>
#include <recordkit/inspect/fru/ImageDevice.h>
#include <recordkit/inspect/fru/FruImage.h>
#include <recordkit/platform/PException.h>

#include "../Commands.h"
#include "../Errors.h"
#include "../Files.h"
#include "../OutputFile.h"
#include "../cli/Arguments.h"
#include "../print/Output.h"

namespace recordkit::tool {

namespace {

/// The library must be able to read every area with a change.
void checkEdited(const FruEditResult& result)
{
    const FruImage expected = parseFruImage(result.bytes);
    ImageDevice device(result.bytes);
    FRUData fru(device);
    for (const FruAreaImage& area : expected.areas) {
        for (const FruChange& change : result.changes) {
            if (change.field.compare(0, area.extent.name.size() + 1, area.extent.name + ".") == 0) {
                static_cast<void>(fru.getAreaObject(area.id, FRUArea::CSUM_CHECK));
            }
        }
    }
}

FruEditResult edit(const Arguments& arguments, const std::string& bytes)
{
    std::vector<FruEdit> edits;
    for (const std::string& text : arguments.texts("FIELD=VALUE")) {
        edits.push_back(parseFruEdit(text));
    }
    FruEditOptions options;
    options.mayGrow = arguments.has("--grow");
    options.repairsChecksums = arguments.has("--ignore-checksum");
    return naming(inputName(arguments.text("FILE")),
                  [&] { return editFruImage(bytes, edits, options); });
}

void run(const Arguments& arguments)
{
    const std::string file = arguments.text("FILE");
    if (file == "-") {
        throw usageError("fru set changes a file, not standard input");
    }
    const bool isDryRun = arguments.has("--dry-run");
    const std::string bytes = readInput(file, FRU_LIMIT);
    const FruEditResult result = edit(arguments, bytes);
    checkEdited(result);
    if (!isDryRun) {
        OutputFile output(file);
        if (arguments.has("--in-place") || output.isDevice()) {
            output.patch(bytes, result.bytes);
        } else {
            output.replace(result.bytes, &bytes);
        }
    }
    for (const FruChange& change : result.changes) {
        print(fmt::format("{}: \"{}\" -> \"{}\"\n", change.field, printable(change.before),
                          printable(change.after)));
    }
    for (const std::string& note : result.notes) {
        print(note + "\n");
    }
    if (isDryRun) {
        print("nothing was written\n");
    }
}

}

Command fruSetCommand()
{
    return {"fru set",
            "Change fields of a FRU image, all or none; everything else stays as it is",
            "recordkit fru set board.bin board.serial=SN4711 product.asset-tag=\"Rack 7\"",
            {argument("FILE", "FRU image or kernel node"),
             argument("FIELD=VALUE", "As board.serial=SN4711").many(),
             flag("--grow", "If an area is too small, enlarge it and move the areas after it"),
             flag("--ignore-checksum",
                  "Repair wrong checksums of header and areas instead of refusing the image"),
             flag("--in-place", "Write only the bytes that change, in place, as for device nodes"),
             flag("--dry-run", "Report what would change, write nothing")},
            Answer::TEXT,
            run,
            "Write a date as 2024-11-05 06:07, a chassis type as a name or a number."};
}

}
