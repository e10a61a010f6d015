#include <cerrno>
#include <chrono>
#include <cstring>
#include <fstream>
#include <istream>

#include "io/Archive.h"
#include "io/Compression.h"
#include "io/Format.h"
#include "io/HostEntry.h"

namespace veksg::io {

namespace detail {
namespace {

double now() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

/// Adds the time from construction to destruction to a phase.
class Timed {
public:
    explicit Timed(double& phase) : phase(phase), start(now()) {}
    Timed(const Timed&) = delete;
    Timed& operator=(const Timed&) = delete;
    ~Timed() { phase += now() - start; }

private:
    double& phase;
    double start;
};

// Names from the file appear in messages: printable ASCII only.
std::string printable(const unsigned char* text, std::size_t n) {
    std::string out(reinterpret_cast<const char*>(text), n);
    for (char& c : out)
        if (c < 0x20 || c > 0x7E) c = '?';
    return out;
}

struct Chunk {
    std::uint8_t kind = 0;
    std::uint8_t compression = 0;
    std::string component;
    std::string table;
    std::uint64_t count = 0;
    std::uint64_t raw = 0;
    std::uint64_t stored = 0;
    std::uint64_t offset = 0;
    const char* payload = nullptr;

    std::string where() const {
        if (component.empty()) return "end";
        return table.empty() ? component : component + "." + table;
    }
};

// A component of the class `name` with the type code `code`, new and empty.
std::shared_ptr<veksg::Schema> makeComponent(const std::string& name, short code,
                                             veksg::IFactory& factory) {
    using veksg::Schema;
    auto own = [code](auto made, short expected) -> std::shared_ptr<Schema> {
        if (code != expected) return nullptr;
        return made;
    };
    if (name == "SCFeatures") return own(std::make_shared<veksg::SCFeatures>(), Schema::FEATURES);
    if (name == "SCThicknessAnalysis")
        return own(std::make_shared<veksg::SCThicknessAnalysis>(), Schema::THICKNESS_ANALYSIS);
    if (name == "SCDraftAngleAnalysis")
        return own(std::make_shared<veksg::SCDraftAngleAnalysis>(), Schema::DRAFT_ANGLE_ANALYSIS);
    // A drawing may carry any type code its enumeration can hold: 0 to 63.
    if (name == "SCScene2D")
        return code >= 0 && code < 64
                   ? std::make_shared<vek2d::SCScene2D>(static_cast<Schema::TYPE>(code))
                   : nullptr;
    std::shared_ptr<Schema> made = factory.create(code);
    if (made && veksg::componentName(*made) == name) return made;
    return nullptr;
}

class Reader {
public:
    Reader(const char* data, std::size_t size, HostTables* host, const ReadOptions& options,
           ReadReport& report)
        : data(reinterpret_cast<const unsigned char*>(data)), size(size), host(host),
          options(options), report(report) {}

    Snapshot run() {
        header();
        for (int kind = 0; kind < poolKinds; ++kind) {
            const Chunk chunk = next();
            if (chunk.kind != PoolChunk || chunk.component != sharedGroup ||
                chunk.table != poolName(kind))
                fail(chunk, std::string("expected shared ") + poolName(kind));
            decode(chunk, [&](In& in) { in.entries(kind, chunk.count); });
            report.sharedObjects += chunk.count;
        }
        Snapshot snapshot;
        for (;;) {
            const Chunk chunk = next();
            if (chunk.kind == EndChunk) {
                end(chunk);
                break;
            }
            if (chunk.kind == ComponentChunk)
                snapshot.components.push_back(component(chunk));
            else if (chunk.kind == HostGroupChunk)
                hostGroup(chunk);
            else
                fail(chunk, "a table outside any component");
        }
        checkKeySpaces();
        if (host)
            for (const auto& entry : host->entries())
                entry->commit();
        return snapshot;
    }

private:
    [[noreturn]] void fail(const std::string& where, std::uint64_t offset,
                           const std::string& cause) const {
        throw SnapshotError(where, offset, cause);
    }
    [[noreturn]] void fail(const Chunk& chunk, const std::string& cause) const {
        fail(chunk.where(), chunk.offset, cause);
    }

