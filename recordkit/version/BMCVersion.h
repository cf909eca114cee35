// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_VERSION_BMCVERSION_H
#define RECORDKIT_VERSION_BMCVERSION_H

#include <string>

#include <recordkit/version/DeviceIDResponse.h>

namespace TAVLib::RecordKit {

/// Version of a board's management controller.
///
/// | byte | width | meaning             |
/// |------|-------|---------------------|
/// | 0    |       | as DeviceIDResponse |
class RECORDKIT_API BMCVersion : public DeviceIDResponse {
public:
    /// "1.05"; "-" when both numbers are 0.
    std::string getVersionString() const;
};

}

#endif
