// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TESTS_SIBLINGS_LOCKEDFILE_H
#define RECORDKIT_TESTS_SIBLINGS_LOCKEDFILE_H

#include <functional>
#include <vector>

namespace testing_support {

/// How the LockedFile of this test program behaves. Its declaration allows short counts and other
/// places, where the host's throws or continues until everything is done.
struct LockedFileAnswers {
    std::function<void()> beforeOpen; ///< another process's turn, or a failure
    long placesOff = 0;               ///< added to each place that lseek reports
    unsigned int bytesLess = 0;       ///< less than requested, for each read and write
    std::vector<long> truncations;    ///< lengths that files were cut to
};

extern LockedFileAnswers lockedFileAnswers;

}

#endif
