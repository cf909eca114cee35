// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_FRU_FRUVALUES_H
#define RECORDKIT_TOOL_FRU_FRUVALUES_H

#include <optional>
#include <string>

#include <recordkit/inspect/fru/FruImage.h>

#include "../Errors.h"
#include "../print/Listing.h"

namespace recordkit::tool {

/// A FRU image and the file that contains it.
struct FruFile {
    std::string path;
    std::string bytes;
    FruImage image;
};

/// A field's value as a person sees it: a date in the future with its other reading.
std::string shownValue(const FruField& field);

/// The bytes of a multirecord's field.
std::string rawBytes(const FruMultiRecord& record, const MultiRecordField& field);

/// "3" or "11..6"; empty for whole bytes.
std::string bitsText(const MultiRecordField& field);

/// A line for a note on an image.
std::string noteLine(const std::string& path, const std::string& note);

/// A field of such an image, of an area or of a multirecord.
struct FruFileField {
    std::string file;
    std::string area;
    std::string name;
    unsigned int offset;
    std::string type;
    std::string bytes;
    Value value;
    std::string unit;
};

/// Writes images for programs: as JSON an object each, as CSV a line for each field.
class FruWriter {
public:
    explicit FruWriter(const Layout& layout);

    void add(const FruFile& file);
    void finish();

private:
    std::optional<Listing<FruFileField>> fields; ///< of CSV
    std::optional<Listing<FruFile>> images;      ///< of JSON
};

}

#endif
