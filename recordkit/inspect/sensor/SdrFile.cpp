// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/sensor/SdrFile.h>

#include <algorithm>

#include <fmt/format.h>
#include <recordkit/sensor/CompactSensorRecord.h>
#include <recordkit/sensor/FullSensorRecord.h>

namespace recordkit::inspect {

using TAVLib::RecordKit::CompactSensorRecord;
using TAVLib::RecordKit::FullSensorRecord;

namespace {

constexpr std::size_t HEADER = 5;
constexpr std::size_t VERSION = 2;
constexpr std::size_t TYPE = 3;
constexpr std::size_t LENGTH = 4;
constexpr std::size_t NEXT_ID = 2; ///< bytes before a record in a response

/// 51h for IPMI v1.5 and v2.0, 01h and 02h from older controllers.
bool isKnownVersion(unsigned char version)
{
    return version == 0x51 || version == 0x01 || version == 0x02;
}

/// The minimum length of a record's body, by its type; 0 if any length is valid.
std::size_t leastLength(unsigned char type)
{
    if (type == SDR_FULL) {
        return FullSensorRecord().getSerializedSize() - HEADER;
    }
    return type == SDR_COMPACT ? CompactSensorRecord().getSerializedSize() - HEADER : 0;
}

/// The end of the content without trailing blank bytes.
std::size_t endOfContent(ByteView content)
{
    std::size_t end = content.size();
    while (end != 0 && (content[end - 1] == 0x00 || content[end - 1] == 0xFF)) {
        --end;
    }
    return end;
}

/// One walk over a file.
SdrFile walk(ByteView content, std::size_t prefix)
{
    SdrFile file;
    const auto problem = [&file](std::size_t offset, const std::string& text) {
        file.problems.push_back(fmt::format("record at offset {}: {}", offset, text));
    };
    const std::size_t end = endOfContent(content);
    for (std::size_t at = 0; at < content.size();) {
        if (at >= end) {
            file.problems.push_back(
                fmt::format("{} bytes at offset {} contain no record", content.size() - at, at));
            break;
        }
        const std::size_t start = at + prefix;
        if (start > content.size() || content.size() - start < HEADER) {
            problem(at, fmt::format("no room for its header in {} bytes", content.size()));
            break;
        }
        const std::size_t length = content[start + LENGTH];
        if (length > content.size() - start - HEADER) {
            problem(start, fmt::format("length byte {} at offset {} runs past the {} bytes", length,
                                       start + LENGTH, content.size()));
            break;
        }
        const unsigned char type = content[start + TYPE];
        const unsigned char version = content[start + VERSION];
        if (!isKnownVersion(version)) {
            problem(start, fmt::format("SDR version {:02X}h at offset {}, expected 51h", version,
                                       start + VERSION));
        } else if (length < leastLength(type)) {
            problem(start, fmt::format("{} bytes, expected at least {} for type {:02X}h", length,
                                       leastLength(type), type));
        } else {
            file.records.push_back({start, content.part(start, HEADER + length).copy()});
        }
        at = start + HEADER + length;
    }
    return file;
}

/// Nullptr for a type without a name.
const char* knownTypeName(unsigned char type)
{
    switch (type) {
    case SDR_FULL:
        return "full";
    case SDR_COMPACT:
        return "compact";
    case SDR_EVENT_ONLY:
        return "event-only";
    case SDR_ASSOCIATION:
        return "association";
    case SDR_RELATIVE_ASSOCIATION:
        return "rel. assoc.";
    case SDR_DEVICE_LOCATOR:
        return "device";
    case SDR_FRU_LOCATOR:
        return "FRU locator";
    case SDR_CONTROLLER_LOCATOR:
        return "MC locator";
    case SDR_CONTROLLER_CONFIRMATION:
        return "MC confirm.";
    case SDR_CHANNEL_INFO:
        return "BMC channel";
    case SDR_OEM:
        return "OEM";
    default:
        return nullptr;
    }
}

}

SdrFile parseSdrFile(ByteView content, SdrFormat format)
{
    if (format == SdrFormat::DUMP) {
        return walk(content, 0);
    }
    if (format == SdrFormat::RESPONSES) {
        return walk(content, NEXT_ID);
    }
    SdrFile dump = walk(content, 0);
    SdrFile responses = walk(content, NEXT_ID);
    const bool isDump = dump.problems.size() <= responses.problems.size() &&
                        dump.records.size() >= responses.records.size();
    return isDump || responses.records.empty() ? dump : responses;
}

bool isKnownSdrType(unsigned char type)
{
    return knownTypeName(type) != nullptr;
}

std::string sdrTypeName(unsigned char type)
{
    const char* const name = knownTypeName(type);
    return name == nullptr ? fmt::format("type {:02X}h", type) : name;
}

}