    void header() {
        if (size < headerBytes)
            fail("header", 0,
                 "truncated: " + std::to_string(size) + " bytes are too few for a snapshot header");
        if (std::memcmp(data, magic, sizeof magic) != 0)
            fail("header", 0, "not a snapshot (wrong magic)");
        const std::uint16_t version = getU16(data + 8);
        if (version != formatVersion)
            fail("header", 8, "unknown format version " + std::to_string(version));
        if (data[10] != littleEndian)
            fail("header", 10, "written in a byte order this reader does not read");
        if (options.verifyChecksums) {
            Timed timed(report.verifySeconds);
            if (getU64(data + 24) != checksum(data, 24, 0)) fail("header", 24, "checksum mismatch");
        }
        at = headerBytes;
    }

    Chunk next() {
        Chunk chunk;
        chunk.offset = at;
        const std::size_t left = size - at;
        if (left < chunkFixedBytes)
            fail("chunk", at, "truncated: the file ends inside a chunk header");
        const unsigned char* fixed = data + at;
        chunk.kind = fixed[0];
        chunk.compression = fixed[1];
        const std::uint16_t componentLength = getU16(fixed + 2);
        const std::uint16_t tableLength = getU16(fixed + 4);
        chunk.count = getU64(fixed + 8);
        chunk.raw = getU64(fixed + 16);
        chunk.stored = getU64(fixed + 24);
        if (chunk.kind < PoolChunk || chunk.kind > EndChunk || chunk.compression > Zstd ||
            getU16(fixed + 6) != 0 || componentLength > longestName || tableLength > longestName)
            fail("chunk", at, "malformed chunk header");
        const std::size_t headerSize = chunkFixedBytes + componentLength + tableLength + 8;
        if (left < headerSize) fail("chunk", at, "truncated: the file ends inside a chunk header");
        chunk.component = printable(fixed + chunkFixedBytes, componentLength);
        chunk.table = printable(fixed + chunkFixedBytes + componentLength, tableLength);
        if (chunk.stored > left - headerSize)
            fail(chunk, "truncated: the chunk's " + std::to_string(chunk.stored) +
                            " bytes run past the end of the file (" +
                            std::to_string(left - headerSize) + " left)");
        if (chunk.raw > options.maxTableBytes)
            fail(chunk, "oversized: " + std::to_string(chunk.raw) + " bytes exceed the limit of " +
                            std::to_string(options.maxTableBytes));
        if (chunk.compression == Stored && chunk.raw != chunk.stored)
            fail(chunk, "malformed chunk header: stored bytes differ from their size");
        chunk.payload = reinterpret_cast<const char*>(fixed + headerSize);
        if (options.verifyChecksums) {
            Timed timed(report.verifySeconds);
            const std::uint64_t seed = checksum(fixed, headerSize - 8, 0);
            if (getU64(fixed + headerSize - 8) != checksum(chunk.payload, chunk.stored, seed))
                fail(chunk, "checksum mismatch");
        }
        at += headerSize + chunk.stored;
        ++chunks;
        return chunk;
    }

    template <typename F>
    void decode(const Chunk& chunk, F&& f) {
        const char* bytes = chunk.payload;
        if (chunk.compression == Zstd) {
            Timed timed(report.decompressSeconds);
            const std::string error = decompressor.decompress(
                chunk.payload, chunk.stored, static_cast<std::size_t>(chunk.raw), buffer);
            if (!error.empty()) fail(chunk, error);
            bytes = buffer.data();
        }
        Timed timed(report.decodeSeconds);
        const Place place{chunk.where(), chunk.offset};
        In in(bytes, static_cast<std::size_t>(chunk.raw), pools, place);
        f(in);
        if (in.remaining() != 0)
            fail(chunk, std::to_string(in.remaining()) + " bytes left over after the table");
        report.tableBytes += chunk.raw;
        // A table far larger than the rest must not keep its memory for the small ones.
        buffer.shrinkTo(std::size_t{64} << 20);
    }

