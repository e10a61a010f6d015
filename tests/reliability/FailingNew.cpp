#include "reliability/FailingNew.h"

#include <cstdlib>
#include <new>

#include "veksg/Factory.h"

namespace {
bool armed = false;
std::size_t countdown = 0;
long balance = 0;

void* allocate(std::size_t size) {
    if (armed) {
        if (--countdown == 0) throw std::bad_alloc();
        ++balance;
    }
    if (void* p = std::malloc(size == 0 ? 1 : size)) return p;
    throw std::bad_alloc();
}

void release(void* p) noexcept {
    if (p == nullptr) return;
    if (armed) --balance;
    std::free(p);
}
} // namespace

namespace testing_support {

void FailingNew::arm(std::size_t n) {
    countdown = n;
    balance = 0;
    armed = true;
}

long FailingNew::disarm() {
    armed = false;
    return balance;
}

bool FailingNew::active() {
    // Probe through the library: its calls are the ones a tool may redirect.
    arm(1);
    bool refused = false;
    try {
        veksg::createFactory().reset();
    } catch (const std::bad_alloc&) {
        refused = true;
    }
    disarm();
    return refused;
}

} // namespace testing_support

// Every form the program may use, so that no allocation bypasses the count and no block is
// freed by a different allocator than the one that made it (the sanitizers check that).
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
