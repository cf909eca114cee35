// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/fru/FruFields.h>

#include <fmt/format.h>

#include <recordkit/fru/FRUData.h>
#include <recordkit/fru/FRUTables.h>
#include <recordkit/inspect/bytes/Error.h>
#include <recordkit/inspect/bytes/Hex.h>
#include <recordkit/inspect/fru/FruImage.h>
#include <recordkit/inspect/fru/ImageDevice.h>

namespace recordkit::inspect {

namespace {

/// Fields of a FRU image, by area.
DecodedFields decodeFru(ByteView bytes)
{
    const FruImage image = parseFruImage(bytes);
    if (!image.isFru) {
        throw DataError(image.headerProblems.front());
    }
    DecodedFields fields;
    for (const FruAreaImage& area : image.areas) {
        for (const FruField& each : area.fields) {
            const auto size = static_cast<unsigned int>(each.bytes.size()) + (each.isCoded ? 1 : 0);
            fields.push_back({area.extent.name + "." + each.name,
                              bytesAt(each.offset, size),
                              {},
                              each.value,
                              each.typeName()});
        }
        for (const std::string& problem : area.problems) {
            fields.push_back({area.extent.name, bytesAt(area.extent.offset, 0), {}, {}, problem});
        }
    }
    return fields;
}

/// Fields of the blocks of a processor ROM, in image order, as stored.
DecodedFields decodeRom(ByteView bytes)
{
    ImageDevice device(bytes.text());
    FRUData rom(device, FRU_CPU_ROM);
    DecodedFields fields;
    for (int id = FRU_AREA_CPU_PROCESSOR; id <= FRU_AREA_CPU_OTHER; ++id) {
        const auto area = static_cast<FRU_AREA>(id);
        unsigned int at = rom.getAreaOffset(area);
        if (at == 0) {
            continue;
        }
        for (const FRUMember* const member :
             rom.getAreaObject(area, FRUArea::CSUM_IGNORE)->getMembers()) {
            const int item = member->getItem();
            fields.push_back({fmt::format("area{}.item{}", id, item),
                              bytesAt(at, member->getLength()),
                              {},
                              toHex(member->getData()),
                              item == FRU_ITEM_RESERVED ? "reserved" : ""});
            at += member->getLength();
        }
    }
    return fields;
}

constexpr RecordClass CLASSES[] = {
    {"FRUData",
     {8, 65536, "and more"},
     "FRU image: every field of its areas",
     nullptr,
     {},
     decodeFru},
    {"FRUData.ROM",
     {14, 65536, "and more"},
     "information ROM of a processor, as FRUData reads it",
     nullptr,
     {},
     decodeRom},
};

}

RecordClasses fruClasses()
{
    return CLASSES;
}

}
