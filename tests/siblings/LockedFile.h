// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TESTS_SIBLINGS_LOCKEDFILE_H
#define RECORDKIT_TESTS_SIBLINGS_LOCKEDFILE_H

#include <functional>
#include <vector>

namespace testing_support {

/// What the LockedFile of this test program answers. Its declaration leaves it short counts and
/// places, where the host's throws or goes on until all is done.
struct LockedFileAnswers {
    std::function<void()> beforeOpen; ///< another process's turn, or a failure
    long placesOff = 0;               ///< added to each place that lseek reports
    unsigned int bytesLess = 0;       ///< less than requested, for each read and write
    std::vector<long> truncations;    ///< lengths that files were cut to
};

extern LockedFileAnswers lockedFileAnswers;

}

#endif
