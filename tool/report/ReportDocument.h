// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_REPORT_REPORTDOCUMENT_H
#define RECORDKIT_TOOL_REPORT_REPORTDOCUMENT_H

#include <string>

#include <recordkit/inspect/report/Report.h>

#include "../print/Value.h"

namespace recordkit::tool {

/// What a document says besides its report.
struct ReportHead {
    std::string title;
    unsigned int now = 0;    ///< seconds since 1970
    std::string chosen = {}; ///< which events were chosen; empty for all
};

/// A report as one object; docs/report.schema.json defines it for programs.
Value reportDocument(const inspect::Report& report, const ReportHead& head);

}

#endif
