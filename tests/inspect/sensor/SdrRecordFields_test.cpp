// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/sensor/SdrRecordFields.h>

#include <algorithm>
#include <fmt/format.h>
#include <gtest/gtest.h>
#include <map>
#include <set>

#include <recordkit/inspect/words/DeviceTypes.h>

#include "support/Bytes.h"
#include "support/Failures.h"
#include "support/SdrRecords.h"
#include "support/SdrSamples.h"

using namespace recordkit::inspect;
using namespace testing_support;
using namespace testing_support::sdr_samples;

namespace {

SdrDescription described(const Bytes& record)
{
    return describeRecord({100, record});
}

std::string textOf(const Value& value)
{
    if (const auto* const flag = std::get_if<bool>(&value)) {
        return *flag ? "yes" : "no";
    }
    if (const auto* const number = std::get_if<long long>(&value)) {
        return std::to_string(*number);
    }
    if (const auto* const fraction = std::get_if<double>(&value)) {
        return fmt::format("{:g}", *fraction);
    }
    if (const auto* const numbers = std::get_if<std::vector<long long>>(&value)) {
        std::string text = "[";
        for (const long long each : *numbers) {
            text += (text.size() == 1 ? "" : ",") + std::to_string(each);
        }
        return text + "]";
    }
    return '"' + std::get<std::string>(value) + '"';
}

/// "m 24+24 bit 7..6 = 300: words".
std::string lineOf(const DecodedField& field)
{
    std::string text = field.name + " " + field.place.text();
    for (const Place& place : field.also) {
        text += "+" + place.text();
    }
    return text + " = " + textOf(field.value) + (field.meaning.empty() ? "" : ": ") + field.meaning;
}

/// Every field after the header.
Lines linesOf(const Bytes& record)
{
    Lines lines;
    for (const DecodedField& field : described(record).fields) {
        if (field.place.offset >= 5) {
            lines.push_back(lineOf(field));
        }
    }
    return lines;
}

/// The line of one field; empty if there is none.
std::string lineOf(const Bytes& record, const std::string& name)
{
    for (const DecodedField& field : described(record).fields) {
        if (field.name == name) {
            return lineOf(field);
        }
    }
    return "";
}

Bytes changed(Bytes record, std::size_t at, unsigned char byte)
{
    record.at(at) = byte;
    return record;
}

}

TEST(SdrRecordFields, FullRecordIsDecodedWhole)
{
    EXPECT_EQ(
        linesOf(FULL),
        Lines({"sensor_owner_id 5 = 35: 23h",
               "sensor_owner_type 5 bit 0 = 1: system software ID",
               "sensor_owner_address 5 bit 7..1 = 17: 11h",
               "channel_number 6 bit 7..4 = 10",
               "sensor_owner_lun 6 bit 1..0 = 3",
               "reserved_6 6 bit 3..2 = 1: reserved",
               "sensor_number 7 = 48: 30h",
               "entity_id 8 = 7: system board",
               "entity_instance 9 = 225",
               "entity_instance_type 9 bit 7 = 1: logical container",
               "entity_instance_number 9 bit 6..0 = 97: device-relative",
               "sensor_initialization 10 = 213: D5h",
               "is_settable 10 bit 7 = yes",
               "init_scanning 10 bit 6 = yes",
               "init_events 10 bit 5 = no",
               "init_thresholds 10 bit 4 = yes",
               "init_hysteresis 10 bit 3 = no",
               "init_sensor_type 10 bit 2 = yes",
               "default_events 10 bit 1 = no",
               "default_scanning 10 bit 0 = yes",
               "sensor_capabilities 11 = 158: 9Eh",
               "ignore_if_entity_absent 11 bit 7 = yes",
               "rearm 11 bit 6 = 0: manual",
               "hysteresis_support 11 bit 5..4 = 1: readable",
               "threshold_access 11 bit 3..2 = 3: fixed, unreadable",
               "event_message_control 11 bit 1..0 = 2: global disable only",
               "sensor_type 12 = 4: Fan",
               "event_type 13 = 1: threshold",
               "assertion_mask 14 to 15 = 55301: D805h",
               "assertion_events 14+15 bit 3..0 = [0,2,11]: Lower Non-critical - going low; Lower "
               "Critical - going low; Upper Non-recoverable - going high",
               "lower_comparisons 15 bit 6..4 = [0,2]: lower non-critical; lower non-recoverable",
               "deassertion_mask 16 to 17 = 9344: 2480h",
               "deassertion_events 16+17 bit 3..0 = [7,10]: Upper Non-critical - going high; Upper "
               "Non-recoverable - going low",
               "upper_comparisons 17 bit 6..4 = [1]: upper critical",
               "reading_mask 18 to 19 = 10437: 28C5h",
               "readable_thresholds 18 bit 5..0 = [0,2]: lower non-critical; lower non-recoverable",
               "settable_thresholds 19 bit 5..0 = [3,5]: upper non-critical; upper non-recoverable",
               "units_1 20 = 139: 8Bh",
               "analog_data_format 20 bit 7..6 = 2: 2's complement",
               "rate_unit 20 bit 5..3 = 1: per us",
               "modifier_use 20 bit 2..1 = 1: base / modifier",
               "is_percentage 20 bit 0 = yes",
               "base_unit 21 = 4: Volts",
               "modifier_unit 22 = 5: Amps",
               "units -+20 bit 5..0+21+22 = \"% Volts/Amps per us\"",
               "linearization 23 bit 6..0 = 0: linear",
               "reserved_23 23 bit 7 = 1: reserved",
               "m 24+25 bit 7..6 = 300",
               "tolerance 25 bit 5..0 = 3: +/- 1.5 counts, +/- 4.5 % Volts/Amps per us",
               "b 26+27 bit 7..6 = -10",
               "accuracy 27 bit 5..0+28 bit 7..4 = 69: +/- 69 %",
               "accuracy_exponent 28 bit 3..2 = 2",
               "sensor_direction 28 bit 1..0 = 2: output",
               "r_exponent 29 bit 7..4 = -2",
               "b_exponent 29 bit 3..0 = 1",
               "resolution -+24+25 bit 7..6+29 bit 7..4 = 3: % Volts/Amps per us",
               "normal_minimum_specified 30 bit 2 = yes",
               "normal_maximum_specified 30 bit 1 = no",
               "nominal_specified 30 bit 0 = yes",
               "reserved_30 30 bit 7..3 = 31: reserved",
               "nominal 31 = 2: 5 % Volts/Amps per us",
               "normal_maximum 32 = 3: not specified",
               "normal_minimum 33 = 254: -7 % Volts/Amps per us",
               "sensor_maximum 34 = 127: 380 % Volts/Amps per us",
               "sensor_minimum 35 = 128: -385 % Volts/Amps per us",
               "upper_non_recoverable 36 = 6: 17 % Volts/Amps per us, not readable",
               "upper_critical 37 = 5: 14 % Volts/Amps per us, not readable",
               "upper_non_critical 38 = 4: 11 % Volts/Amps per us, not readable",
               "lower_non_recoverable 39 = 253: -10 % Volts/Amps per us",
               "lower_critical 40 = 254: -7 % Volts/Amps per us, not readable",
               "lower_non_critical 41 = 0: -1 % Volts/Amps per us",
               "positive_hysteresis 42 = 2: 6 % Volts/Amps per us",
               "negative_hysteresis 43 = 3: 9 % Volts/Amps per us",
               "reserved_44 44 to 45 = \"ABCD\"",
               "oem 46 = 90: 5Ah",
               "id_string_type 47 bit 7..6 = 3: text",
               "id_string_length 47 bit 4..0 = 3",
               "reserved_47 47 bit 5 = 1: reserved",
               "id_string 48 to 50+47 bit 7..6+47 bit 4..0 = \"abc\""}));
    EXPECT_EQ(described(FULL).problems, Lines());
}

