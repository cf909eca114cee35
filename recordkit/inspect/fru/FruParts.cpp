// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/fru/FruParts.h>

#include <algorithm>
#include <fmt/format.h>
#include <functional>
#include <map>
#include <set>

#include <recordkit/fru/FRUTables.h>
#include <recordkit/inspect/bytes/Error.h>
#include <recordkit/inspect/bytes/Hex.h>
#include <recordkit/inspect/bytes/Numbers.h>
#include <recordkit/inspect/fru/FruDraft.h>
#include <recordkit/inspect/fru/FruNames.h>
#include <recordkit/inspect/fru/MfgDate.h>
#include <recordkit/inspect/fru/MultiRecordEdit.h>

namespace recordkit::inspect {

namespace {

constexpr const char* ANY_RECORD = "record:";
constexpr unsigned char EMPTY_TEXT = 0xC0;

bool isInternalUse(const std::string& name)
{
    return name == fruAreaName(FRU_AREA_INTERNAL_A);
}

/// Works on one image.
class Adder {
public:
    Adder(const std::string& bytes, const FruEditOptions& editOptions)
        : draft(bytes, editOptions.repairsChecksums), options(editOptions)
    {
    }

    FruEditResult run(const std::vector<FruEdit>& parts)
    {
        for (const FruEdit& part : parts) {
            add(part);
        }
        FruDraftResult drafted = draft.finish(true);
        return {drafted.bytes, changes, drafted.notes};
    }

private:
    void add(const FruEdit& part)
    {
        const std::size_t dot = part.field.find('.');
        const std::string owner = part.field.substr(0, dot);
        FRU_AREA area = FRU_AREA_COMMON_HEADER;
        if (isInternalUse(part.field)) {
            addInternalUse(part);
        } else if (part.field.compare(0, std::string(ANY_RECORD).size(), ANY_RECORD) == 0) {
            addAnyRecord(part);
        } else if (findFruArea(owner, area)) {
            if (dot == std::string::npos) {
                addArea(part, area);
            } else {
                addField(part, area);
            }
        } else {
            addRecord(part, owner, dot == std::string::npos ? "" : part.field.substr(dot + 1));
        }
        changes.push_back(
            {part.field,
             {},
             isInternalUse(part.field) ? counted(part.value.size(), "byte") : part.value});
    }

    void addInternalUse(const FruEdit& part)
    {
        if (!draft.image().internalUse.empty()) {
            throw DataError("the image already has an internal use area");
        }
        draft.setInternalUse(part.value);
    }

    static void requireNoValue(const FruEdit& part)
    {
        if (!part.value.empty()) {
            throw RequestError(fmt::format("{}: expected no value", part.field));
        }
    }

    void addArea(const FruEdit& part, FRU_AREA id)
    {
        requireNoValue(part);
        constexpr char ENGLISH = 25;
        constexpr char UNKNOWN_CHASSIS = 2;
        FruAreaContent area;
        area.id = id;
        area.start = std::string(1, id == FRU_AREA_CHASSIS ? UNKNOWN_CHASSIS : ENGLISH);
        area.start.append(id == FRU_AREA_BOARD ? MfgDate::LENGTH : 0, '\0');
        area.texts.assign(fruTextCount(id), FruText{EMPTY_TEXT, ""});
        draft.addArea(area);
    }

    void addField(const FruEdit& part, FRU_AREA id)
    {
        const bool isNextCustom =
            part.field == fruAreaName(id) + "." + fruItemName(FRU_ITEM_CUSTOM);
        const FruFieldName name = parseFruFieldName(isNextCustom ? part.field + "1" : part.field);
        FruAreaContent& area = draft.area(id);
        const std::size_t known = fruTextCount(id);
        const std::size_t customs = area.texts.size() > known ? area.texts.size() - known : 0;
        const unsigned int custom =
            isNextCustom ? static_cast<unsigned int>(customs) + 1 : customNumber(name.field);
        const std::size_t index = custom != 0 ? known + custom - 1 : fixedIndex(part, id, name);
        if (index < area.texts.size()) {
            throw DataError(fmt::format("{}: the area already has this field (fru set changes it)",
                                        part.field));
        }
        if (custom > customs + 1) {
            throw DataError(
                fmt::format("{}: the next custom field is custom{}", part.field, customs + 1));
        }
        area.texts.resize(index, FruText{EMPTY_TEXT, ""});
        area.texts.push_back(encodeFruText(part.field, part.value, area.language(),
                                           options.coding.value_or(CODING_TEXT)));
    }

    /// The place of a field of the standard among the texts; those before it are not texts.
    static std::size_t fixedIndex(const FruEdit& part, FRU_AREA id, const FruFieldName& name)
    {
        const std::vector<std::string> names = fruFieldNames(id);
        const auto at = static_cast<std::size_t>(std::find(names.begin(), names.end(), name.field) -
                                                 names.begin());
        const std::size_t others = names.size() - fruTextCount(id);
        if (at < others) {
            throw DataError(fmt::format("{}: the area already has this field (fru set changes it)",
                                        part.field));
        }
        return at - others;
    }

