// SPDX-License-Identifier: Apache-2.0
#include "Accessors.h"

#include <algorithm>
#include <fmt/format.h>

#include <recordkit/inspect/bytes/Hex.h>
#include <recordkit/inspect/words/EventTypes.h>
#include <recordkit/inspect/words/SensorTypes.h>

namespace recordkit::inspect {

namespace {

bool isPresent(const Record& record, const Spot& spot)
{
    return record.image.contains(spot.place.offset, spot.place.width);
}

ByteView bytesOf(const Record& record, const Spot& spot)
{
    return record.image.part(spot.place.offset, spot.place.width);
}

}

Value number(const Record& record, const Spot& spot)
{
    if (!isPresent(record, spot)) {
        return {};
    }
    unsigned int value = 0;
    for (unsigned int i = spot.place.width; i > 0; --i) {
        value = value << 8 | record.image[spot.place.offset + i - 1];
    }
    const Place& place = spot.place;
    return toValue(place.isBits() ? value >> place.low & ((2U << (place.high - place.low)) - 1U)
                                  : value);
}

Value flag(const Record& record, const Spot& spot)
{
    const Value value = number(record, spot);
    return isNone(value) ? value : Value(numberOf(value) != 0);
}

Value hexDigits(const Record& record, const Spot& spot)
{
    return isPresent(record, spot) ? Value(toHex(bytesOf(record, spot))) : Value();
}

Value text(const Record& record, const Spot& spot)
{
    if (!isPresent(record, spot)) {
        return {};
    }
    const ByteView bytes = bytesOf(record, spot);
    return toValue(std::string(bytes.begin(), std::find(bytes.begin(), bytes.end(), 0)));
}

std::string asHex(const Value& value)
{
    return fmt::format("{:X}h", numberOf(value));
}

std::string asSensorType(const Value& value)
{
    return sensorTypeName(static_cast<unsigned char>(numberOf(value)));
}

std::string asEventType(const Value& value)
{
    return eventTypeName(static_cast<unsigned char>(numberOf(value)));
}

}