TEST(SdrRecordFields, CompactRecordIsDecodedWhole)
{
    EXPECT_EQ(linesOf(COMPACT),
              Lines({"sensor_owner_id 5 = 32: 20h",
                     "sensor_owner_type 5 bit 0 = 0: IPMB slave address",
                     "sensor_owner_address 5 bit 7..1 = 16: 10h",
                     "channel_number 6 bit 7..4 = 0",
                     "sensor_owner_lun 6 bit 1..0 = 0",
                     "sensor_number 7 = 64: 40h",
                     "entity_id 8 = 10: power supply",
                     "entity_instance 9 = 2",
                     "entity_instance_type 9 bit 7 = 0: physical entity",
                     "entity_instance_number 9 bit 6..0 = 2: system-relative",
                     "sensor_initialization 10 = 42: 2Ah",
                     "is_settable 10 bit 7 = no",
                     "init_scanning 10 bit 6 = no",
                     "init_events 10 bit 5 = yes",
                     "init_thresholds 10 bit 4 = no",
                     "init_hysteresis 10 bit 3 = yes",
                     "init_sensor_type 10 bit 2 = no",
                     "default_events 10 bit 1 = yes",
                     "default_scanning 10 bit 0 = no",
                     "sensor_capabilities 11 = 97: 61h",
                     "ignore_if_entity_absent 11 bit 7 = no",
                     "rearm 11 bit 6 = 1: auto",
                     "hysteresis_support 11 bit 5..4 = 2: readable and settable",
                     "threshold_access 11 bit 3..2 = 0: none",
                     "event_message_control 11 bit 1..0 = 1: entire sensor only",
                     "sensor_type 12 = 8: Power Supply",
                     "event_type 13 = 111: sensor-specific",
                     "assertion_mask 14 to 15 = 32777: 8009h",
                     "assertion_events 14+15 bit 6..0 = [0,3]: Presence detected; Power Supply "
                     "input lost (AC/DC)",
                     "deassertion_mask 16 to 17 = 16385: 4001h",
                     "deassertion_events 16+17 bit 6..0 = [0,14]: Presence detected; offset 14",
                     "reading_mask 18 to 19 = 3: 3h",
                     "readable_states 18+19 bit 6..0 = [0,1]: Presence detected; Power Supply "
                     "Failure detected",
                     "units_1 20 = 198: C6h",
                     "analog_data_format 20 bit 7..6 = 3: no analog",
                     "rate_unit 20 bit 5..3 = 0: none",
                     "modifier_use 20 bit 2..1 = 3: reserved",
                     "is_percentage 20 bit 0 = no",
                     "base_unit 21 = 0: unspecified",
                     "modifier_unit 22 = 0: unspecified",
                     "units -+20 bit 5..0+21+22 = \"\"",
                     "sensor_direction 23 bit 7..6 = 2: output",
                     "id_modifier_type 23 bit 5..4 = 1: alphabetic",
                     "share_count 23 bit 3..0 = 3",
                     "entity_instance_sharing 24 bit 7 = 1: increments",
                     "id_modifier_offset 24 bit 6..0 = 31",
                     "positive_hysteresis 25 = 1",
                     "negative_hysteresis 26 = 2",
                     "reserved_27 27 to 29 = \"000000\"",
                     "oem 30 = 17: 11h",
                     "id_string_type 31 bit 7..6 = 3: text",
                     "id_string_length 31 bit 4..0 = 2",
                     "id_string 32 to 33+31 bit 7..6+31 bit 4..0 = \"PS\""}));
    EXPECT_EQ(described(COMPACT).problems, Lines());
}

