// SPDX-License-Identifier: Apache-2.0
#include <recordkit/inspect/fru/MultiRecords.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <fmt/format.h>
#include <map>
#include <optional>

#include <recordkit/inspect/fru/MultiRecordReader.h>

namespace recordkit::inspect {

namespace {

constexpr unsigned char FIRST_OEM_TYPE = 0xC0;
constexpr MultiRecordRow OEM[] = {number("manufacturer", 0, 3)};

MultiRecord decode(const MultiRecordData& data)
{
    MultiRecordReader reader(data);
    if (readStandardRecord(reader) || readVitaRecord(reader) || readPicmgRecord(reader)) {
        return reader.finish();
    }
    reader.call("other");
    if (data.type >= FIRST_OEM_TYPE) {
        reader.call("oem");
        reader.read(OEM);
    }
    reader.readBytes("data");
    return reader.finish();
}

/// The names that VITA 57.1 gives to output numbers.
constexpr std::array<const char*, 12> VITA_OUTPUTS = {
    "P1 VADJ", "P1 3P3V", "P1 12P0V", "P1 VIO_B_M2C", "P1 VREF_A_M2C", "P1 VREF_B_M2C",
    "P2 VADJ", "P2 3P3V", "P2 12P0V", "P2 VIO_B_M2C", "P2 VREF_A_M2C", "P2 VREF_B_M2C",
};

bool isOutput(const std::string& kind)
{
    return kind == "dc-output" || kind == "extended-dc-output";
}

bool isLoad(const std::string& kind)
{
    return kind == "dc-load" || kind == "extended-dc-load";
}

void nameOutputs(std::vector<MultiRecord>& records)
{
    for (MultiRecord& record : records) {
        if (!isOutput(record.name) && !isLoad(record.name)) {
            continue;
        }
        for (MultiRecordField& field : record.fields) {
            const auto* const output = std::get_if<long long>(&field.value);
            if (field.name == "output" && output != nullptr &&
                *output < static_cast<long long>(VITA_OUTPUTS.size())) {
                field.text = VITA_OUTPUTS[static_cast<std::size_t>(*output)];
            }
        }
    }
}

std::optional<long long> numberIn(const MultiRecord& record, const char* name)
{
    const MultiRecordField* const field = record.findField(name);
    if (field == nullptr || !std::holds_alternative<long long>(field->value)) {
        return {};
    }
    return std::get<long long>(field->value);
}

/// In mW, whatever the sign of the voltage.
std::optional<long long> powerOf(const MultiRecord& record)
{
    const MultiRecordField* const voltage = record.findField("nominal-voltage");
    const auto current = numberIn(record, "max-current");
    if (voltage == nullptr || !current) {
        return {};
    }
    const auto hundredths =
        static_cast<long long>(std::llround(std::fabs(std::get<double>(voltage->value)) * 100));
    return hundredths * *current / 100;
}

struct Currents {
    std::optional<long long> load;
    std::optional<long long> supply;
};

void addTo(std::optional<long long>& sum, long long value)
{
    sum = sum.value_or(0) + value;
}

}

const MultiRecordField* MultiRecord::findField(const std::string& fieldName) const
{
    const auto found =
        std::find_if(fields.begin(), fields.end(),
                     [&fieldName](const MultiRecordField& each) { return each.name == fieldName; });
    return found == fields.end() ? nullptr : &*found;
}

std::string kindOf(const MultiRecord& record)
{
    return record.name.substr(0, record.name.find_last_not_of("0123456789") + 1);
}

std::vector<MultiRecord> decodeMultiRecords(const std::vector<MultiRecordData>& records)
{
    std::vector<MultiRecord> all;
    bool isVita = false;
    for (const MultiRecordData& data : records) {
        all.push_back(decode(data));
        const std::string& kind = all.back().name;
        isVita = isVita || kind == "fmc" || kind == "fmc-i2c" || kind == "vita";
    }
    if (isVita) {
        nameOutputs(all);
    }
    std::map<std::string, unsigned int> numbers;
    for (MultiRecord& record : all) {
        record.name += std::to_string(++numbers[record.name]);
    }
    return all;
}

std::vector<std::string> compareLoadAndSupply(const std::vector<MultiRecord>& records)
{
    std::map<long long, Currents> outputs;
    std::optional<long long> power;
    std::optional<long long> capacity;
    for (const MultiRecord& record : records) {
        const std::string kind = kindOf(record);
        const auto output = numberIn(record, "output");
        const auto current = numberIn(record, "max-current");
        if (output && current && isLoad(kind)) {
            addTo(outputs[*output].load, *current);
        }
        if (output && current && isOutput(kind)) {
            addTo(outputs[*output].supply, *current);
        }
        if (const auto taken = powerOf(record); taken && isLoad(kind)) {
            addTo(power, *taken);
        }
        if (const auto watts = numberIn(record, "capacity")) {
            addTo(capacity, *watts);
        }
    }
    std::vector<std::string> notes;
    for (const auto& [output, currents] : outputs) {
        if (currents.load && currents.supply && *currents.load > *currents.supply) {
            notes.push_back(fmt::format(
                "sums of load and supply: loads of output {} take up to {} mA, it supplies {} mA",
                output, *currents.load, *currents.supply));
        }
    }
    if (power && capacity && *power > *capacity * 1000) {
        notes.push_back(fmt::format(
            "sums of load and supply: loads take up to {}.{:03} W, the capacity is {} W",
            *power / 1000, *power % 1000, *capacity));
    }
    return notes;
}

}
