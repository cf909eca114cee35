// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_FRU_FRUWRITE_H
#define RECORDKIT_TOOL_FRU_FRUWRITE_H

#include <functional>
#include <optional>
#include <string>

#include <recordkit/inspect/fru/FruEdit.h>

#include "../Errors.h"
#include "../cli/Arguments.h"

namespace recordkit::tool {

// What every sub-command that changes an image has in common.

Option fruEditedFile();
Option ignoreWrongChecksums();
Option textCoding();
Option inPlace();
Option pageSize();
Option fruDryRun();

/// The options of an edit by ignoreWrongChecksums, with the time.
FruEditOptions editOptionsOf(const Arguments& arguments);
/// That of textCoding.
std::optional<Coding> codingOf(const Arguments& arguments);

/// An edit as a word says it; "internal=@FILE" has the bytes of the file for its value.
FruEdit readFruEdit(const std::string& word);

/// Reads the image, edits it in memory, writes it unless it is a dry run, and prints every change
/// and note. A sub-command without inPlace() replaces the file, which must not be a device.
void changeFruImage(const Arguments& arguments,
                    const std::function<FruEditResult(const std::string&)>& edit,
                    bool hasInPlace = true);

}

#endif
