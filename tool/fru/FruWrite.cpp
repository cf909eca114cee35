// SPDX-License-Identifier: Apache-2.0
#include "FruWrite.h"

#include <ctime>
#include <fmt/format.h>

#include <recordkit/inspect/bytes/Text.h>

#include "../Errors.h"
#include "../Files.h"
#include "../OutputFile.h"
#include "../print/Output.h"

namespace recordkit::tool {

Option fruEditedFile()
{
    return argument("FILE", "FRU image or kernel node");
}

Option ignoreWrongChecksums()
{
    return flag("--ignore-checksum",
                "Repair wrong checksums of header and areas instead of refusing the image");
}

Option textCoding()
{
    // In the order of Coding.
    return choice("--coding", "CODING", {"binary", "bcd", "6-bit", "text"},
                  "Store texts as binary (hex digits), BCD plus, 6-bit or 8-bit text (default: as "
                  "the field is, or as text where the value needs it)");
}

Option inPlace()
{
    return flag("--in-place", "Write only the bytes that change, in place, as for device nodes");
}

Option fruDryRun()
{
    return flag("--dry-run", "Report what would change, write nothing");
}

FruEditOptions editOptionsOf(const Arguments& arguments)
{
    FruEditOptions options;
    options.repairsChecksums = arguments.has("--ignore-checksum");
    options.now = static_cast<unsigned int>(std::time(nullptr));
    return options;
}

std::optional<Coding> codingOf(const Arguments& arguments)
{
    const auto coding = arguments.find("--coding");
    return coding ? std::optional<Coding>(static_cast<Coding>(*coding)) : std::nullopt;
}

FruEdit readFruEdit(const std::string& word)
{
    FruEdit edit = parseFruEdit(word);
    if (edit.field == "internal") {
        if (edit.value.empty() || edit.value[0] != '@') {
            throw usageError(
                "internal: expected internal=@FILE, a file with the bytes of the area");
        }
        edit.value = readInput(edit.value.substr(1), FRU_LIMIT);
    }
    return edit;
}

void changeFruImage(const Arguments& arguments,
                    const std::function<FruEditResult(const std::string&)>& edit)
{
    const std::string file = arguments.text("FILE");
    if (file == "-") {
        throw usageError("a file is changed, not standard input");
    }
    const bool isDryRun = arguments.has("--dry-run");
    const std::string bytes = readInput(file, FRU_LIMIT);
    const FruEditResult result = naming(inputName(file), [&] { return edit(bytes); });
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
