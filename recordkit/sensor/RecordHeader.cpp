// SPDX-License-Identifier: Apache-2.0
#include <recordkit/sensor/RecordHeader.h>

namespace TAVLib::RecordKit {

RecordHeader::~RecordHeader() = default;

}
