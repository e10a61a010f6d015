#include "common/AllocationCounter.h"

#include <cstdlib>
#include <new>

#include "veksg/Factory.h"

namespace {
bool counting = false;
std::size_t attempts = 0;
std::size_t refuseAt = 0;
std::size_t allocated = 0;
std::size_t freed = 0;

void* allocate(std::size_t size) {
    if (counting) {
        if (++attempts == refuseAt) throw std::bad_alloc();
        ++allocated;
    }
    if (void* p = std::malloc(size == 0 ? 1 : size)) return p;
    throw std::bad_alloc();
}

void release(void* p) noexcept {
    if (p == nullptr) return;
    if (counting) ++freed;
    std::free(p);
}
} // namespace

namespace testing_support {

CountAllocations::CountAllocations(std::size_t refused) {
    attempts = allocated = freed = 0;
    refuseAt = refused;
    counting = true;
}

CountAllocations::~CountAllocations() {
    counting = false;
}

bool CountAllocations::active() {
    // Probe through the library: its calls are the ones a tool may redirect.
    const CountAllocations probe;
    veksg::createFactory().reset();
    return probe.allocations() > 0;
}

std::size_t CountAllocations::allocations() const {
    return allocated;
}

std::size_t CountAllocations::deallocations() const {
    return freed;
}

} // namespace testing_support

// Every form the program may use, the shared library included, so that no allocation bypasses
// the count and no block is freed by a different allocator than the one that made it (the
// sanitizers check that).
void* operator new(std::size_t size) {
    return allocate(size);
}
void* operator new[](std::size_t size) {
    return allocate(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    try {
        return allocate(size);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept {
    try {
        return allocate(size);
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}
void operator delete(void* p) noexcept {
    release(p);
}
void operator delete[](void* p) noexcept {
    release(p);
}
void operator delete(void* p, std::size_t) noexcept {
    release(p);
}
void operator delete[](void* p, std::size_t) noexcept {
    release(p);
}
void operator delete(void* p, const std::nothrow_t&) noexcept {
    release(p);
}
void operator delete[](void* p, const std::nothrow_t&) noexcept {
    release(p);
}