TEST(SdrRecordFields, EventOnlyRecordIsDecodedWhole)
{
    EXPECT_EQ(linesOf(EVENT_ONLY), Lines({"sensor_owner_id 5 = 65: 41h",
                                          "sensor_owner_type 5 bit 0 = 1: system software ID",
                                          "sensor_owner_address 5 bit 7..1 = 32: 20h",
                                          "channel_number 6 bit 7..4 = 3",
                                          "sensor_owner_lun 6 bit 1..0 = 1",
                                          "sensor_number 7 = 80: 50h",
                                          "entity_id 8 = 3: processor",
                                          "entity_instance 9 = 96",
                                          "entity_instance_type 9 bit 7 = 0: physical entity",
                                          "entity_instance_number 9 bit 6..0 = 96: device-relative",
                                          "sensor_type 10 = 15: System Firmware Progress",
                                          "event_type 11 = 111: sensor-specific",
                                          "sensor_direction 12 bit 7..6 = 1: input",
                                          "id_modifier_type 12 bit 5..4 = 1: alphabetic",
                                          "share_count 12 bit 3..0 = 4",
                                          "entity_instance_sharing 13 bit 7 = 0: same for all",
                                          "id_modifier_offset 13 bit 6..0 = 127",
                                          "reserved_14 14 = \"00\"",
                                          "oem 15 = 34: 22h",
                                          "id_string_type 16 bit 7..6 = 3: text",
                                          "id_string_length 16 bit 4..0 = 2",
                                          "id_string 17 to 18+16 bit 7..6+16 bit 4..0 = \"PO\""}));
    EXPECT_EQ(described(EVENT_ONLY).problems, Lines());
}

TEST(SdrRecordFields, AssociationNamesItsEntities)
{
    EXPECT_EQ(
        linesOf(ASSOCIATION),
        Lines({"container_entity_id 5 = 23: system chassis",
               "container_instance 6 = 1: system-relative", "contained_form 7 bit 7 = 0: list",
               "record_link 7 bit 6 = 0: no linked records",
               "presence_sensor 7 bit 5 = 1: always accessible, otherwise an error",
               "contained_1_entity_id 8 = 3: processor",
               "contained_1_instance 9 = 1: system-relative",
               "contained_2_entity_id 10 = 3: processor",
               "contained_2_instance 11 = 98: device-relative",
               "contained_3_entity_id 12 = 0: unspecified",
               "contained_3_instance 13 = 0: system-relative",
               "contained_4_entity_id 14 = 32: memory device",
               "contained_4_instance 15 = 5: system-relative",
               "contained_entities -+8 to 9+10 to 11+14 to 15 = \"3.1, 3.98, 32.5\""}));
    EXPECT_EQ(described(ASSOCIATION).problems, Lines());
}

TEST(SdrRecordFields, DeviceRelativeAssociationNamesItsEntities)
{
    EXPECT_EQ(
        linesOf(RELATIVE),
        Lines(
            {"container_entity_id 5 = 23: system chassis",
             "container_instance 6 = 97: device-relative",
             "container_address 7 bit 7..1 = 18: 12h",
             "container_channel 8 bit 7..4 = 3",
             "contained_form 9 bit 7 = 1: range",
             "record_link 9 bit 6 = 1: linked records exist",
             "presence_sensor 9 bit 5 = 0: absent if its sensor is not accessible",
             "contained_1_address 10 bit 7..1 = 19: 13h",
             "contained_1_channel 11 bit 7..4 = 1",
             "contained_1_entity_id 12 = 3: processor",
             "contained_1_instance 13 = 96: first of the range",
             "contained_2_address 14 bit 7..1 = 20: 14h",
             "contained_2_channel 15 bit 7..4 = 2",
             "contained_2_entity_id 16 = 3: processor",
             "contained_2_instance 17 = 98: last of the range",
             "contained_3_address 18 bit 7..1 = 21: 15h",
             "contained_3_channel 19 bit 7..4 = 4",
             "contained_3_entity_id 20 = 32: memory device",
             "contained_3_instance 21 = 100: first of the range",
             "contained_4_address 22 bit 7..1 = 22: 16h",
             "contained_4_channel 23 bit 7..4 = 8",
             "contained_4_entity_id 24 = 32: memory device",
             "contained_4_instance 25 = 102: last of the range",
             "contained_entities -+12 to 13+16 to 17+24 to 25 = \"3.96 to 3.98, 32.100 to 32.102\"",
             "reserved_26 26 to 31 = \"000000000000\""}));
    EXPECT_EQ(described(RELATIVE).problems, Lines());
}

