// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/fru/FruText.h>

#include <fmt/format.h>

#include <recordkit/fru/FRUTables.h>
#include <recordkit/inspect/bytes/Error.h>
#include <recordkit/inspect/bytes/Hex.h>
#include <recordkit/inspect/fru/FruImage.h>

namespace recordkit::inspect {

namespace {

std::optional<std::string> toBinary(const std::string& value)
{
    Bytes bytes;
    const bool isHex = parseHexDigits(value, bytes) == std::string::npos;
    return isHex ? std::optional<std::string>({bytes.begin(), bytes.end()}) : std::nullopt;
}

std::optional<std::string> toText(const std::string& value, unsigned char language)
{
    const std::optional<std::string> latin1 = toLatin1(value);
    return !latin1 || isEnglish(language) ? latin1 : toUtf16(*latin1);
}

std::optional<std::string> encode(const std::string& value, unsigned char language, Coding coding)
{
    switch (coding) {
    case CODING_BINARY:
        return toBinary(value);
    case CODING_BCD_PLUS:
        return toBcdPlus(value);
    case CODING_SIX_BIT:
        return toSixBit(value);
    default:
        return toText(value, language);
    }
}

const char* expected(Coding coding)
{
    switch (coding) {
    case CODING_BINARY:
        return "has other characters than pairs of hex digits";
    case CODING_BCD_PLUS:
        return "has other characters than digits, blanks, \"-\" and \".\"";
    case CODING_SIX_BIT:
        return "has characters that 6-bit text does not have, such as small letters";
    default:
        return "has characters outside Latin-1";
    }
}

unsigned char typeLengthOf(Coding coding, std::size_t length)
{
    return static_cast<unsigned char>(coding << 6 | length);
}

}

FruText encodeFruText(const std::string& name, const std::string& value, unsigned char language,
                      Coding coding)
{
    const std::string bytes =
        orThrow(encode(value, language, coding),
                DataError(fmt::format("{}: \"{}\" {}", name, printable(value), expected(coding))));
    if (typeLengthOf(coding, bytes.size()) == FRU_END_OF_FIELDS) {
        throw DataError(fmt::format("{}: a value of one character cannot be stored, its "
                                    "type/length byte would end the fields{}",
                                    name, toSixBit(value) ? " (6-bit text can have one)" : ""));
    }
    if (bytes.size() > MAX_FRU_TEXT) {
        throw DataError(fmt::format("{}: {} bytes needed, a field has at most {}", name,
                                    bytes.size(), MAX_FRU_TEXT));
    }
    return {typeLengthOf(coding, bytes.size()), bytes};
}

FruText replaceFruText(const std::string& name, const std::string& value, unsigned char language,
                       const FruText& old)
{
    const Coding coding = codingOf(old.typeLength);
    const bool isUnused = coding == CODING_BINARY && old.bytes.empty();
    const std::optional<std::string> bytes =
        coding == CODING_TEXT || isUnused ? std::nullopt : encode(value, language, coding);
    if (bytes && bytes->size() <= MAX_FRU_TEXT) {
        return {typeLengthOf(coding, bytes->size()), *bytes};
    }
    return encodeFruText(name, value, language, CODING_TEXT);
}

std::optional<Coding> findCoding(const std::string& name)
{
    for (const Coding coding : {CODING_BINARY, CODING_BCD_PLUS, CODING_SIX_BIT, CODING_TEXT}) {
        if (codingName(coding) == name) {
            return coding;
        }
    }
    return std::nullopt;
}

}
