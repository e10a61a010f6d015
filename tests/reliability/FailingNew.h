#pragma once

#include <cstddef>

namespace testing_support {

// The program's global operator new, replaced in FailingNew.cpp: while armed it counts the
// allocations and refuses the n-th one with std::bad_alloc. Only the program that links
// FailingNew.cpp has it, so that no other test program's allocations are ever refused.
class FailingNew {
public:
    /// Refuses the `n`-th allocation from now on (1 is the next one); every other succeeds.
    static void arm(std::size_t n);
    /// Stops counting; returns allocations minus deallocations since `arm`.
    static long disarm();
    /// False when a tool (valgrind) replaced operator new behind the program's back, so that
    /// nothing can be refused.
    static bool active();
};

} // namespace testing_support
