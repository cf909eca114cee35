// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/fru/FruNames.h>

#include <algorithm>
#include <fmt/format.h>
#include <fmt/ranges.h>

#include <recordkit/fru/FRUTables.h>
#include <recordkit/inspect/bytes/Error.h>
#include <recordkit/inspect/bytes/Numbers.h>

namespace recordkit::inspect {

namespace {

struct AreaName {
    FRU_AREA area;
    const char* name;
};

struct ItemName {
    FRU_ITEM item;
    const char* name;
};

// clang-format off
constexpr AreaName AREAS[] = {
    {FRU_AREA_INTERNAL_A, "internal"},
    {FRU_AREA_INTERNAL_B, "internal"},
    {FRU_AREA_CHASSIS, "chassis"},
    {FRU_AREA_BOARD, "board"},
    {FRU_AREA_PRODUCT, "product"},
    {FRU_AREA_MULTIRECORD, "multirecord"},
};
// The product area's extra fields are its first three custom fields.
constexpr ItemName ITEMS[] = {
    {FRU_ITEM_LANGUAGE_CODE, "language"},
    {FRU_ITEM_MANUFACTURER, "manufacturer"},
    {FRU_ITEM_PRODUCT_NAME, "name"},
    {FRU_ITEM_PART_NUMBER, "part-number"},
    {FRU_ITEM_SERIAL_NUMBER, "serial"},
    {FRU_ITEM_VERSION, "version"},
    {FRU_ITEM_CHASSIS_TYPE, "type"},
    {FRU_ITEM_ASSET_TAG, "asset-tag"},
    {FRU_ITEM_FRU_FILE_ID, "file-id"},
    {FRU_ITEM_CUSTOM, "custom"},
    {FRU_ITEM_MFG_DATE_TIME, "date"},
    {FRU_ITEM_PRODUCT_EXTRA1, "custom"},
    {FRU_ITEM_PRODUCT_EXTRA2, "custom"},
    {FRU_ITEM_PRODUCT_EXTRA3, "custom"},
    {FRU_ITEM_INTERNAL_A1, "a1"},
    {FRU_ITEM_INTERNAL_A2, "a2"},
    {FRU_ITEM_INTERNAL_A3, "a3"},
    {FRU_ITEM_INTERNAL_A4, "a4"},
    {FRU_ITEM_INTERNAL_A5, "a5"},
    {FRU_ITEM_INTERNAL_B1, "b1"},
    {FRU_ITEM_INTERNAL_B2, "b2"},
    {FRU_ITEM_INTERNAL_B3, "b3"},
    {FRU_ITEM_INTERNAL_B4, "b4"},
    {FRU_ITEM_INTERNAL_B5, "b5"},
    {FRU_ITEM_INTERNAL_B6, "b6"},
    {FRU_ITEM_INTERNAL_B7, "b7"},
    {FRU_ITEM_INTERNAL_B8, "b8"},
    {FRU_ITEM_INTERNAL_B9, "b9"},
    {FRU_ITEM_INTERNAL_B10, "b10"},
    {FRU_ITEM_INTERNAL_B11, "b11"},
    {FRU_ITEM_INTERNAL_BLOCK, "block"},
};
// clang-format on

bool isDigit(char character)
{
    return character >= '0' && character <= '9';
}

}

const std::vector<FRU_AREA>& informationAreas()
{
    static const std::vector<FRU_AREA> all = {FRU_AREA_CHASSIS, FRU_AREA_BOARD, FRU_AREA_PRODUCT};
    return all;
}

std::string fruAreaName(FRU_AREA area)
{
    const auto* const row =
        std::find_if(std::begin(AREAS), std::end(AREAS),
                     [area](const AreaName& each) { return each.area == area; });
    return row == std::end(AREAS) ? "" : row->name;
}

bool findFruArea(const std::string& name, FRU_AREA& area)
{
    const auto& all = informationAreas();
    const auto found = std::find_if(all.begin(), all.end(),
                                    [&name](FRU_AREA each) { return fruAreaName(each) == name; });
    if (found == all.end()) {
        return false;
    }
    area = *found;
    return true;
}

std::string fruItemName(FRU_ITEM item)
{
    const auto* const row =
        std::find_if(std::begin(ITEMS), std::end(ITEMS),
                     [item](const ItemName& each) { return each.item == item; });
    return row == std::end(ITEMS) ? "" : row->name;
}

std::vector<std::string> fruFieldNames(FRU_AREA area)
{
    std::vector<std::string> names;
    for (const FRUMemberTbl* row = findFRUArea(area)->members; row->item != FRU_ITEM_TERMINATOR;
         ++row) {
        const std::string name = fruItemName(row->item);
        if (!name.empty() && name != fruItemName(FRU_ITEM_CUSTOM)) {
            names.push_back(name);
        }
    }
    return names;
}

std::size_t fruTextCount(FRU_AREA id)
{
    std::size_t count = 0;
    for (const FRUMemberTbl* row = findFRUArea(id)->members; row->item != FRU_ITEM_TERMINATOR;
         ++row) {
        const bool isText =
            row->size == 0 && fruItemName(row->item) != fruItemName(FRU_ITEM_CUSTOM);
        count += isText ? 1 : 0;
    }
    return count;
}

unsigned int customNumber(const std::string& fieldName)
{
    const std::string custom = fruItemName(FRU_ITEM_CUSTOM);
    constexpr unsigned long MOST = 0xFF;
    return fieldName.compare(0, custom.size(), custom) == 0
               ? static_cast<unsigned int>(
                     parseNumber(fieldName.substr(custom.size()), MOST).value_or(0))
               : 0;
}

FruFieldName parseFruFieldName(const std::string& text)
{
    const std::size_t dot = text.find('.');
    FruFieldName name = {text, text.substr(0, dot), ""};
    FRU_AREA area = FRU_AREA_COMMON_HEADER;
    const bool isArea = findFruArea(name.owner, area);
    const bool isRecord = !isArea && !name.owner.empty() && isDigit(name.owner.back());
    if (dot == std::string::npos || (!isArea && !isRecord)) {
        std::vector<std::string> areas;
        for (const FRU_AREA each : informationAreas()) {
            areas.push_back(fruAreaName(each));
        }
        throw RequestError(fmt::format("\"{}\" is not a field, expected AREA.FIELD with one of the "
                                       "areas {}, or RECORD.FIELD with a record such as dc-output1",
                                       text, fmt::join(areas, ", ")));
    }
    name.field = text.substr(dot + 1);
    if (isRecord) {
        return name;
    }
    name.area = area;
    const std::vector<std::string> names = fruFieldNames(area);
    if (customNumber(name.field) == 0 &&
        std::find(names.begin(), names.end(), name.field) == names.end()) {
        throw RequestError(
            fmt::format("\"{}\": the {} area has no field \"{}\", but {} and custom1, "
                        "custom2, ...",
                        text, name.owner, name.field, fmt::join(names, ", ")));
    }
    return name;
}

}
