// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/fields/Registry.h>
#include <recordkit/inspect/words/Entities.h>
#include <recordkit/inspect/words/SensorUnits.h>
#include <recordkit/sensor/CompactSensorRecord.h>
#include <recordkit/sensor/FullSensorRecord.h>

#include "Accessors.h"

namespace recordkit::inspect {

using namespace TAVLib::RecordKit;

namespace {

using R = RecordSensorCommon;
using Header = RecordHeader;

std::string asEntity(const Value& id)
{
    return entityName(static_cast<unsigned char>(numberOf(id)));
}

std::string asUnit(const Value& unit)
{
    return sensorUnitName(static_cast<unsigned char>(numberOf(unit)));
}

std::string asAnalogFormat(const Value& format)
{
    constexpr const char* NAMES[] = {"unsigned", "1's complement", "2's complement", "no analog"};
    return NAMES[numberOf(format) & 3];
}

Value idString(const Record& record, const Spot&)
{
    const R& sensor = objectOf<R>(record);
    unsigned char bytes[R::VARIABLE_FIELD_LENGTH] = {};
    const unsigned int length = sensor.getIDStringBytes(bytes, sizeof bytes);
    return idStringText(*sensor.getIDStringStructConst(), {bytes, length});
}

// clang-format off
constexpr Field COMMON[] = {
    {"record_id", bytesAt(Header::RECORD_ID, 2), ask<&R::getRecordID>, asHex},
    {"record_type", bytesAt(Header::RECORD_TYPE), ask<&R::getRecordType>},
    {"record_length", bytesAt(Header::RECORD_LENGTH), ask<&R::getRecordLength>},
    {"sensor_owner_id", bytesAt(R::OWNER_ID), ask<&R::getSensorOwnerID>, asHex},
    {"channel_number", bitsAt(R::OWNER_LUN, 7, 4), ask<&R::getChannelNumber>},
    {"sensor_owner_lun", bitsAt(R::OWNER_LUN, 1, 0), ask<&R::getSensorOwnerLUN>},
    {"sensor_number", bytesAt(R::SENSOR_NUMBER), ask<&R::getSensorNumber>, asHex},
    {"entity_id", bytesAt(R::ENTITY_ID), ask<&R::getEntityID>, asEntity},
    {"entity_instance", bytesAt(R::ENTITY_INSTANCE), ask<&R::getEntityInstance>},
    {"sensor_initialization", bytesAt(R::INITIALIZATION), ask<&R::getSensorInitialization>, asHex},
    {"sensor_capabilities", bytesAt(R::CAPABILITIES), ask<&R::getSensorCapabilities>, asHex},
    {"sensor_type", bytesAt(R::SENSOR_TYPE), ask<&R::getSensorType>, asSensorType},
    {"event_type", bytesAt(R::EVENT_TYPE), ask<&R::getEvtReadTypeCode>, asEventType},
    {"assertion_mask", bytesAt(R::ASSERTION_MASK, 2), ask<&R::getAssertEventMask>, asHex},
    {"deassertion_mask", bytesAt(R::DEASSERTION_MASK, 2), ask<&R::getDeassertEventMask>, asHex},
    {"reading_mask", bytesAt(R::READING_MASK, 2), ask<&R::getDiscreteReadMask>, asHex},
    {"units_1", bytesAt(R::UNITS_1), ask<&R::getSensorUnits1>, asHex},
    {"analog_data_format", bitsAt(R::UNITS_1, 7, 6), ask<&R::getAnalogDataFormat>, asAnalogFormat},
    {"base_unit", bytesAt(R::UNITS_2), ask<&R::getSensorUnits2>, asUnit},
    {"modifier_unit", bytesAt(R::UNITS_3), ask<&R::getSensorUnits3>, asUnit},
};

template <typename Sensor> constexpr Field SENSOR[] = {
    {"positive_hysteresis", bytesAt(Sensor::POSITIVE_HYST), ask<&R::getPositiveGoingThresholdHyst>},
    {"negative_hysteresis", bytesAt(Sensor::NEGATIVE_HYST), ask<&R::getNegativeGoingThresholdHyst>},
    {"id_string_type", bitsAt(Sensor::ID_STRING, 7, 6), ask<&R::getIDStringType>},
    {"id_string_length", bitsAt(Sensor::ID_STRING, 4, 0), ask<&R::getIDStringLength>},
    Field{"id_string", bytesAt(Sensor::FIXED_SIZE, R::VARIABLE_FIELD_LENGTH), idString}.cut()
        .with(bitsAt(Sensor::ID_STRING, 7, 6)).with(bitsAt(Sensor::ID_STRING, 4, 0)),
};

constexpr RecordClass CLASSES[] = {
    describe<FullSensorRecord>("FullSensorRecord", {48, 79}, "full sensor data record", COMMON, SENSOR<FullSensorRecord>),
    describe<CompactSensorRecord>("CompactSensorRecord", {32, 63}, "compact sensor data record", COMMON, SENSOR<CompactSensorRecord>),
};
// clang-format on

}

constexpr RecordClasses SENSOR_CLASSES = CLASSES;

}
