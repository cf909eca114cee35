// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_VERSION_DEVICEID_H
#define RECORDKIT_VERSION_DEVICEID_H

#include <string>

#include <recordkit/version/DeviceIDResponse.h>

namespace TAVLib::RecordKit {

/// Version of a device that answers Get Device ID.
///
/// | byte | width | meaning             |
/// |------|-------|---------------------|
/// | 0    |       | as DeviceIDResponse |
class RECORDKIT_API DeviceID : public DeviceIDResponse {
public:
    /// "1.05"; "-" and a trace line (module 83, location 0x1200, level 0, "Major Version and Minor
    /// Version is zero.") when both numbers are 0.
    std::string getVersionString() const;
};

}

#endif
