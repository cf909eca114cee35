// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/bytes/Hex.h>

#include <algorithm>
#include <cctype>
#include <fmt/format.h>
#include <sstream>

#include <recordkit/inspect/bytes/Error.h>
#include <recordkit/inspect/bytes/Text.h>

namespace recordkit::inspect {

namespace {

constexpr std::size_t BYTES_IN_A_LINE = 16;

bool isHex(char character)
{
    return std::isxdigit(static_cast<unsigned char>(character)) != 0;
}

bool isAllHex(const std::string& text)
{
    return !text.empty() && std::all_of(text.begin(), text.end(), isHex);
}

/// An offset of up to eight hex digits.
bool parseOffset(const std::string& text, std::size_t& offset)
{
    constexpr std::size_t LONGEST = 8;
    if (!isAllHex(text) || text.size() > LONGEST) {
        return false;
    }
    offset = std::stoul(text, nullptr, 16);
    return true;
}

/// A line of a dump: its offset and what follows.
bool splitLine(const std::string& line, std::size_t& offset, std::string& rest)
{
    const std::size_t first = line.find_first_not_of(' ');
    if (first == std::string::npos) {
        return false;
    }
    const std::size_t end = line.find_first_of(": ", first);
    // hexdump -C has eight digits and no colon.
    constexpr std::size_t HEXDUMP_OFFSET = 8;
    const bool hasColon = end != std::string::npos && line[end] == ':';
    const bool isHexdump = end != std::string::npos && end - first == HEXDUMP_OFFSET &&
                           line.compare(end, 2, "  ") == 0;
    if ((!hasColon && !isHexdump) || !parseOffset(line.substr(first, end - first), offset)) {
        return false;
    }
    rest = line.substr(end + 1);
    return true;
}

/// The bytes of a dump's line, without the characters that may follow them.
bool parseLine(const std::string& rest, Bytes& bytes)
{
    // hexdump -C: between bars.
    std::string digits = rest.substr(0, rest.find('|'));
    const std::size_t start = digits.find_first_not_of(' ');
    digits = start == std::string::npos ? "" : digits.substr(start);
    Bytes found;
    std::size_t at = 0;
    while (at < digits.size() && found.size() < BYTES_IN_A_LINE) {
        if (digits[at] == ' ') {
            // xxd and i2cdump: after two or four blanks. hexdump -C has two in the middle, too.
            const bool isWide = digits.compare(at, 2, "  ") == 0;
            if (isWide && rest.find('|') == std::string::npos) {
                break;
            }
            ++at;
            continue;
        }
        if (at + 1 >= digits.size() || !isHex(digits[at]) || !isHex(digits[at + 1])) {
            return false;
        }
        found.push_back(static_cast<unsigned char>(std::stoul(digits.substr(at, 2), nullptr, 16)));
        at += 2;
    }
    bytes.insert(bytes.end(), found.begin(), found.end());
    return !found.empty();
}

DataError badLine(const std::string& name, std::size_t number, const std::string& line)
{
    return DataError(fmt::format("{}, line {}: \"{}\" is not a line of a hex dump", name, number,
                                 printable(line.substr(0, 60))));
}

/// Whether any line has an offset.
bool isDump(const std::string& content)
{
    std::istringstream lines(content);
    std::size_t offset = 0;
    std::string rest;
    for (std::string line; std::getline(lines, line);) {
        if (splitLine(line, offset, rest)) {
            return true;
        }
    }
    return false;
}

/// The line that i2cdump prints before the 256 bytes of a page.
bool isHeading(const std::string& line)
{
    return line.find_first_not_of(' ') != std::string::npos &&
           line.compare(line.find_first_not_of(' '), 8, "0  1  2 ") == 0;
}

Bytes parseDump(const std::string& name, const std::string& content)
{
    constexpr std::size_t PAGE = 256;
    Bytes bytes;
    std::size_t pageStart = 0; // what the offsets count from
    std::istringstream lines(content);
    std::size_t number = 0;
    bool isRepeating = false;
    for (std::string line; std::getline(lines, line);) {
        ++number;
        line.erase(line.find_last_not_of(" \r") + 1);
        std::size_t offset = 0;
        std::string rest;
        if (line.empty() || line == "*") {
            isRepeating = isRepeating || !line.empty();
            continue;
        }
        if (!splitLine(line, offset, rest)) {
            if (parseOffset(line, offset) && offset >= bytes.size()) {
                rest = ""; // hexdump -C ends with the size
            } else if (bytes.empty()) {
                continue; // the heading that i2cdump prints
            } else if (isHeading(line) && bytes.size() % PAGE == 0) {
                pageStart = bytes.size();
                continue;
            } else {
                throw badLine(name, number, line);
            }
        }
        offset += pageStart;
        constexpr std::size_t LARGEST = 65536;
        while (isRepeating && bytes.size() >= BYTES_IN_A_LINE && bytes.size() < offset &&
               offset <= LARGEST) {
            bytes.push_back(bytes[bytes.size() - BYTES_IN_A_LINE]);
        }
        isRepeating = false;
        if (offset != bytes.size()) {
            throw DataError(fmt::format("{}, line {}: offset {:X}h, expected {:X}h", name, number,
                                        offset, bytes.size()));
        }
        if (!rest.empty() && !parseLine(rest, bytes)) {
            throw badLine(name, number, line);
        }
    }
    return bytes;
}

}

std::string toHex(ByteView bytes)
{
    return fmt::format("{:02X}", fmt::join(bytes, ""));
}

std::string toLowerHex(ByteView bytes)
{
    return fmt::format("{:02x}", fmt::join(bytes, ""));
}

std::size_t parseHexDigits(const std::string& text, Bytes& bytes)
{
    for (std::size_t at = 0; at < text.size();) {
        if (std::isspace(static_cast<unsigned char>(text[at])) != 0 || text[at] == ',') {
            ++at;
        } else if (text.compare(at, 2, "0x") == 0 || text.compare(at, 2, "0X") == 0) {
            at += 2;
        } else if (!isHex(text[at])) {
            return at;
        } else if (at + 1 == text.size() || !isHex(text[at + 1])) {
            return at + 1;
        } else {
            bytes.push_back(
                static_cast<unsigned char>(std::stoul(text.substr(at, 2), nullptr, 16)));
            at += 2;
        }
    }
    return std::string::npos;
}

bool isText(const std::string& content, bool mayBeUtf8)
{
    return std::all_of(content.begin(), content.end(), [mayBeUtf8](char character) {
        const auto byte = static_cast<unsigned char>(character);
        return std::isprint(byte) != 0 || std::isspace(byte) != 0 || (mayBeUtf8 && byte >= 0x80);
    });
}

Bytes parseImage(const std::string& name, const std::string& content)
{
    Bytes bytes(content.begin(), content.end());
    if (content.empty() || !isText(content, false)) {
        return bytes;
    }
    if (isDump(content)) {
        return parseDump(name, content);
    }
    bytes.clear();
    if (parseHexDigits(content, bytes) != std::string::npos || bytes.empty()) {
        throw DataError(name + ": neither an image nor a hex dump");
    }
    return bytes;
}

}
