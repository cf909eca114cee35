// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_SPD_SPDJSON_H
#define RECORDKIT_TOOL_SPD_SPDJSON_H

#include <recordkit/inspect/memory/Spd.h>

#include "../Errors.h"
#include "../print/Json.h"

namespace recordkit::tool {

/// A module as JSON with stable names.
Json toJson(const inspect::Spd& spd);

}

#endif
