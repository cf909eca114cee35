// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/sensor/SensorText.h>
#include <recordkit/inspect/words/Entities.h>
#include <recordkit/inspect/words/SensorUnits.h>
#include <recordkit/sensor/CompactSensorRecord.h>
#include <recordkit/sensor/FullSensorRecord.h>

#include "FieldTable.h"

namespace recordkit::tool {

using namespace TAVLib::RecordKit;

namespace {

std::string entityMeaning(const Json& id)
{
    return entityName(id.get<unsigned char>());
}

std::string unitMeaning(const Json& unit)
{
    return sensorUnitName(unit.get<unsigned char>());
}

std::string analogFormatMeaning(const Json& format)
{
    constexpr const char* NAMES[] = {"unsigned", "1's complement", "2's complement", "no analog"};
    return NAMES[format.get<unsigned int>() & 3];
}

// clang-format off
template <typename Record>
Rows<Record> sensorRecord(unsigned int hysteresis, unsigned int idString)
{
    using R = Record;
    return {
        field<R>("record_id", {0, 2}, &R::getRecordID, hexMeaning),
        field<R>("record_type", {3, 1}, &R::getRecordType),
        field<R>("record_length", {4, 1}, &R::getRecordLength),
        field<R>("sensor_owner_id", {5, 1}, &R::getSensorOwnerID, hexMeaning),
        field<R>("channel_number", {6, 1, "7..4"}, &R::getChannelNumber),
        field<R>("sensor_owner_lun", {6, 1, "1..0"}, &R::getSensorOwnerLUN),
        field<R>("sensor_number", {7, 1}, &R::getSensorNumber, hexMeaning),
        field<R>("entity_id", {8, 1}, &R::getEntityID, entityMeaning),
        field<R>("entity_instance", {9, 1}, &R::getEntityInstance),
        field<R>("sensor_initialization", {10, 1}, &R::getSensorInitialization, hexMeaning),
        field<R>("sensor_capabilities", {11, 1}, &R::getSensorCapabilities, hexMeaning),
        field<R>("sensor_type", {12, 1}, &R::getSensorType, sensorTypeMeaning),
        field<R>("event_type", {13, 1}, &R::getEvtReadTypeCode, eventTypeMeaning),
        field<R>("assertion_mask", {14, 2}, &R::getAssertEventMask, hexMeaning),
        field<R>("deassertion_mask", {16, 2}, &R::getDeassertEventMask, hexMeaning),
        field<R>("reading_mask", {18, 2}, &R::getDiscreteReadMask, hexMeaning),
        field<R>("units_1", {20, 1}, &R::getSensorUnits1, hexMeaning),
        field<R>("analog_data_format", {20, 1, "7..6"}, &R::getAnalogDataFormat, analogFormatMeaning),
        field<R>("base_unit", {21, 1}, &R::getSensorUnits2, unitMeaning),
        field<R>("modifier_unit", {22, 1}, &R::getSensorUnits3, unitMeaning),
        field<R>("positive_hysteresis", {hysteresis, 1}, &R::getPositiveGoingThresholdHyst),
        field<R>("negative_hysteresis", {hysteresis + 1, 1}, &R::getNegativeGoingThresholdHyst),
        field<R>("id_string_type", {idString, 1, "7..6"}, &R::getIDStringType),
        field<R>("id_string_length", {idString, 1, "4..0"}, &R::getIDStringLength),
        field<R>("id_string", {idString + 1, 16}, [](R& record) { return Json(sensorName(record)); }),
    };
}
// clang-format on

}

std::vector<RecordClass> sensorClasses()
{
    return {
        describe("FullSensorRecord", "48 to 64", "full sensor data record",
                 sensorRecord<FullSensorRecord>(42, 47)),
        describe("CompactSensorRecord", "32 to 48", "compact sensor data record",
                 sensorRecord<CompactSensorRecord>(25, 31)),
    };
}

}
