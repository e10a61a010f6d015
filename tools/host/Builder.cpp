#include "Builder.h"

#include <cwchar>
#include <utility>

#include "ExternalFiles.h"
#include "PointCloud.h"

namespace vekhost {

namespace {
// Drawing modes of the primitive records, as OpenGL numbers them.
constexpr std::uint16_t lineStrip = 3;
constexpr std::uint16_t triangles = 4;

veksg::Point3 toPoint(const Vec3& p) {
    return veksg::Point3(static_cast<float>(p[0]), static_cast<float>(p[1]),
                         static_cast<float>(p[2]));
}

veksg::BBox toBBox(const Box3& box) {
    veksg::BBox out;
    if (!box.valid) return out;
    out.min = toPoint(box.min);
    out.max = toPoint(box.max);
    out.valid = true;
    return out;
}

veksg::OBBox toOBBox(const OrientedBox& box) {
    veksg::OBBox out;
    if (!box.valid) return out;
    out.center = toPoint(box.center);
    out.axisX = toPoint(box.axes[0]);
    out.axisY = toPoint(box.axes[1]);
    out.axisZ = toPoint(box.axes[2]);
    out.valid = true;
    return out;
}

std::shared_ptr<wchar_t> sharedText(const std::wstring& text) {
    std::shared_ptr<wchar_t> owned(new wchar_t[text.size() + 1], std::default_delete<wchar_t[]>());
    std::wmemcpy(owned.get(), text.c_str(), text.size() + 1);
    return owned;
}

void setLink(veksg::Container<int, int>& links, int key, int value) {
    links.insert(key, value, -1);
}

// Keeps the first value written to a link.
void setFirstLink(veksg::Container<int, int>& links, int key, int value) {
    if (key >= links.size() || links.getValue(key) < 0) links.insert(key, value, -1);
}

veksg::PrimitiveInfo makePrimitive(int id, const Range& range, std::uint16_t mode,
                                   const veksg::Point3& color) {
    veksg::PrimitiveInfo info;
    info.id = id;
    info.first = range.first;
    info.count = range.count;
    info.mode = mode;
    info.color = color;
    return info;
}

veksg::PLMaterial edgeMaterial() {
    veksg::PLMaterial material;
    material.color = veksg::Color4(0.1f, 0.1f, 0.1f, 1.0f);
    material.width = 1.0f;
    material.valid = true;
    return material;
}
} // namespace

int vertexCount(const veksg::Mesh& mesh) {
    return static_cast<int>(mesh.vn.size() + mesh.vnc.size() + mesh.vnt.size());
}

veksg::MMaterial materialFromColor(float red, float green, float blue, float alpha) {
    veksg::MMaterial material;
    material.ambient = veksg::Color4(0.25f * red, 0.25f * green, 0.25f * blue, alpha);
    material.diffuse = veksg::Color4(red, green, blue, alpha);
    material.specular = veksg::Color4(0.3f, 0.3f, 0.3f, alpha);
    material.emission = veksg::Color4(0.0f, 0.0f, 0.0f, alpha);
    material.valid = true;
    return material;
}

int DocumentBuilder::addNode(const std::wstring& name, int parent, const Matrix& world) {
    auto& topo = *doc.topo;
    auto& scene = *doc.scene;
    veksg::Node node;
    node.id = topo.nodes.size();
    node.setName(name.c_str());
    const int key = topo.nodes.insert(node);
    setLink(topo.nodeRefs1, key, parent);
    if (parent >= 0) {
        topo.nodeLists3.addChild(parent, key);
        scene.hierarchy.addChild(parent, key);
    }

    veksg::Transform transform;
    for (std::size_t i = 0; i < 16; ++i)
        transform.matrix[static_cast<int>(i)] = static_cast<float>(world.m[i]);
    transform.valid = true;
    scene.transforms.insert(key, transform, veksg::Transform());
    scene.boxes.insert(key, veksg::BBox(), veksg::BBox());
    doc.resources->orientedBoxes.insert(key, veksg::OBBox(), veksg::OBBox());
    worlds.push_back(world);
    nodeBoxes.emplace_back();
    partsOfNode.push_back(0);
    if (!name.empty()) addAttribute(key, L"name", name);
    return key;
}

void DocumentBuilder::addAttribute(int node, const wchar_t* key, const std::wstring& value) {
    auto& attributes = *doc.attributes;
    const int attribute =
        attributes.attributes.insert(std::make_shared<veksg::StringValue>(key, sharedText(value)));
    attributes.attributeIndices.insert(attribute, {node}, {});
    doc.topo->nodeLists10.addChild(node, attribute);
}

int DocumentBuilder::layer(const std::wstring& name) {
    const auto found = layerKeys.find(name);
    if (found != layerKeys.end()) return found->second;
    veksg::Layer record;
    record.name = name;
    const int key = doc.layers.insert(record);
    layerKeys.emplace(name, key);
    return key;
}

void DocumentBuilder::putOnLayer(int node, int layer) {
    doc.topo->nodeLists8.addChild(node, layer);
    setFirstLink(doc.scene->links8, layer, node);
}

void DocumentBuilder::setSource(const std::wstring& path, double tolerance) {
    doc.info->setFile(path.c_str());
    // Mesh files bring no tolerance of their own; the default stays.
    if (tolerance > 0 && !statedTolerance) doc.info->tolerance = static_cast<float>(tolerance);
}

void DocumentBuilder::setInfo(const SourceInfo& info) {
    writeInfo(*doc.info, info);
    if (info.tolerance > 0) {
        doc.info->tolerance = static_cast<float>(info.tolerance);
        statedTolerance = true;
    }
    auto& attributes = *doc.attributes;
    for (const auto& [key, value] : info.attributes) {
        const int attribute = attributes.attributes.insert(
            std::make_shared<veksg::StringValue>(key.c_str(), sharedText(value)));
        attributes.attributeIndices.insert(attribute, {}, {});
    }
    writeExternalFiles(*doc.extFiles, info.files);
}

void DocumentBuilder::useFiles(int mesh, const std::vector<int>& files) {
    if (mesh >= 0 && !files.empty()) doc.extFiles->fileIndices.insert(mesh, files, {});
}

void DocumentBuilder::setAnimation(const AnimationData& animation) {
    writeAnimation(doc, animation);
}

const DocumentBuilder::Bounds& DocumentBuilder::boundsOf(const PartGeometry& part) {
    const auto found = bounds.find(&part);
    if (found != bounds.end()) return found->second;
    Bounds result;
    if (part.bounds.valid) {
        result.oriented = part.bounds;
        result.box = part.bounds.box();
        return bounds.emplace(&part, result).first->second;
    }
    std::vector<PointRun> runs;
    if (part.mesh) {
        const auto& mesh = *part.mesh;
        runs.push_back({mesh.vn.empty() ? nullptr : mesh.vn.front().vertex, mesh.vn.size(), 6});
        runs.push_back({mesh.vnc.empty() ? nullptr : mesh.vnc.front().vertex, mesh.vnc.size(), 10});
        runs.push_back({mesh.vnt.empty() ? nullptr : mesh.vnt.front().vertex, mesh.vnt.size(), 8});
    }
    if (part.lines && !part.lines->points.empty())
        runs.push_back({part.lines->points.front().data(), part.lines->points.size(),
                        sizeof(veksg::Point3) / sizeof(float)});
    if (part.points && part.points->data)
        runs.push_back({part.points->data.get(), static_cast<std::size_t>(part.points->count),
                        static_cast<std::size_t>(part.points->stride)});
    result.oriented = fittedBox(runs);
    result.box = result.oriented.box();
    // A part with topology but no tessellation still has its vertices.
    if (!result.oriented.valid) {
        for (const Vec3& v : part.vertices)
            result.box.add(v);
        result.oriented = OrientedBox::of(result.box);
    }
    return bounds.emplace(&part, result).first->second;
}

PartKeys DocumentBuilder::addPart(int node, const std::shared_ptr<const PartGeometry>& part,
                                  const veksg::MMaterial& material) {
    auto& scene = *doc.scene;
    auto& topo = *doc.topo;
    const auto [known, added] = firstNodeOf.emplace(part.get(), node);
    if (added) keptParts.push_back(part);
    const int first = known->second;
    auto& record = topo.nodes.begin()[node];
    record.flag = true;
    if (record.ref < 0) record.ref = first;

    int meshKey = -1;
    if (part->mesh && vertexCount(*part->mesh) > 0) {
        meshKey = scene.meshes.insert(part->mesh);
        scene.meshMaterials.insert(meshKey, material, veksg::MMaterial());
        if (part->texture) scene.textures.insert(meshKey, part->texture, nullptr);
        setLink(scene.links6a, meshKey, node);
        setLink(scene.links6b, meshKey, part->faces.empty() ? -1 : topo.faces.size());
        topo.nodeLists9.addChild(node, meshKey);
    }
    int linesKey = -1;
    if (part->lines && !part->lines->points.empty()) {
        linesKey = scene.polylines.insert(part->lines);
        scene.polylineMaterials.insert(linesKey, edgeMaterial(), veksg::PLMaterial());
        setLink(scene.links7, linesKey, node);
        topo.nodeLists7.addChild(node, linesKey);
    }
    if (part->points && part->points->count > 0) {
        auto [buffer, isNew] = vertexBuffers.emplace(part.get(), -1);
        if (isNew) buffer->second = addVertexBuffer(*doc.resources, part->points);
        const auto& diffuse = material.diffuse;
        addPointPrimitive(*doc.resources, node, buffer->second,
                          veksg::Point3(diffuse[0], diffuse[1], diffuse[2]));
    }
    const PartKeys keys{topo.faces.size(), topo.edges.size(), meshKey};
    addTopology(node, *part, meshKey, linesKey, material);

    const Bounds& local = boundsOf(*part);
    const Matrix& world = worlds[static_cast<std::size_t>(node)];
    const OrientedBox placed = local.oriented.transformed(world);
    nodeBoxes[static_cast<std::size_t>(node)].add(placed.box());
    // A node showing several parts gets the box around all of them in `complete`.
    if (++partsOfNode[static_cast<std::size_t>(node)] == 1)
        doc.resources->orientedBoxes.setValue(node, toOBBox(placed));
    return keys;
}

void DocumentBuilder::addTopology(int node, const PartGeometry& part, int meshKey, int linesKey,
                                  const veksg::MMaterial& material) {
    auto& topo = *doc.topo;
    auto& res = *doc.resources;
    const Matrix& world = worlds[static_cast<std::size_t>(node)];
    const int surfaceBase = topo.surfaces.size();
    const int curveBase = topo.curves.size();
    const int vertexBase = topo.vertices.size();
    const int edgeBase = topo.edges.size();

    for (const int kind : part.surfaceKinds) {
        veksg::Surface surface;
        surface.id = topo.surfaces.size();
        topo.surfaces.insert(surface);
        setLink(topo.refs14b, surface.id, kind);
    }
    for (const int kind : part.curveKinds) {
        veksg::Curve curve;
        curve.id = topo.curves.size();
        topo.curves.insert(curve);
        setLink(topo.refs15b, curve.id, kind);
    }
    std::vector<Vec3> placedVertices;
    placedVertices.reserve(part.vertices.size());
    for (const Vec3& local : part.vertices) {
        veksg::Vertex vertex;
        placedVertices.push_back(world.point(local));
        vertex.position = toPoint(placedVertices.back());
        vertex.id = topo.vertices.size();
        topo.vertices.insert(vertex);
        setLink(topo.refs13a, vertex.id, node);
        topo.nodeLists6.addChild(node, vertex.id);
    }

    const veksg::Point3 edgeColor(0.1f, 0.1f, 0.1f);
    for (const auto& data : part.edges) {
        veksg::Edge edge;
        edge.id = topo.edges.size();
        edge.ref = node;
        edge.kind = data.kind;
        if (data.start >= 0) edge.pointA = toPoint(placedVertices[data.start]);
        if (data.end >= 0) edge.pointB = toPoint(placedVertices[data.end]);
        topo.edges.insert(edge);
        topo.nodeLists5.addChild(node, edge.id);
        const int curve = data.curve < 0 ? -1 : curveBase + data.curve;
        setLink(topo.edgeRefs1, edge.id, curve);
        if (curve >= 0) {
            setFirstLink(topo.refs15a, curve, edge.id);
            topo.lists15a.addChild(curve, edge.id);
        }
        for (const int end : {data.start, data.end}) {
            if (end < 0) continue;
            topo.edgeLists2.addChild(edge.id, vertexBase + end);
            topo.lists13.addChild(vertexBase + end, edge.id);
        }
        const int primitive = res.primitivesB.insert(
            makePrimitive(edge.id, linesKey < 0 ? Range() : data.points, lineStrip, edgeColor));
        setLink(res.primBLinks2, primitive, linesKey);
    }

    const auto& diffuse = material.diffuse;
    const veksg::Point3 faceColor(diffuse[0], diffuse[1], diffuse[2]);
    for (const auto& data : part.faces) {
        veksg::Face face;
        face.id = topo.faces.size();
        face.flag = data.reversed;
        const Box3 placed = data.box.transformed(world);
        face.pointA = toPoint(placed.min);
        face.pointB = toPoint(placed.max);
        topo.faces.insert(face);
        topo.nodeLists4.addChild(node, face.id);
        setLink(topo.faceRefs2, face.id, node);
        const int surface = data.surface < 0 ? -1 : surfaceBase + data.surface;
        setLink(topo.faceRefs1, face.id, surface);
        if (surface >= 0) {
            setFirstLink(topo.refs14a, surface, face.id);
            topo.lists14.addChild(surface, face.id);
        }
        for (const int edge : data.edges) {
            topo.faceLists2.addChild(face.id, edgeBase + edge);
            topo.edgeLists3.addChild(edgeBase + edge, face.id);
        }
        const int primitive = res.primitivesA.insert(
            makePrimitive(face.id, meshKey < 0 ? Range() : data.triangles, triangles, faceColor));
        setLink(res.primALinks1, primitive, meshKey);
    }
}

void DocumentBuilder::complete() {
    auto& topo = *doc.topo;
    // Children come after their parents, so one backward pass sums every subtree.
    for (int node = topo.nodes.size() - 1; node >= 0; --node) {
        const auto index = static_cast<std::size_t>(node);
        const int parent = topo.nodeRefs1.getValue(node);
        if (parent >= 0) nodeBoxes[static_cast<std::size_t>(parent)].add(nodeBoxes[index]);
        doc.scene->boxes.setValue(node, toBBox(nodeBoxes[index]));
        if (partsOfNode[index] != 1)
            doc.resources->orientedBoxes.setValue(node, toOBBox(OrientedBox::of(nodeBoxes[index])));
    }
    if (topo.nodes.size() > 0) {
        doc.scene->hierarchy.resizeToFitKey(topo.nodes.lastKey(), {});
        topo.topoKey = 0;
    }
    int parts = 0;
    for (const int count : partsOfNode)
        parts += count > 0 ? 1 : 0;
    topo.topoCount = parts;
    doc.layerSetting->layer = doc.layers.size();
    // Resizing starts new edge bits cleared; a viewer that draws a model's edges turns them
    // on as it loads it. One bit per edge is the size resizing keeps.
    doc.runtime->visibility.sets[3].assign(static_cast<std::size_t>(topo.edges.size()), true);
}

} // namespace vekhost
