// SPDX-License-Identifier: Apache-2.0
// The records of what is not a sensor (IPMI v2.0, sections 43.4 to 43.12).
#include <fmt/format.h>

#include <recordkit/inspect/bytes/Hex.h>
#include <recordkit/inspect/sensor/SdrFile.h>
#include <recordkit/inspect/words/DeviceTypes.h>
#include <recordkit/inspect/words/Entities.h>

#include "SdrRow.h"

namespace recordkit::inspect {

namespace {

constexpr unsigned int CONTAINED = 4; ///< entities of an association

enum AssociationOffset : unsigned int {
    CONTAINER = 5,
    LIST_FLAGS = 7,
    LIST_FIRST = 8,
    LIST_STEP = 2,
    ASSOCIATION_SIZE = LIST_FIRST + CONTAINED * LIST_STEP,
    CONTAINER_ADDRESS = 7,
    CONTAINER_CHANNEL = 8,
    RELATIVE_FLAGS = 9,
    RELATIVE_FIRST = 10, ///< its address and channel; the entity follows them
    RELATIVE_STEP = 4,
    RELATIVE_SIZE = 32,
};
enum LocatorOffset : unsigned int {
    ACCESS_ADDRESS = 5,
    SLAVE_ADDRESS = 6,
    DEVICE_LUN = 7,
    ADDRESS_SPAN = 8,
    FRU_CHANNEL = 8,
    DEVICE_TYPE = 10,
    DEVICE_MODIFIER = 11,
    LOCATED_ENTITY = 12,
    LOCATOR_OEM = 14,
    LOCATOR_SIZE = 16,
};
enum ControllerOffset : unsigned int {
    CONTROLLER_ADDRESS = 5,
    CONTROLLER_CHANNEL = 6,
    NOTIFICATION = 7,
    CONTROLLER_CAPABILITIES = 8,
};
enum ConfirmationOffset : unsigned int {
    CONFIRMED_ADDRESS = 5,
    CONFIRMED_DEVICE = 6,
    REVISION = 7,
    FIRMWARE_MAJOR = 8,
    FIRMWARE_MINOR = 9,
    IPMI_VERSION = 10,
    CONFIRMED_MANUFACTURER = 11,
    PRODUCT = 14,
    GUID = 16,
    GUID_SIZE = 16,
};
enum ChannelOffset : unsigned int {
    FIRST_CHANNEL = 5,
    CHANNELS = 8,
    MESSAGE_INTERRUPT = 13,
    EVENT_INTERRUPT = 14,
    CHANNELS_SIZE = 16,
};
constexpr unsigned int OEM_MANUFACTURER = 5;
constexpr unsigned int OEM_SIZE = 8;

constexpr const char* FORMS[] = {"list", "range"};
constexpr const char* PRESENCE[] = {"absent if its sensor is not accessible",
                                    "always accessible, otherwise an error"};
constexpr const char* LINKED[] = {"no linked records", "linked records exist"};
constexpr const char* LOGICAL[] = {"device on a bus", "logical FRU device"};
constexpr const char* PRESENT[] = {"dynamic", "static"};
constexpr const char* NOTIFIED[] = {"not required", "required"};
constexpr const char* MESSAGES[] = {"enable", "disable", "do not initialize", nullptr};
constexpr const char* PROTOCOLS[] = {"none", "IPMB 1.0", "ICMB 1.0", nullptr, "IPMI SMBus",
                                     "KCS",  "SMIC",     "BT 10",    "BT 15", "terminal mode"};

bool isRange(const SdrImage& image)
{
    const unsigned int flags = image.byteAt(3) == SDR_ASSOCIATION ? LIST_FLAGS : RELATIVE_FLAGS;
    return (image.byteAt(flags) & 0x80) != 0;
}

/// "7.1, 7.3", or "7.1 to 7.3, 10.1 to 10.2". An entity id of 0 is an entry without use.
Value containedEntities(const SdrImage& image, const SdrRow& row, unsigned int)
{
    const unsigned int first = row.also[0].offset;
    const unsigned int step = row.also[1].offset - first;
    const bool areRanges = isRange(image);
    std::string text;
    for (unsigned int i = 0; i < CONTAINED; i += areRanges ? 2 : 1) {
        const unsigned int at = first + i * step;
        if (image.byteAt(at) == 0) {
            continue;
        }
        text += fmt::format("{}{}.{}", text.empty() ? "" : ", ", image.byteAt(at),
                            image.byteAt(at + 1));
        if (areRanges) {
            text += fmt::format(" to {}.{}", image.byteAt(at + step), image.byteAt(at + step + 1));
        }
    }
    return text.empty() ? "none" : text;
}

/// What an instance is of its range, by its place among them.
template <unsigned int FIRST, unsigned int STEP>
std::string containedInstance(const SdrImage& image, const Place& place, const Value& value)
{
    if (!isRange(image)) {
        return sdrInstance(image, place, value);
    }
    return (place.offset - FIRST) / STEP % 2 == 0 ? "first of the range" : "last of the range";
}

std::string deviceType(const SdrImage&, const Place&, const Value& type)
{
    return deviceTypeName(static_cast<unsigned char>(numberOf(type)));
}
std::string deviceModifier(const SdrImage& image, const Place&, const Value& modifier)
{
    return deviceModifierName(image.byteAt(DEVICE_TYPE),
                              static_cast<unsigned char>(numberOf(modifier)));
}

bool isLogical(const SdrImage& image)
{
    return (image.byteAt(DEVICE_LUN) & 0x80) != 0;
}
bool isPhysical(const SdrImage& image)
{
    return !isLogical(image);
}

/// The minor revision, in BCD.
std::string minorRevision(const SdrImage&, const Place&, const Value& value)
{
    return fmt::format("{:02X}", numberOf(value));
}

Value hexBytes(const SdrImage& image, const SdrRow& row, unsigned int)
{
    return toHex(image.bytes.part(row.place.offset, row.place.width));
}

std::string interruptName(const SdrImage&, const Place&, const Value& value)
{
    enum Code : unsigned int {
        PCI_A = 0x10,
        SMI = 0x14,
        SCI = 0x15,
        SYSTEM = 0x20,
        ASSIGNED = 0x60,
        NONE = 0xFF,
    };
    const unsigned int code = numberOf(value);
    if (code < PCI_A) {
        return fmt::format("IRQ {}", code);
    }
    if (code < SMI) {
        return fmt::format("PCI {}", static_cast<char>('A' + (code - PCI_A)));
    }
    if (code == SMI || code == SCI) {
        return code == SMI ? "SMI" : "SCI";
    }
    if (code >= SYSTEM && code < ASSIGNED) {
        return fmt::format("system interrupt {}", code - SYSTEM);
    }
    return code == ASSIGNED ? "assigned by ACPI" : code == NONE ? "none" : "reserved";
}

// clang-format off
constexpr SdrRow CONTAINER_ROWS[] = {
    {"container_entity_id", bytesAt(CONTAINER), sdrNumber, sdrEntity},
    {"container_instance", bytesAt(CONTAINER + 1), sdrNumber, sdrInstance},
};

template <unsigned int AT> constexpr SdrRow ASSOCIATION_FLAGS[] = {
    {"contained_form", bitAt(AT, 7), sdrNumber, sdrName<FORMS>},
    {"record_link", bitAt(AT, 6), sdrNumber, sdrName<LINKED>},
    {"presence_sensor", bitAt(AT, 5), sdrNumber, sdrName<PRESENCE>},
};

template <unsigned int FIRST, unsigned int STEP> constexpr SdrRow CONTAINED_ROWS[] = {
    SdrRow{"contained_{}_entity_id", bytesAt(FIRST), sdrNumber, sdrEntity}.each(CONTAINED, STEP, 1),
    SdrRow{"contained_{}_instance", bytesAt(FIRST + 1), sdrNumber, containedInstance<FIRST, STEP>}.each(CONTAINED, STEP, 1),
    SdrRow{"contained_entities", bytesAt(FIRST + (CONTAINED - 1) * STEP + 1, 0), containedEntities}
        .with(bytesAt(FIRST, 2)).with(bytesAt(FIRST + STEP, 2)).with(bytesAt(FIRST + (CONTAINED - 1) * STEP, 2)),
};

constexpr SdrRow RELATIVE_CONTAINER[] = {
    {"container_address", bitsAt(CONTAINER_ADDRESS, 7, 1), sdrNumber, sdrHex},
    {"container_channel", bitsAt(CONTAINER_CHANNEL, 7, 4), sdrNumber},
};
constexpr SdrRow RELATIVE_CONTAINED[] = {
    SdrRow{"contained_{}_address", bitsAt(RELATIVE_FIRST, 7, 1), sdrNumber, sdrHex}.each(CONTAINED, RELATIVE_STEP, 1),
    SdrRow{"contained_{}_channel", bitsAt(RELATIVE_FIRST + 1, 7, 4), sdrNumber}.each(CONTAINED, RELATIVE_STEP, 1),
};

constexpr SdrRow DEVICE_ROWS[] = {
    {"device_type", bytesAt(DEVICE_TYPE), sdrNumber, deviceType},
    {"device_type_modifier", bytesAt(DEVICE_MODIFIER), sdrNumber, deviceModifier},
};

constexpr SdrRow GENERIC_DEVICE[] = {
    {"device_access_address", bitsAt(ACCESS_ADDRESS, 7, 1), sdrNumber, sdrHex},
    {"device_slave_address", bitsAt(SLAVE_ADDRESS, 7, 1), sdrNumber, sdrHex},
    SdrRow{"channel_number", bitsAt(DEVICE_LUN, 7, 5), sdrNumber}.with(bitAt(SLAVE_ADDRESS, 0)),
    {"access_lun", bitsAt(DEVICE_LUN, 4, 3), sdrNumber},
    {"private_bus_id", bitsAt(DEVICE_LUN, 2, 0), sdrNumber},
    {"address_span", bitsAt(ADDRESS_SPAN, 2, 0), sdrNumber},
};

constexpr SdrRow FRU_DEVICE[] = {
    {"device_access_address", bitsAt(ACCESS_ADDRESS, 7, 1), sdrNumber, sdrHex},
    SdrRow{"fru_device_id", bytesAt(SLAVE_ADDRESS), sdrNumber}.only(isLogical),
    SdrRow{"device_slave_address", bitsAt(SLAVE_ADDRESS, 7, 1), sdrNumber, sdrHex}.only(isPhysical),
    {"is_logical_fru", bitAt(DEVICE_LUN, 7), sdrNumber, sdrName<LOGICAL>},
    {"access_lun", bitsAt(DEVICE_LUN, 4, 3), sdrNumber},
    {"private_bus_id", bitsAt(DEVICE_LUN, 2, 0), sdrNumber},
    {"channel_number", bitsAt(FRU_CHANNEL, 7, 4), sdrNumber},
};

constexpr SdrRow CONTROLLER[] = {
    {"device_slave_address", bitsAt(CONTROLLER_ADDRESS, 7, 1), sdrNumber, sdrHex},
    {"channel_number", bitsAt(CONTROLLER_CHANNEL, 3, 0), sdrNumber},
    {"acpi_system_notification", bitAt(NOTIFICATION, 7), sdrNumber, sdrName<NOTIFIED>},
    {"acpi_device_notification", bitAt(NOTIFICATION, 6), sdrNumber, sdrName<NOTIFIED>},
    {"controller_presence", bitAt(NOTIFICATION, 5), sdrNumber, sdrName<PRESENT>},
    {"logs_init_errors", bitAt(NOTIFICATION, 3), sdrFlag},
    {"log_access_errors", bitAt(NOTIFICATION, 2), sdrFlag},
    {"event_generation", bitsAt(NOTIFICATION, 1, 0), sdrNumber, sdrName<MESSAGES>},
    {"device_capabilities", bytesAt(CONTROLLER_CAPABILITIES), sdrNumber, sdrHex},
    {"is_chassis_device", bitAt(CONTROLLER_CAPABILITIES, 7), sdrFlag},
    {"is_bridge", bitAt(CONTROLLER_CAPABILITIES, 6), sdrFlag},
    {"is_event_generator", bitAt(CONTROLLER_CAPABILITIES, 5), sdrFlag},
    {"is_event_receiver", bitAt(CONTROLLER_CAPABILITIES, 4), sdrFlag},
    {"is_fru_inventory_device", bitAt(CONTROLLER_CAPABILITIES, 3), sdrFlag},
    {"is_sel_device", bitAt(CONTROLLER_CAPABILITIES, 2), sdrFlag},
    {"is_sdr_repository", bitAt(CONTROLLER_CAPABILITIES, 1), sdrFlag},
    {"is_sensor_device", bitAt(CONTROLLER_CAPABILITIES, 0), sdrFlag},
};

constexpr SdrRow CONFIRMATION[] = {
    {"device_slave_address", bitsAt(CONFIRMED_ADDRESS, 7, 1), sdrNumber, sdrHex},
    {"device_id", bytesAt(CONFIRMED_DEVICE), sdrNumber, sdrHex},
    {"channel_number", bitsAt(REVISION, 7, 4), sdrNumber},
    {"device_revision", bitsAt(REVISION, 3, 0), sdrNumber},
    {"firmware_major", bitsAt(FIRMWARE_MAJOR, 6, 0), sdrNumber},
    {"firmware_minor", bytesAt(FIRMWARE_MINOR), sdrNumber, minorRevision},
    {"ipmi_version", bytesAt(IPMI_VERSION), sdrNumber, sdrVersion},
    {"manufacturer_id", bytesAt(CONFIRMED_MANUFACTURER, 3), sdrNumber, sdrHex},
    {"product_id", bytesAt(PRODUCT, 2), sdrNumber, sdrHex},
    {"device_guid", bytesAt(GUID, GUID_SIZE), hexBytes},
};

constexpr SdrRow CHANNEL[] = {
    SdrRow{"channel_{}_transmit", bitAt(FIRST_CHANNEL, 7), sdrFlag}.each(CHANNELS, 1, 0),
    SdrRow{"channel_{}_receive_lun", bitsAt(FIRST_CHANNEL, 6, 4), sdrNumber}.each(CHANNELS, 1, 0),
    SdrRow{"channel_{}_protocol", bitsAt(FIRST_CHANNEL, 3, 0), sdrNumber, sdrName<PROTOCOLS>}.each(CHANNELS, 1, 0),
    {"message_interrupt", bytesAt(MESSAGE_INTERRUPT), sdrNumber, interruptName},
    {"event_message_interrupt", bytesAt(EVENT_INTERRUPT), sdrNumber, interruptName},
};

constexpr SdrRow OEM[] = {
    {"manufacturer_id", bytesAt(OEM_MANUFACTURER, 3), sdrNumber, sdrHex},
};

constexpr SdrLayout LAYOUTS[] = {
    {SDR_ASSOCIATION, ASSOCIATION_SIZE, 0,
     {CONTAINER_ROWS, ASSOCIATION_FLAGS<LIST_FLAGS>, CONTAINED_ROWS<LIST_FIRST, LIST_STEP>}},
    {SDR_RELATIVE_ASSOCIATION, RELATIVE_SIZE, 0,
     {CONTAINER_ROWS, RELATIVE_CONTAINER, ASSOCIATION_FLAGS<RELATIVE_FLAGS>, RELATIVE_CONTAINED, CONTAINED_ROWS<RELATIVE_FIRST + 2, RELATIVE_STEP>}},
    {SDR_DEVICE_LOCATOR, LOCATOR_SIZE, SDR_NAME_LIMIT,
     {GENERIC_DEVICE, DEVICE_ROWS, SDR_ENTITY<LOCATED_ENTITY>, SDR_OEM_AND_ID<LOCATOR_OEM>}},
    {SDR_FRU_LOCATOR, LOCATOR_SIZE, SDR_NAME_LIMIT,
     {FRU_DEVICE, DEVICE_ROWS, SDR_ENTITY<LOCATED_ENTITY>, SDR_OEM_AND_ID<LOCATOR_OEM>}},
    {SDR_CONTROLLER_LOCATOR, LOCATOR_SIZE, SDR_NAME_LIMIT,
     {CONTROLLER, SDR_ENTITY<LOCATED_ENTITY>, SDR_OEM_AND_ID<LOCATOR_OEM>}},
    {SDR_CONTROLLER_CONFIRMATION, GUID + GUID_SIZE, 0, {CONFIRMATION}},
    {SDR_CHANNEL_INFO, CHANNELS_SIZE, 0, {CHANNEL}},
    {SDR_OEM, OEM_SIZE, 0, {OEM}},
};
// clang-format on

}

constexpr SdrLayouts LOCATOR_LAYOUTS = LAYOUTS;

}
