// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_FRU_FRUGENJSON_H
#define RECORDKIT_TOOL_FRU_FRUGENJSON_H

#include "FruJson.h"

namespace recordkit::tool {

/// Reads the JSON of frugen's templates, as its documentation describes it:
///
/// | key         | value                                                                          |
/// |-------------|--------------------------------------------------------------------------------|
/// | internal    | hex digits                                                                     |
/// | chassis     | type (a number; otherwise 2), pn, serial, custom                               |
/// | board       | lang, date, mfg, pname, serial, pn, file, custom                               |
/// | product     | lang, mfg, pname, pn, ver, serial, atag, file, custom                          |
/// | multirecord | a list of {"type": "management", "subtype": S, S: value} with S uuid, surl,    |
/// |             | sname, spingaddr, curl, cname or cpingaddr; and of {"type": "custom",          |
/// |             | "custom_type": a number, "data": hex digits}                                   |
///
/// A field is a text or {"type": T, "data": text} with T auto (which also a text is), text,
/// 6bitascii, bcdplus or binary (hex digits). auto becomes BCD plus or 6-bit text where that reads
/// back as given, otherwise 8-bit text. Texts are stored as in English, whatever lang says, and so
/// is the language.
///
/// A date is "DD/MM/YYYY HH:MM:SS", with or without seconds, in UTC; `now` (seconds since 1970) if
/// it is missing or "auto". Throws DataError, whose text begins with the path of what is wrong.
FruDescription fruFromFrugenJson(const Value& json, unsigned int now);

}

#endif
