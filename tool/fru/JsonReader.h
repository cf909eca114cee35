// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_FRU_JSONREADER_H
#define RECORDKIT_TOOL_FRU_JSONREADER_H

#include <string>
#include <vector>

#include "../Errors.h"
#include "../print/JsonInput.h"

namespace recordkit::tool {

/// A value of a JSON input and where it is. Every function throws DataError, with the path, for a
/// value of another type.
class JsonReader {
public:
    explicit JsonReader(const Value& json, std::string where = "")
        : value(json), path(std::move(where))
    {
    }

    const Value& get() const { return value; }
    const std::string& getPath() const { return path; }
    /// "PATH: VALUE, expected WHAT".
    DataError wrong(const std::string& expected) const;
    /// "PATH: TEXT".
    DataError error(const std::string& text) const;

    /// The members of an object.
    std::vector<JsonReader> members() const;
    /// Of the object, the member of this name; an absent one is null.
    JsonReader member(const std::string& name) const;
    bool has(const std::string& name) const { return value.find(name) != nullptr; }
    /// Refuses an object with other keys.
    void allow(const std::vector<std::string>& keys) const;
    /// The key of a member of an object.
    const std::string& getKey() const { return key; }

    std::vector<JsonReader> elements() const;
    std::string text() const;
    long long number(long long least, long long most) const;
    /// The bytes that a text of hex digits means.
    std::string bytes() const;

private:
    const Value& value;
    std::string path;
    std::string key = {};
};

}

#endif
