// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/report/ImageSigns.h>

#include <algorithm>
#include <numeric>
#include <optional>

#include <recordkit/eeprom/EFIBackupEEPROMIndex.h>
#include <recordkit/eeprom/PanelEEPROMIndex.h>
#include <recordkit/inspect/bytes/Error.h>
#include <recordkit/inspect/eeprom/SettingIndex.h>
#include <recordkit/inspect/fru/CpuRom.h>
#include <recordkit/inspect/fru/FruFormat.h>
#include <recordkit/inspect/fru/FruImage.h>
#include <recordkit/inspect/memory/Spd.h>
#include <recordkit/inspect/sensor/SdrFile.h>

namespace recordkit::inspect {

using EfiIndex = TAVLib::RecordKit::EFIBackupEEPROMIndex;
using TAVLib::RecordKit::PanelEEPROMIndex;

namespace {

constexpr std::size_t MOST_EEPROM = SETTING_EEPROM_SIZE;
constexpr std::size_t MOST_SPD = 4096;
constexpr std::size_t MOST_REPOSITORY = std::size_t{1} << 20;

unsigned char sumOf(ByteView bytes)
{
    return static_cast<unsigned char>(std::accumulate(bytes.begin(), bytes.end(), 0U));
}

bool isZero(ByteView bytes)
{
    return std::all_of(bytes.begin(), bytes.end(), [](unsigned char byte) { return byte == 0; });
}

/// Whether an area or a multirecord of the image cannot be chance.
bool hasRightPart(ByteView content)
{
    const FruImage image = parseFruImage(content);
    return std::any_of(image.areas.begin(), image.areas.end(),
                       [&content](const FruAreaImage& area) {
                           return area.isWhole && area.checksum.isRight() &&
                                  content[area.extent.offset] == FRU_FORMAT;
                       }) ||
           std::any_of(image.records.begin(), image.records.end(),
                       [](const FruMultiRecord& record) { return record.data.isRight(); });
}

/// The data of a module whose kind of memory is known; nothing for others.
std::optional<Spd> readSpd(ByteView content)
{
    if (content.size() > MOST_SPD) {
        return std::nullopt;
    }
    try {
        return parseSpd(content);
    } catch (const DataError&) {
        return std::nullopt;
    }
}

/// Whether a CRC is right and covers more than zeroes, whose CRC is 0.
bool isProof(const SpdCrc& crc, ByteView content)
{
    return crc.isRight() && !isZero(content.part(crc.first, crc.last + std::size_t{1} - crc.first));
}

bool isWithin(const Spd& spd, SpdFact fact, long long least, long long most)
{
    const auto* const number = std::get_if<long long>(&spd.get(fact));
    return number != nullptr && *number >= least && *number <= most;
}

bool isIndexOfSettings(ByteView bytes)
{
    std::size_t right = 0;
    std::size_t wrong = 0;
    for (const SettingEntry& entry : parseSettingIndex(bytes)) {
        if (isZero(entry.bytes)) {
            continue;
        }
        const bool isRight = entry.isChecksumRight && entry.areaNumber == entry.number &&
                             entry.bytes[PanelEEPROMIndex::VALID] <= 1;
        ++(isRight ? right : wrong);
    }
    return right > wrong;
}

/// Whether a byte at an offset of the EFI index is one that an index can have there.
bool isEfiByte(std::size_t offset, unsigned char byte)
{
    if (offset >= EfiIndex::INDEX_SIZE) {
        return byte == 0;
    }
    if (offset >= EfiIndex::FLAGS) {
        return (byte & 0xEE) == 0;
    }
    const bool isSerial =
        offset >= EfiIndex::SERIAL && offset < EfiIndex::SERIAL + EfiIndex::SERIAL_SIZE;
    return !isSerial || byte == 0 || (byte >= 0x20 && byte < 0x7F);
}

/// The index with the bytes after it; nothing if the content has no room for it.
std::optional<Bytes> efiIndexOf(ByteView content)
{
    if (content.size() < EfiIndex::INDEX_SIZE || content.size() > MOST_EEPROM) {
        return std::nullopt;
    }
    return content.part(0, EfiIndex::INDEX_AREA_SIZE).copy();
}

bool isEfiRecord(const Bytes& bytes)
{
    // A FRU image with a right checksum has a zero in place of the fifth character.
    constexpr std::ptrdiff_t LEAST_SERIAL = 5;
    const auto serial = bytes.begin() + EfiIndex::SERIAL;
    const auto end = std::find(serial, serial + EfiIndex::SERIAL_SIZE, 0);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (!isEfiByte(i, bytes[i])) {
            return false;
        }
    }
    return end - serial >= LEAST_SERIAL &&
           std::all_of(end, serial + EfiIndex::SERIAL_SIZE,
                       [](unsigned char byte) { return byte == 0; }) &&
           sumOf(ByteView(bytes).part(0, EfiIndex::INDEX_SIZE)) == 0;
}

/// What of a repository is records.
struct Coverage {
    std::size_t records = 0;
    std::size_t bytes = 0; ///< in them
    std::size_t end = 0;   ///< of the content without bytes 00h and FFh at its end
};

Coverage coverageOf(ByteView content)
{
    Coverage coverage;
    if (content.size() > MOST_REPOSITORY) {
        return coverage;
    }
    const SdrFile file = parseSdrFile(content);
    // In answers, the next record's id comes before each record.
    const bool isAnswers = !file.records.empty() && file.records.front().offset == 2;
    for (const SdrRecord& record : file.records) {
        if (isKnownSdrType(record.type())) {
            ++coverage.records;
            coverage.bytes += record.bytes.size() + (isAnswers ? 2 : 0);
        }
    }
    coverage.end = content.size();
    while (coverage.end != 0 && isBlank(content.part(coverage.end - 1, 1))) {
        --coverage.end;
    }
    return coverage;
}

}

