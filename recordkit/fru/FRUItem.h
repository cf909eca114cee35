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
    // Any area of a FRU image.

    FRU_ITEM_FORMAT_VERSION = 0, ///< of a header or area; also the first byte of internal use areas
    FRU_ITEM_AREA_LENGTH = 1,    ///< in multiples of 8 bytes
    FRU_ITEM_LANGUAGE_CODE = 2,
    FRU_ITEM_MANUFACTURER = 3,
    FRU_ITEM_PRODUCT_NAME = 4,  ///< one byte in area 51
    FRU_ITEM_PART_NUMBER = 5,   ///< or model number
    FRU_ITEM_SERIAL_NUMBER = 6, ///< 13 fixed bytes in area 1
    FRU_ITEM_VERSION = 7,       ///< of the product
    FRU_ITEM_CHASSIS_TYPE = 8,
    FRU_ITEM_ASSET_TAG = 9,
    FRU_ITEM_FRU_FILE_ID = 10,
    FRU_ITEM_CUSTOM = 11,        ///< custom field after the fixed fields; repeats
    FRU_ITEM_END_MARKER = 12,    ///< C1h
    FRU_ITEM_RESERVED = 13,      ///< reserved, unused or padding bytes
    FRU_ITEM_CHECKSUM = 14,      ///< of the area
    FRU_ITEM_MFG_DATE_TIME = 18, ///< 3 bytes

    // Custom fields of the product area.

    FRU_ITEM_PRODUCT_EXTRA3 = 15, ///< third
    FRU_ITEM_PRODUCT_EXTRA1 = 38, ///< first
    FRU_ITEM_PRODUCT_EXTRA2 = 39, ///< second

    // Internal use area, first layout.

    FRU_ITEM_INTERNAL_A1 = 16,    ///< 1 byte
    FRU_ITEM_INTERNAL_BLOCK = 17, ///< last block; of the second layout too
    FRU_ITEM_INTERNAL_A2 = 77,    ///< 1 byte
    FRU_ITEM_INTERNAL_A3 = 78,    ///< 1 byte
    FRU_ITEM_INTERNAL_A4 = 79,    ///< 2 bytes
    FRU_ITEM_INTERNAL_A5 = 80,    ///< 72 bytes

    // Internal use area, second layout: seven fields of one byte, four of six.

    FRU_ITEM_INTERNAL_B1 = 25,
    FRU_ITEM_INTERNAL_B2 = 26,
    FRU_ITEM_INTERNAL_B3 = 27,
    FRU_ITEM_INTERNAL_B4 = 28,
    FRU_ITEM_INTERNAL_B5 = 29,
    FRU_ITEM_INTERNAL_B6 = 30,
    FRU_ITEM_INTERNAL_B7 = 31,
    FRU_ITEM_INTERNAL_B8 = 32,
    FRU_ITEM_INTERNAL_B9 = 33,
    FRU_ITEM_INTERNAL_B10 = 34,
    FRU_ITEM_INTERNAL_B11 = 35,

    // Common header: offsets of the areas.

    FRU_ITEM_INTERNAL_OFFSET = 19,
    FRU_ITEM_CHASSIS_OFFSET = 20,
    FRU_ITEM_BOARD_OFFSET = 21,
    FRU_ITEM_PRODUCT_OFFSET = 22,
    FRU_ITEM_MULTIRECORD_OFFSET = 23,

    // Processor ROM header (area 50): offsets of areas 51 to 58, and the ROM's size.

    FRU_ITEM_CPU_OFFSET_PROCESSOR = 50,
    FRU_ITEM_CPU_OFFSET_CORE = 51,
    FRU_ITEM_CPU_OFFSET_CACHE = 52,
    FRU_ITEM_CPU_OFFSET_PACKAGE = 53,
    FRU_ITEM_CPU_OFFSET_PART_NUMBER = 54,
    FRU_ITEM_CPU_OFFSET_THERMAL = 55,
    FRU_ITEM_CPU_OFFSET_FEATURE = 56,
    FRU_ITEM_CPU_ROM_SIZE = 57, ///< 2 bytes
    FRU_ITEM_CPU_OFFSET_OTHER = 58,

    // Blocks of a processor ROM.

    FRU_ITEM_CPU_SIGNATURE = 59,       ///< area 51, 6 bytes
    FRU_ITEM_CPU_FORMAT_REVISION = 60, ///< 1 byte in area 50, 4 bytes in area 54
    FRU_ITEM_CPU_SPEED = 85,           ///< area 51, 2 bytes
    FRU_ITEM_CPU_CORE0 = 81,           ///< area 52, 2 bytes
    FRU_ITEM_CPU_MODEL = 61,           ///< bits 3..0 of its first byte
    FRU_ITEM_CPU_CORE_FLAG = 82,       ///< bit 4 of its first byte
    FRU_ITEM_CPU_CORE_HIGH = 62,       ///< bits 7..4 of its second byte
    FRU_ITEM_CPU_CORE_LOW2 = 63,       ///< bits 3..0 of its second byte
    FRU_ITEM_CPU_CORE1 = 64,           ///< area 52, 2 bytes
    FRU_ITEM_CPU_CORE2 = 65,           ///< area 52, 2 bytes
    FRU_ITEM_CPU_CORE3 = 83,           ///< area 52, 2 bytes
    FRU_ITEM_CPU_CORE4 = 84,           ///< area 52, 2 bytes
    FRU_ITEM_CPU_CORE5 = 67,           ///< area 52, 1 byte
    FRU_ITEM_CPU_CORE6 = 68,           ///< area 52, 1 byte
    FRU_ITEM_CPU_CACHE_SIZE = 69,      ///< area 53, 2 bytes
    FRU_ITEM_CPU_PACKAGE = 70,         ///< area 54, 1 byte
    FRU_ITEM_CPU_PART_NUMBER = 71,     ///< area 55, 8 bytes
    FRU_ITEM_CPU_THERMAL1 = 72,        ///< area 56, 1 byte
    FRU_ITEM_CPU_THERMAL2 = 73,        ///< area 56, 1 byte
    FRU_ITEM_CPU_FEATURE1 = 74,        ///< area 57, 4 bytes
    FRU_ITEM_CPU_FEATURE2 = 75,        ///< area 57, 1 byte
    FRU_ITEM_CPU_FEATURE3 = 76,        ///< area 57, 1 byte
    FRU_ITEM_CPU_OTHER = 86,           ///< area 58, 8 bytes

    FRU_ITEM_TERMINATOR = 87, ///< end of a member table; never an item of a member
};

/// Layout of an image.
enum FRU_CPU : int {
    FRU_CPU_NONE = 0, ///< IPMI FRU information
    FRU_CPU_ROM = 1,  ///< processor information ROM
};

#endif
