// SPDX-License-Identifier: Apache-2.0
#include "EfiStore.h"

#include <fmt/format.h>

#include <recordkit/inspect/bytes/Text.h>

#include "../Errors.h"

namespace recordkit::tool {

Option efiPartition()
{
    return number("PARTITION", "PARTITION", 0, EfiIndex::PARTITIONS - 1, "0 to 3");
}

Option efiBank()
{
    return number("BANK", "BANK", 0, EfiIndex::BANKS - 1, "0 to 3");
}

EfiPlace efiPlaceOf(const Arguments& arguments)
{
    return {static_cast<unsigned int>(arguments.number("PARTITION")),
            static_cast<unsigned int>(arguments.number("BANK"))};
}

std::vector<EfiPlace> efiPlaces()
{
    std::vector<EfiPlace> places;
    for (unsigned int p = 0; p < EfiIndex::PARTITIONS; ++p) {
        for (unsigned int b = 0; b < EfiIndex::BANKS; ++b) {
            places.push_back({p, b});
        }
    }
    return places;
}

Option efiOffset()
{
    return number("OFFSET", "OFFSET", 0, EFI_EEPROM_SIZE - 1, "Byte address");
}

unsigned int efiOffsetOf(const Arguments& arguments, std::size_t length)
{
    const auto offset = static_cast<unsigned int>(arguments.number("OFFSET"));
    if (length > EFI_EEPROM_SIZE - offset) {
        throw usageError(
            fmt::format("{} bytes at offset {} reach beyond the {} bytes of the EEPROM", length,
                        offset, EFI_EEPROM_SIZE));
    }
    return offset;
}

EfiIndex readEfiIndex(const Arguments& arguments)
{
    auto device = openImages(arguments);
    EfiIndex index;
    attempt([&] {
        device.read(EfiIndex::INDEX_EEPROM, 0, index.getIndexData(), EfiIndex::INDEX_SIZE);
    });
    index.expandClrFlags();
    return index;
}

std::string efiSerialOf(const EfiIndex& index)
{
    const unsigned char* const first = index.getIndexData() + EfiIndex::SERIAL;
    return std::string(first, first + EfiIndex::SERIAL_SIZE);
}

std::string efiSerialText(const EfiIndex& index)
{
    std::string serial = efiSerialOf(index);
    serial.erase(serial.find_last_not_of('\0') + 1);
    return inspect::toUtf8(serial);
}

std::vector<unsigned int> markedBlocks(const EfiIndex& index, const EfiPlace& place)
{
    std::vector<unsigned int> blocks;
    for (unsigned int n = 0; n < EfiIndex::BLOCKS; ++n) {
        if (index.getClrBlockState(place.partition, place.bank, n)) {
            blocks.push_back(n);
        }
    }
    return blocks;
}

EfiIndex openEfiStore(const Arguments& arguments)
{
    EfiIndex index = readEfiIndex(arguments);
    if (!index.isChecksum()) {
        throw dataError("the checksum of the index record on EEPROM 10 is wrong");
    }
    if (efiSerialOf(index) == std::string(EfiIndex::SERIAL_SIZE, '\0')) {
        throw dataError("the index record on EEPROM 10 names no system; create one with recordkit "
                        "eeprom efi init");
    }
    // setIndexData would begin a new record, so only the state is set.
    index.setIndexState(true);
    return index;
}

}
