// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/sensor/SensorText.h>

#include <recordkit/inspect/bytes/Text.h>
#include <recordkit/inspect/words/SensorUnits.h>
#include <recordkit/serial/BitField.h>

namespace recordkit::inspect {

using TAVLib::get_bit;
using TAVLib::RecordKit::RecordSensorCommon;

std::string sensorName(const RecordSensorCommon& record)
{
    unsigned char bytes[RecordSensorCommon::VARIABLE_FIELD_LENGTH] = {};
    const unsigned int length = record.getIDStringBytes(bytes, sizeof bytes);
    return idStringText(*record.getIDStringStructConst(), {bytes, length});
}

std::string sensorUnits(const RecordSensorCommon& record)
{
    const unsigned char units = record.getSensorUnits1();
    const bool isPercentage = get_bit(units, 0, 1) != 0;
    if (record.getSensorUnits2() == 0) {
        return isPercentage ? "%" : "";
    }
    std::string text = (isPercentage ? "% " : "") + sensorUnitName(record.getSensorUnits2());
    constexpr unsigned char DIVIDED = 1;
    constexpr unsigned char MULTIPLIED = 2;
    const unsigned char modifier = get_bit(units, 1, 2);
    if (modifier == DIVIDED || modifier == MULTIPLIED) {
        text += (modifier == DIVIDED ? "/" : "*") + sensorUnitName(record.getSensorUnits3());
    }
    constexpr const char* RATES[] = {"",         " per us",   " per ms",  " per s",
                                     " per min", " per hour", " per day", ""};
    return text + RATES[get_bit(units, 3, 3)];
}

}
