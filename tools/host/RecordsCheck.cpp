#include "RecordsCheck.h"

#include <algorithm>

#include "ExternalFiles.h"
#include "PointCloud.h"

namespace vekhost {

namespace {
std::string at(const char* table, long long key) {
    return std::string(table) + "[" + std::to_string(key) + "]";
}

class RecordChecker {
public:
    explicit RecordChecker(const Document& document) : doc(document) {}

    RecordFindings run() {
        animation();
        externalFiles();
        points();
        found.warnings = missingFileWarnings(doc);
        return std::move(found);
    }

private:
    // One fact looked at; `holds` false makes it a problem.
    void expect(bool holds, const std::string& problem) {
        ++found.references;
        if (!holds) found.problems.push_back(problem);
    }

    void animation() {
        const auto& columns = doc.topo->nodeRefs2;
        const auto& animation = *doc.animation;
        const int nodes = doc.topo->nodes.size();
        std::vector<int> nodeOf;
        for (int node = 0; node < columns.size(); ++node) {
            const int column = columns.getValue(node);
            if (column < 0) continue;
            expect(node < nodes, at("SCSceneTopo.nodeRefs2", node) + " animates a node of " +
                                     std::to_string(nodes));
            nodeOf.resize(std::max(nodeOf.size(), static_cast<std::size_t>(column) + 1), -1);
            expect(nodeOf[static_cast<std::size_t>(column)] < 0,
                   at("SCSceneTopo.nodeRefs2", node) + " takes column " + std::to_string(column) +
                       " twice");
            nodeOf[static_cast<std::size_t>(column)] = node;
        }
        // Columns follow the node keys upwards, without gaps.
        int last = -1;
        for (std::size_t column = 0; column < nodeOf.size(); ++column) {
            expect(nodeOf[column] > last, "SCSceneTopo.nodeRefs2: column " +
                                              std::to_string(column) + " is out of node order");
            last = std::max(last, nodeOf[column]);
        }
        const std::size_t expected = animation.keys.size() * nodeOf.size();
        expect(animation.transforms.size() == expected,
               "SCAnimation.transforms holds " + std::to_string(animation.transforms.size()) +
                   " placements for " + std::to_string(animation.keys.size()) + " keys and " +
                   std::to_string(nodeOf.size()) + " nodes");
        for (std::size_t t = 0; t < animation.transforms.size(); ++t)
            expect(animation.transforms[t].valid,
                   at("SCAnimation.transforms", static_cast<long long>(t)) + " is not set");
    }

    void externalFiles() {
        const auto& ext = *doc.extFiles;
        const int files = ext.files.size();
        for (int k = 0; k < files; ++k)
            expect(ext.files.getValue(k).id == k, at("SCExtFile.files", k) + " has id " +
                                                      std::to_string(ext.files.getValue(k).id));
        expect(ext.names.size() == static_cast<std::size_t>(files),
               "SCExtFile.names holds " + std::to_string(ext.names.size()) + " roles for " +
                   std::to_string(files) + " files");
        expect(ext.flags.size() == files, "SCExtFile.flags holds " +
                                              std::to_string(ext.flags.size()) + " flags for " +
                                              std::to_string(files) + " files");
        const int meshes = doc.scene->meshes.size();
        for (int mesh = 0; mesh < ext.fileIndices.size(); ++mesh)
            for (const int file : ext.fileIndices.getValue(mesh)) {
                expect(mesh < meshes, at("SCExtFile.fileIndices", mesh) + " is past the " +
                                          std::to_string(meshes) + " meshes");
                expect(file >= 0 && file < files, at("SCExtFile.fileIndices", mesh) +
                                                      " names file " + std::to_string(file) +
                                                      " of " + std::to_string(files));
            }
    }

    void points() {
        const auto& res = *doc.resources;
        const auto& nodes = doc.topo->nodes;
        const int buffers = res.vertexInfos.size();
        for (int v = 0; v < buffers; ++v) {
            const auto& buffer = res.vertexInfos.getValue(v);
            expect(buffer &&
                       (buffer->stride == points::plainStride ||
                        buffer->stride == points::colouredStride) &&
                       buffer->count >= 0 && (buffer->count == 0 || buffer->data),
                   at("SCSceneRes.vertexInfos", v) + " is not a buffer of points");
        }
        expect(res.primCLinks1.size() >= res.primitivesC.size(),
               "SCSceneRes.primCLinks1 has " + std::to_string(res.primCLinks1.size()) +
                   " entries for " + std::to_string(res.primitivesC.size()) + " primitives");
        for (int p = 0; p < res.primitivesC.size(); ++p) {
            const veksg::PrimitiveInfo& info = res.primitivesC.getValue(p);
            const int buffer = p < res.primCLinks1.size() ? res.primCLinks1.getValue(p) : -1;
            const bool known = buffer >= 0 && buffer < buffers && res.vertexInfos.getValue(buffer);
            const bool node = info.id >= 0 && info.id < nodes.size();
            expect(node && nodes.getValue(info.id).flag,
                   at("SCSceneRes.primitivesC", p) + " names node " + std::to_string(info.id) +
                       ", which shows no geometry of " + std::to_string(nodes.size()));
            expect(known, at("SCSceneRes.primCLinks1", p) + " names buffer " +
                              std::to_string(buffer) + " of " + std::to_string(buffers));
            const int available = known ? res.vertexInfos.getValue(buffer)->count : 0;
            expect(info.mode == points::mode && info.first >= 0 && info.count >= 0 &&
                       info.first <= available - info.count,
                   at("SCSceneRes.primitivesC", p) + " covers " + std::to_string(info.first) + "+" +
                       std::to_string(info.count) + " of " + std::to_string(available) + " points");
            const bool listed = known && buffer < res.vertexLists.size() &&
                                std::count(res.vertexLists.getValue(buffer).begin(),
                                           res.vertexLists.getValue(buffer).end(), p) == 1;
            expect(listed, at("SCSceneRes.vertexLists", buffer) + " does not list primitive " +
                               std::to_string(p) + " once");
        }
        for (int v = 0; v < res.vertexLists.size(); ++v)
            for (const int p : res.vertexLists.getValue(v))
                expect(p >= 0 && p < res.primitivesC.size() && p < res.primCLinks1.size() &&
                           res.primCLinks1.getValue(p) == v,
                       at("SCSceneRes.vertexLists", v) + " lists primitive " + std::to_string(p) +
                           ", which draws from another buffer");
    }

    const Document& doc;
    RecordFindings found;
};
} // namespace

RecordFindings checkRecords(const Document& document) {
    return RecordChecker(document).run();
}

} // namespace vekhost
