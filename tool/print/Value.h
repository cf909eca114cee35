// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_PRINT_VALUE_H
#define RECORDKIT_TOOL_PRINT_VALUE_H

#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include <recordkit/inspect/fields/Value.h>

#include "Output.h"

namespace recordkit::tool {

class Value;
struct Member;
using List = std::vector<Value>;
/// Members in the order in which they are written.
using Object = std::vector<Member>;

/// What an answer consists of: null, true or false, a number, a UTF-8 text, a list or an object.
class Value {
public:
    using Content =
        std::variant<std::monostate, bool, long long, double, std::string, List, Object>;

    Value() = default;
    template <typename Number, std::enable_if_t<std::is_integral_v<Number>, int> = 0>
    Value(Number number)
    {
        if constexpr (std::is_same_v<Number, bool>) {
            content = number;
        } else {
            content = static_cast<long long>(number);
        }
    }
    Value(double number) : content(number) {}
    Value(const char* text) : content(std::string(text)) {}
    Value(std::string text) : content(asShown(std::move(text))) {}
    Value(List list) : content(std::move(list)) {}
    Value(Object object) : content(std::move(object)) {}
    Value(inspect::Value value); ///< of a field of a record
    Value(const std::vector<std::string>& texts) : content(List(texts.begin(), texts.end())) {}
    Value(const std::vector<unsigned int>& numbers) : content(List(numbers.begin(), numbers.end()))
    {
    }

    const Content& get() const { return content; }
    bool isNull() const { return std::holds_alternative<std::monostate>(content); }

    /// The content if it is of this type, otherwise nullptr.
    template <typename Type> const Type* as() const { return std::get_if<Type>(&content); }

    /// A member of an object; nullptr if there is none.
    const Value* find(const std::string& key) const;

private:
    Content content;
};

struct Member {
    std::string key;
    Value value;
};

/// The value, or null if there is none.
template <typename Content> Value valueIf(bool exists, Content&& content)
{
    return exists ? Value(std::forward<Content>(content)) : Value();
}

/// Null for an empty text.
inline Value textOrNull(std::string text)
{
    return text.empty() ? Value() : Value(std::move(text));
}

/// Converts each element of a container.
template <typename Container, typename Convert>
List listOf(const Container& container, const Convert& convert)
{
    List list;
    for (const auto& each : container) {
        list.push_back(convert(each));
    }
    return list;
}

}

#endif
