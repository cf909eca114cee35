// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_PRINT_VALUEJSON_H
#define RECORDKIT_TOOL_PRINT_VALUEJSON_H

#include <recordkit/inspect/fields/Value.h>

#include "Json.h"

namespace recordkit::tool {

/// The value of a field as JSON; null if there is none.
Json toJson(const inspect::Value& value);

}

#endif
