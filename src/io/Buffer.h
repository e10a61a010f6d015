#pragma once

#include <cstddef>
#include <cstring>
#include <memory>

namespace veksg::io::detail {

/// Bytes that grow without being cleared first: every byte is written before it is read.
class Buffer {
public:
    char* data() { return bytes.get(); }
    const char* data() const { return bytes.get(); }
    std::size_t size() const { return used; }
    void clear() { used = 0; }

    /// `n` new bytes at the end, to be written by the caller.
    char* grow(std::size_t n) {
        if (capacity - used < n) reserve(used + n);
        char* at = bytes.get() + used;
        used += n;
        return at;
    }
    void append(const void* from, std::size_t n) {
        if (n > 0) std::memcpy(grow(n), from, n);
    }
    /// Room for `n` bytes in all, keeping what is there; at least doubles, so appending
    /// stays linear.
    void reserve(std::size_t n) {
        if (n <= capacity) return;
        const std::size_t wanted = n < 2 * capacity ? 2 * capacity : n;
        std::unique_ptr<char[]> larger(new char[wanted]);
        if (used > 0) std::memcpy(larger.get(), bytes.get(), used);
        bytes = std::move(larger);
        capacity = wanted;
    }
    /// Exactly `n` bytes, their contents undefined until written.
    void resize(std::size_t n) {
        if (n > capacity) {
            used = 0;
            reserve(n);
        }
        used = n;
    }
    /// Frees what is more than `n` bytes, so that one large chunk does not pin its memory.
    void shrinkTo(std::size_t n) {
        if (capacity <= n) return;
        bytes.reset();
        capacity = 0;
        used = 0;
    }

private:
    std::unique_ptr<char[]> bytes;
    std::size_t used = 0;
    std::size_t capacity = 0;
};

} // namespace veksg::io::detail
