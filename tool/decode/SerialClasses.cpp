// SPDX-License-Identifier: Apache-2.0
#include <recordkit/serial/HardwareInfo.h>
#include <recordkit/serial/PartitionInfo.h>

#include "FieldTable.h"

namespace recordkit::tool {

using namespace TAVLib::RecordKit;

namespace {

/// One unit of the presence maps.
Row<HardwareInfo> unit(const char* name, unsigned int byte, const char* bit,
                       bool (HardwareInfo::*isPresent)(int) const, int index)
{
    return field<HardwareInfo>(name, {byte, 1, bit}, [isPresent, index](HardwareInfo& info) {
        return (info.*isPresent)(index);
    });
}

// clang-format off
const Rows<HardwareInfo> HARDWARE_INFO = {
    unit("tav0_installed", 0, "0", &HardwareInfo::isTAVInstalled, 0),
    unit("tav1_installed", 0, "1", &HardwareInfo::isTAVInstalled, 1),
    unit("gspb0_installed", 1, "0", &HardwareInfo::isGSPBInstalled, 0),
    unit("gspb1_installed", 1, "1", &HardwareInfo::isGSPBInstalled, 1),
    unit("sasu0_installed", 1, "2", &HardwareInfo::isSASUInstalled, 0),
    unit("sasu1_installed", 1, "3", &HardwareInfo::isSASUInstalled, 1),
    unit("sasu2_installed", 1, "4", &HardwareInfo::isSASUInstalled, 2),
    unit("sasu3_installed", 1, "5", &HardwareInfo::isSASUInstalled, 3),
    unit("sb0_installed", 3, "0", &HardwareInfo::isSBInstalled, 0),
    unit("sb1_installed", 3, "1", &HardwareInfo::isSBInstalled, 1),
    unit("sb2_installed", 3, "2", &HardwareInfo::isSBInstalled, 2),
    unit("sb3_installed", 3, "3", &HardwareInfo::isSBInstalled, 3),
    unit("iob0_installed", 5, "0", &HardwareInfo::isIOBInstalled, 0),
    unit("iob1_installed", 5, "1", &HardwareInfo::isIOBInstalled, 1),
    unit("pcibox0_connected", 7, "0", &HardwareInfo::isPCIBOXInstalled, 0),
    unit("pcibox1_connected", 7, "1", &HardwareInfo::isPCIBOXInstalled, 1),
};
// clang-format on

const Rows<PartitionInfo> PARTITION_INFO = {
    [](PartitionInfo& partition, DecodedFields& fields) {
        std::vector<unsigned char> ids;
        partition.getNodeIds(ids);
        fields.push_back({"node_count", {1, 1}, ids.size(), ""});
        for (unsigned int i = 0; i < ids.size(); ++i) {
            fields.push_back({fmt::format("node_id{}", i), {2 + i, 1}, ids[i], hexMeaning(ids[i])});
        }
    },
};

}

std::vector<RecordClass> serialClasses()
{
    return {
        describe("HardwareInfo", "8", "which units of the cabinet are there", HARDWARE_INFO),
        describe("PartitionInfo", "2 to 14", "node ids of a partition", PARTITION_INFO),
    };
}

}
