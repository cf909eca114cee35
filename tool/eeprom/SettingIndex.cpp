// SPDX-License-Identifier: Apache-2.0
#include "SettingIndex.h"

#include <algorithm>
#include <set>

#include <fmt/format.h>
#include <recordkit/eeprom/PanelEEPROMIndex.h>

#include "../Errors.h"

namespace recordkit::tool {

using TAVLib::RecordKit::PanelEEPROMIndex;

namespace {

constexpr std::size_t ENTRY_SIZE = PanelEEPROMIndex::SIZE;

void writeBE16(unsigned char* bytes, unsigned int number)
{
    bytes[0] = static_cast<unsigned char>(number >> 8);
    bytes[1] = static_cast<unsigned char>(number & 0xFF);
}

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

/// A whole number of an entry in JSON, up to `limit`.
unsigned int numberOf(const nlohmann::json& entry, const char* name, unsigned int least,
                      unsigned int limit)
{
    const auto found = entry.find(name);
    if (found == entry.end() || !found->is_number_unsigned() ||
        found->get<unsigned long long>() < least || found->get<unsigned long long>() > limit) {
        throw dataError(fmt::format("\"{}\": expected a number from {} to {} in {}", name, least,
                                    limit, entry.dump()));
    }
    return found->get<unsigned int>();
}

std::array<unsigned char, ENTRY_SIZE> entryFrom(const nlohmann::json& json)
{
    const unsigned int offset = numberOf(json, "offset", 0, 0xFFFF);
    const unsigned int size = numberOf(json, "size", 0, 0xFFFF);
    const unsigned int eeprom =
        numberOf(json, "eeprom", PanelEEPROMIndex::FIRST_EEPROM, PanelEEPROMIndex::SECOND_EEPROM);
    const auto valid = json.find("valid");
    if (valid != json.end() && !valid->is_boolean()) {
        throw dataError(fmt::format("\"valid\": expected true or false in {}", json.dump()));
    }
    PanelEEPROMIndex index;
    unsigned char* const image = index.getIndexData();
    index.setIndexValidFlag(valid != json.end() && valid->get<bool>());
    image[PanelEEPROMIndex::SELECTOR] =
        static_cast<unsigned char>(eeprom - PanelEEPROMIndex::FIRST_EEPROM);
    image[PanelEEPROMIndex::NUMBER] = static_cast<unsigned char>(
        numberOf(json, "number", 0, static_cast<unsigned int>(index.getIndexLastNumber())));
    writeBE16(image + PanelEEPROMIndex::OFFSET, offset);
    writeBE16(image + PanelEEPROMIndex::AREA_SIZE, size);
    index.setChecksum();
    std::array<unsigned char, ENTRY_SIZE> bytes = {};
    std::copy_n(index.getIndexData(), ENTRY_SIZE, bytes.begin());
    return bytes;
}

nlohmann::json parseJson(const std::string& text)
{
    nlohmann::json json = nlohmann::json::parse(text, nullptr, false);
    if (json.is_discarded()) {
        throw dataError("no JSON");
    }
    if (json.is_object() && json.contains("entries")) {
        json = json["entries"];
    }
    if (!json.is_array()) {
        throw dataError("expected an array of entries, or an object with \"entries\"");
    }
    return json;
}

}

std::vector<SettingEntry> parseSettingIndex(const std::vector<unsigned char>& bytes)
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

Json toJson(const std::vector<SettingEntry>& entries)
{
    Json json = Json::array();
    for (const SettingEntry& entry : entries) {
        Json each;
        each["number"] = entry.number;
        each["valid"] = entry.isValid;
        each["eeprom"] = entry.eeprom;
        each["offset"] = entry.offset;
        each["size"] = entry.size;
        json.push_back(each);
    }
    return json;
}

std::vector<unsigned char> settingIndexFrom(const std::string& json)
{
    const nlohmann::json parsed = parseJson(json);
    std::vector<unsigned char> bytes(entryCount() * ENTRY_SIZE, 0);
    // Entries that are not given have no area, and name their own number.
    for (std::size_t n = 0; n < entryCount(); ++n) {
        const auto empty =
            entryFrom({{"number", n},
                       {"eeprom", static_cast<unsigned int>(PanelEEPROMIndex::FIRST_EEPROM)},
                       {"offset", 0U},
                       {"size", 0U}});
        std::copy(empty.begin(), empty.end(), bytes.begin() + static_cast<long>(n * ENTRY_SIZE));
    }
    std::set<unsigned int> given;
    for (const nlohmann::json& entry : parsed) {
        if (!entry.is_object()) {
            throw dataError("expected an object, not " + entry.dump());
        }
        const unsigned int number =
            numberOf(entry, "number", 0, static_cast<unsigned int>(entryCount() - 1));
        if (!given.insert(number).second) {
            throw dataError(fmt::format("entry {} is given twice", number));
        }
        const auto made = entryFrom(entry);
        std::copy(made.begin(), made.end(), bytes.begin() + static_cast<long>(number * ENTRY_SIZE));
    }
    const std::vector<std::string> problems = layoutProblems(parseSettingIndex(bytes));
    if (!problems.empty()) {
        throw dataError(problems.front());
    }
    return bytes;
}

}
