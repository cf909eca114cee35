// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_FIELDS_VALUE_H
#define RECORDKIT_INSPECT_FIELDS_VALUE_H

#include <string>
#include <variant>
#include <vector>

namespace recordkit::inspect {

/// The value of a field: none, yes or no, a number, a text in UTF-8, a list of numbers, or a number
/// with a fraction.
using Value =
    std::variant<std::monostate, bool, long long, std::string, std::vector<long long>, double>;

inline bool isNone(const Value& value)
{
    return std::holds_alternative<std::monostate>(value);
}

/// The number in a value that has one.
inline unsigned int numberOf(const Value& value)
{
    return static_cast<unsigned int>(std::get<long long>(value));
}

}

#endif
