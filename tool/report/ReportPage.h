// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_REPORT_REPORTPAGE_H
#define RECORDKIT_TOOL_REPORT_REPORTPAGE_H

#include <cstddef>
#include <string>

#include "../print/Value.h"

namespace recordkit::tool {

/// The most events that a page shows.
constexpr std::size_t MOST_EVENTS_OF_PAGE = 500000;

/// The page with a document in it. No string of the document can end the element that contains it,
/// or begin a comment.
std::string reportPage(const Value& document);

}

#endif
