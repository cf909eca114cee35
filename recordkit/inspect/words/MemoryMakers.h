// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_WORDS_MEMORYMAKERS_H
#define RECORDKIT_INSPECT_WORDS_MEMORYMAKERS_H

#include <string>

namespace recordkit::inspect {

/// Name of the maker with this identification (JEDEC JEP106): the number of continuation codes,
/// then the maker's code, each with odd parity in bit 7. "bank 5, code 2Ch" for a maker that is not
/// in the table, "bytes 04h 2Dh, wrong parity" for what is not an identification, and an empty text
/// for 0000h and FFFFh, which name nobody.
std::string memoryMakerName(unsigned char continuations, unsigned char code);

}

#endif
