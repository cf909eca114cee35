// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_FRU_FRUITEM_H
#define RECORDKIT_FRU_FRUITEM_H

/// Areas of a FRU image (IPMI FRU Information Storage Definition v1.0) and blocks of a processor's
/// information ROM. Any number may be cast to it.
enum FRU_AREA : int {
    FRU_AREA_COMMON_HEADER = 0,
    FRU_AREA_INTERNAL_A = 1, ///< internal use area, first layout
    FRU_AREA_INTERNAL_B = 2, ///< internal use area, second layout
    FRU_AREA_CHASSIS = 3,
    FRU_AREA_BOARD = 4,
    FRU_AREA_PRODUCT = 5,
    FRU_AREA_MULTIRECORD = 6, ///< has an offset, but cannot be opened
    FRU_AREA_CPU_HEADER = 50,
    FRU_AREA_CPU_PROCESSOR = 51,
    FRU_AREA_CPU_CORE = 52,
    FRU_AREA_CPU_CACHE = 53,
    FRU_AREA_CPU_PACKAGE = 54,
    FRU_AREA_CPU_PART_NUMBER = 55,
    FRU_AREA_CPU_THERMAL = 56,
    FRU_AREA_CPU_FEATURE = 57,
    FRU_AREA_CPU_OTHER = 58,
};

