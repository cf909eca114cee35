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

/// A field of such an image.
struct FruFileField {
    const FruFile* file;
    const FruAreaImage* area;
    const FruField* field;
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
