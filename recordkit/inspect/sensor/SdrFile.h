// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_SENSOR_SDRFILE_H
#define RECORDKIT_INSPECT_SENSOR_SDRFILE_H

#include <string>
#include <vector>

#include <recordkit/inspect/bytes/ByteView.h>

namespace recordkit::inspect {

/// How records are stored in a file.
enum class SdrFormat {
    AUTO,
    DUMP,      ///< back to back, as `ipmitool sdr dump` saves them
    RESPONSES, ///< each after the id of the next one, as Get SDR answers
};

/// Record types (IPMI v2.0, section 43).
enum SdrType : unsigned char {
    SDR_FULL = 0x01,
    SDR_COMPACT = 0x02,
    SDR_EVENT_ONLY = 0x03,
    SDR_ASSOCIATION = 0x08,
    SDR_RELATIVE_ASSOCIATION = 0x09,
    SDR_DEVICE_LOCATOR = 0x10,
    SDR_FRU_LOCATOR = 0x11,
    SDR_CONTROLLER_LOCATOR = 0x12,
    SDR_CONTROLLER_CONFIRMATION = 0x13,
    SDR_CHANNEL_INFO = 0x14,
    SDR_OEM = 0xC0,
};

/// A record with its header, and where it begins in the file.
struct SdrRecord {
    std::size_t offset = 0;
    Bytes bytes;

    unsigned int id() const { return ByteView(bytes).le16(0); }
    unsigned char type() const { return bytes[3]; }
};

/// A repository of sensor data records, walked from one record to the next by their length bytes.
struct SdrFile {
    std::vector<SdrRecord> records;
    std::vector<std::string> problems; ///< with their offsets; records may follow them
};

/// Nothing in the content is trusted; every step advances.
SdrFile parseSdrFile(ByteView content, SdrFormat format = SdrFormat::AUTO);

/// Whether a type is one of SdrType.
bool isKnownSdrType(unsigned char type);

/// "full", "compact", "event-only", ...; "OEM" and "type 2Ah" for those without a name.
std::string sdrTypeName(unsigned char type);

}

#endif