/// Fields of areas and blocks. Any number may be cast to it.
enum FRU_ITEM : int {
    FRU_ITEM_FORMAT_VERSION = 0,   ///< format version byte of a header or area (also the first byte
                                   ///< of the internal use area)
    FRU_ITEM_AREA_LENGTH = 1,      ///< area length byte, in multiples of 8 bytes
    FRU_ITEM_LANGUAGE_CODE = 2,    ///< language code
    FRU_ITEM_MANUFACTURER = 3,     ///< manufacturer name
    FRU_ITEM_PRODUCT_NAME = 4,     ///< product name (one byte in area 51)
    FRU_ITEM_PART_NUMBER = 5,      ///< part or model number
    FRU_ITEM_SERIAL_NUMBER = 6,    ///< serial number (13 fixed bytes in area 1)
    FRU_ITEM_VERSION = 7,          ///< product version
    FRU_ITEM_CHASSIS_TYPE = 8,     ///< chassis type
    FRU_ITEM_ASSET_TAG = 9,        ///< asset tag
    FRU_ITEM_FRU_FILE_ID = 10,     ///< FRU file id
    FRU_ITEM_CUSTOM = 11,          ///< custom field after the fixed fields (repeats)
    FRU_ITEM_END_MARKER = 12,      ///< the 0xC1 end-of-fields byte
    FRU_ITEM_RESERVED = 13,        ///< reserved, unused or padding bytes
    FRU_ITEM_CHECKSUM = 14,        ///< area checksum byte
    FRU_ITEM_PRODUCT_EXTRA3 = 15,  ///< third product custom field
    FRU_ITEM_INTERNAL_A1 = 16,     ///< one-byte field of internal use layout A
    FRU_ITEM_INTERNAL_BLOCK = 17,  ///< trailing block of an internal use layout
    FRU_ITEM_MFG_DATE_TIME = 18,   ///< manufacturing date/time, 3 bytes
    FRU_ITEM_INTERNAL_OFFSET = 19, ///< common header: internal use area offset
    FRU_ITEM_CHASSIS_OFFSET = 20,  ///< common header: chassis info area offset
    FRU_ITEM_BOARD_OFFSET = 21,    ///< common header: board info area offset
    FRU_ITEM_PRODUCT_OFFSET = 22,  ///< common header: product info area offset
    FRU_ITEM_MULTIRECORD_OFFSET = 23,     ///< common header: multirecord area offset
    FRU_ITEM_INTERNAL_B1 = 25,            ///< one-byte fields of internal use layout B
    FRU_ITEM_INTERNAL_B2 = 26,            ///< one-byte fields of internal use layout B
    FRU_ITEM_INTERNAL_B3 = 27,            ///< one-byte fields of internal use layout B
    FRU_ITEM_INTERNAL_B4 = 28,            ///< one-byte fields of internal use layout B
    FRU_ITEM_INTERNAL_B5 = 29,            ///< one-byte fields of internal use layout B
    FRU_ITEM_INTERNAL_B6 = 30,            ///< one-byte fields of internal use layout B
    FRU_ITEM_INTERNAL_B7 = 31,            ///< one-byte fields of internal use layout B
    FRU_ITEM_INTERNAL_B8 = 32,            ///< six-byte fields of internal use layout B
    FRU_ITEM_INTERNAL_B9 = 33,            ///< six-byte fields of internal use layout B
    FRU_ITEM_INTERNAL_B10 = 34,           ///< six-byte fields of internal use layout B
    FRU_ITEM_INTERNAL_B11 = 35,           ///< six-byte fields of internal use layout B
    FRU_ITEM_PRODUCT_EXTRA1 = 38,         ///< first and second product custom fields
    FRU_ITEM_PRODUCT_EXTRA2 = 39,         ///< first and second product custom fields
    FRU_ITEM_CPU_OFFSET_PROCESSOR = 50,   ///< processor ROM header: offsets of areas 51..57
    FRU_ITEM_CPU_OFFSET_CORE = 51,        ///< processor ROM header: offsets of areas 51..57
    FRU_ITEM_CPU_OFFSET_CACHE = 52,       ///< processor ROM header: offsets of areas 51..57
    FRU_ITEM_CPU_OFFSET_PACKAGE = 53,     ///< processor ROM header: offsets of areas 51..57
    FRU_ITEM_CPU_OFFSET_PART_NUMBER = 54, ///< processor ROM header: offsets of areas 51..57
    FRU_ITEM_CPU_OFFSET_THERMAL = 55,     ///< processor ROM header: offsets of areas 51..57
    FRU_ITEM_CPU_OFFSET_FEATURE = 56,     ///< processor ROM header: offsets of areas 51..57
    FRU_ITEM_CPU_ROM_SIZE = 57,           ///< processor ROM header: ROM size, 2 bytes
    FRU_ITEM_CPU_OFFSET_OTHER = 58,       ///< processor ROM header: offset of area 58
    FRU_ITEM_CPU_SIGNATURE = 59,          ///< processor signature, 6 bytes (area 51)
    FRU_ITEM_CPU_FORMAT_REVISION =
        60,                        ///< data format revision (1 byte in area 50, 4 bytes in area 54)
    FRU_ITEM_CPU_MODEL = 61,       ///< bits 3..0 of the first byte of item 81
    FRU_ITEM_CPU_CORE_HIGH = 62,   ///< bits 7..4 of its second byte
    FRU_ITEM_CPU_CORE_LOW2 = 63,   ///< bits 3..0 of its second byte
    FRU_ITEM_CPU_CORE1 = 64,       ///< two-byte fields of area 52
    FRU_ITEM_CPU_CORE2 = 65,       ///< two-byte fields of area 52
    FRU_ITEM_CPU_CORE5 = 67,       ///< one-byte fields of area 52
    FRU_ITEM_CPU_CORE6 = 68,       ///< one-byte fields of area 52
    FRU_ITEM_CPU_CACHE_SIZE = 69,  ///< cache size, 2 bytes (area 53)
    FRU_ITEM_CPU_PACKAGE = 70,     ///< one-byte field of area 54
    FRU_ITEM_CPU_PART_NUMBER = 71, ///< processor part number, 8 bytes (area 55)
    FRU_ITEM_CPU_THERMAL1 = 72,    ///< one-byte fields of area 56
    FRU_ITEM_CPU_THERMAL2 = 73,    ///< one-byte fields of area 56
    FRU_ITEM_CPU_FEATURE1 = 74,    ///< fields of area 57 (4, 1, 1 bytes)
    FRU_ITEM_CPU_FEATURE2 = 75,    ///< fields of area 57 (4, 1, 1 bytes)
    FRU_ITEM_CPU_FEATURE3 = 76,    ///< fields of area 57 (4, 1, 1 bytes)
    FRU_ITEM_INTERNAL_A2 = 77,     ///< fields of internal use layout A (1, 1, 2, 72 bytes)
    FRU_ITEM_INTERNAL_A3 = 78,     ///< fields of internal use layout A (1, 1, 2, 72 bytes)
    FRU_ITEM_INTERNAL_A4 = 79,     ///< fields of internal use layout A (1, 1, 2, 72 bytes)
    FRU_ITEM_INTERNAL_A5 = 80,     ///< fields of internal use layout A (1, 1, 2, 72 bytes)
    FRU_ITEM_CPU_CORE0 = 81,       ///< two-byte fields of area 52
    FRU_ITEM_CPU_CORE_FLAG = 82,   ///< bit 4 of its first byte
    FRU_ITEM_CPU_CORE3 = 83,       ///< two-byte fields of area 52
    FRU_ITEM_CPU_CORE4 = 84,       ///< two-byte fields of area 52
    FRU_ITEM_CPU_SPEED = 85,       ///< processor speed, 2 bytes (area 51)
    FRU_ITEM_CPU_OTHER = 86,       ///< eight-byte field of area 58
    FRU_ITEM_TERMINATOR = 87,      ///< end of a member table; never an item of a member
};

/// Layout of an image.
enum FRU_CPU : int {
    FRU_CPU_NONE = 0, ///< IPMI FRU information
    FRU_CPU_ROM = 1,  ///< processor information ROM
};

#endif
