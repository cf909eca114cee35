// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_FRU_INTERNALOPTION_H
#define RECORDKIT_TOOL_FRU_INTERNALOPTION_H

#include <CLI/CLI.hpp>
#include <string>

#include <recordkit/inspect/fru/FruImage.h>

#include "../Errors.h"

namespace recordkit::tool {

/// The option --internal of a sub-command: how the internal use area is decoded.
class InternalOption {
public:
    void addTo(CLI::App& command);
    InternalLayout get() const;

private:
    std::string text;
};

}

#endif
