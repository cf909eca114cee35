// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/eeprom/SettingIndex.h>

#include <algorithm>
#include <fmt/format.h>
#include <set>

#include <recordkit/eeprom/PanelEEPROMIndex.h>
#include <recordkit/inspect/bytes/Error.h>
#include <recordkit/serial/ByteOrder.h>

namespace recordkit::inspect {

using TAVLib::RecordKit::PanelEEPROMIndex;

namespace {

constexpr std::size_t ENTRY_SIZE = PanelEEPROMIndex::SIZE;

std::size_t entryCount()
{
    const PanelEEPROMIndex index;
    const auto last = static_cast<std::size_t>(index.getIndexLastNumber());
    return last + 1 - static_cast<std::size_t>(index.getIndexHeadNumber());
}

bool overlaps(const SettingEntry& a, const SettingEntry& b)
{
    return a.eeprom == b.eeprom && a.size != 0 && b.size != 0 && a.offset < b.end() &&
           b.offset < a.end();
}

std::array<unsigned char, ENTRY_SIZE> bytesOf(const SettingEntry& entry)
{
    PanelEEPROMIndex index;
    unsigned char* const image = index.getIndexData();
    index.setIndexValidFlag(entry.isValid);
    image[PanelEEPROMIndex::SELECTOR] =
        static_cast<unsigned char>(entry.eeprom - PanelEEPROMIndex::FIRST_EEPROM);
    image[PanelEEPROMIndex::NUMBER] = static_cast<unsigned char>(entry.number);
    TAVLib::writeBE16(static_cast<unsigned short>(entry.offset), image + PanelEEPROMIndex::OFFSET);
    TAVLib::writeBE16(static_cast<unsigned short>(entry.size), image + PanelEEPROMIndex::AREA_SIZE);
    index.setChecksum();
    std::array<unsigned char, ENTRY_SIZE> bytes = {};
    std::copy_n(index.getIndexData(), ENTRY_SIZE, bytes.begin());
    return bytes;
}

}

std::optional<ByteView> settingIndexIn(ByteView content)
{
    const std::size_t size = entryCount() * ENTRY_SIZE;
    const std::size_t offset = PanelEEPROMIndex().getIndexOffset();
    if (content.size() == size) {
        return content;
    }
    return content.contains(offset, size) && content.size() <= SETTING_EEPROM_SIZE
               ? std::optional(content.part(offset, size))
               : std::nullopt;
}

std::vector<SettingEntry> parseSettingIndex(ByteView bytes)
{
    std::vector<SettingEntry> entries;
    for (std::size_t n = 0; n < entryCount() && (n + 1) * ENTRY_SIZE <= bytes.size(); ++n) {
        PanelEEPROMIndex index;
        SettingEntry entry;
        entry.number = static_cast<int>(n);
        std::copy_n(bytes.begin() + static_cast<long>(n * ENTRY_SIZE), ENTRY_SIZE,
                    entry.bytes.begin());
        std::copy(entry.bytes.begin(), entry.bytes.end(), index.getIndexData());
        entry.isValid = index.isIndex();
        entry.isChecksumRight = index.isChecksum();
        entry.eeprom = index.getAreaEEPROMID();
        entry.areaNumber = index.getAreaNumber();
        entry.offset = index.getAreaOffset();
        entry.size = index.getAreaSize();
        entries.push_back(entry);
    }
    return entries;
}

std::vector<std::string> layoutProblems(const std::vector<SettingEntry>& entries)
{
    const PanelEEPROMIndex index;
    SettingEntry own;
    own.eeprom = index.getIndexEEPROMID();
    own.offset = index.getIndexOffset();
    own.size = static_cast<unsigned int>(entryCount() * ENTRY_SIZE);
    std::vector<std::string> problems;
    for (auto entry = entries.begin(); entry != entries.end(); ++entry) {
        if (entry->end() > SETTING_EEPROM_SIZE) {
            problems.push_back(fmt::format("area {} ({} bytes at offset {}) reaches beyond the {} "
                                           "bytes of EEPROM {}",
                                           entry->number, entry->size, entry->offset,
                                           SETTING_EEPROM_SIZE, entry->eeprom));
        }
        if (overlaps(*entry, own)) {
            problems.push_back(fmt::format("area {} overlaps the index ({} to {})", entry->number,
                                           own.offset, own.end() - 1));
        }
        for (auto other = entries.begin(); other != entry; ++other) {
            if (overlaps(*entry, *other)) {
                problems.push_back(
                    fmt::format("areas {} and {} overlap", other->number, entry->number));
            }
        }
    }
    return problems;
}

std::vector<std::string> indexProblems(const std::vector<SettingEntry>& entries)
{
    std::vector<std::string> problems = layoutProblems(entries);
    for (const SettingEntry& entry : entries) {
        if (entry.isValid && !entry.isChecksumRight) {
            problems.push_back(
                fmt::format("entry {} is damaged: its checksum is wrong", entry.number));
        } else if (entry.isValid && entry.areaNumber != entry.number) {
            problems.push_back(fmt::format("entry {} is damaged: it contains the number of area {}",
                                           entry.number, entry.areaNumber));
        }
    }
    return problems;
}

Bytes makeSettingIndex(const std::vector<SettingEntry>& entries)
{
    std::vector<SettingEntry> all(entryCount());
    for (std::size_t n = 0; n < all.size(); ++n) {
        all[n].number = static_cast<int>(n);
        all[n].eeprom = PanelEEPROMIndex::FIRST_EEPROM;
    }
    std::set<int> given;
    for (const SettingEntry& entry : entries) {
        if (!given.insert(entry.number).second) {
            throw DataError(fmt::format("entry {} is specified more than once", entry.number));
        }
        all[static_cast<std::size_t>(entry.number)] = entry;
    }
    Bytes bytes;
    for (const SettingEntry& entry : all) {
        const auto made = bytesOf(entry);
        bytes.insert(bytes.end(), made.begin(), made.end());
    }
    const std::vector<std::string> problems = layoutProblems(parseSettingIndex(bytes));
    if (!problems.empty()) {
        throw DataError(problems.front());
    }
    return bytes;
}

}
