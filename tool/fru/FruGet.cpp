// SPDX-License-Identifier: Apache-2.0
#include <fmt/format.h>

#include "../Commands.h"
#include "../Errors.h"
#include "../Files.h"
#include "../print/Output.h"
#include "FruOptions.h"
#include "FruValues.h"

namespace recordkit::tool {

namespace {

/// A field of an area. Throws DataError for a field that is missing or, unless checksums are
/// ignored, whose area is damaged.
const FruField& fieldOf(const FruImage& image, const std::string& name, bool ignoresChecksum)
{
    const std::string areaName = name.substr(0, name.find('.'));
    for (const FruAreaImage& area : image.areas) {
        const bool isWrong =
            area.extent.size == 0 || (!ignoresChecksum && !area.checksum.isRight());
        if (area.extent.name == areaName && isWrong) {
            throw DataError(area.problems.back());
        }
    }
    const FruField* const field = image.findField(name);
    if (field == nullptr) {
        throw DataError(fmt::format("there is no field {}", name));
    }
    return *field;
}

/// A field of a multirecord, the same way.
std::string recordValue(const FruMultiRecord& record, const std::string& name, bool ignoresChecksum,
                        bool isRaw)
{
    if (!ignoresChecksum && !record.data.isRight()) {
        throw DataError(fmt::format("{}: wrong data checksum", record.extent.name));
    }
    const MultiRecordField* const field = record.content.findField(name);
    if (field == nullptr) {
        throw DataError(fmt::format("there is no field {}.{}", record.content.name, name));
    }
    return isRaw ? rawBytes(record, *field) : field->text + "\n";
}

std::string valueOf(const FruImage& image, const std::string& name, bool ignoresChecksum,
                    bool isRaw)
{
    const std::size_t dot = name.find('.');
    const FruMultiRecord* const record = image.findRecord(name.substr(0, dot));
    if (record != nullptr && dot != std::string::npos) {
        return recordValue(*record, name.substr(dot + 1), ignoresChecksum, isRaw);
    }
    const FruField& field = fieldOf(image, name, ignoresChecksum);
    return isRaw ? field.bytes : field.value + "\n";
}

/// Prints nothing if one of the fields cannot be printed.
void run(const Arguments& arguments)
{
    const bool ignoresChecksum = arguments.has("--ignore-checksum");
    const std::string file = arguments.text("FILE");
    const FruImage image = parseFruImage(readInput(file, FRU_LIMIT), internalLayoutOf(arguments));
    print(naming(inputName(file), [&] {
        if (!image.isFru || (!ignoresChecksum && !image.header.isRight())) {
            throw DataError(image.headerProblems.front());
        }
        std::string values;
        for (const std::string& name : arguments.texts("FIELD")) {
            values += valueOf(image, name, ignoresChecksum, arguments.has("--raw"));
        }
        return values;
    }));
}

}

Command fruGetCommand()
{
    return {"fru get",
            "Print the bare value of fields, for scripts",
            "recordkit fru get board.bin board.serial",
            {fruFile(),
             argument("FIELD", "As board.serial, product.custom1 or dc-output2.max-current").many(),
             internalLayout(),
             flag("--ignore-checksum",
                  "Print it even if the checksum of its area, its record or the header is wrong"),
             flag("--raw", "Print the bytes of the value, without a line end")},
            Answer::TEXT,
            run,
            "The values have a line each. Text ends at the first zero byte; --raw prints all "
            "bytes. The "
            "names of multirecords' fields are those that fru show lists; numbers have no unit."};
}

}
