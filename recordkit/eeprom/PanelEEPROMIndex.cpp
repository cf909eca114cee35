// SPDX-License-Identifier: Apache-2.0
#include <recordkit/eeprom/PanelEEPROMIndex.h>

#include "Checksum.h"

namespace TAVLib::RecordKit {

PanelEEPROMIndex::~PanelEEPROMIndex() = default;

void PanelEEPROMIndex::setChecksum()
{
    image[CHECKSUM] = complementOf(sumOf(image, CHECKSUM));
}

bool PanelEEPROMIndex::isChecksum() const
{
    return sumOf(image, SIZE) == 0;
}

}
