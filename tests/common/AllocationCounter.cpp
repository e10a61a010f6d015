#include "common/AllocationCounter.h"

#include <cstdlib>
#include <new>

namespace testing_support {
bool AllocationCounts::counting = false;
std::size_t AllocationCounts::allocations = 0;
std::size_t AllocationCounts::deallocations = 0;
} // namespace testing_support

using testing_support::AllocationCounts;

// The replacement serves the whole program, the shared library included.
void* operator new(std::size_t size) {
    if (AllocationCounts::counting) ++AllocationCounts::allocations;
    if (void* p = std::malloc(size == 0 ? 1 : size)) return p;
    throw std::bad_alloc();
}

void operator delete(void* p) noexcept {
    if (p == nullptr) return;
    if (AllocationCounts::counting) ++AllocationCounts::deallocations;
    std::free(p);
}

void operator delete(void* p, std::size_t) noexcept {
    operator delete(p);
}
