// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_DECODE_RECORDCLASS_H
#define RECORDKIT_TOOL_DECODE_RECORDCLASS_H

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <recordkit/serial/SerializableObject.h>

#include "../print/Json.h"

namespace recordkit::tool {

using Image = std::vector<unsigned char>;

/// The place of a field in an image.
struct Place {
    unsigned int offset = 0;
    unsigned int width = 0; ///< bytes; 0 for a field that is not in the image itself
    const char* bits = "";  ///< such as "3" or "7..6", if not whole bytes
};

struct DecodedField {
    std::string name;
    Place place;
    Json value;          ///< null for a field that this record does not carry
    std::string meaning; ///< empty if there is nothing to add
};
using DecodedFields = std::vector<DecodedField>;

/// A class of the library that contains an image, as the decode command sees it.
struct RecordClass {
    const char* name;
    const char* sizes; ///< of its images, such as "12" or "2 to 14"
    const char* description;
    /// An object without contents; nullptr for the classes of FRU images, which read a device.
    std::function<std::unique_ptr<TAVLib::SerializableObject>()> create;
    /// Every field of an image. Throws CommandError (data) for one that the class refuses.
    std::function<DecodedFields(const Image&)> decode;
};

/// All of them, by subsystem.
const std::vector<RecordClass>& recordClasses();

/// The class with that name, in any case; nullptr if there is none.
const RecordClass* findRecordClass(const std::string& name);

}

#endif
