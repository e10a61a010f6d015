#include "common/AllocationCounter.h"

#include <cstdlib>
#include <new>

#include "veksg/Factory.h"

namespace testing_support {
bool AllocationCounts::counting = false;
std::size_t AllocationCounts::allocations = 0;
std::size_t AllocationCounts::deallocations = 0;

bool CountAllocations::active() {
    const bool was = AllocationCounts::counting;
    const std::size_t before = AllocationCounts::allocations;
    AllocationCounts::counting = true;
    const std::size_t freedBefore = AllocationCounts::deallocations;
    // Probe through the library: its calls are the ones a tool may redirect.
    veksg::createFactory().reset();
    const bool seen = AllocationCounts::allocations != before;
    AllocationCounts::allocations = before;
    AllocationCounts::deallocations = freedBefore;
    AllocationCounts::counting = was;
    return seen;
}
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
