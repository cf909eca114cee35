// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_FRU_FRUFORMAT_H
#define RECORDKIT_INSPECT_FRU_FRUFORMAT_H

namespace recordkit::inspect {

// Places in FRU images (IPMI FRU Information Storage Definition v1.0, sections 8 to 16). A format
// is in the low four bits of its byte.

constexpr unsigned int FRU_HEADER_SIZE = 8;
constexpr unsigned int FRU_HEADER_PAD = 6;
constexpr unsigned char FRU_FORMAT_BITS = 0x0F;
constexpr unsigned char FRU_FORMAT = 1; ///< of the header and of areas

constexpr unsigned int FRU_AREA_LENGTH = 1; ///< offset of an area's length byte
constexpr unsigned int FRU_AREA_START = 2;  ///< offset of its first field

constexpr unsigned int MULTIRECORD_HEADER = 5;      ///< bytes before a record's data
constexpr unsigned int MULTIRECORD_FORMAT_BYTE = 1; ///< offsets in its header
constexpr unsigned int MULTIRECORD_LENGTH = 2;
constexpr unsigned int MULTIRECORD_DATA_CHECKSUM = 3;
constexpr unsigned int MULTIRECORD_CHECKSUM = 4;
constexpr unsigned char MULTIRECORD_FORMAT = 2;
constexpr unsigned char MULTIRECORD_LAST = 0x80; ///< a bit of the format byte

}

#endif
