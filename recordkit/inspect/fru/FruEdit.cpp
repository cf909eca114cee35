// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/fru/FruEdit.h>

#include <algorithm>
#include <fmt/format.h>
#include <fmt/ranges.h>
#include <map>

#include <recordkit/fru/FRUData.h>
#include <recordkit/inspect/bytes/Error.h>
#include <recordkit/inspect/bytes/Numbers.h>
#include <recordkit/inspect/bytes/Text.h>
#include <recordkit/inspect/fru/FruImage.h>
#include <recordkit/inspect/fru/FruLayout.h>
#include <recordkit/inspect/fru/FruNames.h>
#include <recordkit/inspect/fru/ImageDevice.h>
#include <recordkit/inspect/fru/MfgDate.h>
#include <recordkit/inspect/words/ChassisTypes.h>

namespace recordkit::inspect {

namespace {

constexpr unsigned int MAX_VALUE = 63;

/// An edit with its place in the image.
struct Step {
    std::string field;
    FRU_AREA area;
    std::size_t place; ///< among the area's fields of this item
    FRU_ITEM item;
    std::string bytes;
    int growth; ///< by how many bytes the field grows
};

std::string areaOf(const std::string& field)
{
    return field.substr(0, field.find('.'));
}

/// Throws (usage) for a field that no image can have.
void checkName(const std::string& field)
{
    const std::string name = field.substr(std::min(field.find('.'), field.size() - 1) + 1);
    FRU_AREA area = FRU_AREA_COMMON_HEADER;
    if (field.find('.') == std::string::npos || !findFruArea(areaOf(field), area)) {
        std::vector<std::string> areas;
        for (const FRU_AREA each : informationAreas()) {
            areas.push_back(fruAreaName(each));
        }
        throw RequestError(fmt::format("\"{}\" is not a field, expected AREA.FIELD with one of the "
                                       "areas {}",
                                       field, fmt::join(areas, ", ")));
    }
    const std::vector<std::string> names = fruFieldNames(area);
    const std::string custom = fruItemName(FRU_ITEM_CUSTOM);
    const bool isCustom = name.compare(0, custom.size(), custom) == 0 &&
                          parseNumber(name.substr(custom.size()), 0xFF).value_or(0) != 0;
    if (!isCustom && std::find(names.begin(), names.end(), name) == names.end()) {
        throw RequestError(
            fmt::format("\"{}\": the {} area has no field \"{}\", but {} and custom1, "
                        "custom2, ...",
                        field, areaOf(field), name, fmt::join(names, ", ")));
    }
}

/// The value of a field that has no type/length byte.
std::string encodeFixed(const FruEdit& edit, FRU_ITEM item)
{
    const auto refused = [&edit](const char* expected) {
        return DataError(fmt::format("{}: \"{}\" is {}", edit.field, edit.value, expected));
    };
    const auto oneByte = [](unsigned long value) {
        return std::string(1, static_cast<char>(value));
    };
    switch (item) {
    case FRU_ITEM_MFG_DATE_TIME:
        return orThrow(parseMfgDate(edit.value),
                       refused("not a date from 2006-01-01 to 2037-11-23, as 2024-11-05 or "
                               "2024-11-05 06:07, nor \"unspecified\""))
            .bytes();
    case FRU_ITEM_CHASSIS_TYPE:
        return oneByte(orThrow(findChassisType(edit.value),
                               refused("neither the name nor the number of a chassis type")));
    default:
        return oneByte(
            orThrow(parseNumber(edit.value, 0xFF), refused("not a number from 0 to 255")));
    }
}

std::string encodeText(const FruEdit& edit, unsigned char language)
{
    std::string bytes = orThrow(toLatin1(edit.value),
                                DataError(fmt::format("{}: \"{}\" has characters outside Latin-1",
                                                      edit.field, printable(edit.value))));
    if (!isEnglish(language)) {
        std::string wide;
        for (const char character : bytes) {
            wide += character;
            wide += '\0';
        }
        bytes = wide;
    }
    if (bytes.size() == 1) {
        throw DataError(fmt::format("{}: a value of one character cannot be stored, its "
                                    "type/length byte would end the fields",
                                    edit.field));
    }
    if (bytes.size() > MAX_VALUE) {
        throw DataError(fmt::format("{}: {} bytes needed, a field has at most {}", edit.field,
                                    bytes.size(), MAX_VALUE));
    }
    return bytes;
}

/// Works on one image.
class Editor {
public:
    Editor(const std::string& imageBytes, const FruEditOptions& editOptions)
        : image(parseFruImage(imageBytes)), options(editOptions)
    {
        result.bytes = imageBytes;
    }

