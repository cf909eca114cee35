// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_BYTES_ERROR_H
#define RECORDKIT_INSPECT_BYTES_ERROR_H

#include <optional>
#include <stdexcept>

namespace recordkit::inspect {

/// An error that a person can act on.
class Error : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Invalid bytes: damaged, of another kind, or without room for a change. The text names the place
/// and what was expected there.
class DataError : public Error {
public:
    using Error::Error;
};

/// A request that makes no sense: a field that no area has.
class RequestError : public Error {
public:
    using Error::Error;
};

/// Returns the value; throws the error if there is none.
template <typename Value, typename Failure>
Value orThrow(const std::optional<Value>& value, const Failure& failure)
{
    if (!value) {
        throw failure;
    }
    return *value;
}

}

#endif
