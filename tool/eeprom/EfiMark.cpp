// SPDX-License-Identifier: Apache-2.0
#include <fmt/format.h>

#include "../Commands.h"
#include "../print/Output.h"
#include "EfiStore.h"

namespace recordkit::tool {

namespace {

void run(const Arguments& arguments)
{
    const EfiPlace place = efiPlaceOf(arguments);
    const auto block = static_cast<unsigned int>(arguments.number("BLOCK"));
    EfiIndex index = openEfiStore(arguments);
    index.setClrFlag(place.partition, place.bank, block, true);
    index.setChecksum();
    auto device = openImages(arguments);
    const int point = index.getIndexPoint(static_cast<int>(place.partition),
                                          static_cast<int>(place.bank), static_cast<int>(block));
    attempt([&] {
        device.write(EfiIndex::INDEX_EEPROM, 0, index.getIndexData(), 1);
        device.write(EfiIndex::INDEX_EEPROM, static_cast<unsigned long>(point),
                     index.getIndexData() + point, 1);
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
