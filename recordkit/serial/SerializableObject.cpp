// SPDX-License-Identifier: Apache-2.0
#include <recordkit/serial/SerializableObject.h>

namespace TAVLib {

SerializableObject::~SerializableObject() = default;

}
