// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_EEPROM_EFIBACKUPGROUP_H
#define RECORDKIT_EEPROM_EFIBACKUPGROUP_H

#include <recordkit/eeprom/EFIBackupEEPROMIndex.h>

namespace TAVLib::RecordKit {

/// Group of the flags of a partition's bank, and its lock: 0 to 15, from the low two bits of each.
inline unsigned int groupOf(unsigned int p, unsigned int b)
{
    return (p & 3) * EFIBackupEEPROMIndex::BANKS + (b & 3);
}

/// Group that a block's flag is in: a later one for a block above 15, any for a block without a
/// flag.
inline unsigned int groupOfBlock(unsigned int p, unsigned int b, unsigned int n)
{
    constexpr unsigned int GROUPS = EFIBackupEEPROMIndex::PARTITIONS * EFIBackupEEPROMIndex::BANKS;
    return (groupOf(p, b) + n / EFIBackupEEPROMIndex::BLOCKS) % GROUPS;
}

}

#endif
