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

std::string sensorUnits(unsigned char units1, unsigned char base, unsigned char modifier)
{
    const bool isPercentage = get_bit(units1, 0, 1) != 0;
    if (base == 0) {
        return isPercentage ? "%" : "";
    }
    std::string text = (isPercentage ? "% " : "") + sensorUnitName(base);
    constexpr unsigned char DIVIDED = 1;
    constexpr unsigned char MULTIPLIED = 2;
    const unsigned char use = get_bit(units1, 1, 2);
    if (use == DIVIDED || use == MULTIPLIED) {
        text += (use == DIVIDED ? "/" : "*") + sensorUnitName(modifier);
    }
    constexpr const char* RATES[] = {"",         " per us",   " per ms",  " per s",
                                     " per min", " per hour", " per day", ""};
    return text + RATES[get_bit(units1, 3, 3)];
}

std::string sensorUnits(const RecordSensorCommon& record)
{
    return sensorUnits(record.getSensorUnits1(), record.getSensorUnits2(),
                       record.getSensorUnits3());
}

}