TEST(SdrRecordFields, DeviceLocatorIsDecodedWhole)
{
    EXPECT_EQ(
        linesOf(DEVICE),
        Lines({"device_access_address 5 bit 7..1 = 16: 10h",
               "device_slave_address 6 bit 7..1 = 81: 51h",
               "channel_number 7 bit 7..5+6 bit 0 = 10", "access_lun 7 bit 4..3 = 2",
               "private_bus_id 7 bit 2..0 = 2", "address_span 8 bit 2..0 = 5",
               "reserved_9 9 = \"00\"", "device_type 10 = 9: EEPROM 24C02",
               "device_type_modifier 11 = 1: DIMM memory ID", "entity_id 12 = 32: memory device",
               "entity_instance 13 = 2", "entity_instance_type 13 bit 7 = 0: physical entity",
               "entity_instance_number 13 bit 6..0 = 2: system-relative", "oem 14 = 51: 33h",
               "id_string_type 15 bit 7..6 = 3: text", "id_string_length 15 bit 4..0 = 1",
               "id_string 16+15 bit 7..6+15 bit 4..0 = \"D\""}));
    EXPECT_EQ(described(DEVICE).problems, Lines());
}

TEST(SdrRecordFields, FruLocatorIsDecodedWhole)
{
    EXPECT_EQ(
        linesOf(FRU),
        Lines({"device_access_address 5 bit 7..1 = 33: 21h",
               "device_slave_address 6 bit 7..1 = 82: 52h",
               "is_logical_fru 7 bit 7 = 0: device on a bus", "access_lun 7 bit 4..3 = 3",
               "private_bus_id 7 bit 2..0 = 5", "channel_number 8 bit 7..4 = 3",
               "reserved_9 9 = \"00\"", "device_type 10 = 10: EEPROM 24C04",
               "device_type_modifier 11 = 2: IPMI FRU inventory", "entity_id 12 = 10: power supply",
               "entity_instance 13 = 129", "entity_instance_type 13 bit 7 = 1: logical container",
               "entity_instance_number 13 bit 6..0 = 1: system-relative", "oem 14 = 68: 44h",
               "id_string_type 15 bit 7..6 = 3: text", "id_string_length 15 bit 4..0 = 1",
               "id_string 16+15 bit 7..6+15 bit 4..0 = \"F\""}));
    EXPECT_EQ(described(FRU).problems, Lines());
}

TEST(SdrRecordFields, ControllerLocatorIsDecodedWhole)
{
    EXPECT_EQ(linesOf(CONTROLLER),
              Lines({"device_slave_address 5 bit 7..1 = 65: 41h",
                     "channel_number 6 bit 3..0 = 7",
                     "acpi_system_notification 7 bit 7 = 1: required",
                     "acpi_device_notification 7 bit 6 = 0: not required",
                     "controller_presence 7 bit 5 = 1: static",
                     "logs_init_errors 7 bit 3 = yes",
                     "log_access_errors 7 bit 2 = no",
                     "event_generation 7 bit 1..0 = 1: disable",
                     "device_capabilities 8 = 165: A5h",
                     "is_chassis_device 8 bit 7 = yes",
                     "is_bridge 8 bit 6 = no",
                     "is_event_generator 8 bit 5 = yes",
                     "is_event_receiver 8 bit 4 = no",
                     "is_fru_inventory_device 8 bit 3 = no",
                     "is_sel_device 8 bit 2 = yes",
                     "is_sdr_repository 8 bit 1 = no",
                     "is_sensor_device 8 bit 0 = yes",
                     "reserved_9 9 to 11 = \"000000\"",
                     "entity_id 12 = 30: cooling unit",
                     "entity_instance 13 = 97",
                     "entity_instance_type 13 bit 7 = 0: physical entity",
                     "entity_instance_number 13 bit 6..0 = 97: device-relative",
                     "oem 14 = 85: 55h",
                     "id_string_type 15 bit 7..6 = 3: text",
                     "id_string_length 15 bit 4..0 = 1",
                     "id_string 16+15 bit 7..6+15 bit 4..0 = \"C\""}));
    EXPECT_EQ(described(CONTROLLER).problems, Lines());
}

TEST(SdrRecordFields, ControllerConfirmationIsDecodedWhole)
{
    EXPECT_EQ(linesOf(CONFIRMATION),
              Lines({"device_slave_address 5 bit 7..1 = 65: 41h", "device_id 6 = 33: 21h",
                     "channel_number 7 bit 7..4 = 3", "device_revision 7 bit 3..0 = 10",
                     "firmware_major 8 bit 6..0 = 4", "reserved_8 8 bit 7 = 1: reserved",
                     "firmware_minor 9 = 89: 59", "ipmi_version 10 = 2: 2.0",
                     "manufacturer_id 11 to 13 = 343: 157h", "product_id 14 to 15 = 4660: 1234h",
                     "device_guid 16 to 31 = \"00112233445566778899AABBCCDDEEFF\""}));
    EXPECT_EQ(described(CONFIRMATION).problems, Lines());
}

