// SPDX-License-Identifier: Apache-2.0
#include <fmt/format.h>

#include <recordkit/eeprom/EFIBackupEEPROMData.h>
#include <recordkit/inspect/bytes/Text.h>

#include "../Commands.h"
#include "../Errors.h"
#include "../print/Output.h"
#include "EfiStore.h"

namespace recordkit::tool {

namespace {

void run(const Arguments& arguments)
{
    const std::string serial = toLatin1(arguments.text("--serial")).value_or("");
    const std::size_t longest = EfiIndex::SERIAL_SIZE;
    if (serial.empty() || serial.size() > longest) {
        throw usageError(fmt::format("--serial: expected 1 to {} Latin-1 characters", longest));
    }
    auto device = openImages(arguments);
    attempt([&] { TAVLib::RecordKit::EFIBackupEEPROMData(device).setIndexData(true, serial); });
    print(fmt::format("EEPROM 10: new index record for {}, no block is pending erasure\n",
                      printable(arguments.text("--serial"))));
}

}

Command efiInitCommand()
{
    return {"eeprom efi init",
            "Create a new index record",
            "recordkit eeprom efi init --serial SN4711",
            {text("--serial", "TEXT", "The system's serial number, up to 12 characters").required(),
             images()},
            Answer::TEXT,
            run};
}

}
