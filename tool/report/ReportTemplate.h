// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_REPORT_REPORTTEMPLATE_H
#define RECORDKIT_TOOL_REPORT_REPORTTEMPLATE_H

#include <string_view>

namespace recordkit::tool {

/// The page of a report in two parts. Between them is its document: JSON in UTF-8 with \u003c for
/// each "<", since it is the text of an HTML script element.
extern const std::string_view REPORT_BEFORE;
extern const std::string_view REPORT_AFTER;

}

#endif
