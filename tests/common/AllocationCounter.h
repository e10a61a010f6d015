#pragma once

#include <cstddef>

namespace testing_support {

// Counts the program's calls of the global operator new and delete while a scope is open.
// The replacement lives in AllocationCounter.cpp; link it into a program to use this.
struct AllocationCounts {
    static bool counting;
    static std::size_t allocations;
    static std::size_t deallocations;
};

class CountAllocations {
public:
    CountAllocations() {
        AllocationCounts::allocations = 0;
        AllocationCounts::deallocations = 0;
        AllocationCounts::counting = true;
    }
    ~CountAllocations() { AllocationCounts::counting = false; }
    CountAllocations(const CountAllocations&) = delete;
    CountAllocations& operator=(const CountAllocations&) = delete;

    /// False when something replaced the program's operator new behind the counter's back
    /// (valgrind does), so that counting tests can skip instead of failing.
    static bool active();

    std::size_t allocations() const { return AllocationCounts::allocations; }
    std::size_t deallocations() const { return AllocationCounts::deallocations; }
};

} // namespace testing_support

// Counting tests skip rather than fail under a tool that replaces operator new.
#define SKIP_UNLESS_COUNTING_ALLOCATIONS()                                                         \
    if (!testing_support::CountAllocations::active())                                              \
    GTEST_SKIP() << "operator new is replaced by a tool; allocations cannot be counted"
