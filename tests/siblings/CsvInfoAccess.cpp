// SPDX-License-Identifier: Apache-2.0
// Tables that record what they are asked and return what a test sets.
#include <recordkit/platform/CsvInfoAccess.h>

#include "Asked.h"

namespace testing_support {

std::vector<std::string> asked;
CsvAnswers csvAnswers;

}

namespace TAVLib {

CsvInfoAccess::CsvInfoAccess(const std::string& directory, const std::string& fileName)
    : state(nullptr)
{
    testing_support::asked.push_back("open " + directory + " " + fileName);
}

CsvInfoAccess::~CsvInfoAccess() = default;

bool CsvInfoAccess::isFault() const
{
    testing_support::asked.push_back("isFault");
    return testing_support::csvAnswers.isFault;
}

bool CsvInfoAccess::searchRecord(int column, const std::string& key, std::string& record)
{
    testing_support::asked.push_back("searchRecord " + std::to_string(column) + " " + key);
    if (testing_support::csvAnswers.record.empty()) {
        return false;
    }
    record = testing_support::csvAnswers.record;
    return true;
}

}