TEST(SdrRecordFields, ChannelInfoIsDecodedWhole)
{
    EXPECT_EQ(linesOf(CHANNELS), Lines({"channel_0_transmit 5 bit 7 = yes",
                                        "channel_0_receive_lun 5 bit 6..4 = 0",
                                        "channel_0_protocol 5 bit 3..0 = 1: IPMB 1.0",
                                        "channel_1_transmit 6 bit 7 = no",
                                        "channel_1_receive_lun 6 bit 6..4 = 1",
                                        "channel_1_protocol 6 bit 3..0 = 4: IPMI SMBus",
                                        "channel_2_transmit 7 bit 7 = no",
                                        "channel_2_receive_lun 7 bit 6..4 = 2",
                                        "channel_2_protocol 7 bit 3..0 = 5: KCS",
                                        "channel_3_transmit 8 bit 7 = no",
                                        "channel_3_receive_lun 8 bit 6..4 = 3",
                                        "channel_3_protocol 8 bit 3..0 = 6: SMIC",
                                        "channel_4_transmit 9 bit 7 = no",
                                        "channel_4_receive_lun 9 bit 6..4 = 4",
                                        "channel_4_protocol 9 bit 3..0 = 7: BT 10",
                                        "channel_5_transmit 10 bit 7 = no",
                                        "channel_5_receive_lun 10 bit 6..4 = 5",
                                        "channel_5_protocol 10 bit 3..0 = 8: BT 15",
                                        "channel_6_transmit 11 bit 7 = no",
                                        "channel_6_receive_lun 11 bit 6..4 = 6",
                                        "channel_6_protocol 11 bit 3..0 = 9: terminal mode",
                                        "channel_7_transmit 12 bit 7 = yes",
                                        "channel_7_receive_lun 12 bit 6..4 = 7",
                                        "channel_7_protocol 12 bit 3..0 = 2: ICMB 1.0",
                                        "message_interrupt 13 = 15: IRQ 15",
                                        "event_message_interrupt 14 = 19: PCI D",
                                        "reserved_15 15 = \"00\""}));
    EXPECT_EQ(described(CHANNELS).problems, Lines());
}

TEST(SdrRecordFields, OemRecordHasAManufacturerAndBytes)
{
    EXPECT_EQ(linesOf(OEM),
              Lines({"manufacturer_id 5 to 7 = 343: 157h", "oem_data 8 to 9 = \"BEEF\""}));
    EXPECT_EQ(described(OEM).problems, Lines());
}

TEST(SdrRecordFields, HeaderIsThatOfEveryRecord)
{
    const DecodedFields fields = described(FULL).fields;
    ASSERT_GE(fields.size(), 4U);
    EXPECT_EQ(lineOf(fields[0]), "record_id 0 to 1 = 4660: 1234h");
    EXPECT_EQ(lineOf(fields[1]), "sdr_version 2 = 81: 1.5");
    EXPECT_EQ(lineOf(fields[2]), "record_type 3 = 1: full");
    EXPECT_EQ(lineOf(fields[3]), "record_length 4 = 46");
}

TEST(SdrRecordFields, OtherTypesAreBytes)
{
    const Bytes record = {0x01, 0x00, 0x51, 0x2A, 3, 0x00, 0xFE, 0x10};
    EXPECT_EQ(linesOf(record), Lines({"data 5 to 7 = \"00FE10\""}));
    EXPECT_EQ(lineOf(record, "record_type"), "record_type 3 = 42: type 2Ah");
    EXPECT_EQ(described(record).problems, Lines());
    EXPECT_EQ(linesOf({0x01, 0x00, 0x51, 0x2A, 0}), Lines());
}

TEST(SdrRecordFields, BytesAfterTheIdStringAreShown)
{
    EXPECT_EQ(linesOf(DEVICE + Bytes({1, 0})).back(), "more_bytes 17 to 18 = \"0100\"");
    EXPECT_EQ(linesOf(CHANNELS + Bytes({7})).back(), "more_bytes 16 = \"07\"");
    // Sixteen bytes of a sensor's name count, as Sensor has them.
    const Bytes sensor = changed(COMPACT, 31, 0xDF) + Bytes(20, 'x');
    EXPECT_EQ(lineOf(sensor, "id_string"),
              "id_string 32 to 47+31 bit 7..6+31 bit 4..0 = \"PSxxxxxxxxxxxxxx\"");
    EXPECT_EQ(lineOf(sensor, "more_bytes"), "more_bytes 48 to 53 = \"787878787878\"");
    EXPECT_EQ(described(sensor).problems, Lines());
}

TEST(SdrRecordFields, NamesOfEveryCodingAreText)
{
    EXPECT_NE(lineOf(changed(changed(DEVICE, 15, 0x41), 16, 0x12), "id_string").find("= \"12\""),
              std::string::npos);
    EXPECT_EQ(lineOf(changed(DEVICE, 15, 0x41), "id_string_type"),
              "id_string_type 15 bit 7..6 = 1: BCD plus");
    EXPECT_EQ(lineOf(changed(DEVICE, 15, 0x81), "id_string_type"),
              "id_string_type 15 bit 7..6 = 2: 6-bit");
    EXPECT_EQ(lineOf(changed(DEVICE, 15, 0x01), "id_string_type"),
              "id_string_type 15 bit 7..6 = 0: 16-bit");
}

