// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <iterator>
#include <utility>

#include <fmt/format.h>

#include <recordkit/inspect/bytes/Numbers.h>
#include <recordkit/inspect/fru/FruNames.h>

#include "../Commands.h"
#include "../Files.h"
#include "../print/Listing.h"
#include "../print/Problems.h"
#include "FruOptions.h"
#include "FruValues.h"

namespace recordkit::tool {

namespace {

constexpr const char* FILE_KEY = "file";
constexpr const char* STATE_KEY = "problems";

/// A field that the table usually shows.
struct Shown {
    const char* field;
    const char* title;
    std::size_t width;
};
constexpr Shown SHOWN[] = {
    {"board.manufacturer", "MANUFACTURER", 16},
    {"board.name", "BOARD", 16},
    {"board.part-number", "PART NUMBER", 14},
    {"board.serial", "SERIAL", 14},
    {"product.name", "PRODUCT", 16},
    {"product.serial", "PRODUCT SERIAL", 14},
};

/// Custom fields that can be chosen; fru show has all.
constexpr unsigned int CUSTOM_FIELDS = 9;

/// The fields that a list can have, "board.serial", in the order of the image.
std::vector<std::string> fieldNames()
{
    std::vector<std::string> names;
    for (const FRU_AREA area : informationAreas()) {
        for (const std::string& field : fruFieldNames(area)) {
            names.push_back(fruAreaName(area) + "." + field);
        }
        for (unsigned int i = 1; i <= CUSTOM_FIELDS; ++i) {
            names.push_back(
                fmt::format("{}.{}{}", fruAreaName(area), fruItemName(FRU_ITEM_CUSTOM), i));
        }
    }
    return names;
}

/// A row for each image.
class FruListing {
public:
    explicit FruListing(const Layout& layout)
        : names(fieldNames()), writer(heads(), layout, wishes(), print)
    {
    }

    void add(const FruFile& file)
    {
        std::vector<Cell> cells;
        Object object;
        for (const ShownColumn& each : writer.getShown()) {
            const Value value = valueOf(each.index, file);
            if (!writer.isTable()) {
                object.push_back({keyOf(each.index), value});
            } else if (keyOf(each.index) == STATE_KEY) {
                const std::size_t problems = file.image.allProblems().size();
                cells.push_back(checkCell(problems == 0, "good", counted(problems, "problem")));
            } else {
                cells.push_back({cellText(value)});
            }
        }
        if (writer.isTable()) {
            writer.addCells(cells);
        } else {
            writer.addObject(std::move(object));
        }
    }
    void finish() { writer.end(); }

private:
    std::vector<ColumnHead> heads() const
    {
        std::vector<ColumnHead> result = {{STATE_KEY, "STATE", 10}};
        for (const std::string& name : names) {
            const auto* const shown =
                std::find_if(std::begin(SHOWN), std::end(SHOWN),
                             [&name](const Shown& each) { return name == each.field; });
            const bool isCustom = name.find(fruItemName(FRU_ITEM_CUSTOM)) != std::string::npos;
            result.push_back(shown == std::end(SHOWN)
                                 ? ColumnHead{name.c_str(), nullptr, 0, isCustom}
                                 : ColumnHead{name.c_str(), shown->title, shown->width, isCustom});
        }
        result.push_back({FILE_KEY, "FILE", 0});
        return result;
    }
    static std::vector<Wish> wishes()
    {
        return {{FILE_KEY, 20},           {"board.serial", 8},      {STATE_KEY, 7},
                {"board.name", 8},        {"product.name", 8},      {"product.serial", 8},
                {"board.part-number", 8}, {"board.manufacturer", 8}};
    }
    std::string keyOf(std::size_t column) const
    {
        return column == 0 ? STATE_KEY : column > names.size() ? FILE_KEY : names[column - 1];
    }
    Value valueOf(std::size_t column, const FruFile& file) const
    {
        if (column == 0) {
            return file.image.allProblems();
        }
        if (column > names.size()) {
            return inputName(file.path);
        }
        const FruField* const field = file.image.findField(names[column - 1]);
        return field == nullptr ? Value() : Value(field->value);
    }

    std::vector<std::string> names;
    ListingWriter writer;
};

void run(const Arguments& arguments)
{
    FruListing listing(arguments.layout());
    Problems problems;
    for (const std::string& path : arguments.texts("FILE")) {
        problems.run(inputName(path), [&] {
            FruFile file = {path, readInput(path, FRU_LIMIT), {}};
            file.image = parseFruImage(file.bytes);
            listing.add(file);
            return file.image.allProblems();
        });
    }
    listing.finish();
    problems.finish();
}

}

Command fruListCommand()
{
    return {"fru list",
            "List FRU images, a line each",
            "recordkit fru list *.bin --fields file,board.serial,product.name",
            {fruFile().many()},
            Answer::TABLE,
            run,
            "Fields have the names that fru get takes; custom fields from 1 to 9 are listed where "
            "--fields or --columns names them. What is damaged is reported, and what can be read "
            "of it is listed; the status is then 1."};
}

}
