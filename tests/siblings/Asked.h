// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TESTS_SIBLINGS_ASKED_H
#define RECORDKIT_TESTS_SIBLINGS_ASKED_H

#include <string>
#include <vector>

namespace testing_support {

/// What the siblings of this test program were asked, in order: "getSBBoardType 3 3".
extern std::vector<std::string> asked;

/// What the tables of this test program return.
struct CsvAnswers {
    bool isFault = false;
    std::string record; ///< empty: none is found
};

extern CsvAnswers csvAnswers;

/// The type of every system board, whatever kind of type is asked for.
extern int systemBoardType;

}

#endif
