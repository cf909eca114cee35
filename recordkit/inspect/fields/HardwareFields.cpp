// SPDX-License-Identifier: Apache-2.0
#include <cstddef>
#include <fmt/format.h>

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
#include <recordkit/inspect/fields/Registry.h>

#include "Accessors.h"

namespace recordkit::inspect {

using namespace TAVLib::RecordKit;

namespace {

using Sb = SBBoardInfo;
using Dimm = DIMMType;
using Spd = MemorySPDData;
using Slots = SlotBoardInfo;
using Ports = IOUPortConfiguration;
using Location = PCISlotLocation;
using Card = PCICardInfo;
using Gspb = GSPBBoardInfo;
using Box = PCIBOXInfo;
using Psu = PSUStatus;
using User = UserAccess;
using Filter = EventFilterTable;
using Boot = BootFlagsData;

std::string asDimmSize(const Value& code)
{
    const unsigned int number = numberOf(code);
    return number >= Spd::DIMM_2_GB && number <= Spd::DIMM_32_GB
               ? fmt::format("{} MB", 1024U << number)
               : "no capacity with a code";
}

std::string asDramSize(const Value& code)
{
    const unsigned int number = numberOf(code);
    return number >= 2 && number <= 5 ? fmt::format("{} Gbit", 1U << number) : "other";
}

std::string asRanks(const Value& field)
{
    const unsigned int ranks = numberOf(field) + 1;
    return fmt::format("{} rank{}", ranks, ranks == 1 ? "" : "s");
}

std::string asFrequency(const Value& code)
{
    return (numberOf(code) & 0x80) != 0 ? "extended" : "";
}

std::string asPrivilege(const Value& level)
{
    constexpr const char* NAMES[] = {"", "callback", "user", "operator", "administrator", "OEM"};
    const unsigned int number = numberOf(level);
    return number < std::size(NAMES) ? NAMES[number] : number == 15 ? "no access" : "";
}

/// IPMI v2.0, table 28-14, parameter 5.
std::string asBootDevice(const Value& value)
{
    constexpr const char* NAMES[] = {
        "no override",          "PXE",       "hard disk",  "hard disk, safe mode",
        "diagnostic partition", "CD or DVD", "BIOS setup",
    };
    const unsigned int code = numberOf(value) >> 2;
    return code < std::size(NAMES) ? NAMES[code] : code == 0xF ? "floppy or removable medium" : "";
}

std::string asConnected(const Value& value)
{
    const long long number = std::get<long long>(value);
    return number == -1 || number == 255 ? "not connected" : "";
}

Value unitId(const Record& record, const Spot&)
{
    DeviceInfo::UnitID unit = {};
    objectOf<DeviceInfo>(record).getDeviceInfo(&unit);
    return toHex(unit.data);
}

unsigned int slotsOfCard(const Record& record, unsigned int card)
{
    std::vector<int> slots;
    objectOf<Box>(record).getPCISlots(static_cast<int>(card), slots);
    return static_cast<unsigned int>(slots.size());
}

Value cardSlots(const Record& record, const Spot& spot)
{
    return toValue(slotsOfCard(record, spot.index));
}

Value cardSlotStatus(const Record& record, const Spot& spot)
{
    return toValue(objectOf<Box>(record).getPCISlotStatus(static_cast<int>(spot.outer),
                                                          static_cast<int>(spot.index)));
}

// clang-format off
constexpr List CPUS = {nullptr, Sb::CPU_STATUS, 2, always<Sb::CPUS>};
constexpr List DIMMS = {nullptr, Sb::DIMM_STATUS, 2, always<Sb::DIMMS>};
constexpr Field SB_BOARD_INFO[] = {
    {"board_status", bytesAt(Sb::BOARD_STATUS), ask<&Sb::getBoardStatus>},
    {"unsupported", bitAt(Sb::BOARD_STATUS, 4), ask<&Sb::isUnsupportedSB>},
    {"board_type", bytesAt(Sb::BOARD_TYPE), ask<&Sb::getBoardType>},
    Field{"cpu_sockets", bytesAt(Sb::CPU_MAP), ask<&Sb::getCPUSocketNum>}.says("populated CPU sockets"),
    Field{"cpu{}_status", bytesAt(0, 2), askEach<&Sb::getCPUStatus>, asHex}.in(CPUS),
    Field{"dimm_sockets", bytesAt(Sb::DIMM_MAP, 4), ask<&Sb::getDIMMSocketNum>}.says("populated DIMM sockets"),
    Field{"dimm{}_status", bytesAt(0, 2), askEach<&Sb::getDIMMStatus>, asHex}.in(DIMMS),
};

constexpr Field DIMM_TYPE[] = {
    {"slot_status", bytesAt(Dimm::SLOT_STATUS), ask<&Dimm::getDIMMSlotStatus>},
    {"ranks", bytesAt(Dimm::RANKS), ask<&Dimm::getRankNum>},
    {"dimm_size", bytesAt(Dimm::DIMM_SIZE), ask<&Dimm::getDIMMSize>, asDimmSize},
    {"dram_size", bytesAt(Dimm::DRAM_SIZE), ask<&Dimm::getDRAMSize>, asDramSize},
    {"data_rate", bytesAt(Dimm::DATA_RATE), ask<&Dimm::getDataRate>},
};

constexpr Place DENSITY = bitsAt(Spd::DENSITY, 3, 0);
constexpr Place RANKS = bitsAt(Spd::ORGANIZATION, 5, 3);
constexpr Field MEMORY_SPD_DATA[] = {
    {"dram_size", DENSITY, ask<&Spd::getDRAMSize>, asDramSize},
    Field{"ranks", RANKS, ask<&Spd::getRankNum>, asRanks}.says("ranks less one"),
    Field{"dimm_size", DENSITY, ask<&Spd::getDIMMSize>, asDimmSize}
        .with(RANKS).with(bitsAt(Spd::ORGANIZATION, 2, 0)).with(bitsAt(Spd::BUS_WIDTH, 2, 0)),
    Field{"data_rate", bytesAt(0, 0), ask<&Spd::getDataRate>}.says("always 0: the controller's own record has it"),
    {"serial_number", bytesAt(Spd::SERIAL_NUMBER, 4), ask<&Spd::getSerialNumber>, asHex},
    {"part_number", bytesAt(Spd::PART_NUMBER, Spd::PART_NUMBER_LENGTH), ask<&Spd::getModulePartNumber>},
};

constexpr List SLOTS = {"n", Slots::HEADER_SIZE, 2, counted<&Slots::getPCISlots>};
constexpr Field SLOT_BOARD[] = {
    {"installed", bitAt(Slots::FLAGS, 0), ask<&Slots::isInstalled>},
    {"power_on", bitAt(Slots::FLAGS, 1), ask<&Slots::isPowerOn>},
    {"fault", bitAt(Slots::FLAGS, 2), ask<&Slots::isFault>},
    {"board_type", bytesAt(Slots::BOARD_TYPE), ask<&Slots::getBoardType>},
    Field{"slots", bytesAt(Slots::SLOT_COUNT), count<&Slots::getPCISlots>}.says("n, the number of PCI slots"),
    Field{"slot{}_status", bytesAt(0, 2), askEach<&Slots::getPCISlotStatus>, asHex}.in(SLOTS),
};
constexpr Field IOU_BOARD[] = {
    {"divided", bitAt(Slots::FLAGS, 3), ask<&IOUBoardInfo::isDivided>},
};

constexpr Field IOU_PORT_CONFIGURATION[] = {
    {"port2_pci_express", bitAt(Ports::PORTS, 2), askFor<&Ports::isLIOUA_PCIExp, 2>},
    {"port3_pci_express", bitAt(Ports::PORTS, 3), askFor<&Ports::isLIOUA_PCIExp, 3>},
    {"port4_pci_express", bitAt(Ports::PORTS, 4), askFor<&Ports::isLIOUA_PCIExp, 4>},
    {"port5_pci_express", bitAt(Ports::PORTS, 5), askFor<&Ports::isLIOUA_PCIExp, 5>},
    {"port6_pci_express", bitAt(Ports::PORTS, 6), askFor<&Ports::isLIOUA_PCIExp, 6>},
    {"port7_pci_express", bitAt(Ports::PORTS, 7), askFor<&Ports::isLIOUA_PCIExp, 7>},
};

constexpr Field PCI_SLOT_LOCATION[] = {
    {"kind_and_position", bytesAt(Location::LOCATION), number},
    Field{"kind", bitsAt(Location::LOCATION, 7, 6), number}.says("kind of board"),
    {"position", bitsAt(Location::LOCATION, 2, 0), number},
    Field{"second", bytesAt(Location::SECOND), number}.says("the rest of the address"),
};

constexpr Field PCI_CARD_INFO[] = {
    {"segment", bytesAt(Card::SEGMENT), ask<&Card::getSegmentNum>},
    {"bus", bytesAt(Card::BUS), ask<&Card::getBusNum>},
    {"device_function", bytesAt(Card::DEVICE_FUNCTION), ask<&Card::getDevFun>},
    {"vendor_id", bytesAt(Card::VENDOR, 2), ask<&Card::getVendorId>, asHex},
    {"device_id", bytesAt(Card::DEVICE, 2), ask<&Card::getDeviceId>, asHex},
    Field{"unknown", bytesAt(Card::VENDOR, 4), ask<&Card::isUnknownPCICard>}.says("both ids are FFFFh"),
    Field{"frequency", bitsAt(Card::FREQUENCY, 2, 0), ask<&Card::getPCIFrequency>, asFrequency}
        .with(bitAt(Card::FREQUENCY, 7)).with(bitsAt(Card::EXTENDED_FREQUENCY, 5, 0)),
};

constexpr List GBE = {"g", Gspb::HEADER_SIZE, 2, counted<&Gspb::getGbEPorts>};
constexpr List SAS = {"s", Gspb::HEADER_SIZE + 1, 2, counted<&Gspb::getSASPorts>, 0, &GBE};
constexpr List PCI_BOXES = {"p", Gspb::LEAST_SIZE, sizeof(Gspb::CONNECTED_UNIT_INFO), counted<&Gspb::getPCIBoxPorts>, 0, &SAS};
constexpr Field GSPB_BOARD_INFO[] = {
    {"installed", bitAt(Gspb::FLAGS, 0), ask<&Gspb::isInstalled>},
    {"power_on", bitAt(Gspb::FLAGS, 1), ask<&Gspb::isPowerOn>},
    {"fault", bitAt(Gspb::FLAGS, 2), ask<&Gspb::isFault>},
    {"divided", bitAt(Gspb::FLAGS, 3), ask<&Gspb::isDivided>},
    {"board_type", bytesAt(Gspb::BOARD_TYPE), ask<&Gspb::getBoardType>},
    Field{"gbe_ports", bytesAt(Gspb::GBE_COUNT), count<&Gspb::getGbEPorts>}.says("g, the number of GbE ports"),
    Field{"gbe{}_status", bytesAt(0, 2), askEach<&Gspb::getGbEPortStatus>, asHex}.in(GBE),
    Field{"sas_ports", bytesAt(Gspb::HEADER_SIZE), count<&Gspb::getSASPorts>}.following(GBE).says("s, the number of SAS ports"),
    Field{"sas{}_status", bytesAt(0, 2), askEach<&Gspb::getSASPortStatus>, asHex}.in(SAS),
    Field{"pcibox_ports", bytesAt(Gspb::HEADER_SIZE + 1), count<&Gspb::getPCIBoxPorts>}.following(SAS).says("p, the number of PCI box ports"),
    Field{"port{}_pcibox", bytesAt(offsetof(Gspb::CONNECTED_UNIT_INFO, pciBox)), askEach<&Gspb::getConnectedPCIBox>, asConnected}.in(PCI_BOXES),
    Field{"port{}_logical_pcibox", bytesAt(offsetof(Gspb::CONNECTED_UNIT_INFO, logicalPCIBox)), askEach<&Gspb::getConnectedLogicalPCIBox>, asConnected}.in(PCI_BOXES),
};

using Connection = Box::CONNECT_GSPB_INFO;
constexpr Place CARD_SLOTS = bytesAt(offsetof(Connection, slotCount));
constexpr Place PEXU_PRESENT = bitAt(Box::PEXU_FLAGS, 0);
extern const List CARDS;
constexpr List CARD_SLOT = {"c", sizeof(Connection), 2, slotsOfCard, 0, nullptr, &CARDS};
constexpr List CARDS = {"l", Box::HEADER_SIZE, sizeof(Connection), counted<&Box::getLinkCards>, 0, nullptr, nullptr, &CARD_SLOT};
constexpr Field PCI_BOX_INFO[] = {
    {"present", bitAt(Box::BOX_FLAGS, 0), ask<&Box::isPresent>},
    {"power_on", bitAt(Box::BOX_FLAGS, 1), ask<&Box::isPowerON>},
    {"fault", bitAt(Box::BOX_FLAGS, 2), ask<&Box::isFault>},
    {"pexu_present", PEXU_PRESENT, ask<&Box::isPEXUPresent>},
    {"pexu_power_on", bitAt(Box::PEXU_FLAGS, 1), ask<&Box::isPEXUPowerON>},
    {"pexu_fault", bitAt(Box::PEXU_FLAGS, 2), ask<&Box::isPEXUFault>},
    Field{"link_cards", bytesAt(Box::CARD_COUNT), count<&Box::getLinkCards>}.with(PEXU_PRESENT).says("l, the number of link cards; 0 without a PEXU"),
    Field{"card{}_gspb", bytesAt(offsetof(Connection, connectedId)), askEach<&Box::getConnectedId>, asConnected}.in(CARDS).with(CARD_SLOTS).says("GSPB that the card is cabled to"),
    Field{"card{}_port", bytesAt(offsetof(Connection, portNo)), askEach<&Box::getPortNo>}.in(CARDS).with(CARD_SLOTS),
    Field{"card{}_slots", CARD_SLOTS, cardSlots}.in(CARDS).says("c, the number of slots of the card"),
    Field{"card{}_slot{}_status", bytesAt(0, 2), cardSlotStatus, asHex}.in(CARD_SLOT),
};

constexpr Field PSU_STATUS[] = {
    {"power_on", bitAt(Psu::POWER, 0), ask<&Psu::isPowerOn>},
    {"installed", bitAt(Psu::STATE, 0), ask<&Psu::isInstalled>},
    {"failure", bitAt(Psu::STATE, 1), ask<&Psu::isFailure>},
    {"predictive_failure", bitAt(Psu::STATE, 2), ask<&Psu::isPredictiveFailure>},
    {"ac_lost", bitAt(Psu::STATE, 3), ask<&Psu::isACLost>},
    {"out_of_range", bitAt(Psu::STATE, 5), ask<&Psu::isOutOfRange>},
    {"config_error", bitAt(Psu::STATE, 6), ask<&Psu::isConfigError>},
};

constexpr Field USER_ACCESS[] = {
    {"max_users", bytesAt(User::MAX_USERS), ask<&User::getMaxUsrNum>},
    {"enabled_users", bytesAt(User::ENABLED_USERS), ask<&User::getEnabledUsrCount>},
    {"fixed_names", bytesAt(User::FIXED_NAMES), ask<&User::getFixedNameUsrCount>},
    {"privilege_level", bitsAt(User::ACCESS, 3, 0), ask<&User::getPrivilegeLevel>, asPrivilege},
    {"messaging_enabled", bitAt(User::ACCESS, 4), ask<&User::isMessagingEnabled>},
    {"authentication_enabled", bitAt(User::ACCESS, 5), ask<&User::isAuthEnabled>},
};

constexpr Field EVENT_FILTER_TABLE[] = {
    {"enabled", bitAt(Filter::CONFIGURATION, 7), ask<&Filter::isFilterEnabled>},
    {"action", bytesAt(Filter::ACTION), number, asHex},
    {"alert_policy", bytesAt(Filter::ALERT_POLICY), number, asHex},
    {"event_severity", bytesAt(Filter::EVENT_SEVERITY), number, asHex},
    {"generator_id_1", bytesAt(Filter::GENERATOR_ID), ask<&Filter::getGeneratorIdByte1>, asHex},
    {"generator_id_2", bytesAt(Filter::GENERATOR_ID + 1), number, asHex},
    {"sensor_type", bytesAt(Filter::SENSOR_TYPE), ask<&Filter::getSensorType>, asSensorType},
    {"sensor_number", bytesAt(Filter::SENSOR_NUMBER), ask<&Filter::getSensorNumber>, asHex},
    {"event_trigger", bytesAt(Filter::TRIGGER), number, asHex},
    {"event_offset_mask", bytesAt(Filter::OFFSET_MASK, 2), ask<&Filter::getEventOffsetMask>, asHex},
    Field{"event_data_masks", bytesAt(Filter::EVENT_DATA_MASKS, Filter::SIZE - Filter::EVENT_DATA_MASKS), hexDigits}.says("masks and values of the event data"),
};

constexpr List WATCHDOG_BYTES = {nullptr, OSBootWatchdogData::FURTHER, 1, always<OSBootWatchdogData::SIZE - OSBootWatchdogData::FURTHER>, OSBootWatchdogData::FURTHER};
constexpr Field OS_BOOT_WATCHDOG_DATA[] = {
    {"watchdog_data_1", bytesAt(OSBootWatchdogData::DATA_1), ask<&OSBootWatchdogData::getBootWatchdogData1>, asHex},
    Field{"byte{}", bytesAt(0), number}.in(WATCHDOG_BYTES),
};

constexpr List BOOT_BYTES = {nullptr, Boot::FURTHER, 1, always<Boot::SIZE - Boot::FURTHER>, Boot::FURTHER};
constexpr Place BOOT_VALID = bitAt(Boot::FLAGS, 7);
constexpr Field BOOT_FLAGS_DATA[] = {
    {"flags", bytesAt(Boot::FLAGS), number},
    {"valid", BOOT_VALID, flag},
    {"persistent", bitAt(Boot::FLAGS, 6), flag},
    Field{"efi_boot", bitAt(Boot::FLAGS, 5), flag}.says("boot type: no for PC compatible"),
    Field{"boot_device", bitsAt(Boot::DEVICE, 5, 2), ask<&Boot::getBootFlagsData2>, asBootDevice}.with(BOOT_VALID).says("boot device, in place; 0 while the flags are not valid"),
    Field{"byte{}", bytesAt(0), number}.in(BOOT_BYTES),
};

constexpr Field BOOT_FLAGS_CLEAR_DATA[] = {
    {"flags", bytesAt(BMC_BootFlagsClearData::FLAGS), number},
    Field{"kept_after_timeout", bitAt(BMC_BootFlagsClearData::FLAGS, 3), flag}.says("kept when a boot does not come within the timeout"),
};

constexpr Field DEVICE_INFO[] = {
    {"unit_id", bytesAt(0, DeviceInfo::SIZE), unitId},
};

constexpr Field MANUFACTURING_TEST_ON[] = {
    {"sb_both_update", bitAt(ManufacturingTestOn::SWITCHES, 1), ask<&ManufacturingTestOn::isSBBothUpdate>},
    {"debug_mode", bitAt(ManufacturingTestOn::SWITCHES, 3), ask<&ManufacturingTestOn::isDebugMode>},
};

constexpr RecordClass CLASSES[] = {
    describe<Sb>("SBBoardInfo", {96, 96}, "system board: sockets and their status", SB_BOARD_INFO),
    describe<Dimm>("DIMMType", {5, 5}, "one DIMM as the controller condenses it", DIMM_TYPE),
    describe<Spd>("MemorySPDData", {146, 146}, "serial presence detect data of a DDR3 DIMM", MEMORY_SPD_DATA),
    describe<IOUBoardInfo>("IOUBoardInfo", {9, 519, "+ 2 a slot"}, "I/O unit board and its PCI slots", SLOT_BOARD, IOU_BOARD),
    describe<SASUBoardInfo>("SASUBoardInfo", {9, 519, "+ 2 a slot"}, "SAS unit board and its PCI slots", SLOT_BOARD),
    describe<Ports>("IOUPortConfiguration", {1, 1}, "ports that run as PCI Express", IOU_PORT_CONFIGURATION),
    describe<Location>("PCISlotLocation", {2, 2}, "packed address of a PCI slot", PCI_SLOT_LOCATION),
    describe<Card>("PCICardInfo", {9, 9}, "the card in a PCI slot", PCI_CARD_INFO),
    describe<Gspb>("GSPBBoardInfo", {11, 1541, "+ 2 a port"}, "GSPB board and its ports", GSPB_BOARD_INFO),
    describe<Box>("PCIBOXInfo", {13, 130828, "+ 3 a link card + 2 a slot"}, "PCI box, its link cards and slots", PCI_BOX_INFO),
    describe<Psu>("PSUStatus", {2, 2}, "state of a power supply", PSU_STATUS),
    describe<User>("UserAccess", {4, 4}, "answer to Get User Access", USER_ACCESS),
    describe<Filter>("EventFilterTable", {20, 20}, "entry of the event filter table", EVENT_FILTER_TABLE),
    describe<OSBootWatchdogData>("OSBootWatchdogData", {5, 5}, "OS boot watchdog", OS_BOOT_WATCHDOG_DATA),
    describe<Boot>("BootFlagsData", {5, 5}, "boot flags", BOOT_FLAGS_DATA),
    describe<BMC_BootFlagsClearData>("BMC_BootFlagsClearData", {1, 1}, "what does not clear the boot flags", BOOT_FLAGS_CLEAR_DATA),
    describe<DeviceInfo>("DeviceInfo", {12, 12}, "identity of a unit", DEVICE_INFO),
    describe<ManufacturingTestOn>("ManufacturingTestOn", {1, 1}, "switches of the manufacturing test", MANUFACTURING_TEST_ON),
};
// clang-format on

}

constexpr RecordClasses HARDWARE_CLASSES = CLASSES;

}
