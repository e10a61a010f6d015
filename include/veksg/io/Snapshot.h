#pragma once

// Snapshots: a set of components, and tables a host keeps beside them, saved to one file and
// read back into new components. docs/snapshot.md describes the file.
#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "veksg/Container.h"
#include "veksg/Factory.h"
#include "veksg/Schema.h"
#include "veksg/io/Export.h"

namespace veksg::io {

/// Why a snapshot could not be read or written. The message names the place and the cause:
/// "snapshot: SCSceneTopo.nodeLists3 at byte 18232: checksum mismatch".
class VEKSG_IO_API SnapshotError : public std::runtime_error {
public:
    SnapshotError(const std::string& where, std::uint64_t offset, const std::string& cause);
    SnapshotError(const SnapshotError&) = default;
    SnapshotError& operator=(const SnapshotError&) = default;
    ~SnapshotError() override;

    /// "Component.table", "header", "shared meshes", or the file written.
    const std::string& where() const { return where_; }
    /// Byte offset in the file of the chunk (or header field) at fault.
    std::uint64_t offset() const { return offset_; }

private:
    std::string where_;
    std::uint64_t offset_;
};

/// Tables a host keeps beside the components (for example a layer table), written and read
/// under a group name in the order they were added. `V` is any value type of the data model's
/// keyed tables. The tables are referenced, not copied: they must outlive the object. A read
/// replaces their contents only when the whole file has been read.
class VEKSG_IO_API HostTables {
public:
    explicit HostTables(std::string group);
    HostTables(const HostTables&) = delete;
    HostTables& operator=(const HostTables&) = delete;
    ~HostTables();

    template <typename V>
    void add(const std::string& name, veksg::Container<int, V>& table);

    const std::string& group() const { return group_; }

    /// One registered table; the library's own.
    class Entry;
    const std::vector<std::unique_ptr<Entry>>& entries() const { return entries_; }

private:
    std::string group_;
    std::vector<std::unique_ptr<Entry>> entries_;
};

struct WriteOptions {
    /// zstd's compression level; 0 stores every table uncompressed.
    int level = 1;
};

/// What a write did.
struct WriteReport {
    std::uint64_t fileBytes = 0;
    /// Table data before compression.
    std::uint64_t tableBytes = 0;
    std::uint64_t chunks = 0;
    /// Objects held through shared pointers (meshes, polylines, textures, PMI, states, ...),
    /// each written once however many tables refer to it.
    std::uint64_t sharedObjects = 0;
    /// Host-owned objects left out: client objects behind `std::shared_ptr<void>`, state
    /// executors and activators, visibility predicates, and objects of classes the library
    /// does not define. They read back as empty pointers (executors and predicates as none).
    std::uint64_t hostObjects = 0;
    /// Characters that UTF-16 cannot carry, written as U+FFFD.
    std::uint64_t replacedCharacters = 0;
};

/// Writes `components` (each of one of the library's twenty classes) and, when given, the
/// host's tables. Throws SnapshotError when the stream fails or a component is of a class
/// the library does not define.
VEKSG_IO_API WriteReport
writeSnapshot(std::ostream& out, const std::vector<std::shared_ptr<veksg::Schema>>& components,
              const HostTables* host = nullptr, const WriteOptions& options = WriteOptions());
/// Writes to a file beside `path` and renames it into place, so that a failed write never
/// leaves a partial file at `path`.
VEKSG_IO_API WriteReport writeSnapshot(
    const std::string& path, const std::vector<std::shared_ptr<veksg::Schema>>& components,
    const HostTables* host = nullptr, const WriteOptions& options = WriteOptions());

struct ReadOptions {
    /// Makes the components it makes; null for the library's own. The four kinds the factory
    /// does not make are constructed directly.
    std::shared_ptr<veksg::IFactory> factory;
    /// The largest table accepted, in bytes after decompression.
    std::uint64_t maxTableBytes = std::uint64_t{1} << 32;
    /// Off only for fuzzing, where mutated bytes should reach the decoder.
    bool verifyChecksums = true;
    /// The primary table of each key space the host gives a meaning ("SCSceneTopo.nodes" for
    /// 10): a table that the catalogue keys by a listed space must not have more entries than
    /// its primary table, or the file names keys that do not exist.
    std::map<short, std::string> keySpaces;
};

/// What a read did and what each phase cost.
struct ReadReport {
    std::uint64_t fileBytes = 0;
    std::uint64_t tableBytes = 0;
    std::uint64_t chunks = 0;
    std::uint64_t sharedObjects = 0;
    double readSeconds = 0;
    double verifySeconds = 0;
    double decompressSeconds = 0;
    double decodeSeconds = 0;
};

struct Snapshot {
    /// New components, in the order they were written.
    std::vector<std::shared_ptr<veksg::Schema>> components;
    ReadReport report;
};

/// Reads a snapshot. Throws SnapshotError for anything wrong with the file; then nothing of
/// it reaches the caller and `host`'s tables are unchanged. `host` must name every group and
/// table of host tables the file holds.
VEKSG_IO_API Snapshot readSnapshot(const std::string& path, HostTables* host = nullptr,
                                   const ReadOptions& options = ReadOptions());
VEKSG_IO_API Snapshot readSnapshot(std::istream& in, HostTables* host = nullptr,
                                   const ReadOptions& options = ReadOptions());
VEKSG_IO_API Snapshot readSnapshot(const void* data, std::size_t size, HostTables* host = nullptr,
                                   const ReadOptions& options = ReadOptions());

} // namespace veksg::io
