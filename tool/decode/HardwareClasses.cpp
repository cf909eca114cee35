// SPDX-License-Identifier: Apache-2.0
#include <recordkit/hardware/BMC_BootFlagsClearData.h>
#include <recordkit/hardware/BootFlagsData.h>
#include <recordkit/hardware/DIMMType.h>
#include <recordkit/hardware/DeviceInfo.h>
#include <recordkit/hardware/EventFilterTable.h>
#include <recordkit/hardware/GSPBBoardInfo.h>
#include <recordkit/hardware/IOUBoardInfo.h>
#include <recordkit/hardware/IOUPortConfiguration.h>
#include <recordkit/hardware/ManufacturingTestOn.h>
#include <recordkit/hardware/MemorySPDData.h>
#include <recordkit/hardware/OSBootWatchdogData.h>
#include <recordkit/hardware/PCIBOXInfo.h>
#include <recordkit/hardware/PCICardInfo.h>
#include <recordkit/hardware/PCISlotLocation.h>
#include <recordkit/hardware/PSUStatus.h>
#include <recordkit/hardware/SASUBoardInfo.h>
#include <recordkit/hardware/SBBoardInfo.h>
#include <recordkit/hardware/UserAccess.h>
#include <recordkit/inspect/bytes/Hex.h>
#include <recordkit/inspect/bytes/Text.h>

#include "FieldTable.h"

