// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TESTS_SUPPORT_RECORDFIELDS_H
#define RECORDKIT_TESTS_SUPPORT_RECORDFIELDS_H

#include <string>
#include <vector>

#include <recordkit/inspect/fru/FruContent.h>
#include <recordkit/inspect/fru/MultiRecords.h>

namespace testing_support {

/// Records of a kind that together have every field that a record of the kind can have, with one
/// element in each list; all other bytes are zero.
std::vector<recordkit::inspect::FruRecordContent> fullRecords(const std::string& kind);

recordkit::inspect::MultiRecord decoded(const recordkit::inspect::FruRecordContent& record);

/// The name of a field with "#" for the numbers of elements: "feed#.fru#.address", "guid#".
std::string fieldPattern(const recordkit::inspect::MultiRecord& record, const std::string& name);

}

#endif
