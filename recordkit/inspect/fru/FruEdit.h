// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_INSPECT_FRU_FRUEDIT_H
#define RECORDKIT_INSPECT_FRU_FRUEDIT_H

#include <optional>
#include <string>
#include <vector>

#include <recordkit/inspect/bytes/Text.h>

namespace recordkit::inspect {

/// A new value for a field of a FRU image: a name such as "board.serial" or
/// "dc-output2.max-current", and UTF-8. The name "internal" is the internal use area, whose value
/// is its bytes.
struct FruEdit {
    std::string field;
    std::string value;
};

/// Reads "board.serial=X". Throws RequestError.
FruEdit parseFruEdit(const std::string& text);

struct FruEditOptions {
    bool mayGrow = false;
    bool repairsChecksums = false;
    std::optional<Coding> coding = {}; ///< of texts; otherwise as replaceFruText chooses
    unsigned int now = 0;              ///< seconds since 1970: what the date "now" means
};

struct FruChange {
    std::string field;
    std::optional<std::string> before; ///< none for a part that was added
    std::optional<std::string> after;  ///< none for one that was removed
};

/// An edited image and the changes made to it.
struct FruEditResult {
    std::string bytes;
    std::vector<FruChange> changes;
    std::vector<std::string> notes; ///< one for each area, and for each repaired checksum
};

/// Edits an image in memory: all fields or none. Areas without edits, records without edits and
/// bytes outside all areas stay unchanged, unless areas may grow.
///
/// Throws RequestError for fields that no image has, DataError for anything in the image or the
/// values that prevents the edit.
FruEditResult editFruImage(const std::string& bytes, const std::vector<FruEdit>& edits,
                           const FruEditOptions& options);

/// The value of a chassis type, language or date as its area contains it. Throws DataError.
std::string encodeFixedField(const FruEdit& edit, unsigned int now);

}

#endif
