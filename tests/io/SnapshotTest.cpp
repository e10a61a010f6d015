#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#define XXH_INLINE_ALL
#include <xxhash.h>

#include "io/Everything.h"
#include "io/SameTables.h"
#include "veksg/io/Snapshot.h"

namespace veksg::test {
namespace {

using io::HostTables;
using io::ReadOptions;
using io::SnapshotError;

std::string written(const std::vector<std::shared_ptr<Schema>>& components,
                    const HostTables* host = nullptr, int level = 1,
                    io::WriteReport* report = nullptr) {
    std::ostringstream out;
    io::WriteOptions options;
    options.level = level;
    const io::WriteReport made = io::writeSnapshot(out, components, host, options);
    if (report) *report = made;
    return out.str();
}

io::Snapshot readBack(const std::string& bytes, HostTables* host = nullptr,
                      const ReadOptions& options = ReadOptions()) {
    return io::readSnapshot(bytes.data(), bytes.size(), host, options);
}

// The message of the library's exception, or what else happened.
std::string failure(const std::string& bytes, const ReadOptions& options = ReadOptions(),
                    HostTables* host = nullptr) {
    try {
        readBack(bytes, host, options);
        return "no error";
    } catch (const SnapshotError& error) {
        return error.what();
    } catch (const std::exception& error) {
        return std::string("another exception: ") + error.what();
    }
}

struct ChunkAt {
    std::size_t offset = 0, header = 0, end = 0;
    std::string name;
};

// The chunks of a well-formed file, found the way docs/snapshot.md lays them out.
std::vector<ChunkAt> chunksOf(const std::string& bytes) {
    std::vector<ChunkAt> chunks;
    for (std::size_t at = 32; at < bytes.size();) {
        std::uint16_t component = 0;
        std::uint16_t table = 0;
        std::uint64_t stored = 0;
        std::memcpy(&component, &bytes[at + 2], 2);
        std::memcpy(&table, &bytes[at + 4], 2);
        std::memcpy(&stored, &bytes[at + 24], 8);
        ChunkAt chunk{at, 32u + component + table + 8u, 0, {}};
        chunk.end = at + chunk.header + stored;
        chunk.name =
            bytes.substr(at + 32, component) + "." + bytes.substr(at + 32 + component, table);
        chunks.push_back(chunk);
        at = chunk.end;
    }
    return chunks;
}

ChunkAt chunkNamed(const std::vector<ChunkAt>& chunks, const std::string& name) {
    for (const ChunkAt& chunk : chunks)
        if (chunk.name == name) return chunk;
    throw std::logic_error("no chunk " + name);
}

// A chunk changed on purpose gets a matching checksum, so that the reader meets the change.
void reseal(std::string& bytes, const ChunkAt& chunk) {
    const char* header = &bytes[chunk.offset];
    const std::uint64_t seed = XXH3_64bits(header, chunk.header - 8);
    const std::uint64_t sum =
        XXH3_64bits_withSeed(header + chunk.header, chunk.end - chunk.offset - chunk.header, seed);
    std::memcpy(&bytes[chunk.offset + chunk.header - 8], &sum, 8);
}

std::string at(const ChunkAt& chunk) {
    return " at byte " + std::to_string(chunk.offset) + ": ";
}

void expectSame(const std::vector<std::shared_ptr<Schema>>& a,
                const std::vector<std::shared_ptr<Schema>>& b) {
    ASSERT_EQ(a.size(), b.size());
    SameTables same;
    for (std::size_t i = 0; i < a.size(); ++i)
        same.component(*a[i], *b[i]);
    for (const std::string& problem : same.problems)
        ADD_FAILURE() << problem;
}

TEST(Snapshot, EveryTableOfEveryComponentComesBackWithItsSharing) {
    const auto components = everything();
    Container<int, Layer> layers;
    layers.insert({L"hidden"}), layers.insert({L"\u00fcber"});
    HostTables host("Document");
    host.add("layers", layers);
    for (const int level : {0, 1, 19}) {
        io::WriteReport report;
        const std::string bytes = written(components, &host, level, &report);
        EXPECT_EQ(report.fileBytes, bytes.size());
        EXPECT_EQ(report.hostObjects, std::uint64_t{hostObjectsInEverything});
        Container<int, Layer> copy;
        HostTables into("Document");
        into.add("layers", copy);
        const io::Snapshot snapshot = readBack(bytes, &into);
        expectSame(components, snapshot.components);
        SameTables same;
        same.table(layers, copy, "Document.layers");
        EXPECT_TRUE(same.problems.empty()) << same.problems.front();
        EXPECT_EQ(snapshot.report.chunks, report.chunks);
        EXPECT_EQ(snapshot.report.sharedObjects, report.sharedObjects);
    }
}

TEST(Snapshot, CharactersThatUtf16CannotCarryReadBackAsReplacementCharacters) {
    const auto info = std::make_shared<SCInfo>();
    const wchar_t path[] = {L'a', wchar_t(0xD800), L'b', wchar_t(0x1F600), 0};
    info->setFile(path);
    io::WriteReport report;
    const std::string bytes = written({info}, nullptr, 1, &report);
    EXPECT_EQ(report.replacedCharacters, sizeof(wchar_t) == 4 ? 1u : 0u);
    const auto copy = std::dynamic_pointer_cast<SCInfo>(readBack(bytes).components.at(0));
    const wchar_t expected[] = {L'a', wchar_t(0xFFFD), L'b', wchar_t(0x1F600), 0};
    if (sizeof(wchar_t) == 4) {
        EXPECT_EQ(std::wstring(copy->file()), expected);
    }
}

TEST(Snapshot, WritesAFileWholeOrNotAtAll) {
    const std::string path = testing::TempDir() + "snapshot-test.vks";
    io::writeSnapshot(path, everything());
    EXPECT_EQ(io::readSnapshot(path).components.size(), everything().size());
    EXPECT_THROW(io::writeSnapshot(path + "/no/such/dir.vks", everything()), SnapshotError);
    std::ifstream partial(path + "/no/such/dir.vks.partial");
    EXPECT_FALSE(partial.good());
    std::remove(path.c_str());
}

// A small file with a shared mesh, a table of every kind of payload, compressed and stored
// chunks.
std::vector<std::shared_ptr<Schema>> small() {
    auto scene = std::make_shared<SCScene>();
    auto mesh = std::make_shared<Mesh>();
    mesh->vn.resize(8, {{1, 2, 3}, {0, 0, 1}});
    scene->meshes.insert(mesh), scene->meshes.insert(mesh);
    scene->hierarchy.addChild(1, {2, 3});
    auto info = std::make_shared<SCInfo>();
    info->setFile(L"small.step");
    return {scene, info};
}

TEST(SnapshotDefences, EveryTruncationAndEveryFlippedByteOfTheHeaderAndOfAChunkIsRefused) {
    const std::string bytes = written(small());
    ASSERT_EQ(failure(bytes), "no error");
    for (std::size_t n = 0; n < bytes.size(); ++n) {
        const std::string message = failure(bytes.substr(0, n));
        ASSERT_EQ(message.rfind("snapshot: ", 0), 0u) << n << " bytes: " << message;
    }
    const ChunkAt& meshes = chunkNamed(chunksOf(bytes), "shared.meshes");
    std::vector<std::size_t> offsets;
    for (std::size_t i = 0; i < 32; ++i)
        offsets.push_back(i);
    for (std::size_t i = meshes.offset; i < meshes.end; ++i)
        offsets.push_back(i);
    for (const std::size_t offset : offsets)
        for (const int bit : {0, 7}) {
            std::string damaged = bytes;
            damaged[offset] = static_cast<char>(damaged[offset] ^ (1 << bit));
            const std::string message = failure(damaged);
            ASSERT_EQ(message.rfind("snapshot: ", 0), 0u) << "byte " << offset << ": " << message;
        }
}

TEST(SnapshotDefences, EachCauseIsNamedWithItsPlace) {
    const std::string bytes = written(small(), nullptr, 0);
    const auto chunks = chunksOf(bytes);
    const ChunkAt& meshes = chunkNamed(chunks, "SCScene.meshes");
    const ChunkAt& component = chunkNamed(chunks, "SCScene.");

    std::string damaged = bytes;
    damaged[1] = 'X';
    EXPECT_EQ(failure(damaged), "snapshot: header at byte 0: not a snapshot (wrong magic)");
    damaged = bytes;
    damaged[8] = 2;
    EXPECT_EQ(failure(damaged), "snapshot: header at byte 8: unknown format version 2");
    EXPECT_EQ(failure(bytes + "x"), "snapshot: end at byte " + std::to_string(bytes.size()) +
                                        ": bytes after the end chunk: 1");
    damaged = bytes;
    damaged[meshes.end - 1] ^= 1;
    EXPECT_EQ(failure(damaged), "snapshot: SCScene.meshes" + at(meshes) + "checksum mismatch");
    EXPECT_EQ(failure(bytes.substr(0, meshes.end - 1)),
              "snapshot: SCScene.meshes" + at(meshes) +
                  "truncated: the chunk's 8 bytes run past the end of the file (7 left)");
    ReadOptions tight;
    tight.maxTableBytes = 100;
    EXPECT_EQ(failure(bytes, tight), "snapshot: shared.meshes" +
                                         at(chunkNamed(chunks, "shared.meshes")) +
                                         "oversized: 204 bytes exceed the limit of 100");

    damaged = bytes;
    damaged[meshes.offset + 32 + 7 + 5] = 'z';
    reseal(damaged, meshes);
    EXPECT_EQ(failure(damaged), "snapshot: SCScene.meshez" + at(meshes) +
                                    "unknown table (SCScene.meshes comes here)");
    damaged = bytes;
    damaged[component.offset + 32 + 6] = 'f';
    reseal(damaged, component);
    EXPECT_EQ(failure(damaged), "snapshot: SCScenf" + at(component) + "unknown component");

    // The second mesh refers to the ninth shared mesh of one.
    damaged = bytes;
    damaged[meshes.offset + meshes.header + 4] = 9;
    reseal(damaged, meshes);
    EXPECT_EQ(failure(damaged),
              "snapshot: SCScene.meshes" + at(meshes) + "refers to shared object 9 of 1 in meshes");
    damaged = bytes;
    damaged[meshes.offset + 8] = 3;
    reseal(damaged, meshes);
    EXPECT_EQ(failure(damaged), "snapshot: SCScene.meshes" + at(meshes) +
                                    "3 elements cannot fit in the 8 bytes left");
}

TEST(SnapshotDefences, KeysOutsideTheirKeySpaceAreRefusedWhenTheHostNamesTheSpace) {
    auto topo = std::make_shared<SCSceneTopo>();
    topo->nodes.insert(Node());
    topo->nodeRefs1.resizeToFitKey(2, -1);
    const std::string bytes = written({topo});
    ReadOptions spaces;
    spaces.keySpaces = {{10, "SCSceneTopo.nodes"}};
    const ChunkAt& refs = chunkNamed(chunksOf(bytes), "SCSceneTopo.nodeRefs1");
    EXPECT_EQ(failure(bytes, spaces),
              "snapshot: SCSceneTopo.nodeRefs1" + at(refs) +
                  "a key outside its table: 3 keys of key space 10, whose SCSceneTopo.nodes has 1");
    EXPECT_EQ(failure(bytes), "no error");
}

TEST(SnapshotDefences, AFailedReadLeavesTheHostsTablesAsTheyWere) {
    Container<int, Layer> layers;
    layers.insert({L"one"}), layers.insert({L"two"});
    HostTables host("Document");
    host.add("layers", layers);
    const std::string bytes = written(small(), &host);
    Container<int, Layer> mine;
    mine.insert({L"mine"});
    HostTables into("Document");
    into.add("layers", mine);
    EXPECT_NE(failure(bytes.substr(0, bytes.size() - 1), ReadOptions(), &into), "no error");
    ASSERT_EQ(mine.size(), 1);
    EXPECT_EQ(mine.getValue(0).name, L"mine");
    EXPECT_EQ(failure(bytes), "snapshot: Document at byte " +
                                  std::to_string(chunkNamed(chunksOf(bytes), "Document.").offset) +
                                  ": unknown component");
    EXPECT_EQ(failure(bytes, ReadOptions(), &into), "no error");
    EXPECT_EQ(mine.getValue(1).name, L"two");
}

} // namespace
} // namespace veksg::test
