// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TOOL_PRINT_PROBLEMS_H
#define RECORDKIT_TOOL_PRINT_PROBLEMS_H

#include <functional>
#include <string>
#include <vector>

#include "../Errors.h"

namespace recordkit::tool {

/// Collects what is wrong with the inputs of a sub-command: each problem becomes a line on standard
/// error, one bad input does not stop the rest, and the worst outcome becomes the exit status.
class Problems {
public:
    /// Reports a problem of an input.
    void add(const std::string& input, const std::string& text, ExitStatus status = EXIT_DATA);

    /// Runs the work for one input, and reports the problems that it returns or throws.
    void run(const std::string& input, const std::function<std::vector<std::string>()>& work);

    /// Counts problems that were reported elsewhere.
    void add(const Problems& reported);

    /// What was reported of one input by this object, without the name of the input at the
    /// beginning.
    std::vector<std::string> of(const std::string& input) const;

    /// Throws Reported if there was a problem.
    void finish() const;

private:
    struct Problem {
        std::string input;
        std::string text;
    };
    void add(const std::string& input, const std::string& text, ExitStatus status,
             bool isTextNamed);

    std::vector<Problem> all;
    std::size_t inputs = 0;
    std::size_t bad = 0;
    ExitStatus worst = EXIT_DONE;
};

}

#endif
