// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/fru/FruEdit.h>

#include <algorithm>
#include <fmt/format.h>
#include <map>
#include <set>

#include <recordkit/inspect/bytes/Error.h>
#include <recordkit/inspect/bytes/Numbers.h>
#include <recordkit/inspect/fru/FruDraft.h>
#include <recordkit/inspect/fru/FruFormat.h>
#include <recordkit/inspect/fru/FruImage.h>
#include <recordkit/inspect/fru/FruNames.h>
#include <recordkit/inspect/fru/MfgDate.h>
#include <recordkit/inspect/fru/MultiRecordEdit.h>
#include <recordkit/inspect/words/ChassisTypes.h>
#include <recordkit/inspect/words/Languages.h>

namespace recordkit::inspect {

namespace {

/// A field of an area to change: where it is, and to which value.
struct AreaStep {
    FruEdit edit;
    const FruAreaImage* area;
    const FruField* field;
};

/// The number of a text among those of its area.
std::size_t textIndex(const FruAreaImage& area, const FruField& field)
{
    return static_cast<std::size_t>(std::count_if(
        area.fields.data(), &field, [](const FruField& each) { return each.isCoded; }));
}

/// Works on one image.
class Editor {
public:
    Editor(const std::string& imageBytes, const FruEditOptions& editOptions)
        : draft(imageBytes, editOptions.repairsChecksums), options(editOptions)
    {
    }

    FruEditResult run(const std::vector<FruEdit>& edits)
    {
        for (const FruEdit& edit : edits) {
            add(edit);
        }
        for (const AreaStep& step : steps) {
            setFixed(step);
        }
        // Texts depend on the language, which is known now.
        for (const AreaStep& step : steps) {
            setText(step);
        }
        checkLanguages();
        FruDraftResult drafted = draft.finish(options.mayGrow);
        result.bytes = drafted.bytes;
        result.notes.insert(result.notes.begin(), drafted.notes.begin(), drafted.notes.end());
        report();
        return result;
    }

private:
    void add(const FruEdit& edit)
    {
        if (!names.insert(edit.field).second) {
            throw RequestError(fmt::format("{} is specified more than once", edit.field));
        }
        if (edit.field == fruAreaName(FRU_AREA_INTERNAL_A)) {
            setInternalUse(edit);
            return;
        }
        const FruFieldName name = parseFruFieldName(edit.field);
        if (name.area) {
            addStep(edit, name);
        } else {
            setRecord(edit, name);
        }
    }

    void setInternalUse(const FruEdit& edit)
    {
        const auto& before = draft.image().internalUse;
        if (before.empty()) {
            throw DataError("internal: the image has no internal use area (fru add adds one)");
        }
        draft.setInternalUse(edit.value);
        result.changes.push_back({edit.field, counted(before.front().bytes.size(), "byte"), ""});
    }

    void addStep(const FruEdit& edit, const FruFieldName& name)
    {
        const FruAreaImage* const area = draft.image().findArea(*name.area);
        if (area == nullptr) {
            throw DataError(fmt::format("{}: the image has no {} area (fru add adds one)",
                                        edit.field, name.owner));
        }
        const FruField* const field = draft.image().findField(edit.field);
        if (field == nullptr) {
            throw DataError(
                area->isWhole
                    ? fmt::format(
                          "{}: the {} area at offset {} has no such field (fru add adds one)",
                          edit.field, area->extent.name, area->extent.offset)
                    : area->problems.front());
        }
        steps.push_back({edit, area, field});
        result.changes.push_back({edit.field, field->value, ""});
    }

    void setRecord(const FruEdit& edit, const FruFieldName& name)
    {
        const FruMultiRecord* const record = draft.image().findRecord(name.owner);
        if (record == nullptr) {
            throw DataError(fmt::format("{}: the image has no record {}", edit.field, name.owner));
        }
        const MultiRecordField* const field = record->content.findField(name.field);
        const auto index = static_cast<std::size_t>(record - draft.image().records.data());
        setRecordField(name.owner, draft.records()[index], name.field, edit.value);
        changedRecords[edit.field] = {index, name.field, edit.value};
        result.changes.push_back({edit.field, field == nullptr ? "" : field->text, ""});
    }

    void setFixed(const AreaStep& step)
    {
        if (!step.field->isCoded) {
            const std::string value = encodeFixedField(step.edit, options.now);
            FruAreaContent& area = draft.area(step.area->id);
            area.start.replace(step.field->offset - step.area->extent.offset - FRU_AREA_START,
                               value.size(), value);
        }
    }

