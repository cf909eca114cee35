// SPDX-License-Identifier: Apache-2.0
#include <fmt/format.h>

#include <recordkit/eeprom/EFIBackupEEPROMData.h>

#include "../Commands.h"
#include "../print/Output.h"
#include "EfiStore.h"

namespace recordkit::tool {

namespace {

void run(const Arguments& arguments)
{
    const EfiPlace place = efiPlaceOf(arguments);
    const auto block = static_cast<unsigned int>(arguments.number("BLOCK"));
    openEfiStore(arguments);
    auto device = openImages(arguments);
    attempt([&] {
        TAVLib::RecordKit::EFIBackupEEPROMData(device).markBlock(place.partition, place.bank,
                                                                 block * EfiIndex::BLOCK_SIZE);
    });
    print(fmt::format("EEPROM {}: block {} is marked for erasure\n", place.eeprom(), block));
}

}

Command efiMarkCommand()
{
    return {"eeprom efi mark",
            "Mark a block for erasure",
            "recordkit eeprom efi mark 1 2 15",
            {efiPartition(), efiBank(),
             number("BLOCK", "BLOCK", 0, EfiIndex::BLOCKS - 1, "0 to 15"), images()},
            Answer::TEXT,
            run};
}

}
