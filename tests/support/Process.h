// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TESTS_SUPPORT_PROCESS_H
#define RECORDKIT_TESTS_SUPPORT_PROCESS_H

#include <string>
#include <vector>

namespace testing_support {

/// How a program ended and what it wrote.
struct Outcome {
    int status; ///< exit status, or minus the signal that ended it
    std::string out;
    std::string err;
};

using Arguments = std::vector<std::string>;

/// Becomes a program; for children of the tests.
[[noreturn]] void execute(const Arguments& arguments, const Arguments& extraEnvironment = {});

/// Runs a program to its end. `extraEnvironment` contains NAME=value entries.
Outcome run(const Arguments& arguments, const std::string& input = "",
            const Arguments& extraEnvironment = {});

/// The words that start a program of this build: the emulator first where it needs one.
Arguments programOfThisBuild(const std::string& path);

/// The recordkit command of this build with these arguments.
Arguments ourCommand(const Arguments& arguments);

}

#endif
