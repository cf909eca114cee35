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

Option pageSize()
{
    return choice("--page", "BYTES", {"8", "16", "32", "64"},
                  "Write in place by pages of so many bytes, each read back before the next");
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

namespace {

/// "board.serial: "A" -> "B"", "dc-load added", "board.custom2: "A" removed".
std::string changeLine(const FruChange& change)
{
    const auto quoted = [](const std::string& value) {
        return value.empty() ? "" : fmt::format(": \"{}\"", printable(value));
    };
    if (change.before && change.after) {
        return fmt::format("{}: \"{}\" -> \"{}\"\n", change.field, printable(*change.before),
                           printable(*change.after));
    }
    return change.after ? fmt::format("{}{} added\n", change.field, quoted(*change.after))
                        : fmt::format("{}{} removed\n", change.field, quoted(*change.before));
}

void write(const Arguments& arguments, const std::string& before, const std::string& after,
           bool hasInPlace)
{
    const std::string file = arguments.text("FILE");
    OutputFile output(file);
    if (!hasInPlace && output.isDevice()) {
        throw fileError(inputName(file) + " is a device, whose size cannot change");
    }
    const auto page = hasInPlace ? arguments.find("--page") : std::nullopt;
    if (page || (hasInPlace && (arguments.has("--in-place") || output.isDevice()))) {
        constexpr std::size_t SMALLEST_PAGE = 8;
        output.patch(before, after, page ? SMALLEST_PAGE << *page : 0);
    } else {
        output.replace(after, &before);
    }
}

}

void changeFruImage(const Arguments& arguments,
                    const std::function<FruEditResult(const std::string&)>& edit, bool hasInPlace)
{
    const std::string file = arguments.text("FILE");
    if (file == "-") {
        throw usageError("FILE is changed, it cannot be standard input");
    }
    const std::string bytes = readInput(file, FRU_LIMIT);
    const FruEditResult result = naming(inputName(file), [&] { return edit(bytes); });
    const bool isDryRun = arguments.has("--dry-run");
    if (!isDryRun && result.bytes != bytes) {
        write(arguments, bytes, result.bytes, hasInPlace);
    }
    for (const FruChange& change : result.changes) {
        print(changeLine(change));
    }
    for (const std::string& note : result.notes) {
        print(note + "\n");
    }
    if (isDryRun) {
        print("nothing was written\n");
    }
}

}
