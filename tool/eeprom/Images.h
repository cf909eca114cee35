// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_EEPROM_IMAGES_H
#define RECORDKIT_TOOL_EEPROM_IMAGES_H

#include <functional>
#include <string>

#include <recordkit/host/FileEEPROMRWif.h>
#include <recordkit/platform/PException.h>

#include "../cli/Arguments.h"

namespace recordkit::tool {

/// --images: the folder of the EEPROMs' images.
Option images();

TAVLib::host::FileEEPROMRWif openImages(const Arguments& arguments);

/// What went wrong in an EEPROM store, and the system's reason if there is one.
std::string failureText(const TAVLib::PException& failure);

/// Runs an action on the EEPROM stores. A failure becomes a CommandError: data if a store refuses
/// it, with the name of the input if there is one, file if something cannot be read or written.
void attempt(const std::function<void()>& action, const std::string& input = "");

/// The bytes of FILE. Throws CommandError (data) if there are none.
std::string readContent(const Arguments& arguments);

/// Writes what was read to FILE, or to standard output; `source` is what the bytes are from.
void writeRead(const Arguments& arguments, const std::string& content, const std::string& source);

}

#endif
