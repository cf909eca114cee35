// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_WORDS_FIRMWAREWORDS_H
#define RECORDKIT_INSPECT_WORDS_FIRMWAREWORDS_H

namespace recordkit::inspect {

/// What event data 2 adds to a System Firmware Progress event (IPMI v2.0, table 42-3, sensor type
/// 0Fh): an error for offset 0, how far the firmware came for offsets 1 and 2. nullptr for any
/// other offset and for codes without words.
const char* firmwareWords(unsigned char offset, unsigned char eventData2);

}

#endif
