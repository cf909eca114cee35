// SPDX-License-Identifier: Apache-2.0
#include "EventJson.h"

#include <recordkit/inspect/event/EventFields.h>

#include "../print/ValueJson.h"

namespace recordkit::tool {

Json toJson(const Event& event)
{
    Json json;
    for (const EventField& field : EventFields()) {
        json[field.name] = toJson(field.get(event));
    }
    return json;
}

}
