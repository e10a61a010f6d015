#include <cwchar>
#include <limits>
#include <new>

#include "attributes/ValueImpl.h"

// Kept out of line even under link-time optimisation: leak suppressions match its name.
#if defined(__GNUC__)
#define VEKSG_NOINLINE __attribute__((noinline))
#elif defined(_MSC_VER)
#define VEKSG_NOINLINE __declspec(noinline)
#else
#define VEKSG_NOINLINE
#endif

namespace veksg {

IValue::~IValue() = default;

namespace detail {

namespace {
// A count too large to express in bytes asks for the largest size, so that the allocation
// fails with std::bad_alloc instead of silently allocating too little.
std::size_t keyBytes(std::size_t count) {
    constexpr std::size_t most = std::numeric_limits<std::size_t>::max();
    return count > most / sizeof(wchar_t) ? most : count * sizeof(wchar_t);
}
} // namespace

VEKSG_NOINLINE wchar_t* copyKey(const wchar_t* source) {
    const std::size_t length = std::wcslen(source);
    auto* key = static_cast<wchar_t*>(::operator new[](keyBytes(length + 1)));
    std::wmemcpy(key, source, length + 1);
    key[length] = L'\0';
    return key;
}

void releaseKey(wchar_t* key) noexcept {
    ::operator delete[](key);
}

} // namespace detail
} // namespace veksg
