// SPDX-License-Identifier: Apache-2.0
#include "ValueJson.h"

namespace recordkit::tool {

namespace {

Json jsonOf(std::monostate)
{
    return nullptr;
}

template <typename Known> Json jsonOf(const Known& known)
{
    return known;
}

}

Json toJson(const inspect::Value& value)
{
    return std::visit([](const auto& known) { return jsonOf(known); }, value);
}

}
