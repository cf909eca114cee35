// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TESTS_SUPPORT_ANSWERS_H
#define RECORDKIT_TESTS_SUPPORT_ANSWERS_H

#include <string>

namespace testing_support {

/// The text of an answer file; of its packed form where only PATH.gz exists.
std::string contentOf(const std::string& path);

}

#endif
