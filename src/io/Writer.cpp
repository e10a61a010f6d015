#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <ostream>

#include "io/Archive.h"
#include "io/Compression.h"
#include "io/Format.h"
#include "io/HostEntry.h"

namespace veksg::io {

SnapshotError::SnapshotError(const std::string& where, std::uint64_t offset,
                             const std::string& cause)
    : std::runtime_error("snapshot: " + where + " at byte " + std::to_string(offset) + ": " +
                         cause),
      where_(where), offset_(offset) {
}

SnapshotError::~SnapshotError() = default;

namespace detail {
namespace {

class ChunkWriter {
public:
    ChunkWriter(std::ostream& out, int level, WriteReport& report)
        : out(out), compressor(level), report(report) {}

    void header() {
        unsigned char bytes[headerBytes] = {};
        std::memcpy(bytes, magic, sizeof magic);
        putU16(bytes + 8, formatVersion);
        bytes[10] = littleEndian;
        putU16(bytes + 12, VEKSG_IO_VERSION_MAJOR);
        putU16(bytes + 14, VEKSG_IO_VERSION_MINOR);
        putU16(bytes + 16, VEKSG_IO_VERSION_PATCH);
        putU64(bytes + 24, checksum(bytes, 24, 0));
        put(bytes, sizeof bytes);
    }

    void chunk(ChunkKind kind, const std::string& component, const std::string& table,
               std::uint64_t count, const Buffer& payload) {
        const bool packed = compressor.compress(payload.data(), payload.size(), compressed);
        const Buffer& stored = packed ? compressed : payload;
        unsigned char fixed[chunkFixedBytes] = {};
        fixed[0] = kind;
        fixed[1] = packed ? Zstd : Stored;
        putU16(fixed + 2, static_cast<std::uint16_t>(component.size()));
        putU16(fixed + 4, static_cast<std::uint16_t>(table.size()));
        putU64(fixed + 8, count);
        putU64(fixed + 16, payload.size());
        putU64(fixed + 24, stored.size());
        // The header's checksum seeds the payload's, so that one number covers both.
        names.clear();
        names.append(fixed, sizeof fixed);
        names.append(component.data(), component.size());
        names.append(table.data(), table.size());
        unsigned char sum[8];
        putU64(sum,
               checksum(stored.data(), stored.size(), checksum(names.data(), names.size(), 0)));
        names.append(sum, sizeof sum);
        put(names.data(), names.size());
        put(stored.data(), stored.size());
        report.tableBytes += payload.size();
        ++report.chunks;
    }

private:
    void put(const void* data, std::size_t n) {
        out.write(static_cast<const char*>(data), static_cast<std::streamsize>(n));
        report.fileBytes += n;
    }

    std::ostream& out;
    Compressor compressor;
    Buffer compressed;
    Buffer names;
    WriteReport& report;
};

// Walks a component's tables the way the reader expects them; SCComprae's two paths, which
// only its accessors reach, stand in for its empty catalogue.
template <typename C, typename F>
void eachTable(const C& component, F&& f) {
    walkTables(component, std::string(), f);
    if constexpr (std::is_same_v<C, veksg::SCComprae>) {
        const veksg::TableInfo none;
        f("refFile", none, std::wstring(component.refFile()));
        f("cmpFile", none, std::wstring(component.cmpFile()));
    }
}

void writeAll(std::ostream& out, const std::vector<std::shared_ptr<veksg::Schema>>& components,
              const HostTables* host, const WriteOptions& options, WriteReport& report) {
    for (const auto& component : components)
        if (!component || !veksg::visitComponent(*component, [](const auto&) {}))
            throw SnapshotError("component", 0, "not one of the library's own classes");
    if (host && host->group().size() > longestName)
        throw SnapshotError(host->group(), 0, "a group name longer than 64 characters");

    PoolsOut pools;
    Collect collect(pools);
    auto gather = [&collect](const std::string&, const veksg::TableInfo&, const auto& member) {
        collect(member);
    };
    for (const auto& component : components)
        veksg::visitComponent(std::as_const(*component),
                              [&](const auto& concrete) { eachTable(concrete, gather); });
    if (host)
        for (const auto& entry : host->entries())
            entry->collect(collect);

    ChunkWriter chunks(out, options.level, report);
    chunks.header();
    Buffer payload;
    Out encode(payload, pools, report);
    for (int kind = 0; kind < poolKinds; ++kind) {
        const PoolsOut::Pool& pool = pools.pools[static_cast<std::size_t>(kind)];
        payload.clear();
        for (std::size_t i = 0; i < pool.objects.size(); ++i)
            encode.entry(kind, pool.objects[i], pool.lengths.empty() ? 0 : pool.lengths[i]);
        chunks.chunk(PoolChunk, sharedGroup, poolName(kind), pool.objects.size(), payload);
    }
    for (const auto& component : components) {
        veksg::visitComponent(std::as_const(*component), [&](const auto& concrete) {
            const std::string name = veksg::componentName(concrete);
            payload.clear();
            encode(concrete.type());
            chunks.chunk(ComponentChunk, name, std::string(), 1, payload);
            auto table = [&](const std::string& tableName, const veksg::TableInfo&,
                             const auto& member) {
                payload.clear();
                const std::uint64_t count = encode.top(member);
                chunks.chunk(TableChunk, name, tableName, count, payload);
            };
            eachTable(concrete, table);
        });
    }
    if (host) {
        payload.clear();
        chunks.chunk(HostGroupChunk, host->group(), std::string(), host->entries().size(), payload);
        for (const auto& entry : host->entries()) {
            if (entry->name.size() > longestName)
                throw SnapshotError(host->group() + "." + entry->name, report.fileBytes,
                                    "a table name longer than 64 characters");
            payload.clear();
            const std::uint64_t count = entry->write(encode);
            chunks.chunk(TableChunk, host->group(), entry->name, count, payload);
        }
    }
    payload.clear();
    chunks.chunk(EndChunk, std::string(), std::string(), report.chunks, payload);
    report.sharedObjects = pools.count();
}

} // namespace
} // namespace detail

WriteReport writeSnapshot(std::ostream& out,
                          const std::vector<std::shared_ptr<veksg::Schema>>& components,
                          const HostTables* host, const WriteOptions& options) {
    WriteReport report;
    detail::writeAll(out, components, host, options, report);
    out.flush();
    if (!out) throw SnapshotError("stream", report.fileBytes, "the stream refused the bytes");
    return report;
}

WriteReport writeSnapshot(const std::string& path,
                          const std::vector<std::shared_ptr<veksg::Schema>>& components,
                          const HostTables* host, const WriteOptions& options) {
    const std::string partial = path + ".partial";
    WriteReport report;
    {
        std::ofstream out(partial, std::ios::binary | std::ios::trunc);
        if (!out)
            throw SnapshotError(path, 0, std::string("cannot create: ") + std::strerror(errno));
        try {
            report = writeSnapshot(out, components, host, options);
            out.close();
            if (!out)
                throw SnapshotError(path, report.fileBytes, "the file could not be completed");
        } catch (...) {
            out.close();
            std::remove(partial.c_str());
            throw;
        }
    }
    if (std::rename(partial.c_str(), path.c_str()) != 0) {
        const std::string cause = std::strerror(errno);
        std::remove(partial.c_str());
        throw SnapshotError(path, 0, "cannot put the file in place: " + cause);
    }
    return report;
}

} // namespace veksg::io
