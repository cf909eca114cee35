// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_FRU_FRUJSON_H
#define RECORDKIT_TOOL_FRU_FRUJSON_H

#include <string>
#include <vector>

#include <recordkit/inspect/fru/FruContent.h>

#include "../Errors.h"
#include "../print/Value.h"

namespace recordkit::tool {

// FRU images as JSON that people write; docs/fru.schema.json defines it for programs.
//
// | key                     | value                                       | if it is missing |
// |-------------------------|---------------------------------------------|------------------|
// | $schema                 | a text, for editors                         |                  |
// | size                    | bytes of the image                          | as few as needed |
// | fill                    | the byte outside all areas, 0 or 255        | 0                |
// | order                   | names of areas in the order of their places | as listed here   |
// | internal                | the internal use area in hex digits         | no such area     |
// | chassis, board, product | an area                                     | no such area     |
// | multirecords            | a list of records                           | no such area     |
//
// An area has the fields that fru show lists for it, by the same names:
//
// | key                     | value                                       | if it is missing |
// |-------------------------|---------------------------------------------|------------------|
// | type                    | a chassis type: name or number              | "Unknown"        |
// | language                | as "en", or a number                        | "en"             |
// | date                    | "2024-11-05 06:07", "now" or "unspecified"  | "unspecified"    |
// | serial and so on        | a text; null if the area ends before it     | ""               |
// | custom                  | a list of texts                             | []               |
// | size                    | bytes of the area                           | as few as needed |
// | unused                  | bytes after the end marker in hex digits    | 00h each         |
//
// A text is a string, stored as 8-bit text (16-bit where the language is not English); an object
// with "value" and "coding" (one of codingName; a binary value in hex digits); or one with "bytes",
// in hex digits, and "coding", for bytes that no value stands for.
//
// A record is an object with "record", its kind, and its fields as fru show lists them, in any
// order: numbers, true and false, texts, null for what is unspecified; others are zero. Or it has
// "type", a number, and "data", in hex digits.

/// What JSON says of an image.
struct FruDescription {
    FruContent content;
    std::size_t size = 0; ///< 0: as small as possible
};

/// Reads the form above. `now` is what the date "now" means, in seconds since 1970. Throws
/// DataError, whose text begins with the path of what is wrong.
FruDescription fruFromJson(const Value& json, unsigned int now);

/// The form above. What it leaves out has the value that it has if it is missing. A record whose
/// fields do not express all of its bytes has "data".
Value jsonOfFru(const FruDescription& description);

/// What an image that was created from the JSON has otherwise than the image that it is of: places
/// of areas, bytes outside all areas, reserved bits. An image is canonical if there is none: areas
/// one after another, each at the next multiple of 8, and the same byte everywhere else.
std::vector<std::string> lostByJson(const std::string& image, const std::string& created);

}

#endif
