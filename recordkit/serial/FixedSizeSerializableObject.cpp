// SPDX-License-Identifier: Apache-2.0
#include <recordkit/serial/FixedSizeSerializableObject.h>

namespace TAVLib {

FixedSizeSerializableObject::~FixedSizeSerializableObject() = default;

}
