#include "io/Compression.h"

#include <zstd.h>

#include <new>

#define XXH_INLINE_ALL
#include <xxhash.h>

#include "io/Format.h"

namespace veksg::io::detail {

std::uint64_t checksum(const void* data, std::size_t n, std::uint64_t seed) {
    return XXH3_64bits_withSeed(data, n, seed);
}

Compressor::Compressor(int level) : level(level < highestLevel ? level : highestLevel) {
    if (level == 0) return;
    context = ZSTD_createCCtx();
    if (!context) throw std::bad_alloc();
}

Compressor::~Compressor() {
    ZSTD_freeCCtx(static_cast<ZSTD_CCtx*>(context));
}

bool Compressor::compress(const char* data, std::size_t n, Buffer& out) {
    // A frame's own bytes outweigh what compressing a few bytes could save.
    if (!context || n < 64) return false;
    out.resize(ZSTD_compressBound(n));
    const std::size_t size =
        ZSTD_compressCCtx(static_cast<ZSTD_CCtx*>(context), out.data(), out.size(), data, n, level);
    if (ZSTD_isError(size) || size >= n) return false;
    out.resize(size);
    return true;
}

Decompressor::Decompressor() {
    auto* created = ZSTD_createDCtx();
    if (!created) throw std::bad_alloc();
    context = created;
    ZSTD_DCtx_setParameter(created, ZSTD_d_windowLogMax, windowLog);
}

Decompressor::~Decompressor() {
    ZSTD_freeDCtx(static_cast<ZSTD_DCtx*>(context));
}

std::string Decompressor::decompress(const char* data, std::size_t n, std::size_t raw,
                                     Buffer& out) {
    auto* dctx = static_cast<ZSTD_DCtx*>(context);
    if (ZSTD_findFrameCompressedSize(data, n) != n) return "not one whole zstd frame";
    if (ZSTD_getFrameContentSize(data, n) != raw)
        return "the zstd frame holds another size than the chunk declares";
    // Most tables compress less than 32 times: decoded in one go. Beyond that, memory follows
    // the output, so that a small hostile frame cannot make the reader reserve gigabytes.
    const std::size_t direct = n * 32 + (std::size_t{1} << 16);
    if (raw <= direct) {
        out.resize(raw);
        const std::size_t size = ZSTD_decompressDCtx(dctx, out.data(), raw, data, n);
        if (ZSTD_isError(size)) return std::string("zstd: ") + ZSTD_getErrorName(size);
        return size == raw ? std::string() : "the zstd frame holds fewer bytes than declared";
    }
    ZSTD_DCtx_reset(dctx, ZSTD_reset_session_only);
    out.resize(direct);
    ZSTD_inBuffer in{data, n, 0};
    ZSTD_outBuffer to{out.data(), out.size(), 0};
    for (;;) {
        const std::size_t left = ZSTD_decompressStream(dctx, &to, &in);
        if (ZSTD_isError(left)) return std::string("zstd: ") + ZSTD_getErrorName(left);
        if (left == 0) break;
        if (to.pos < to.size) {
            if (in.pos == in.size) return "the zstd frame ends early";
            continue;
        }
        if (to.size == raw) return "the zstd frame holds more bytes than declared";
        const std::size_t larger = to.size * 2 < raw ? to.size * 2 : raw;
        out.reserve(larger);
        out.resize(larger);
        to.dst = out.data();
        to.size = larger;
    }
    return to.pos == raw ? std::string() : "the zstd frame holds fewer bytes than declared";
}

} // namespace veksg::io::detail
