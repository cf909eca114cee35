// SPDX-License-Identifier: Apache-2.0
#include <fmt/format.h>

#include <recordkit/inspect/bytes/Hex.h>

#include "../Commands.h"
#include "../decode/FieldListing.h"
#include "Repository.h"

namespace recordkit::tool {

namespace {

const SdrRecord& findRecord(const Repository& repository, unsigned long id)
{
    for (const SdrRecord& record : repository.file.records) {
        if (record.id() == id) {
            return record;
        }
    }
    throw dataError(fmt::format("{}: there is no record {:04X}h", repository.name, id));
}

void run(const Arguments& arguments)
{
    const Repository repository = readRepository(arguments);
    const SdrRecord& record = findRecord(repository, arguments.number("ID"));
    const char* const name = record.type() == SDR_FULL      ? "FullSensorRecord"
                             : record.type() == SDR_COMPACT ? "CompactSensorRecord"
                                                            : nullptr;
    if (name == nullptr) {
        throw dataError(fmt::format("{}: record {:04X}h at offset {} is not a sensor but {}: {}",
                                    repository.name, record.id(), record.offset,
                                    sdrTypeName(record.type()), toHex(record.bytes)));
    }
    naming(repository.name,
           [&] { printFields(*findRecordClass(name), record.bytes, arguments.layout()); });
    repository.problems.finish();
}

}

Command sdrShowCommand()
{
    return {"sdr show",
            "Show every field of one full or compact record",
            "recordkit sdr show repository.sdr 0x12",
            repositoryOptions({number("ID", "ID", 0, 0xFFFF, "Record id")}),
            Answer::TABLE,
            run};
}

}