namespace recordkit::tool {

using namespace TAVLib::RecordKit;

namespace {

/// A byte of the image itself, for fields without an accessor.
template <typename Record> Row<Record> byteField(const char* name, unsigned int offset)
{
    return field<Record>(name, {offset, 1}, [offset](Record& record) {
        std::vector<unsigned char> image(record.getSerializedSize());
        record.getSerialized(image.data(), static_cast<unsigned int>(image.size()));
        return static_cast<unsigned int>(image[offset]);
    });
}

std::string dimmSizeMeaning(const Json& code)
{
    const auto number = code.get<unsigned int>();
    return number >= 1 && number <= 5 ? fmt::format("{} MB", 1024U << number)
                                      : "no capacity with a code";
}

std::string dramSizeMeaning(const Json& code)
{
    const auto number = code.get<unsigned int>();
    return number >= 2 && number <= 5 ? fmt::format("{} Gbit", 1U << number) : "other";
}

std::string rankMeaning(const Json& field)
{
    return fmt::format("{} ranks", field.get<unsigned int>() + 1);
}

std::string frequencyMeaning(const Json& code)
{
    return (code.get<unsigned int>() & 0x80) != 0 ? "extended" : "";
}

std::string privilegeMeaning(const Json& level)
{
    constexpr const char* NAMES[] = {"", "callback", "user", "operator", "administrator", "OEM"};
    const auto number = level.get<unsigned int>();
    return number < std::size(NAMES) ? NAMES[number] : number == 15 ? "no access" : "";
}

/// IPMI v2.0, table 28-14, parameter 5.
std::string bootDeviceMeaning(const Json& value)
{
    switch (value.get<unsigned int>() >> 2) {
    case 0x0:
        return "no override";
    case 0x1:
        return "PXE";
    case 0x2:
        return "hard disk";
    case 0x3:
        return "hard disk, safe mode";
    case 0x4:
        return "diagnostic partition";
    case 0x5:
        return "CD or DVD";
    case 0x6:
        return "BIOS setup";
    case 0xF:
        return "floppy or removable medium";
    default:
        return "";
    }
}

std::string connectedMeaning(const Json& number)
{
    return number.get<int>() == -1 || number.get<int>() == 255 ? "not connected" : "";
}

void appendWord(const std::string& name, unsigned int offset, unsigned int word,
                DecodedFields& fields)
{
    fields.push_back({name, {offset, 2}, word, hexMeaning(word)});
}

// clang-format off
const Rows<SBBoardInfo> SB_BOARD_INFO = {
    field<SBBoardInfo>("board_status", {0, 1}, &SBBoardInfo::getBoardStatus),
    field<SBBoardInfo>("unsupported", {0, 1, "4"}, &SBBoardInfo::isUnsupportedSB),
    field<SBBoardInfo>("board_type", {4, 1}, &SBBoardInfo::getBoardType),
    field<SBBoardInfo>("cpu_sockets", {8, 1}, &SBBoardInfo::getCPUSocketNum),
    [](SBBoardInfo& board, DecodedFields& fields) {
        for (unsigned int i = 0; i < SBBoardInfo::CPUS; ++i) {
            appendWord(fmt::format("cpu{}_status", i), 12 + 2 * i,
                       board.getCPUStatus(static_cast<SBBoardInfo::CPUIndex>(i)), fields);
        }
    },
    field<SBBoardInfo>("dimm_sockets", {16, 4}, &SBBoardInfo::getDIMMSocketNum),
    [](SBBoardInfo& board, DecodedFields& fields) {
        for (unsigned int i = 0; i < SBBoardInfo::DIMMS; ++i) {
            appendWord(fmt::format("dimm{}_status", i), 32 + 2 * i,
                       board.getDIMMStatus(static_cast<SBBoardInfo::DIMMIndex>(i)), fields);
        }
    },
};

const Rows<DIMMType> DIMM_TYPE = {
    field<DIMMType>("slot_status", {0, 1}, &DIMMType::getDIMMSlotStatus),
    field<DIMMType>("ranks", {1, 1}, &DIMMType::getRankNum),
    field<DIMMType>("dimm_size", {2, 1}, &DIMMType::getDIMMSize, dimmSizeMeaning),
    field<DIMMType>("dram_size", {3, 1}, &DIMMType::getDRAMSize, dramSizeMeaning),
    field<DIMMType>("data_rate", {4, 1}, &DIMMType::getDataRate),
};

const Rows<MemorySPDData> MEMORY_SPD_DATA = {
    field<MemorySPDData>("dram_size", {4, 1, "3..0"}, &MemorySPDData::getDRAMSize, dramSizeMeaning),
    field<MemorySPDData>("ranks", {7, 1, "5..3"}, &MemorySPDData::getRankNum, rankMeaning),
    field<MemorySPDData>("dimm_size", {4, 5}, &MemorySPDData::getDIMMSize, dimmSizeMeaning),
    field<MemorySPDData>("data_rate", {0, 0}, &MemorySPDData::getDataRate),
    field<MemorySPDData>("serial_number", {122, 4}, &MemorySPDData::getSerialNumber, hexMeaning),
    field<MemorySPDData>("part_number", {128, 18}, &MemorySPDData::getModulePartNumber),
};

template <typename Board> Rows<Board> slotBoard()
{
    return {
        field<Board>("installed", {0, 1, "0"}, &Board::isInstalled),
        field<Board>("power_on", {0, 1, "1"}, &Board::isPowerOn),
        field<Board>("fault", {0, 1, "2"}, &Board::isFault),
        field<Board>("board_type", {4, 1}, &Board::getBoardType),
        [](Board& board, DecodedFields& fields) {
            std::vector<int> slots;
            board.getPCISlots(slots);
            fields.push_back({"slots", {8, 1}, slots.size(), ""});
            for (const int slot : slots) {
                const auto number = static_cast<unsigned int>(slot);
                appendWord(fmt::format("slot{}_status", slot), 9 + 2 * number,
                           board.getPCISlotStatus(number), fields);
            }
        },
    };
}

const Rows<IOUBoardInfo> IOU_BOARD_INFO = slotBoard<IOUBoardInfo>() + Rows<IOUBoardInfo>{
    field<IOUBoardInfo>("divided", {0, 1, "3"}, &IOUBoardInfo::isDivided),
};

const Rows<IOUPortConfiguration> IOU_PORT_CONFIGURATION = {
    [](IOUPortConfiguration& ports, DecodedFields& fields) {
        constexpr const char* BITS[] = {"0", "1", "2", "3", "4", "5", "6", "7"};
        for (unsigned int port = 2; port <= 7; ++port) {
            fields.push_back({fmt::format("port{}_pci_express", port), {0, 1, BITS[port]},
                              ports.isLIOUA_PCIExp(port), ""});
        }
    },
};

const Rows<PCISlotLocation> PCI_SLOT_LOCATION = {
    byteField<PCISlotLocation>("kind_and_position", 0),
    byteField<PCISlotLocation>("second", 1),
};

const Rows<PCICardInfo> PCI_CARD_INFO = {
    field<PCICardInfo>("segment", {0, 1}, &PCICardInfo::getSegmentNum),
    field<PCICardInfo>("bus", {1, 1}, &PCICardInfo::getBusNum),
    field<PCICardInfo>("device_function", {2, 1}, &PCICardInfo::getDevFun),
    field<PCICardInfo>("vendor_id", {3, 2}, &PCICardInfo::getVendorId, hexMeaning),
    field<PCICardInfo>("device_id", {5, 2}, &PCICardInfo::getDeviceId, hexMeaning),
    field<PCICardInfo>("unknown", {3, 4}, &PCICardInfo::isUnknownPCICard),
    field<PCICardInfo>("frequency", {7, 2}, &PCICardInfo::getPCIFrequency, frequencyMeaning),
};

const Rows<GSPBBoardInfo> GSPB_BOARD_INFO = {
    field<GSPBBoardInfo>("installed", {0, 1, "0"}, &GSPBBoardInfo::isInstalled),
    field<GSPBBoardInfo>("power_on", {0, 1, "1"}, &GSPBBoardInfo::isPowerOn),
    field<GSPBBoardInfo>("fault", {0, 1, "2"}, &GSPBBoardInfo::isFault),
    field<GSPBBoardInfo>("divided", {0, 1, "3"}, &GSPBBoardInfo::isDivided),
    field<GSPBBoardInfo>("board_type", {4, 1}, &GSPBBoardInfo::getBoardType),
    [](GSPBBoardInfo& board, DecodedFields& fields) {
        std::vector<int> ports;
        board.getGbEPorts(ports);
        unsigned int at = 8;
        fields.push_back({"gbe_ports", {at++, 1}, ports.size(), ""});
        for (const int port : ports) {
            appendWord(fmt::format("gbe{}_status", port), at,
                       board.getGbEPortStatus(static_cast<unsigned int>(port)), fields);
            at += 2;
        }
        board.getSASPorts(ports);
        fields.push_back({"sas_ports", {at++, 1}, ports.size(), ""});
        for (const int port : ports) {
            appendWord(fmt::format("sas{}_status", port), at,
                       board.getSASPortStatus(static_cast<unsigned int>(port)), fields);
            at += 2;
        }
        board.getPCIBoxPorts(ports);
        fields.push_back({"pcibox_ports", {at++, 1}, ports.size(), ""});
        for (const int port : ports) {
            const int box = board.getConnectedPCIBox(static_cast<unsigned int>(port));
            const int logical = board.getConnectedLogicalPCIBox(static_cast<unsigned int>(port));
            fields.push_back({fmt::format("port{}_pcibox", port), {at++, 1}, box,
                              connectedMeaning(box)});
            fields.push_back({fmt::format("port{}_logical_pcibox", port), {at++, 1}, logical,
                              connectedMeaning(logical)});
        }
    },
};

const Rows<PCIBOXInfo> PCI_BOX_INFO = {
    field<PCIBOXInfo>("present", {0, 1, "0"}, &PCIBOXInfo::isPresent),
    field<PCIBOXInfo>("power_on", {0, 1, "1"}, &PCIBOXInfo::isPowerON),
    field<PCIBOXInfo>("fault", {0, 1, "2"}, &PCIBOXInfo::isFault),
    field<PCIBOXInfo>("pexu_present", {8, 1, "0"}, &PCIBOXInfo::isPEXUPresent),
    field<PCIBOXInfo>("pexu_power_on", {8, 1, "1"}, &PCIBOXInfo::isPEXUPowerON),
    field<PCIBOXInfo>("pexu_fault", {8, 1, "2"}, &PCIBOXInfo::isPEXUFault),
    [](PCIBOXInfo& box, DecodedFields& fields) {
        std::vector<int> cards;
        box.getLinkCards(cards);
        fields.push_back({"link_cards", {12, 1}, cards.size(), ""});
        unsigned int at = 13;
        for (const int card : cards) {
            const unsigned int id = box.getConnectedId(card);
            fields.push_back({fmt::format("card{}_gspb", card), {at, 1}, id, connectedMeaning(id)});
            fields.push_back({fmt::format("card{}_port", card), {at + 1, 1}, box.getPortNo(card), ""});
            std::vector<int> slots;
            box.getPCISlots(card, slots);
            fields.push_back({fmt::format("card{}_slots", card), {at + 2, 1}, slots.size(), ""});
            at += 3;
            for (const int slot : slots) {
                appendWord(fmt::format("card{}_slot{}_status", card, slot), at,
                           box.getPCISlotStatus(card, slot), fields);
                at += 2;
            }
        }
    },
};

const Rows<PSUStatus> PSU_STATUS = {
    field<PSUStatus>("power_on", {0, 1, "0"}, &PSUStatus::isPowerOn),
    field<PSUStatus>("installed", {1, 1, "0"}, &PSUStatus::isInstalled),
    field<PSUStatus>("failure", {1, 1, "1"}, &PSUStatus::isFailure),
    field<PSUStatus>("predictive_failure", {1, 1, "2"}, &PSUStatus::isPredictiveFailure),
    field<PSUStatus>("ac_lost", {1, 1, "3"}, &PSUStatus::isACLost),
    field<PSUStatus>("out_of_range", {1, 1, "5"}, &PSUStatus::isOutOfRange),
    field<PSUStatus>("config_error", {1, 1, "6"}, &PSUStatus::isConfigError),
};

const Rows<UserAccess> USER_ACCESS = {
    field<UserAccess>("max_users", {0, 1}, &UserAccess::getMaxUsrNum),
    field<UserAccess>("enabled_users", {1, 1}, &UserAccess::getEnabledUsrCount),
    field<UserAccess>("fixed_names", {2, 1}, &UserAccess::getFixedNameUsrCount),
    field<UserAccess>("privilege_level", {3, 1, "3..0"}, &UserAccess::getPrivilegeLevel, privilegeMeaning),
    field<UserAccess>("messaging_enabled", {3, 1, "4"}, &UserAccess::isMessagingEnabled),
    field<UserAccess>("authentication_enabled", {3, 1, "5"}, &UserAccess::isAuthEnabled),
};

const Rows<EventFilterTable> EVENT_FILTER_TABLE = {
    field<EventFilterTable>("enabled", {0, 1, "7"}, &EventFilterTable::isFilterEnabled),
    field<EventFilterTable>("generator_id_1", {4, 1}, &EventFilterTable::getGeneratorIdByte1, hexMeaning),
    field<EventFilterTable>("sensor_type", {6, 1}, &EventFilterTable::getSensorType, sensorTypeMeaning),
    field<EventFilterTable>("sensor_number", {7, 1}, &EventFilterTable::getSensorNumber, hexMeaning),
    field<EventFilterTable>("event_offset_mask", {9, 2}, &EventFilterTable::getEventOffsetMask, hexMeaning),
};

const Rows<OSBootWatchdogData> OS_BOOT_WATCHDOG_DATA = {
    field<OSBootWatchdogData>("watchdog_data_1", {0, 1}, &OSBootWatchdogData::getBootWatchdogData1, hexMeaning),
    byteField<OSBootWatchdogData>("byte1", 1),
    byteField<OSBootWatchdogData>("byte2", 2),
    byteField<OSBootWatchdogData>("byte3", 3),
    byteField<OSBootWatchdogData>("byte4", 4),
};

const Rows<BootFlagsData> BOOT_FLAGS_DATA = {
    byteField<BootFlagsData>("flags", 0),
    field<BootFlagsData>("boot_device", {1, 1, "5..2"}, &BootFlagsData::getBootFlagsData2, bootDeviceMeaning),
    byteField<BootFlagsData>("byte2", 2),
    byteField<BootFlagsData>("byte3", 3),
    byteField<BootFlagsData>("byte4", 4),
};

const Rows<BMC_BootFlagsClearData> BOOT_FLAGS_CLEAR_DATA = {
    byteField<BMC_BootFlagsClearData>("flags", 0),
};

const Rows<DeviceInfo> DEVICE_INFO = {
    field<DeviceInfo>("unit_id", {0, 12}, [](DeviceInfo& info) {
        DeviceInfo::UnitID unit = {};
        info.getDeviceInfo(&unit);
        return Json(toHex(unit.data));
    }),
};

const Rows<ManufacturingTestOn> MANUFACTURING_TEST_ON = {
    field<ManufacturingTestOn>("sb_both_update", {0, 1, "1"}, &ManufacturingTestOn::isSBBothUpdate),
    field<ManufacturingTestOn>("debug_mode", {0, 1, "3"}, &ManufacturingTestOn::isDebugMode),
};
// clang-format on

}

std::vector<RecordClass> hardwareClasses()
{
    return {
        describe("SBBoardInfo", "96", "system board: sockets and their status", SB_BOARD_INFO),
        describe("DIMMType", "5", "one DIMM as the controller condenses it", DIMM_TYPE),
        describe("MemorySPDData", "146", "serial presence detect data of a DDR3 DIMM",
                 MEMORY_SPD_DATA),
        describe("IOUBoardInfo", "9 + 2 a slot", "I/O unit board and its PCI slots",
                 IOU_BOARD_INFO),
        describe("SASUBoardInfo", "9 + 2 a slot", "SAS unit board and its PCI slots",
                 slotBoard<SASUBoardInfo>()),
        describe("IOUPortConfiguration", "1", "ports that run as PCI Express",
                 IOU_PORT_CONFIGURATION),
        describe("PCISlotLocation", "2", "packed address of a PCI slot", PCI_SLOT_LOCATION),
        describe("PCICardInfo", "9", "the card in a PCI slot", PCI_CARD_INFO),
        describe("GSPBBoardInfo", "11 + 2 a port", "GSPB board and its ports", GSPB_BOARD_INFO),
        describe("PCIBOXInfo", "13 + 3 a link card + 2 a slot", "PCI box, its link cards and slots",
                 PCI_BOX_INFO),
        describe("PSUStatus", "2", "state of a power supply", PSU_STATUS),
        describe("UserAccess", "4", "answer to Get User Access", USER_ACCESS),
        describe("EventFilterTable", "20", "entry of the event filter table", EVENT_FILTER_TABLE),
        describe("OSBootWatchdogData", "5", "OS boot watchdog", OS_BOOT_WATCHDOG_DATA),
        describe("BootFlagsData", "5", "boot flags", BOOT_FLAGS_DATA),
        describe("BMC_BootFlagsClearData", "1", "what does not clear the boot flags",
                 BOOT_FLAGS_CLEAR_DATA),
        describe("DeviceInfo", "12", "identity of a unit", DEVICE_INFO),
        describe("ManufacturingTestOn", "1", "switches of the manufacturing test",
                 MANUFACTURING_TEST_ON),
    };
}

}
