// SPDX-License-Identifier: Apache-2.0
#include <fmt/format.h>
#include <vector>

#include <recordkit/inspect/fru/FruRepair.h>

#include "../Commands.h"
#include "../Files.h"
#include "../print/Problems.h"
#include "FruWrite.h"

namespace recordkit::tool {

namespace {

void run(const Arguments& arguments)
{
    const bool isPartly = arguments.has("--partly");
    std::vector<std::string> left;
    changeFruImage(arguments, [&](const std::string& bytes) {
        const FruRepair repaired = repairFruImage(bytes);
        left = repaired.left;
        if (!left.empty() && !isPartly) {
            throw DataError(fmt::format("{} (this cannot be repaired; --partly repairs the rest)",
                                        left.front()));
        }
        FruEditResult result = {repaired.bytes, {}, repaired.repairs};
        if (repaired.repairs.empty()) {
            result.notes.emplace_back("nothing to repair");
        }
        return result;
    });
    Problems problems;
    problems.run(inputName(arguments.text("FILE")), [&left] { return left; });
    problems.finish();
}

}

Command fruRepairCommand()
{
    return {"fru repair",
            "Repair checksums, end markers and lengths of a FRU image",
            "recordkit fru repair --dry-run board.bin",
            {fruEditedFile(),
             flag("--partly", "Repair what can be repaired, and report what is still damaged"),
             inPlace(), pageSize(), fruDryRun()},
            Answer::TEXT,
            run,
            "Each changed byte has a line. Fields keep their bytes: what a wrong checksum covers "
            "may be damaged itself, so look at it with fru show first. What cannot be known, such "
            "as the length of a record with both checksums wrong, is not repaired."};
}

}