    FruEditResult run(const std::vector<FruEdit>& edits)
    {
        for (const FruEdit& edit : edits) {
            checkName(edit.field);
        }
        if (!image.isFru) {
            throw DataError(image.headerProblems.front());
        }
        checkChecksums();
        for (const FruEdit& edit : edits) {
            addStep(edit);
        }
        for (const auto& [id, growth] : growths()) {
            checkArea(*image.findArea(id));
        }
        makeRoom();
        apply();
        return result;
    }

private:
    /// Repairs every wrong checksum, or refuses the image.
    void checkChecksums()
    {
        check("common header", image.header);
        for (const FruAreaImage& area : image.areas) {
            if (area.extent.size != 0) {
                check((area.extent.name + " area").c_str(), area.checksum);
            }
        }
    }

    void check(const char* name, const FruChecksum& checksum)
    {
        if (checksum.isRight()) {
            return;
        }
        if (!options.repairsChecksums) {
            throw DataError(fmt::format("{}: checksum {:02X}h at offset {}, expected {:02X}h "
                                        "(--ignore-checksum repairs it)",
                                        name, checksum.stored, checksum.offset, checksum.expected));
        }
        result.bytes[checksum.offset] = static_cast<char>(checksum.expected);
        result.notes.push_back(fmt::format("{}: checksum at offset {} repaired, {:02X}h to {:02X}h",
                                           name, checksum.offset, checksum.stored,
                                           checksum.expected));
    }

    void addStep(const FruEdit& edit)
    {
        FRU_AREA id = FRU_AREA_COMMON_HEADER;
        findFruArea(areaOf(edit.field), id);
        const FruAreaImage* const area = image.findArea(id);
        if (area == nullptr) {
            throw DataError(
                fmt::format("{}: the image has no {} area", edit.field, areaOf(edit.field)));
        }
        const FruField* const field = image.findField(edit.field);
        if (field == nullptr) {
            throw DataError(area->isWhole
                                ? fmt::format("{}: the {} area at offset {} has no such field",
                                              edit.field, area->extent.name, area->extent.offset)
                                : area->problems.front());
        }
        if (std::any_of(steps.begin(), steps.end(),
                        [&edit](const Step& step) { return step.field == edit.field; })) {
            throw RequestError(fmt::format("{} is specified more than once", edit.field));
        }
        const auto place =
            std::count_if(area->fields.data(), field,
                          [field](const FruField& before) { return before.item == field->item; });
        const std::string bytes =
            field->isCoded ? encodeText(edit, area->language) : encodeFixed(edit, field->item);
        const int growth = static_cast<int>(bytes.size()) - static_cast<int>(field->bytes.size());
        steps.push_back(
            {edit.field, id, static_cast<std::size_t>(place), field->item, bytes, growth});
        result.changes.push_back({edit.field, field->value, ""});
    }

    std::map<FRU_AREA, int> growths() const
    {
        std::map<FRU_AREA, int> all;
        for (const Step& step : steps) {
            all[step.area] += step.growth;
        }
        return all;
    }

    /// Whether the library can write an area back without damaging the bytes around it.
    void checkArea(const FruAreaImage& area) const
    {
        if (!area.isWhole) {
            throw DataError(area.problems.front());
        }
        if (area.extent.size > MAX_AREA_SIZE) {
            throw DataError(fmt::format("{} area: {} bytes at offset {}; areas of more than {} "
                                        "bytes cannot be edited",
                                        area.extent.name, area.extent.size, area.extent.offset,
                                        MAX_AREA_SIZE));
        }
        for (const auto* const others : {&image.extents, &image.lost}) {
            for (const FruExtent& other : *others) {
                checkApart(area.extent, other);
            }
        }
    }

