// SPDX-License-Identifier: Apache-2.0
#include "SettingJson.h"

#include <fmt/format.h>

#include <recordkit/eeprom/PanelEEPROMIndex.h>
#include <recordkit/inspect/eeprom/SettingIndex.h>

#include "../print/Json.h"

namespace recordkit::tool {

using TAVLib::RecordKit::PanelEEPROMIndex;

namespace {

/// A whole number of an entry in JSON.
unsigned int numberOf(const Value& entry, const char* name, long long least, long long most)
{
    const Value* const found = entry.find(name);
    const auto* const number = found == nullptr ? nullptr : found->as<long long>();
    if (number == nullptr || *number < least || *number > most) {
        throw DataError(fmt::format("\"{}\": expected a number from {} to {} in {:.80}", name,
                                    least, most, jsonText(entry)));
    }
    return static_cast<unsigned int>(*number);
}

SettingEntry entryFrom(const Value& json)
{
    if (json.as<Object>() == nullptr) {
        throw DataError(fmt::format("expected an object, not {:.80}", jsonText(json)));
    }
    const Value* const valid = json.find("valid");
    if (valid != nullptr && valid->as<bool>() == nullptr) {
        throw DataError(fmt::format("\"valid\": expected true or false in {:.80}", jsonText(json)));
    }
    SettingEntry entry;
    entry.number =
        static_cast<int>(numberOf(json, "number", 0, PanelEEPROMIndex().getIndexLastNumber()));
    entry.offset = numberOf(json, "offset", 0, 0xFFFF);
    entry.size = numberOf(json, "size", 0, 0xFFFF);
    entry.eeprom = static_cast<int>(
        numberOf(json, "eeprom", PanelEEPROMIndex::FIRST_EEPROM, PanelEEPROMIndex::SECOND_EEPROM));
    entry.isValid = valid != nullptr && *valid->as<bool>();
    return entry;
}

}

Bytes settingIndexFrom(const std::string& text)
{
    const Value json = orThrow(parseJson(text), DataError(NOT_JSON));
    // An object with "entries" is what earlier versions exported.
    const Value* const entries = json.as<Object>() != nullptr ? json.find("entries") : &json;
    if (entries == nullptr || entries->as<List>() == nullptr) {
        throw DataError("expected an array of entries");
    }
    std::vector<SettingEntry> given;
    for (const Value& each : *entries->as<List>()) {
        given.push_back(entryFrom(each));
    }
    return makeSettingIndex(given);
}

}
