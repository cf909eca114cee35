// SPDX-License-Identifier: Apache-2.0
#include <fmt/format.h>

#include <recordkit/eeprom/EFIBackupEEPROMData.h>
#include <recordkit/inspect/bytes/ByteView.h>
#include <recordkit/inspect/bytes/Numbers.h>

#include "../Commands.h"
#include "../Files.h"
#include "../print/Output.h"
#include "EfiStore.h"

namespace recordkit::tool {

namespace {

void run(const Arguments& arguments)
{
    const EfiPlace place = efiPlaceOf(arguments);
    const std::string content = readContent(arguments);
    const unsigned int offset = efiOffsetOf(arguments, content.size());
    openEfiStore(arguments);
    auto device = openImages(arguments);
    inspect::Bytes bytes = inspect::ByteView(content).copy();
    attempt([&] {
        TAVLib::RecordKit::EFIBackupEEPROMData(device).write(
            place.partition, place.bank, offset, static_cast<unsigned int>(bytes.size()),
            bytes.data());
    });
    print(fmt::format("EEPROM {}: {} written at offset {}\n", place.eeprom(),
                      inspect::counted(bytes.size(), "byte"), offset));
}

}

Command efiWriteCommand()
{
    return {"eeprom efi write",
            "Write to the EEPROM of one partition and bank",
            "recordkit eeprom efi write 1 2 0x1000 in.bin",
            {efiPartition(), efiBank(), efiOffset(),
             argument("FILE", "Input file (default: standard input)").optional().by("-"), images()},
            Answer::TEXT,
            run};
}

}
