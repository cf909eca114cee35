// SPDX-License-Identifier: Apache-2.0
#include "ReportPage.h"

#include "../print/Json.h"
#include "ReportTemplate.h"

namespace recordkit::tool {

std::string reportPage(const Value& document)
{
    const std::string json = jsonText(document);
    std::string page;
    page.reserve(REPORT_BEFORE.size() + json.size() + REPORT_AFTER.size());
    page += REPORT_BEFORE;
    for (const char character : json) {
        if (character == '<') {
            page += "\\u003c";
        } else {
            page += character;
        }
    }
    page += REPORT_AFTER;
    return page;
}

}