    // The next chunk must be `expected` of `component`.
    Chunk tableChunk(const std::string& component, const std::string& expected,
                     const std::vector<std::string>& known) {
        Chunk chunk = next();
        if (chunk.kind == TableChunk && chunk.component == component && chunk.table == expected)
            return chunk;
        bool isKnown = false;
        for (const std::string& name : known)
            isKnown = isKnown || name == chunk.table;
        if (chunk.kind != TableChunk || chunk.component != component)
            fail(component + "." + expected, chunk.offset, "missing table");
        if (!isKnown) fail(chunk, "unknown table (" + component + "." + expected + " comes here)");
        fail(chunk, "table out of order (" + component + "." + expected + " comes here)");
    }

    std::shared_ptr<veksg::Schema> component(const Chunk& chunk) {
        short code = 0;
        decode(chunk, [&](In& in) { in.top(code, chunk.count); });
        if (!factory) factory = options.factory ? options.factory : veksg::createFactory();
        std::shared_ptr<veksg::Schema> made = makeComponent(chunk.component, code, *factory);
        if (!made) {
            bool known = false;
            for (const char* name : componentNames)
                known = known || chunk.component == name;
            fail(chunk, known ? "type code " + std::to_string(code) + " is not a " + chunk.component
                              : std::string("unknown component"));
        }
        veksg::visitComponent(*made, [&](auto& concrete) { tables(chunk.component, concrete); });
        return made;
    }

    template <typename C>
    void tables(const std::string& name, C& component) {
        std::vector<std::string> known;
        auto list = [&known](const std::string& table, const veksg::TableInfo&, const auto&) {
            known.push_back(table);
        };
        walkTables(std::as_const(component), std::string(), list);
        if constexpr (std::is_same_v<C, veksg::SCComprae>) {
            known = {"refFile", "cmpFile"};
            std::wstring files[2];
            for (std::size_t i = 0; i < 2; ++i) {
                const Chunk chunk = tableChunk(name, known[i], known);
                decode(chunk, [&](In& in) { in.top(files[i], chunk.count); });
            }
            component.setFiles(files[0].c_str(), files[1].c_str());
        }
        auto read = [&](const std::string& table, const veksg::TableInfo& info, auto& member) {
            const Chunk chunk = tableChunk(name, table, known);
            decode(chunk, [&](In& in) { in.top(member, chunk.count); });
            const std::string full = name + "." + table;
            sizes[full] = chunk.count;
            if (info.keySpace >= 0)
                keyed.push_back({full, info.keySpace, chunk.count, chunk.offset});
        };
        walkTables(component, std::string(), read);
    }

    void hostGroup(const Chunk& chunk) {
        if (!host || chunk.component != host->group()) fail(chunk, "unknown component");
        if (chunk.count != host->entries().size() || chunk.raw != 0)
            fail(chunk, "a group of " + std::to_string(chunk.count) +
                            " tables where the host has " + std::to_string(host->entries().size()));
        std::vector<std::string> known;
        for (const auto& entry : host->entries())
            known.push_back(entry->name);
        for (const auto& entry : host->entries()) {
            const Chunk table = tableChunk(chunk.component, entry->name, known);
            decode(table, [&](In& in) { entry->read(in, table.count); });
            sizes[chunk.component + "." + entry->name] = entry->readSize();
        }
    }

    void end(const Chunk& chunk) {
        if (chunk.raw != 0 || !chunk.table.empty()) fail(chunk, "malformed end of the snapshot");
        if (chunk.count != chunks - 1)
            fail(chunk, "the end counts " + std::to_string(chunk.count) + " chunks, the file has " +
                            std::to_string(chunks - 1));
        if (at != size) fail("end", at, "bytes after the end chunk: " + std::to_string(size - at));
        report.chunks = chunks;
    }

