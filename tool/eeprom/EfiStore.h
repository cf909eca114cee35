// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_EEPROM_EFISTORE_H
#define RECORDKIT_TOOL_EEPROM_EFISTORE_H

#include <string>

#include <recordkit/eeprom/EFIBackupEEPROMIndex.h>

#include "Images.h"

namespace recordkit::tool {

using EfiIndex = TAVLib::RecordKit::EFIBackupEEPROMIndex;

constexpr unsigned int EFI_EEPROM_SIZE = EfiIndex::BLOCKS * EfiIndex::BLOCK_SIZE;

/// One EEPROM of the backup: the arguments PARTITION and BANK.
struct EfiPlace {
    unsigned int partition = 0;
    unsigned int bank = 0;

    unsigned int eeprom() const { return EfiIndex().getAreaEEPROMID(partition, bank); }
};

Option efiPartition();
Option efiBank();
EfiPlace efiPlaceOf(const Arguments& arguments);

/// All EEPROMs of the backup.
std::vector<EfiPlace> efiPlaces();

/// OFFSET, where `length` bytes begin. Throws CommandError (usage) if they reach beyond the EEPROM.
Option efiOffset();
unsigned int efiOffsetOf(const Arguments& arguments, std::size_t length);

/// The index record on the images, with its flags copied for the queries.
EfiIndex readEfiIndex(const Arguments& arguments);
std::string efiSerialOf(const EfiIndex& index);
/// The same as UTF-8, without the zeroes at its end.
std::string efiSerialText(const EfiIndex& index);

/// The blocks of an EEPROM that are marked for erasure.
std::vector<unsigned int> markedBlocks(const EfiIndex& index, const EfiPlace& place);

/// Opens the store for the system that its record names; throws CommandError (data) if there is no
/// such record.
EfiIndex openEfiStore(const Arguments& arguments);

}

#endif
