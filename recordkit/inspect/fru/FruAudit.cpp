// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/fru/FruAudit.h>

#include <algorithm>
#include <cctype>
#include <map>

#include <fmt/format.h>

#include <recordkit/inspect/bytes/Numbers.h>
#include <recordkit/inspect/bytes/Text.h>
#include <recordkit/inspect/fru/FruNames.h>
#include <recordkit/inspect/fru/MfgDate.h>
#include <recordkit/inspect/words/Match.h>

namespace recordkit::inspect {

namespace {

std::string nameOf(FRU_AREA area, FRU_ITEM item)
{
    return fruAreaName(area) + "." + fruItemName(item);
}

/// The value of a field; empty if the image does not have it.
std::string valueOf(const FruImage& image, FRU_AREA area, FRU_ITEM item)
{
    const FruField* const field = image.findField(nameOf(area, item));
    return field == nullptr ? "" : field->value;
}

/// Whether a serial number was never given.
bool isPlaceholder(const std::string& serial)
{
    constexpr const char* PHRASES[] = {"filled by",     "default string", "not specified",
                                       "not available", "unknown",        "serial"};
    constexpr const char* WORDS[] = {"n/a",  "na",         "none",      "tbd",
                                     "null", "0123456789", "123456789", "1234567890"};
    const auto isOne = [](unsigned char character) {
        return character == '0' || character == ' ' || character == 'X' || character == 'x' ||
               character == '.' || character == '-';
    };
    return std::all_of(serial.begin(), serial.end(), isOne) ||
           std::any_of(std::begin(PHRASES), std::end(PHRASES),
                       [&serial](const char* each) { return containsText(serial, each); }) ||
           std::any_of(std::begin(WORDS), std::end(WORDS), [&serial](const char* each) {
               return serial.size() == std::string(each).size() && containsText(serial, each);
           });
}

/// Areas with a serial number, a manufacturer and a part number of what it numbers.
constexpr FRU_AREA NUMBERED[] = {FRU_AREA_BOARD, FRU_AREA_PRODUCT};

class Audit {
public:
    Audit(const std::vector<FruImage>& fleet, unsigned int present) : images(fleet), now(present) {}

    std::vector<FruFinding> take()
    {
        for (std::size_t i = 0; i < images.size(); ++i) {
            for (const std::string& problem : images[i].allProblems()) {
                findings.push_back({i, "", problem});
            }
            addDate(i);
            for (const FRU_AREA area : {FRU_AREA_CHASSIS, FRU_AREA_BOARD, FRU_AREA_PRODUCT}) {
                addPlaceholder(i, nameOf(area, FRU_ITEM_SERIAL_NUMBER));
            }
        }
        for (const FRU_AREA area : NUMBERED) {
            addDuplicates(area);
        }
        addMinorities();
        std::stable_sort(findings.begin(), findings.end(),
                         [](const FruFinding& left, const FruFinding& right) {
                             return left.image < right.image;
                         });
        return std::move(findings);
    }

private:
    void addDate(std::size_t number)
    {
        const std::string name = nameOf(FRU_AREA_BOARD, FRU_ITEM_MFG_DATE_TIME);
        const FruField* const field = images[number].findField(name);
        if (field == nullptr || !MfgDate(field->bytes).isSpecified()) {
            return;
        }
        // A count that can be read as two dates is in the future only if both are.
        const MfgDate date(field->bytes);
        if (date.isAfter(now) && !date.otherReading(now)) {
            findings.push_back({number, name, fmt::format("{} is in the future", date.toText())});
        }
    }

    void addPlaceholder(std::size_t number, const std::string& name)
    {
        const FruField* const field = images[number].findField(name);
        if (field != nullptr && isPlaceholder(field->value)) {
            findings.push_back({number, name,
                                field->value.empty() ? "is blank"
                                                     : fmt::format("\"{}\" is a placeholder",
                                                                   printable(field->value))});
        }
    }

    void addDuplicates(FRU_AREA area)
    {
        std::map<std::vector<std::string>, std::vector<std::size_t>> owners;
        for (std::size_t i = 0; i < images.size(); ++i) {
            const std::string serial = valueOf(images[i], area, FRU_ITEM_SERIAL_NUMBER);
            if (!isPlaceholder(serial)) {
                owners[{valueOf(images[i], area, FRU_ITEM_MANUFACTURER),
                        valueOf(images[i], area, FRU_ITEM_PART_NUMBER), serial}]
                    .push_back(i);
            }
        }
        for (const auto& [key, same] : owners) {
            for (const std::size_t number : same) {
                if (same.size() > 1) {
                    findings.push_back({number, nameOf(area, FRU_ITEM_SERIAL_NUMBER),
                                        fmt::format("\"{}\" is in {}", printable(key.back()),
                                                    counted(same.size(), "image"))});
                }
            }
        }
    }

    /// The manufacturer and the name of what an image describes; empty if it has none.
    static std::vector<std::string> productOf(const FruImage& image)
    {
        for (const FRU_AREA area : {FRU_AREA_PRODUCT, FRU_AREA_BOARD}) {
            const std::string name = valueOf(image, area, FRU_ITEM_PRODUCT_NAME);
            if (!name.empty()) {
                return {valueOf(image, area, FRU_ITEM_MANUFACTURER), name};
            }
        }
        return {};
    }

    static bool isOfEachImage(const FruField& field)
    {
        return field.item == FRU_ITEM_SERIAL_NUMBER || field.item == FRU_ITEM_MFG_DATE_TIME ||
               field.item == FRU_ITEM_ASSET_TAG ||
               fruItemName(field.item) == fruItemName(FRU_ITEM_CUSTOM);
    }

    void addMinorities()
    {
        std::map<std::vector<std::string>, std::vector<std::size_t>> products;
        for (std::size_t i = 0; i < images.size(); ++i) {
            const std::vector<std::string> product = productOf(images[i]);
            if (!product.empty()) {
                products[product].push_back(i);
            }
        }
        for (const auto& [product, members] : products) {
            compare(product.back(), members);
        }
    }

    void compare(const std::string& product, const std::vector<std::size_t>& members)
    {
        // Of each field the images by value; those without it are counted as such.
        std::map<std::string, std::map<std::string, std::vector<std::size_t>>> fields;
        for (const std::size_t number : members) {
            for (const FruAreaImage& area : images[number].areas) {
                for (const FruField& field : area.fields) {
                    if (!isOfEachImage(field)) {
                        fields[area.extent.name + "." + field.name][field.value].push_back(number);
                    }
                }
            }
        }
        for (const auto& [name, values] : fields) {
            for (const auto& [value, holders] : values) {
                if (holders.size() * 2 > members.size()) {
                    addOthers(product, members, name, value, holders);
                }
            }
        }
    }

    void addOthers(const std::string& product, const std::vector<std::size_t>& members,
                   const std::string& name, const std::string& value,
                   const std::vector<std::size_t>& holders)
    {
        for (const std::size_t number : members) {
            const FruField* const own = images[number].findField(name);
            if (own != nullptr && own->value == value) {
                continue;
            }
            findings.push_back(
                {number, name,
                 fmt::format("is {}, \"{}\" in {} of {} of {}",
                             own == nullptr ? "missing"
                                            : fmt::format("\"{}\"", printable(own->value)),
                             printable(value), holders.size(), counted(members.size(), "image"),
                             printable(product))});
        }
    }

    const std::vector<FruImage>& images;
    unsigned int now;
    std::vector<FruFinding> findings;
};

}

std::vector<FruFinding> auditFruImages(const std::vector<FruImage>& images, unsigned int now)
{
    return Audit(images, now).take();
}

}
