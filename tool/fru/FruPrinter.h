// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_FRU_FRUPRINTER_H
#define RECORDKIT_TOOL_FRU_FRUPRINTER_H

#include <string>

#include <recordkit/inspect/fru/FruImage.h>

#include "../Errors.h"
#include "../print/Json.h"

namespace recordkit::tool {

/// An image for people, and for programs.
std::string describeFru(const FruImage& image, const std::string& bytes, bool hasColour);
Json toJson(const FruImage& image, const std::string& bytes);

}

#endif
