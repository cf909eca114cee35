// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_FRU_FRUIMAGE_H
#define RECORDKIT_INSPECT_FRU_FRUIMAGE_H

#include <string>
#include <vector>

#include <recordkit/fru/FRUItem.h>
#include <recordkit/inspect/bytes/ByteView.h>
#include <recordkit/inspect/fru/MultiRecords.h>

namespace recordkit::inspect {

/// A range of bytes of an image.
struct FruExtent {
    std::string name;
    unsigned int offset = 0;
    unsigned int size = 0;

    unsigned int end() const { return offset + size; }
};

struct FruField {
    FRU_ITEM item = FRU_ITEM_TERMINATOR;
    std::string name;        ///< as "serial" or "custom2"
    unsigned int offset = 0; ///< in the image; of the type/length byte where there is one
    bool isCoded = false;
    unsigned char typeLength = 0;
    std::string bytes;
    std::string value; ///< UTF-8, up to the first NUL

    /// "text", "6-bit", "BCD plus", "binary", "number" or "date".
    const char* typeName() const;
};

/// One byte that makes others add up to 0.
struct FruChecksum {
    unsigned int offset = 0;
    unsigned char stored = 0;
    unsigned char expected = 0;

    bool isRight() const { return stored == expected; }
};

/// The checksum byte at `at` that makes the bytes from `offset` on add up to 0 together with it.
FruChecksum checksumOf(ByteView bytes, unsigned int offset, unsigned int size, unsigned int at);

/// A chassis, board or product area, or an internal use area read by one of its layouts.
struct FruAreaImage {
    FRU_AREA id = FRU_AREA_COMMON_HEADER;
    FruExtent extent;
    bool isWhole = false; ///< is complete in the image, with its end marker and every field
    unsigned char language = 0;
    FruChecksum checksum;
    std::vector<FruField> fields;
    unsigned int unused = 0; ///< bytes between end marker and checksum
    std::vector<std::string> problems;
};

/// An internal use area as defined by the standard: bytes up to the next area.
struct FruInternalUse {
    FruExtent extent;
    std::string bytes;
};

struct FruMultiRecord {
    FruExtent extent; ///< with its header of five bytes
    unsigned char type = 0;
    unsigned char format = 0;
    bool isLast = false;
    FruChecksum header;
    FruChecksum data;
    std::string bytes; ///< its data, without the header
    MultiRecord content;
};

/// How the internal use area is read.
enum class InternalLayout { STANDARD, A, B };

/// Names of extents outside all areas.
constexpr const char* FREE_BYTES = "free";
constexpr const char* OTHER_BYTES = "other bytes";

/// A FRU image (IPMI FRU Information Storage Definition v1.0) taken apart. The parser trusts
/// nothing in the image: anything wrong becomes a problem text, and the rest is still returned.
struct FruImage {
    unsigned int size = 0;
    bool isFru = false; ///< has a common header of the known format
    FruChecksum header;
    std::vector<FruAreaImage> areas;
    std::vector<FruInternalUse> internalUse; ///< one or none
    std::vector<FruMultiRecord> records;
    std::vector<FruExtent> extents; ///< header and areas by offset; only those inside the image
    std::vector<FruExtent> lost;    ///< areas that begin in the image but have an unknown size
    std::vector<std::string> headerProblems;
    std::vector<std::string> problems;        ///< of multirecords and of the areas' places
    std::vector<std::string> contentProblems; ///< of what multirecords contain
    std::vector<std::string> notes; ///< worth knowing, but nothing wrong; see compareLoadAndSupply

    /// All of them, with those of the areas.
    std::vector<std::string> allProblems() const;
    const FruAreaImage* findArea(FRU_AREA id) const;
    /// "board.serial"; nullptr if it is missing.
    const FruField* findField(const std::string& fullName) const;
    /// "dc-output2"; nullptr if it is missing.
    const FruMultiRecord* findRecord(const std::string& name) const;
    /// The extents, and the bytes between and after them: FREE_BYTES where they are blank,
    /// OTHER_BYTES elsewhere.
    std::vector<FruExtent> map(ByteView bytes) const;
};

FruImage parseFruImage(ByteView bytes, InternalLayout layout = InternalLayout::STANDARD);

/// A field's value as text; `language` is that of its area.
std::string fruValue(FRU_ITEM item, bool isCoded, unsigned char typeLength, unsigned char language,
                     ByteView bytes);

/// Whether text of an area is 8-bit; otherwise it is 16-bit.
bool isEnglish(unsigned char language);

/// Whether the bytes are only 00h and FFh, as in space that was never written.
bool isBlank(ByteView bytes);

}

#endif