    static void checkApart(const FruExtent& area, const FruExtent& other)
    {
        const bool isItself = other.offset == area.offset && other.name == area.name;
        if (!isItself && other.offset < area.end() && area.offset < other.end()) {
            throw DataError(fmt::format("{} ({} to {}) and {} ({} to {}) overlap", area.name,
                                        area.offset, area.end() - 1, other.name, other.offset,
                                        other.end() - 1));
        }
    }

    void makeRoom()
    {
        std::map<FRU_AREA, unsigned int> missing;
        for (const auto& [id, growth] : growths()) {
            const FruAreaImage& area = *image.findArea(id);
            if (growth <= static_cast<int>(area.unused)) {
                continue;
            }
            const unsigned int lack = static_cast<unsigned int>(growth) - area.unused;
            const unsigned int by = toLengthUnit(lack);
            const std::string need = fmt::format("{} area: {} more bytes needed, {} free",
                                                 area.extent.name, growth, area.unused);
            if (!options.mayGrow) {
                throw DataError(need + " (--grow makes room where the image has some)");
            }
            if (area.extent.size + by > MAX_AREA_SIZE) {
                throw DataError(
                    fmt::format("{}, and an area has at most {} bytes", need, MAX_AREA_SIZE));
            }
            missing[id] = by;
            result.notes.push_back(fmt::format("{} area: {} bytes larger, {} in all",
                                               area.extent.name, by, area.extent.size + by));
        }
        if (missing.empty()) {
            return;
        }
        // With a damaged record, an overlap or an area of unknown place, it is unknown which bytes
        // may be moved.
        std::vector<std::string> obstacles = image.problems;
        for (const FruAreaImage& area : image.areas) {
            if (area.extent.size == 0) {
                obstacles.push_back(area.problems.front());
            }
        }
        if (!obstacles.empty()) {
            throw DataError("the areas cannot be moved: " + obstacles.front());
        }
        result.bytes = growAreas(result.bytes, missing);
    }

    void apply()
    {
        // Fields that shrink come first: they free the bytes that others need to grow.
        std::stable_sort(steps.begin(), steps.end(),
                         [](const Step& a, const Step& b) { return a.growth < b.growth; });
        ImageDevice device(result.bytes);
        FRUData fru(device);
        for (const Step& step : steps) {
            FRUArea& area = *fru.getAreaObject(step.area, FRUArea::CSUM_CHECK);
            FRUMember& member = memberOf(area, step);
            if (member.getHasTypeLength()) {
                area.unusedUpdate(static_cast<short>(step.growth));
            }
            member.setData(step.bytes);
            member.settypelength();
        }
        for (const auto& [id, growth] : growths()) {
            FRUArea& area = *fru.getAreaObject(id, FRUArea::CSUM_CHECK);
            area.syncFRU();
        }
        result.bytes = device.getBytes();
        report();
    }

    static FRUMember& memberOf(FRUArea& area, const Step& step)
    {
        std::size_t before = 0;
        for (FRUMember* const member : area.getMembers()) {
            if (member->getItem() == step.item && before++ == step.place) {
                return *member;
            }
        }
        throw DataError(fmt::format("{}: the area has no such field", step.field));
    }

    void report()
    {
        const FruImage edited = parseFruImage(result.bytes);
        for (FruChange& change : result.changes) {
            change.after = edited.findField(change.field)->value;
        }
        for (const auto& [id, growth] : growths()) {
            const FruAreaImage& area = *edited.findArea(id);
            result.notes.push_back(
                fmt::format("{} area: {} bytes free", area.extent.name, area.unused));
        }
    }

    const FruImage image;
    const FruEditOptions options;
    std::vector<Step> steps;
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

FruEditResult editFruImage(const std::string& bytes, const std::vector<FruEdit>& edits,
                           const FruEditOptions& options)
{
    return Editor(bytes, options).run(edits);
}

}
