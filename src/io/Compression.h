#pragma once

// zstd and XXH3 enter the library here and nowhere else.
#include <cstddef>
#include <cstdint>
#include <string>

#include "io/Buffer.h"

namespace veksg::io::detail {

std::uint64_t checksum(const void* data, std::size_t n, std::uint64_t seed);

class Compressor {
public:
    explicit Compressor(int level);
    Compressor(const Compressor&) = delete;
    Compressor& operator=(const Compressor&) = delete;
    ~Compressor();

    /// One zstd frame of `n` bytes into `out`; false when it would not be smaller, or when
    /// compression is off.
    bool compress(const char* data, std::size_t n, Buffer& out);

private:
    void* context = nullptr;
    int level;
};

class Decompressor {
public:
    Decompressor();
    Decompressor(const Decompressor&) = delete;
    Decompressor& operator=(const Decompressor&) = delete;
    ~Decompressor();

    /// Exactly `raw` bytes out of one zstd frame of `n` bytes, or an empty string naming
    /// what was wrong. Memory grows with what the frame actually produces, never by the size
    /// it declares alone.
    std::string decompress(const char* data, std::size_t n, std::size_t raw, Buffer& out);

private:
    void* context = nullptr;
};

} // namespace veksg::io::detail
