#pragma once

// The file's fixed parts; docs/snapshot.md describes them.
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <type_traits>

#include "veksg/Tables.h"

namespace veksg::io::detail {

constexpr unsigned char magic[8] = {0x89, 'V', 'K', 'S', 0x0D, 0x0A, 0x1A, 0x0A};
constexpr std::uint16_t formatVersion = 1;
constexpr std::uint8_t littleEndian = 1;
constexpr std::size_t headerBytes = 32;
constexpr std::size_t chunkFixedBytes = 32;
constexpr std::size_t longestName = 64;
/// zstd's window is kept within 8 MiB (levels up to 19 stay inside it), so that decoding a
/// hostile frame never reserves more.
constexpr int windowLog = 23;
constexpr int highestLevel = 19;

enum ChunkKind : std::uint8_t {
    PoolChunk = 1,
    ComponentChunk = 2,
    TableChunk = 3,
    HostGroupChunk = 4,
    EndChunk = 5,
};
enum Compression : std::uint8_t { Stored = 0, Zstd = 1 };

/// The component name of pool chunks.
constexpr const char* sharedGroup = "shared";

inline void putU16(unsigned char* at, std::uint16_t v) {
    std::memcpy(at, &v, 2);
}
inline void putU64(unsigned char* at, std::uint64_t v) {
    std::memcpy(at, &v, 8);
}
inline std::uint16_t getU16(const unsigned char* at) {
    std::uint16_t v = 0;
    std::memcpy(&v, at, 2);
    return v;
}
inline std::uint64_t getU64(const unsigned char* at) {
    std::uint64_t v = 0;
    std::memcpy(&v, at, 8);
    return v;
}

/// Calls `f(name, info, member)` for every table of `record`, descending into records with a
/// catalogue of their own ("meshes.instances").
template <typename R, typename F>
void walkTables(R& record, const std::string& prefix, F& f) {
    veksg::forEachTable(record, [&](const veksg::TableInfo& info, auto& member) {
        using M = std::remove_const_t<std::remove_reference_t<decltype(member)>>;
        if constexpr (veksg::hasTables<M>)
            walkTables(member, prefix + info.name + ".", f);
        else
            f(prefix + info.name, info, member);
    });
}

} // namespace veksg::io::detail
