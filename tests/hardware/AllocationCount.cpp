// SPDX-License-Identifier: Apache-2.0
// Operators of their own file, so that no compiler sees them together with their callers.
#include "AllocationCount.h"

#include <cstdlib>
#include <new>

namespace {

std::size_t allocations = 0;
std::size_t failing = 0;

}

std::size_t testing_support::allocationCount()
{
    return allocations;
}

void testing_support::failAllocation(std::size_t n)
{
    failing = allocations + n;
}

void* operator new(std::size_t size)
{
    if (++allocations == failing) {
        throw std::bad_alloc();
    }
    if (void* const memory = std::malloc(size)) {
        return memory;
    }
    throw std::bad_alloc();
}

void operator delete(void* memory) noexcept
{
    std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}
