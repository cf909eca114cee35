// SPDX-License-Identifier: Apache-2.0
#include <recordkit/eeprom/EEPROMIndex.h>

namespace TAVLib::RecordKit {

EEPROMIndex::~EEPROMIndex() = default;

}