TEST(SdrRecordFields, LogicalFruDeviceHasAnIdAndNoAddress)
{
    const Bytes logical = changed(FRU, 7, 0x9D);
    EXPECT_EQ(lineOf(logical, "fru_device_id"), "fru_device_id 6 = 164");
    EXPECT_EQ(lineOf(logical, "device_slave_address"), "");
    EXPECT_EQ(lineOf(logical, "is_logical_fru"), "is_logical_fru 7 bit 7 = 1: logical FRU device");
    EXPECT_EQ(lineOf(FRU, "fru_device_id"), "");
}

TEST(SdrRecordFields, ReservedCodesAreNumbers)
{
    EXPECT_EQ(lineOf(changed(FULL, 20, 0xBF), "rate_unit"), "rate_unit 20 bit 5..3 = 7: reserved");
    EXPECT_EQ(lineOf(changed(FULL, 28, 0x1B), "sensor_direction"),
              "sensor_direction 28 bit 1..0 = 3: reserved");
    EXPECT_EQ(lineOf(changed(COMPACT, 23, 0xA3), "id_modifier_type"),
              "id_modifier_type 23 bit 5..4 = 2: reserved");
    EXPECT_EQ(lineOf(changed(CONTROLLER, 7, 0x03), "event_generation"),
              "event_generation 7 bit 1..0 = 3: reserved");
    EXPECT_EQ(lineOf(changed(CHANNELS, 5, 0x03), "channel_0_protocol"),
              "channel_0_protocol 5 bit 3..0 = 3: reserved");
    EXPECT_EQ(lineOf(changed(CHANNELS, 5, 0x0A), "channel_0_protocol"),
              "channel_0_protocol 5 bit 3..0 = 10: reserved");
}

TEST(SdrRecordFields, LinearizationsHaveNames)
{
    const std::map<unsigned char, std::string> names = {{0, "linear"},
                                                        {1, "ln"},
                                                        {2, "log10"},
                                                        {3, "log2"},
                                                        {4, "e"},
                                                        {5, "exp10"},
                                                        {6, "exp2"},
                                                        {7, "1/x"},
                                                        {8, "sqr"},
                                                        {9, "cube"},
                                                        {10, "sqrt"},
                                                        {11, "cube root"},
                                                        {12, "reserved"},
                                                        {0x6F, "reserved"},
                                                        {0x70, "non-linear"},
                                                        {0x71, "non-linear, OEM"},
                                                        {0x7F, "non-linear, OEM"}};
    for (const auto& [code, name] : names) {
        EXPECT_EQ(lineOf(changed(FULL, 23, code), "linearization"),
                  fmt::format("linearization 23 bit 6..0 = {}: {}", code, name));
    }
}

TEST(SdrRecordFields, OnlyALinearSensorHasDifferencesInUnits)
{
    const Bytes square = changed(FULL, 23, 8);
    EXPECT_EQ(lineOf(square, "resolution"), "");
    EXPECT_EQ(lineOf(square, "positive_hysteresis"), "positive_hysteresis 42 = 2");
    EXPECT_EQ(lineOf(square, "tolerance"), "tolerance 25 bit 5..0 = 3: +/- 1.5 counts");
    EXPECT_EQ(lineOf(square, "nominal"), "nominal 31 = 2: 25 % Volts/Amps per us");
    // A slope that falls.
    const Bytes falls = changed(changed(FULL, 24, 0xFF), 25, 0xC3);
    EXPECT_EQ(lineOf(falls, "m"), "m 24+25 bit 7..6 = -1");
    EXPECT_NE(lineOf(falls, "resolution").find("= 0.01:"), std::string::npos);
    EXPECT_EQ(lineOf(falls, "positive_hysteresis"),
              "positive_hysteresis 42 = 2: 0.02 % Volts/Amps per us");
}

TEST(SdrRecordFields, WithoutAConversionReadingsAreRaw)
{
    const Bytes none = changed(FULL, 20, 0xC0);
    EXPECT_EQ(lineOf(none, "nominal"), "nominal 31 = 2");
    EXPECT_EQ(lineOf(none, "lower_non_critical"), "lower_non_critical 41 = 0");
    EXPECT_EQ(lineOf(none, "upper_critical"), "upper_critical 37 = 5: not readable");
    EXPECT_EQ(lineOf(none, "positive_hysteresis"), "positive_hysteresis 42 = 2");
}

TEST(SdrRecordFields, ThresholdsNeedTheirBitAndThresholdAccess)
{
    const struct {
        const char* name;
        unsigned char bit;
    } rows[] = {{"upper_non_recoverable", 0x20}, {"upper_critical", 0x10},
                {"upper_non_critical", 0x08},    {"lower_non_recoverable", 0x04},
                {"lower_critical", 0x02},        {"lower_non_critical", 0x01}};
    const auto isReadable = [](const Bytes& record, const char* name) {
        return lineOf(record, name).find("not readable") == std::string::npos;
    };
    for (const auto& wanted : rows) {
        for (const auto& row : rows) {
            EXPECT_EQ(isReadable(changed(FULL, 18, wanted.bit), row.name),
                      &row - rows == &wanted - rows)
                << row.name << " with " << wanted.name;
        }
        EXPECT_FALSE(isReadable(changed(changed(FULL, 18, 0x3F), 11, 0x92), wanted.name));
        EXPECT_TRUE(isReadable(changed(changed(FULL, 18, 0x3F), 11, 0x96), wanted.name));
    }
}

