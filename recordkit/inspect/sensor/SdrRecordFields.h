// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_SENSOR_SDRRECORDFIELDS_H
#define RECORDKIT_INSPECT_SENSOR_SDRRECORDFIELDS_H

#include <string>
#include <vector>

#include <recordkit/inspect/fields/RecordClass.h>
#include <recordkit/inspect/sensor/SdrFile.h>

namespace recordkit::inspect {

/// Everything that a record says.
struct SdrDescription {
    /// In the order of the bytes. A place without bytes is that of a value that others decide, such
    /// as units, resolution and contained_entities.
    DecodedFields fields;
    std::vector<std::string> problems; ///< with the record's id and its offset
};

/// Describes a record of any type (IPMI v2.0, section 43). Names of fields are stable; readings
/// also say what they are in the sensor's units, where these can be converted. No byte is hidden:
/// what no field covers is reserved_N, with the offset, as hex digits, or as a number where it is
/// some bits that are not 0; more_bytes after the fields, oem_data in OEM records, data in records
/// of other types. Fields that a record is too short for are left out, with a problem.
SdrDescription describeRecord(const SdrRecord& record);

}

#endif
