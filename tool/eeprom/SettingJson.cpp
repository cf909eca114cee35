// SPDX-License-Identifier: Apache-2.0
#include "SettingJson.h"

#include <fmt/format.h>
#include <recordkit/eeprom/PanelEEPROMIndex.h>

#include "../Errors.h"

namespace recordkit::tool {

using TAVLib::RecordKit::PanelEEPROMIndex;

namespace {

/// A whole number of an entry in JSON, up to `limit`.
unsigned int numberOf(const Json& entry, const char* name, unsigned int least, unsigned int limit)
{
    const auto found = entry.find(name);
    if (found == entry.end() || !found->is_number_unsigned() ||
        found->get<unsigned long long>() < least || found->get<unsigned long long>() > limit) {
        throw dataError(fmt::format("\"{}\": expected a number from {} to {} in {}", name, least,
                                    limit, entry.dump()));
    }
    return found->get<unsigned int>();
}

SettingEntry entryFrom(const Json& json)
{
    if (!json.is_object()) {
        throw dataError("expected an object, not " + json.dump());
    }
    const auto valid = json.find("valid");
    if (valid != json.end() && !valid->is_boolean()) {
        throw dataError(fmt::format("\"valid\": expected true or false in {}", json.dump()));
    }
    const auto last = static_cast<unsigned int>(PanelEEPROMIndex().getIndexLastNumber());
    SettingEntry entry;
    entry.number = static_cast<int>(numberOf(json, "number", 0, last));
    entry.offset = numberOf(json, "offset", 0, 0xFFFF);
    entry.size = numberOf(json, "size", 0, 0xFFFF);
    entry.eeprom = static_cast<int>(
        numberOf(json, "eeprom", PanelEEPROMIndex::FIRST_EEPROM, PanelEEPROMIndex::SECOND_EEPROM));
    entry.isValid = valid != json.end() && valid->get<bool>();
    return entry;
}

Json parseJson(const std::string& text)
{
    Json json = Json::parse(text, nullptr, false);
    if (json.is_discarded()) {
        throw dataError("not JSON");
    }
    if (json.is_object() && json.contains("entries")) {
        json = Json(json["entries"]);
    }
    if (!json.is_array()) {
        throw dataError("expected an array of entries, or an object with \"entries\"");
    }
    return json;
}

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

Bytes settingIndexFrom(const std::string& json)
{
    std::vector<SettingEntry> entries;
    for (const Json& entry : parseJson(json)) {
        entries.push_back(entryFrom(entry));
    }
    return makeSettingIndex(entries);
}

}