TEST(SdrRecordFields, DiscreteSensorHasStatesInsteadOfThresholds)
{
    const Bytes discrete = changed(FULL, 13, 0x03);
    EXPECT_EQ(lineOf(discrete, "readable_thresholds"), "");
    EXPECT_EQ(lineOf(discrete, "lower_comparisons"), "");
    // Its readings are states, whatever the factors are.
    EXPECT_EQ(lineOf(discrete, "nominal"), "nominal 31 = 2");
    EXPECT_EQ(lineOf(discrete, "resolution"), "");
    EXPECT_EQ(lineOf(discrete, "lower_non_critical"), "lower_non_critical 41 = 0");
    EXPECT_EQ(lineOf(discrete, "upper_critical"), "upper_critical 37 = 5");
    EXPECT_EQ(lineOf(discrete, "readable_states"),
              "readable_states 18+19 bit 6..0 = [0,2,6,7,11,13]: State Deasserted; offset 2; "
              "offset 6; offset 7; offset 11; offset 13");
    EXPECT_EQ(lineOf(changed(COMPACT, 14, 0), "assertion_events"),
              "assertion_events 14+15 bit 6..0 = []: none");
}

TEST(SdrRecordFields, InterruptsHaveNames)
{
    const std::map<unsigned char, std::string> names = {{0x00, "IRQ 0"},
                                                        {0x0F, "IRQ 15"},
                                                        {0x10, "PCI A"},
                                                        {0x13, "PCI D"},
                                                        {0x14, "SMI"},
                                                        {0x15, "SCI"},
                                                        {0x16, "reserved"},
                                                        {0x1F, "reserved"},
                                                        {0x20, "system interrupt 0"},
                                                        {0x5F, "system interrupt 63"},
                                                        {0x60, "assigned by ACPI"},
                                                        {0x61, "reserved"},
                                                        {0xFE, "reserved"},
                                                        {0xFF, "none"}};
    for (const auto& [code, name] : names) {
        EXPECT_EQ(lineOf(changed(CHANNELS, 14, code), "event_message_interrupt"),
                  fmt::format("event_message_interrupt 14 = {}: {}", code, name));
    }
}

TEST(SdrRecordFields, FieldsBeyondTheEndAreAbsentAndReported)
{
    const std::map<const Bytes*, std::string> expected = {{&FULL, "43 for type 01h"},
                                                          {&COMPACT, "27 for type 02h"},
                                                          {&EVENT_ONLY, "12 for type 03h"},
                                                          {&ASSOCIATION, "11 for type 08h"},
                                                          {&RELATIVE, "21 for type 09h"},
                                                          {&DEVICE, "11 for type 10h"},
                                                          {&FRU, "11 for type 11h"},
                                                          {&CONTROLLER, "11 for type 12h"},
                                                          {&CONFIRMATION, "27 for type 13h"},
                                                          {&CHANNELS, "10 for type 14h"},
                                                          {&OEM, "3 for type C0h"}};
    for (const auto& [record, least] : expected) {
        const std::size_t whole = std::stoul(least) + 5;
        for (std::size_t size = 5; size < whole; ++size) {
            const Bytes cut(record->begin(), record->begin() + static_cast<std::ptrdiff_t>(size));
            const SdrDescription description = described(cut);
            EXPECT_EQ(description.problems,
                      Lines({fmt::format("record {:04X}h at offset 100: {} bytes, expected at "
                                         "least {}",
                                         (*record)[0] | (*record)[1] << 8, size - 5, least)}));
            for (const DecodedField& field : description.fields) {
                EXPECT_LE(field.place.end(), size) << field.name;
                EXPECT_NE(field.name, "id_string");
            }
        }
    }
    // A record that ends inside a field has the bytes before the end all the same.
    EXPECT_EQ(linesOf({1, 0, 0x51, 0xC0, 2, 0xAB, 0xCD}), Lines({"more_bytes 5 to 6 = \"ABCD\""}));
}

TEST(SdrRecordFields, CutOffNameIsShownAndReported)
{
    const Bytes cut = changed(FRU, 15, 0xC3);
    EXPECT_EQ(described(cut).problems,
              Lines({"record 0007h at offset 100: 1 byte of its id string, expected 3"}));
    EXPECT_EQ(lineOf(cut, "id_string"), "id_string 16+15 bit 7..6+15 bit 4..0 = \"F\"");
    const Bytes sensor = changed(COMPACT, 31, 0xC3);
    EXPECT_EQ(described(sensor).problems,
              Lines({"record 0002h at offset 100: 2 bytes of its id string, expected 3"}));
}

TEST(SdrRecordFields, NoByteIsHidden)
{
    for (const Bytes* const sample : SAMPLES) {
        const Bytes record = *sample + Bytes({0xA5, 0x5A});
        std::set<unsigned int> shown;
        for (const DecodedField& field : described(record).fields) {
            for (unsigned int at = field.place.offset; at < field.place.end(); ++at) {
                shown.insert(at);
            }
        }
        EXPECT_EQ(shown.size(), record.size()) << int(record[3]);
    }
}

