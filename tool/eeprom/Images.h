// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_EEPROM_IMAGES_H
#define RECORDKIT_TOOL_EEPROM_IMAGES_H

#include <functional>
#include <string>

#include <CLI/CLI.hpp>
#include <recordkit/host/FileEEPROMRWif.h>

namespace recordkit::tool {

/// The option --images of a sub-command: the folder of the EEPROMs' images.
class ImagesOption {
public:
    void addTo(CLI::App& command);
    const std::string& folder() const { return text; }
    TAVLib::host::FileEEPROMRWif open() const { return TAVLib::host::FileEEPROMRWif(text); }

private:
    std::string text = ".";
};

/// Runs an action on the EEPROM stores. A failure becomes a CommandError: data if a store refuses,
/// file if something cannot be read or written.
void attempt(const std::function<void()>& action);

}

#endif
