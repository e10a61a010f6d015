#pragma once

#include <cstddef>

namespace testing_support {

// Counts the program's calls of the global operator new and delete while it is alive, and can
// refuse one allocation with std::bad_alloc. The replacement of every form of new and delete
// lives in AllocationCounter.cpp; link it into a program to use this. One at a time.
class CountAllocations {
public:
    /// With `refused` > 0, the refused-th allocation from now on throws instead.
    explicit CountAllocations(std::size_t refused = 0);
    ~CountAllocations();
    CountAllocations(const CountAllocations&) = delete;
    CountAllocations& operator=(const CountAllocations&) = delete;

    /// False when something replaced the program's operator new behind the counter's back
    /// (valgrind does), so that counting tests can skip instead of failing.
    static bool active();

    std::size_t allocations() const;
    std::size_t deallocations() const;
};

} // namespace testing_support

// Counting tests skip rather than fail under a tool that replaces operator new.
#define SKIP_UNLESS_COUNTING_ALLOCATIONS()                                                         \
    if (!testing_support::CountAllocations::active())                                              \
    GTEST_SKIP() << "operator new is replaced by a tool; allocations cannot be counted"
