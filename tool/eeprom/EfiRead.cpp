// SPDX-License-Identifier: Apache-2.0
#include <fmt/format.h>

#include <recordkit/eeprom/EFIBackupEEPROMData.h>
#include <recordkit/inspect/bytes/ByteView.h>

#include "../Commands.h"
#include "EfiStore.h"

namespace recordkit::tool {

namespace {

void run(const Arguments& arguments)
{
    const EfiPlace place = efiPlaceOf(arguments);
    const auto length = static_cast<unsigned int>(arguments.number("--length"));
    const unsigned int offset = efiOffsetOf(arguments, length);
    openEfiStore(arguments);
    auto device = openImages(arguments);
    inspect::Bytes bytes(length);
    attempt([&] {
        TAVLib::RecordKit::EFIBackupEEPROMData(device).read(place.partition, place.bank, offset,
                                                            length, bytes.data());
    });
    writeRead(arguments, inspect::ByteView(bytes).text(), fmt::format("EEPROM {}", place.eeprom()));
}

}

Command efiReadCommand()
{
    return {"eeprom efi read",
            "Read from the EEPROM of one partition and bank",
            "recordkit eeprom efi read 1 2 0x1000 out.bin",
            {efiPartition(), efiBank(), efiOffset(),
             argument("FILE", "Output file (default: standard output)").optional(),
             number("--length", "N", 0, EFI_EEPROM_SIZE, "Number of bytes").by("4096"), images()},
            Answer::TEXT,
            run};
}

}
