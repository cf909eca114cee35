// SPDX-License-Identifier: Apache-2.0
#include "Value.h"

#include <utility>

namespace recordkit::tool {

namespace {

struct ToContent {
    Value::Content operator()(std::vector<long long>& numbers) const
    {
        return List(numbers.begin(), numbers.end());
    }
    template <typename Scalar> Value::Content operator()(Scalar& scalar) const
    {
        return std::move(scalar);
    }
};

}

Value::Value(inspect::Value value) : content(std::visit(ToContent(), value))
{
}

const Value* Value::find(const std::string& key) const
{
    if (const auto* const object = as<Object>()) {
        for (const Member& member : *object) {
            if (member.key == key) {
                return &member.value;
            }
        }
    }
    return nullptr;
}

}
