// SPDX-License-Identifier: Apache-2.0
#include "SpdJson.h"

#include <fmt/format.h>

namespace recordkit::tool {

Json toJson(const Spd& spd)
{
    const auto known = [](unsigned int value) { return value == 0 ? Json(nullptr) : Json(value); };
    Json json;
    json["capacity_mb"] = known(spd.megabytes);
    json["ranks"] = known(spd.ranks);
    json["device_width"] = known(spd.deviceWidth);
    json["bus_width"] = known(spd.busWidth);
    json["ecc_width"] = spd.eccWidth;
    json["density_mbit"] = known(spd.densityMegabits);
    json["module_type"] = spd.moduleType;
    json["serial_number"] =
        spd.hasManufacturerData ? Json(fmt::format("{:08X}", spd.serialNumber)) : Json(nullptr);
    json["part_number"] = spd.hasManufacturerData ? Json(spd.partNumber) : Json(nullptr);
    json["rank_field"] = spd.rankField;
    json["dimm_size_code"] = spd.dimmSize;
    json["dram_size_code"] = spd.dramSize;
    json["crc_stored"] = spd.storedCrc;
    json["crc_expected"] = spd.expectedCrc;
    json["crc_right"] = spd.isCrcRight();
    return json;
}

}