    // A table keyed by a key space cannot hold more keys than the space's primary table.
    void checkKeySpaces() const {
        for (const Keyed& table : keyed) {
            const auto primary = options.keySpaces.find(table.keySpace);
            if (primary == options.keySpaces.end()) continue;
            const auto found = sizes.find(primary->second);
            const std::uint64_t entries = found == sizes.end() ? 0 : found->second;
            if (table.count > entries)
                fail(table.name, table.offset,
                     "a key outside its table: " + std::to_string(table.count) +
                         " keys of key space " + std::to_string(table.keySpace) + ", whose " +
                         primary->second + " has " + std::to_string(entries));
        }
    }

    struct Keyed {
        std::string name;
        short keySpace;
        std::uint64_t count;
        std::uint64_t offset;
    };
    static constexpr const char* componentNames[] = {"SCScene",
                                                     "SCSceneRT",
                                                     "SCPmi",
                                                     "SCExtFile",
                                                     "SCAttributes",
                                                     "SCLayer",
                                                     "SCTempGraphics",
                                                     "SCInfo",
                                                     "SCView",
                                                     "SCAnimation",
                                                     "SCSceneTopo",
                                                     "SCSceneRes",
                                                     "SCFeatures",
                                                     "SCScene2D",
                                                     "SCHoops",
                                                     "SCComprae",
                                                     "SCStates",
                                                     "SCThicknessAnalysis",
                                                     "SCDraftAngleAnalysis",
                                                     "SCHoleInfo"};

    const unsigned char* data;
    std::size_t size;
    HostTables* host;
    const ReadOptions& options;
    ReadReport& report;
    std::size_t at = 0;
    std::uint64_t chunks = 0;
    PoolsIn pools;
    Decompressor decompressor;
    Buffer buffer;
    std::shared_ptr<veksg::IFactory> factory;
    std::map<std::string, std::uint64_t> sizes;
    std::vector<Keyed> keyed;
};

} // namespace
} // namespace detail

Snapshot readSnapshot(const void* data, std::size_t size, HostTables* host,
                      const ReadOptions& options) {
    ReadReport report;
    report.fileBytes = size;
    Snapshot snapshot =
        detail::Reader(static_cast<const char*>(data), size, host, options, report).run();
    snapshot.report = report;
    return snapshot;
}

namespace {
Snapshot readAll(std::istream& in, const std::string& name, HostTables* host,
                 const ReadOptions& options) {
    const double start = detail::now();
    detail::Buffer bytes;
    // Memory follows what the stream actually delivers.
    constexpr std::size_t block = std::size_t{1} << 20;
    for (;;) {
        const std::size_t had = bytes.size();
        bytes.reserve(had + block);
        bytes.resize(had + block);
        in.read(bytes.data() + had, static_cast<std::streamsize>(block));
        const auto got = static_cast<std::size_t>(in.gcount());
        bytes.resize(had + got);
        if (got < block) break;
    }
    if (in.bad()) throw SnapshotError(name, bytes.size(), "the stream failed");
    const double read = detail::now() - start;
    Snapshot snapshot = readSnapshot(bytes.data(), bytes.size(), host, options);
    snapshot.report.readSeconds = read;
    return snapshot;
}
} // namespace

Snapshot readSnapshot(std::istream& in, HostTables* host, const ReadOptions& options) {
    return readAll(in, "stream", host, options);
}

Snapshot readSnapshot(const std::string& path, HostTables* host, const ReadOptions& options) {
    const double start = detail::now();
    std::ifstream in(path, std::ios::binary | std::ios::ate);
    if (!in) throw SnapshotError(path, 0, std::string("cannot open: ") + std::strerror(errno));
    const std::streamoff size = in.tellg();
    if (size < 0) return readAll(in, path, host, options);
    in.seekg(0);
    // The file's own size justifies reading it whole.
    detail::Buffer bytes;
    bytes.resize(static_cast<std::size_t>(size));
    in.read(bytes.data(), static_cast<std::streamsize>(size));
    if (in.gcount() != size) throw SnapshotError(path, 0, "the file could not be read whole");
    const double read = detail::now() - start;
    Snapshot snapshot = readSnapshot(bytes.data(), bytes.size(), host, options);
    snapshot.report.readSeconds = read;
    return snapshot;
}

} // namespace veksg::io
