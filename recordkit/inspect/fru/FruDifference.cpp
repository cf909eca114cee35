// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/fru/FruDifference.h>

#include <algorithm>

#include <fmt/format.h>

#include <recordkit/inspect/bytes/Hex.h>
#include <recordkit/inspect/bytes/Numbers.h>

namespace recordkit::inspect {

namespace {

/// A part of an image with a name.
struct Part {
    std::string name;
    std::string value;
    std::string coding;
};

std::vector<Part> partsOf(const FruImage& image, ByteView bytes)
{
    std::vector<Part> parts;
    for (const FruAreaImage& area : image.areas) {
        for (const FruField& field : area.fields) {
            parts.push_back({area.extent.name + "." + field.name, field.value,
                             field.typeName() + std::string(" ") + toHex(field.bytes)});
        }
    }
    for (const FruInternalUse& internal : image.internalUse) {
        parts.push_back({internal.extent.name, toHex(internal.bytes), ""});
    }
    for (std::size_t i = 0; i < image.records.size(); ++i) {
        const FruExtent& extent = image.records[i].extent;
        parts.push_back({fmt::format("multirecord{}", i + 1),
                         toHex(bytes.part(extent.offset, extent.size)), ""});
    }
    return parts;
}

const Part* find(const std::vector<Part>& parts, const std::string& name)
{
    const auto found = std::find_if(parts.begin(), parts.end(),
                                    [&name](const Part& each) { return each.name == name; });
    return found == parts.end() ? nullptr : &*found;
}

}

std::vector<FruDifference> compareFruImages(ByteView first, ByteView second)
{
    const std::vector<Part> ours = partsOf(parseFruImage(first), first);
    const std::vector<Part> theirs = partsOf(parseFruImage(second), second);
    std::vector<FruDifference> differences;
    for (const Part& part : ours) {
        const Part* const other = find(theirs, part.name);
        if (other == nullptr) {
            differences.push_back({part.name, part.value, std::nullopt});
        } else if (other->value != part.value) {
            differences.push_back({part.name, part.value, other->value});
        } else if (other->coding != part.coding) {
            differences.push_back({part.name, part.coding, other->coding});
        }
    }
    for (const Part& part : theirs) {
        if (find(ours, part.name) == nullptr) {
            differences.push_back({part.name, std::nullopt, part.value});
        }
    }
    const bool isEqual =
        first.size() == second.size() && std::equal(first.begin(), first.end(), second.begin());
    if (differences.empty() && !isEqual) {
        differences.push_back(
            {"bytes", counted(first.size(), "byte"), counted(second.size(), "byte")});
    }
    return differences;
}

}