bool isFruImage(ByteView content)
{
    return hasFruHeader(content) && hasRightPart(content);
}

bool hasFruHeader(ByteView content)
{
    const ByteView header = content.part(0, FRU_HEADER_SIZE);
    return header.size() == FRU_HEADER_SIZE && content.size() <= MOST_EEPROM &&
           header[0] == FRU_FORMAT && header[FRU_HEADER_PAD] == 0 && sumOf(header) == 0;
}

bool isDamagedFruImage(ByteView content)
{
    if (content.size() < FRU_HEADER_SIZE || content.size() > MOST_EEPROM) {
        return false;
    }
    Bytes image = content.copy();
    const unsigned char excess = sumOf(content.part(0, FRU_HEADER_SIZE));
    for (std::size_t i = 0; i < FRU_HEADER_SIZE; ++i) {
        image[i] = static_cast<unsigned char>(content[i] - excess);
        if (hasRightPart(image)) {
            return true;
        }
        image[i] = content[i];
    }
    return false;
}

bool isProcessorRom(ByteView content)
{
    constexpr unsigned int LEAST_RIGHT = 3;
    return content.size() <= MOST_EEPROM && countRightCpuBlocks(content) >= LEAST_RIGHT;
}

bool isSpdData(ByteView content)
{
    const std::optional<Spd> spd = readSpd(content);
    return spd && (spd->isCrcRight() || (spd->moduleCrc && isProof(*spd->moduleCrc, content)));
}

bool isDamagedSpdData(ByteView content)
{
    const std::optional<Spd> spd = readSpd(content);
    // Times in picoseconds.
    return spd && spd->megabytes != 0 && isWithin(*spd, SpdFact::TCK_MIN, 200, 3000) &&
           isWithin(*spd, SpdFact::TAA, 5000, 30000) && isWithin(*spd, SpdFact::TRCD, 8000, 30000);
}

bool isSettingIndex(ByteView content)
{
    const std::optional<ByteView> index = settingIndexIn(content);
    return index && isIndexOfSettings(*index);
}

bool isEfiIndex(ByteView content)
{
    const std::optional<Bytes> bytes = efiIndexOf(content);
    return bytes && isEfiRecord(*bytes);
}

bool isDamagedEfiIndex(ByteView content)
{
    std::optional<Bytes> bytes = efiIndexOf(content);
    if (!bytes) {
        return false;
    }
    const unsigned char excess = sumOf(content.part(0, EfiIndex::INDEX_SIZE));
    for (std::size_t i = 0; i < EfiIndex::INDEX_SIZE; ++i) {
        (*bytes)[i] = static_cast<unsigned char>(content[i] - excess);
        // Texts at the beginning of an EEPROM have no zeroes there.
        const bool isNew = (*bytes)[1] == 0 && (*bytes)[14] == 0 && (*bytes)[15] == 0;
        if (isNew && isEfiRecord(*bytes)) {
            return true;
        }
        (*bytes)[i] = content[i];
    }
    return false;
}

bool isRepository(ByteView content)
{
    const Coverage coverage = coverageOf(content);
    // Zeroes after a header can be the bytes of one record.
    return (coverage.records >= 2 && coverage.bytes >= coverage.end) ||
           (coverage.records == 1 && coverage.bytes == content.size());
}

bool isDamagedRepository(ByteView content)
{
    const Coverage coverage = coverageOf(content);
    return coverage.records >= 2 && coverage.bytes * 2 >= coverage.end;
}

}
