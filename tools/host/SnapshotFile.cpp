#include "SnapshotFile.h"

#include <new>
#include <set>
#include <type_traits>

#include "KeySpaces.h"

namespace vekhost {

namespace io = veksg::io;

namespace {
// The host's own table goes beside the components under this group.
constexpr const char* hostGroup = "Document";

// Puts a read component into the document's slot of its class.
void place(Document& document, const std::shared_ptr<veksg::Schema>& component,
           std::set<const void*>& filled) {
    bool placed = false;
    auto into = [&](auto& slot) {
        using Component = typename std::decay_t<decltype(slot)>::element_type;
        auto typed = placed ? nullptr : std::dynamic_pointer_cast<Component>(component);
        if (!typed) return;
        if (!filled.insert(&slot).second)
            throw LoadError(std::string("snapshot: two components of class ") +
                            veksg::componentName(*component));
        slot = std::move(typed);
        placed = true;
    };
    into(document.scene), into(document.topo), into(document.resources), into(document.runtime);
    into(document.pmi), into(document.views), into(document.states), into(document.tempGraphics);
    into(document.attributes), into(document.info), into(document.layerSetting);
    into(document.extFiles), into(document.animation), into(document.features);
    into(document.holeInfo), into(document.comparison), into(document.thickness);
    into(document.draft), into(document.drawing);
    if (!placed)
        throw LoadError(std::string("snapshot: a ") + veksg::componentName(*component) +
                        ", which a document does not hold");
}
} // namespace

std::map<short, std::string> snapshotKeySpaces() {
    return {{MESHES, "SCScene.meshes"},
            {POLYLINES, "SCScene.polylines"},
            {LAYERS, "Document.layers"},
            {NODES, "SCSceneTopo.nodes"},
            {FACES, "SCSceneTopo.faces"},
            {EDGES, "SCSceneTopo.edges"},
            {VERTICES, "SCSceneTopo.vertices"},
            {SURFACES, "SCSceneTopo.surfaces"},
            {CURVES, "SCSceneTopo.curves"},
            {PMI_ITEMS, "SCPmi.pmis"},
            {VIEWS, "SCPmi.views"}};
}

io::WriteReport saveSnapshot(Document& document, const std::string& path, int level) {
    io::HostTables host(hostGroup);
    host.add("layers", document.layers);
    io::WriteOptions options;
    options.level = level;
    try {
        return io::writeSnapshot(path, document.components(), &host, options);
    } catch (const io::SnapshotError& error) {
        throw LoadError(error.what());
    }
}

LoadResult loadSnapshot(const std::string& path, const LoadOptions& options) {
    if (options.progress) options.progress->phase("reading");
    LoadResult result;
    result.format = "snapshot";
    result.document = std::make_unique<Document>();
    Document& document = *result.document;
    io::HostTables host(hostGroup);
    host.add("layers", document.layers);
    io::ReadOptions reading;
    reading.factory = document.factory;
    reading.keySpaces = snapshotKeySpaces();
    io::Snapshot snapshot;
    try {
        snapshot = io::readSnapshot(path, &host, reading);
    } catch (const io::SnapshotError& error) {
        throw LoadError(error.what());
    } catch (const std::bad_alloc&) {
        throw LoadError("out of memory");
    }
    std::set<const void*> filled;
    for (const auto& component : snapshot.components)
        place(document, component, filled);
    const io::ReadReport& report = snapshot.report;
    result.times.named = {{"read", report.readSeconds},
                          {"verify", report.verifySeconds},
                          {"decompress", report.decompressSeconds},
                          {"decode", report.decodeSeconds}};
    return result;
}

} // namespace vekhost