    void addAnyRecord(const FruEdit& part)
    {
        const auto type = parseNumber(part.field.substr(std::string(ANY_RECORD).size()), 0xFF);
        if (!type) {
            throw RequestError(
                fmt::format("\"{}\": expected record: and a type from 00h to FFh", part.field));
        }
        Bytes data;
        if (parseHexDigits(part.value, data) != std::string::npos || data.size() > 0xFF) {
            throw DataError(
                fmt::format("{}: expected at most 255 bytes in hex digits", part.field));
        }
        FruRecordContent record;
        record.type = static_cast<unsigned char>(*type);
        record.data.assign(data.begin(), data.end());
        draft.records().push_back(record);
    }

    void addRecord(const FruEdit& part, const std::string& kind, const std::string& field)
    {
        const FruRecordContent fresh = orThrow(
            newRecord(kind),
            RequestError(fmt::format("\"{}\" cannot be added, expected an area, a field of one, a "
                                     "kind of record such as dc-load, or record:TYPE=HEX",
                                     part.field)));
        std::vector<FruRecordContent>& records = draft.records();
        if (field.empty()) {
            requireNoValue(part);
        }
        if (field.empty() || added.count(kind) == 0) {
            records.push_back(fresh);
            added[kind] = records.size() - 1;
        }
        if (!field.empty()) {
            setRecordField(kind, records[added[kind]], field, part.value, RecordSize::EXTENDED);
        }
    }

    FruDraft draft;
    const FruEditOptions options;
    std::map<std::string, std::size_t> added; ///< the last record of a kind
    std::vector<FruChange> changes;
};

/// The texts to take from an area, the last first.
using TextIndexes = std::set<std::size_t, std::greater<>>;

/// Works on one image.
class Remover {
public:
    Remover(const std::string& bytes, const FruEditOptions& options)
        : draft(bytes, options.repairsChecksums)
    {
    }

    FruEditResult run(const std::vector<std::string>& parts)
    {
        for (const std::string& part : parts) {
            if (!names.insert(part).second) {
                throw RequestError(fmt::format("{} is specified more than once", part));
            }
            mark(part);
        }
        for (const auto& [id, indexes] : texts) {
            std::vector<FruText>& all = draft.area(id).texts;
            for (const std::size_t index : indexes) {
                all.erase(all.begin() + static_cast<long>(index));
            }
        }
        for (const std::size_t index : records) {
            draft.records().erase(draft.records().begin() + static_cast<long>(index));
        }
        for (const FRU_AREA id : areas) {
            draft.removeArea(id);
        }
        FruDraftResult drafted = draft.finish(false);
        return {drafted.bytes, changes, drafted.notes};
    }

private:
    void mark(const std::string& part)
    {
        FRU_AREA area = FRU_AREA_COMMON_HEADER;
        if (isInternalUse(part)) {
            draft.removeInternalUse();
            changes.push_back({part, "", {}});
        } else if (findFruArea(part, area)) {
            areas.push_back(area);
            changes.push_back({part, "", {}});
        } else if (part.find('.') == std::string::npos) {
            markRecord(part);
        } else {
            markField(parseFruFieldName(part));
        }
    }

    void markRecord(const std::string& part)
    {
        const FruMultiRecord* const record = draft.image().findRecord(part);
        if (record == nullptr) {
            throw DataError(
                fmt::format("{}: the image has neither such an area nor such a record", part));
        }
        static_cast<void>(draft.records());
        records.insert(static_cast<std::size_t>(record - draft.image().records.data()));
        changes.push_back({part, counted(record->bytes.size(), "byte"), {}});
    }

    void markField(const FruFieldName& name)
    {
        if (!name.area || customNumber(name.field) == 0) {
            throw RequestError(fmt::format("\"{}\" cannot be removed, only areas, records and "
                                           "custom fields can (fru set FIELD= empties a text)",
                                           name.text));
        }
        const std::size_t index = fruTextCount(*name.area) + customNumber(name.field) - 1;
        if (index >= draft.area(*name.area).texts.size()) {
            throw DataError(fmt::format("{}: the area has no such field", name.text));
        }
        texts[*name.area].insert(index);
        changes.push_back({name.text, draft.image().findField(name.text)->value, {}});
    }

    FruDraft draft;
    std::set<std::string> names;
    std::map<FRU_AREA, TextIndexes> texts;
    TextIndexes records;
    std::vector<FRU_AREA> areas;
    std::vector<FruChange> changes;
};

}

FruEditResult addToFruImage(const std::string& bytes, const std::vector<FruEdit>& parts,
                            const FruEditOptions& options)
{
    return Adder(bytes, options).run(parts);
}

FruEditResult removeFromFruImage(const std::string& bytes, const std::vector<std::string>& parts,
                                 const FruEditOptions& options)
{
    return Remover(bytes, options).run(parts);
}

}
