// SPDX-License-Identifier: Apache-2.0
#ifndef RECORDKIT_TESTS_HARDWARE_ALLOCATIONCOUNT_H
#define RECORDKIT_TESTS_HARDWARE_ALLOCATIONCOUNT_H

#include <cstddef>

namespace testing_support {

/// How often this program has allocated memory with operator new.
std::size_t allocationCount();

/// Lets the n-th allocation from now, from 1, fail with std::bad_alloc, and those after it succeed.
void failAllocation(std::size_t n);

}

#endif
