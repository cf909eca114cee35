// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_FRU_FRUOPTIONS_H
#define RECORDKIT_TOOL_FRU_FRUOPTIONS_H

#include <recordkit/inspect/fru/FruImage.h>

#include "../cli/Arguments.h"

namespace recordkit::tool {

inline Option fruFile()
{
    return argument("FILE", "FRU image or kernel node; - for standard input");
}

/// How the internal use area is decoded.
inline Option internalLayout()
{
    return choice("--internal", "A|B", {"A", "B"},
                  "Decode the internal use area by the system's layout A or B (default: bytes)");
}

inline inspect::InternalLayout internalLayoutOf(const Arguments& arguments)
{
    const auto chosen = arguments.find("--internal");
    return !chosen        ? inspect::InternalLayout::STANDARD
           : *chosen == 0 ? inspect::InternalLayout::A
                          : inspect::InternalLayout::B;
}

}

#endif