namespace {

bool covers(const DecodedField& field, unsigned int byte, unsigned int bit)
{
    return field.place.contains(byte, bit) ||
           std::any_of(field.also.begin(), field.also.end(),
                       [&](const Place& place) { return place.contains(byte, bit); });
}

std::map<std::string, DecodedField> byName(const Bytes& record)
{
    std::map<std::string, DecodedField> fields;
    for (const DecodedField& field : described(record).fields) {
        EXPECT_TRUE(fields.emplace(field.name, field).second) << field.name << " twice";
    }
    return fields;
}

/// Bytes that decide which fields a record has, and where its last one ends.
bool decidesFields(const Bytes& record, unsigned int byte)
{
    const unsigned char type = record[3];
    const bool isSensor = type == 0x01 || type == 0x02;
    const std::map<unsigned char, unsigned int> lengths = {{0x01, 47}, {0x02, 31}, {0x03, 16},
                                                           {0x10, 15}, {0x11, 15}, {0x12, 15}};
    const auto length = lengths.find(type);
    return byte == 3 || (isSensor && byte == 13) || (type == 0x11 && byte == 7) ||
           (length != lengths.end() && length->second == byte);
}

}

TEST(SdrRecordFields, EachBitChangesTheFieldsThatHaveItAndNoOthers)
{
    for (const Bytes* const sample : SAMPLES) {
        const std::map<std::string, DecodedField> before = byName(*sample);
        for (unsigned int byte = 0; byte < sample->size(); ++byte) {
            for (unsigned int bit = 0; bit < 8 && !decidesFields(*sample, byte); ++bit) {
                Bytes flipped = *sample;
                flipped[byte] = static_cast<unsigned char>(flipped[byte] ^ 1U << bit);
                unsigned int changes = 0;
                for (const auto& [name, field] : byName(flipped)) {
                    const auto old = before.find(name);
                    const bool isChanged = old == before.end() || old->second.value != field.value;
                    if (covers(field, byte, bit)) {
                        changes += isChanged ? 1 : 0;
                    } else if (name != "resolution" && name != "contained_entities") {
                        EXPECT_FALSE(isChanged) << name << " by " << byte << " bit " << bit
                                                << " of type " << int((*sample)[3]);
                    }
                }
                const bool isReservedGone = before.count(fmt::format("reserved_{}", byte)) != 0;
                EXPECT_TRUE(changes > 0 || isReservedGone)
                    << byte << " bit " << bit << " of type " << int((*sample)[3]);
            }
        }
    }
}

TEST(SdrRecordFields, AreThoseOfTheRecordClassesAndMore)
{
    const std::pair<const char*, const Bytes*> classes[] = {{"FullSensorRecord", &FULL},
                                                            {"CompactSensorRecord", &COMPACT}};
    for (const auto& [name, record] : classes) {
        const std::map<std::string, DecodedField> ours = byName(*record);
        std::size_t compared = 0;
        for (const RecordClass* const each : recordClasses()) {
            if (each->name != std::string(name)) {
                continue;
            }
            for (const DecodedField& field : decodeRecord(*each, *record)) {
                ASSERT_EQ(ours.count(field.name), 1U) << field.name;
                const DecodedField& same = ours.at(field.name);
                EXPECT_EQ(same.place, field.place) << field.name;
                EXPECT_EQ(same.also, field.also) << field.name;
                EXPECT_EQ(same.value, field.value) << field.name;
                EXPECT_TRUE(field.meaning.empty() || field.meaning == same.meaning) << field.name;
                ++compared;
            }
        }
        EXPECT_EQ(compared, 25U);
    }
}

TEST(DeviceTypes, HaveNames)
{
    EXPECT_EQ(deviceTypeName(0x00), "reserved");
    EXPECT_EQ(deviceTypeName(0x02), "DS1624 temperature sensor");
    EXPECT_EQ(deviceTypeName(0x07), "reserved");
    EXPECT_EQ(deviceTypeName(0x0F), "EEPROM 24C64");
    EXPECT_EQ(deviceTypeName(0x10), "FRU inventory device of a controller");
    EXPECT_EQ(deviceTypeName(0x24), "Maxim 1617 temperature sensor");
    EXPECT_EQ(deviceTypeName(0x25), "reserved");
    EXPECT_EQ(deviceTypeName(0xBE), "reserved");
    EXPECT_EQ(deviceTypeName(0xBF), "other device");
    EXPECT_EQ(deviceTypeName(0xC0), "OEM C0h");
    EXPECT_EQ(deviceTypeName(0xFF), "OEM FFh");
}

TEST(DeviceTypes, ModifiersOfMemoriesSayWhatTheyContain)
{
    EXPECT_EQ(deviceModifierName(0x07, 1), "");
    EXPECT_EQ(deviceModifierName(0x08, 0), "unspecified");
    EXPECT_EQ(deviceModifierName(0x08, 1), "DIMM memory ID");
    EXPECT_EQ(deviceModifierName(0x0F, 2), "IPMI FRU inventory");
    EXPECT_EQ(deviceModifierName(0x0F, 3), "system processor cartridge FRU or PIROM");
    EXPECT_EQ(deviceModifierName(0x0F, 4), "reserved");
    EXPECT_EQ(deviceModifierName(0x0F, 0xFF), "reserved");
    EXPECT_EQ(deviceModifierName(0x10, 0), "IPMI FRU inventory");
    EXPECT_EQ(deviceModifierName(0x10, 1), "DIMM memory ID");
    EXPECT_EQ(deviceModifierName(0x10, 0xFF), "unspecified");
    EXPECT_EQ(deviceModifierName(0x11, 1), "");
}
