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

}

#endif