    void setText(const AreaStep& step)
    {
        if (!step.field->isCoded) {
            return;
        }
        FruAreaContent& area = draft.area(step.area->id);
        FruText& text = area.texts[textIndex(*step.area, *step.field)];
        const std::string& name = step.edit.field;
        const Coding before = codingOf(text.typeLength);
        text = options.coding
                   ? encodeFruText(name, step.edit.value, area.language(), *options.coding)
                   : replaceFruText(name, step.edit.value, area.language(), text);
        const Coding after = codingOf(text.typeLength);
        if (after != before && !step.field->bytes.empty()) {
            result.notes.push_back(fmt::format("{}: stored as {}, it was {}", name,
                                               codingName(after), codingName(before)));
        }
    }

    /// Refuses a language in which texts that stay would be read as others.
    void checkLanguages()
    {
        for (const AreaStep& step : steps) {
            const unsigned char language = draft.area(step.area->id).language();
            if (isEnglish(language) == isEnglish(step.area->language)) {
                continue;
            }
            for (const FruField& field : step.area->fields) {
                const std::string name = step.area->extent.name + "." + field.name;
                if (field.isCoded && codingOf(field.typeLength) == CODING_TEXT &&
                    !field.bytes.empty() && names.count(name) == 0) {
                    throw DataError(fmt::format(
                        "{}.language: {} would be read with {} bits a character, it must be set "
                        "at the same time",
                        step.area->extent.name, name, isEnglish(language) ? 8 : 16));
                }
            }
        }
    }

    /// The values as they are read back.
    void report()
    {
        const FruImage edited = parseFruImage(result.bytes);
        for (FruChange& change : result.changes) {
            const auto record = changedRecords.find(change.field);
            if (record != changedRecords.end()) {
                // Another manufacturer or type can make it a record of another kind.
                const MultiRecordField* const field =
                    edited.records[record->second.index].content.findField(record->second.field);
                change.after = field == nullptr ? record->second.value : field->text;
            } else if (change.field == fruAreaName(FRU_AREA_INTERNAL_A)) {
                change.after = counted(edited.internalUse.front().bytes.size(), "byte");
            } else {
                change.after = edited.findField(change.field)->value;
            }
        }
    }

    struct RecordStep {
        std::size_t index;
        std::string field;
        std::string value;
    };

    FruDraft draft;
    const FruEditOptions options;
    std::set<std::string> names;
    std::vector<AreaStep> steps;
    std::map<std::string, RecordStep> changedRecords; ///< by the name of the change
    FruEditResult result;
};

}

FruEdit parseFruEdit(const std::string& text)
{
    const std::size_t at = text.find('=');
    if (at == std::string::npos || at == 0) {
        throw RequestError(fmt::format("\"{}\": expected AREA.FIELD=VALUE", text));
    }
    return {text.substr(0, at), text.substr(at + 1)};
}

std::string encodeFixedField(const FruEdit& edit, unsigned int now)
{
    const std::string field = parseFruFieldName(edit.field).field;
    const auto refused = [&edit](const char* expected) {
        return DataError(
            fmt::format("{}: \"{}\" is {}", edit.field, printable(edit.value), expected));
    };
    if (field == fruItemName(FRU_ITEM_MFG_DATE_TIME)) {
        return orThrow(parseMfgDate(edit.value, now),
                       refused("not a date from 2006-01-01 to 2037-11-23, as 2024-11-05 or "
                               "2024-11-05 06:07, nor \"now\" or \"unspecified\""))
            .bytes();
    }
    const unsigned char value =
        field == fruItemName(FRU_ITEM_CHASSIS_TYPE)
            ? orThrow(findChassisType(edit.value),
                      refused("neither the name nor the number of a chassis type"))
            : orThrow(findLanguage(edit.value),
                      refused("neither a language such as \"en\" nor a number from 0 to 255"));
    return std::string(1, static_cast<char>(value));
}

FruEditResult editFruImage(const std::string& bytes, const std::vector<FruEdit>& edits,
                           const FruEditOptions& options)
{
    for (const FruEdit& edit : edits) {
        if (edit.field != fruAreaName(FRU_AREA_INTERNAL_A)) {
            static_cast<void>(parseFruFieldName(edit.field));
        }
    }
    return Editor(bytes, options).run(edits);
}

}
