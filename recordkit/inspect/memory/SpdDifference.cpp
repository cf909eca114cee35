// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/memory/SpdDifference.h>

#include <algorithm>
#include <utility>

#include <fmt/format.h>

#include <recordkit/inspect/bytes/Hex.h>
#include <recordkit/inspect/memory/Spd.h>

namespace recordkit::inspect {

namespace {

struct Field {
    const char* key;
    Value value;
};

/// Null for a number that a reserved code does not give.
Value known(unsigned int number)
{
    return number == 0 ? Value() : Value(static_cast<long long>(number));
}

Value valueIf(bool isThere, unsigned int number)
{
    return isThere ? Value(static_cast<long long>(number)) : Value();
}

std::vector<Field> fieldsOf(const Spd& spd)
{
    const auto textIf = [&spd](std::string text) {
        return spd.hasManufacturerData ? Value(std::move(text)) : Value();
    };
    const SpdCrc module = spd.moduleCrc.value_or(SpdCrc());
    std::vector<Field> fields = {
        {"capacity_mb", known(spd.megabytes)},
        {"module_type", spd.moduleType},
        {"ranks", known(spd.ranks)},
        {"device_width", known(spd.deviceWidth)},
        {"bus_width", known(spd.busWidth)},
        {"ecc_width", static_cast<long long>(spd.eccWidth)},
        {"density_mbit", known(spd.densityMegabits)},
        {"serial_number", textIf(fmt::format("{:08X}", spd.serialNumber))},
        {"part_number", textIf(spd.partNumber)},
        {"rank_field", valueIf(spd.hasCodes, spd.rankField)},
        {"dimm_size_code", valueIf(spd.hasCodes, spd.dimmSize)},
        {"dram_size_code", valueIf(spd.hasCodes, spd.dramSize)},
        {"crc_stored", static_cast<long long>(spd.storedCrc)},
        {"crc_right", spd.isCrcRight()},
        {"module_crc_stored", valueIf(spd.moduleCrc.has_value(), module.stored)},
        {"module_crc_right", spd.moduleCrc ? Value(module.isRight()) : Value()},
    };
    for (std::size_t i = 0; i < spd.facts.size(); ++i) {
        fields.push_back({spdFactKey(static_cast<SpdFact>(i)), spd.facts[i]});
    }
    return fields;
}

/// Every run of bytes that differ, then the sizes.
std::vector<SpdDifference> compareBytes(ByteView first, ByteView second)
{
    std::vector<SpdDifference> differences;
    const std::size_t common = std::min(first.size(), second.size());
    for (std::size_t at = 0; at < common; ++at) {
        std::size_t end = at;
        while (end < common && first[end] != second[end]) {
            ++end;
        }
        if (end == at) {
            continue;
        }
        differences.push_back({end - at == 1 ? fmt::format("byte {}", at)
                                             : fmt::format("bytes {} to {}", at, end - 1),
                               toHex(first.part(at, end - at)), toHex(second.part(at, end - at))});
        at = end;
    }
    if (first.size() != second.size()) {
        differences.push_back(
            {"size", static_cast<long long>(first.size()), static_cast<long long>(second.size())});
    }
    return differences;
}

}

std::vector<SpdDifference> compareSpdImages(ByteView first, ByteView second)
{
    const std::vector<Field> ours = fieldsOf(parseSpd(first));
    const std::vector<Field> theirs = fieldsOf(parseSpd(second));
    std::vector<SpdDifference> differences;
    for (std::size_t i = 0; i < ours.size(); ++i) {
        if (ours[i].value != theirs[i].value) {
            differences.push_back({ours[i].key, ours[i].value, theirs[i].value});
        }
    }
    return differences.empty() ? compareBytes(first, second) : differences;
}

}
