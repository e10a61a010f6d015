// Hostile bytes into the snapshot reader: it either builds components or throws its own
// exception, never another one, a crash, a leak or undefined behaviour. Checksums are not
// verified here, so that mutated bytes reach the decoder. What reads writes again, and the
// same components write the same bytes twice: decoding and encoding agree.
#include <cstdint>
#include <sstream>
#include <string>

#include "FuzzCheck.h"
#include "veksg/Documents.h"
#include "veksg/io/Snapshot.h"

namespace {
std::string rewritten(const veksg::io::Snapshot& snapshot, const veksg::io::HostTables& host) {
    std::ostringstream out;
    veksg::io::writeSnapshot(out, snapshot.components, &host);
    return out.str();
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    veksg::Container<int, veksg::Layer> layers;
    veksg::io::HostTables host("Document");
    host.add("layers", layers);
    veksg::io::ReadOptions options;
    options.verifyChecksums = false;
    options.maxTableBytes = std::uint64_t{64} << 20;
    options.keySpaces = {{8, "Document.layers"}, {10, "SCSceneTopo.nodes"}};
    std::string first;
    try {
        first = rewritten(veksg::io::readSnapshot(data, size, &host, options), host);
    } catch (const veksg::io::SnapshotError&) {
        return 0;
    }
    options.verifyChecksums = true;
    const std::string second =
        rewritten(veksg::io::readSnapshot(first.data(), first.size(), &host, options), host);
    FUZZ_CHECK(first == second);
    return 0;
}
