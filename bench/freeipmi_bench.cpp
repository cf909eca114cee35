// SPDX-License-Identifier: Apache-2.0
// What libfreeipmi needs for the same record, and for the same FRU image.
#include <benchmark/benchmark.h>
#include <cstdint>
#include <freeipmi/freeipmi.h>

#include "FruImages.h"
#include "Scratch.h"
#include "SensorImage.h"

namespace {

constexpr const char* FORMAT = "%i | %d | %t | %s | %e";

void ParseToStringByFreeIPMI(benchmark::State& state)
{
    const bench::Bytes& record = bench::record();
    const ipmi_sel_ctx_t context = ipmi_sel_ctx_create(nullptr, nullptr);
    char text[512];
    for (auto _ : state) {
        if (ipmi_sel_parse_read_record_string(context, FORMAT, record.data(),
                                              static_cast<unsigned int>(record.size()), text,
                                              sizeof text, 0) <= 0) {
            state.SkipWithError("not parsed");
            break;
        }
        benchmark::DoNotOptimize(text);
    }
    ipmi_sel_ctx_destroy(context);
}

void InterpretByFreeIPMI(benchmark::State& state)
{
    const bench::Bytes& record = bench::record();
    const ipmi_interpret_ctx_t context = ipmi_interpret_ctx_create();
    ipmi_interpret_load_sel_config(context, nullptr);
    unsigned int severity = 0;
    for (auto _ : state) {
        if (ipmi_interpret_sel(context, record.data(), static_cast<unsigned int>(record.size()),
                               &severity) < 0) {
            state.SkipWithError("not interpreted");
            break;
        }
        benchmark::DoNotOptimize(severity);
    }
    ipmi_interpret_ctx_destroy(context);
}

/// Opens an image in memory, walks all its areas and reads the board's serial number as text.
void ReadFruByFreeIPMI(benchmark::State& state, const std::vector<unsigned char>& image)
{
    const ipmi_fru_ctx_t context = ipmi_fru_ctx_create(nullptr);
    for (auto _ : state) {
        bool hasSerial = ipmi_fru_open_device_id_with_buffer(
                             context, image.data(), static_cast<unsigned int>(image.size())) == 0;
        bool isText = false;
        do {
            unsigned int type = 0;
            unsigned int length = 0;
            unsigned char area[2048];
            if (!hasSerial ||
                ipmi_fru_read_data_area(context, &type, &length, area, sizeof area) < 0) {
                break;
            }
            if (type == IPMI_FRU_AREA_TYPE_BOARD_INFO_AREA) {
                std::uint8_t language = 0;
                std::uint32_t date = 0;
                ipmi_fru_field_t fields[5] = {};
                ipmi_fru_field_t custom[4] = {};
                ipmi_fru_board_info_area(context, area, length, &language, &date, &fields[0],
                                         &fields[1], &fields[2], &fields[3], &fields[4], custom, 4);
                char text[128];
                unsigned int size = sizeof text;
                isText = ipmi_fru_type_length_field_to_string(context, fields[2].type_length_field,
                                                              fields[2].type_length_field_length,
                                                              language, text, &size) == 0;
                benchmark::DoNotOptimize(text);
            }
        } while (ipmi_fru_next(context) == 1);
        ipmi_fru_close_device_id(context);
        if (!isText) {
            state.SkipWithError("not read");
            break;
        }
    }
    ipmi_fru_ctx_destroy(context);
}

/// Id and type, owner and number, entity, sensor type, event/reading type, hysteresis, name.
void ParseSensorByFreeIPMI(benchmark::State& state)
{
    const std::vector<unsigned char>& record = bench::fullSensorRecord();
    const auto size = static_cast<unsigned int>(record.size());
    const ipmi_sdr_ctx_t context = ipmi_sdr_ctx_create();
    for (auto _ : state) {
        std::uint16_t id = 0;
        std::uint8_t bytes[8] = {};
        char name[64];
        bool isRead =
            ipmi_sdr_parse_record_id_and_type(context, record.data(), size, &id, bytes) == 0;
        isRead = isRead && ipmi_sdr_parse_sensor_owner_id(context, record.data(), size, bytes,
                                                          bytes + 1) == 0;
        isRead =
            isRead && ipmi_sdr_parse_sensor_number(context, record.data(), size, bytes + 2) == 0;
        isRead = isRead && ipmi_sdr_parse_entity_id_instance_type(context, record.data(), size,
                                                                  bytes, bytes + 3, bytes + 4) == 0;
        isRead = isRead && ipmi_sdr_parse_sensor_type(context, record.data(), size, bytes) == 0;
        isRead = isRead &&
                 ipmi_sdr_parse_event_reading_type_code(context, record.data(), size, bytes) == 0;
        isRead = isRead &&
                 ipmi_sdr_parse_id_string(context, record.data(), size, name, sizeof name) >= 0;
        if (!isRead) {
            state.SkipWithError(ipmi_sdr_ctx_errormsg(context));
            break;
        }
        benchmark::DoNotOptimize(bytes);
        benchmark::DoNotOptimize(name);
    }
    ipmi_sdr_ctx_destroy(context);
}

}

BENCHMARK(ParseSensorByFreeIPMI);
BENCHMARK(ParseToStringByFreeIPMI);
BENCHMARK(InterpretByFreeIPMI);
BENCHMARK_CAPTURE(ReadFruByFreeIPMI, 256, bench::smallFru());
