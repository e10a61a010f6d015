#include "Renderer.h"

#include <algorithm>
#include <array>
#include <vector>

namespace vekview {

namespace {
constexpr std::array<float, 4> background{0.93f, 0.94f, 0.96f, 0.0f};
constexpr std::array<float, 4> defaultFace{0.7f, 0.7f, 0.7f, 1.0f};
constexpr std::array<float, 4> defaultEdge{0.1f, 0.1f, 0.1f, 1.0f};
constexpr std::array<float, 4> highlightColor{1.0f, 0.55f, 0.05f, 1.0f};
constexpr std::array<float, 4> capColor{0.78f, 0.26f, 0.22f, 1.0f};
constexpr std::array<float, 4> markerColor{0.05f, 0.3f, 0.95f, 1.0f};
constexpr float highlightWidth = 2.5f;
constexpr float markerSize = 9.0f;

// The runs of an entry that fall into [first, first + count), relative to `first`.
void runsIn(const std::vector<int>& runs, int first, int count, std::vector<GLint>& firsts,
            std::vector<GLsizei>& counts) {
    firsts.clear();
    counts.clear();
    for (std::size_t i = 0; i + 1 < runs.size(); i += 2) {
        const int begin = std::max(runs[i], first);
        const int end = std::min(runs[i] + runs[i + 1], first + count);
        if (end <= begin) continue;
        firsts.push_back(begin - first);
        counts.push_back(end - begin);
    }
}

void setMatrix(GLint location, const Matrix& m) {
    const std::array<float, 16> f = toFloats(m);
    glUniformMatrix4fv(location, 1, GL_FALSE, f.data());
}

// The inverse transpose of the linear part carries normals under any invertible placement.
void setNormalMatrix(GLint location, const Matrix& modelView) {
    const Matrix inv = inverse(modelView);
    std::array<float, 9> n{};
    for (std::size_t c = 0; c < 3; ++c)
        for (std::size_t r = 0; r < 3; ++r)
            n[c * 3 + r] = static_cast<float>(inv.m[r * 4 + c]);
    glUniformMatrix3fv(location, 1, GL_FALSE, n.data());
}

template <typename Record>
const Record* validAt(const veksg::Container<int, Record>& table, int key) {
    if (key < 0 || key >= table.size() || !table.getValue(key).valid) return nullptr;
    return &table.getValue(key);
}

long long sum(const std::vector<GLsizei>& counts) {
    long long total = 0;
    for (const GLsizei count : counts)
        total += count;
    return total;
}
} // namespace

struct Renderer::Matrices {
    Matrix view;
    Matrix projection;
    std::array<float, 4> plane{0, 0, 0, 1};
    bool clipping = false;
};

Renderer::Renderer() : scratchBuffer(gl::makeBuffer()), scratchArray(gl::makeVertexArray()) {
    glBindVertexArray(scratchArray.get());
    glBindBuffer(GL_ARRAY_BUFFER, scratchBuffer.get());
    glEnableVertexAttribArray(attribPosition);
    glVertexAttribPointer(attribPosition, 3, GL_FLOAT, GL_FALSE, 3 * sizeof(float), nullptr);
    glBindVertexArray(0);
    glBindBuffer(GL_ARRAY_BUFFER, 0);
}

Renderer::Matrices Renderer::matricesOf(const FrameSetup& setup) {
    Matrices m;
    const double aspect = static_cast<double>(setup.width) / std::max(setup.height, 1);
    m.view = setup.camera->view();
    m.projection = setup.camera->projection(aspect);
    if (setup.section.active) {
        const Vec3 n = normalized(setup.section.normal);
        m.plane = {static_cast<float>(-n[0]), static_cast<float>(-n[1]), static_cast<float>(-n[2]),
                   static_cast<float>(setup.section.offset)};
        m.clipping = true;
    }
    return m;
}

FrameStats Renderer::draw(const vekhost::Document& document, const GpuScene& gpu,
                          const FrameSetup& setup) {
    FrameStats stats;
    const Matrices m = matricesOf(setup);
    glClearColor(background[0], background[1], background[2], background[3]);
    glClearStencil(0);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT | GL_STENCIL_BUFFER_BIT);
    glEnable(GL_DEPTH_TEST);
    glDepthFunc(GL_LEQUAL);
    glDisable(GL_BLEND);
    glDisable(GL_CULL_FACE);
    if (m.clipping) glEnable(GL_CLIP_DISTANCE0);

    faces(document, gpu, m, Pass::Shade, stats);
    if (m.clipping) {
        stencilOfSection(document, gpu, m, stats);
        glDisable(GL_CLIP_DISTANCE0);
        cap(setup, m, stats);
        glEnable(GL_CLIP_DISTANCE0);
    }
    edges(document, gpu, m, false, stats);
    glDisable(GL_CLIP_DISTANCE0);
    markers(document, m, stats);
    glBindVertexArray(0);
    glUseProgram(0);
    return stats;
}

void Renderer::drawIds(const vekhost::Document& document, const GpuScene& gpu,
                       const FrameSetup& setup) {
    FrameStats stats;
    const Matrices m = matricesOf(setup);
    if (m.clipping) glEnable(GL_CLIP_DISTANCE0);
    const GLuint none[4] = {0, 0, 0, 0};
    glClearBufferuiv(GL_COLOR, 0, none);
    glClearBufferuiv(GL_COLOR, 1, none);
    glClear(GL_DEPTH_BUFFER_BIT);
    glEnable(GL_DEPTH_TEST);
    glDepthFunc(GL_LEQUAL);
    glDisable(GL_BLEND);
    faces(document, gpu, m, Pass::Ids, stats);
    // Edges go into their own target only; where they pass, the face below stays known.
    glColorMaski(0, GL_FALSE, GL_FALSE, GL_FALSE, GL_FALSE);
    edges(document, gpu, m, true, stats);
    glColorMaski(0, GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
    glDisable(GL_CLIP_DISTANCE0);
    glBindVertexArray(0);
    glUseProgram(0);
}

void Renderer::useFlat(const Matrices& m, const std::array<float, 4>& plane) {
    glUseProgram(shaders.flat.get());
    setMatrix(shaders.flatAt.view, m.view);
    setMatrix(shaders.flatAt.projection, m.projection);
    glUniform4fv(shaders.flatAt.plane, 1, plane.data());
}

void Renderer::material(const veksg::SCScene& scene, int key, bool lit) {
    const veksg::MMaterial* material = validAt(scene.meshMaterials, key);
    const auto& s = shaders.surfaceAt;
    if (material) {
        glUniform4fv(s.diffuse, 1, material->diffuse.data());
        glUniform3fv(s.specular, 1, material->specular.data());
        glUniform1f(s.shininess, std::clamp(material->shininess, 1.0f, 128.0f));
    } else {
        glUniform4fv(s.diffuse, 1, defaultFace.data());
        glUniform3f(s.specular, 0.3f, 0.3f, 0.3f);
        glUniform1f(s.shininess, 30.0f);
    }
    glUniform4fv(s.highlight, 1, lit ? highlightColor.data() : background.data());
}

// The faces' batches in one of three passes: shaded, as object keys, or into the stencil
// alone. Programs lack the uniforms they do not use; OpenGL ignores location -1.
void Renderer::faces(const vekhost::Document& document, const GpuScene& gpu, const Matrices& m,
                     Pass pass, FrameStats& stats) {
    const veksg::MeshRT& batch = document.runtime->meshes;
    GLint modelAt = shaders.flatAt.model;
    GLint normalAt = -1;
    GLint baseAt = -1;
    if (pass == Pass::Stencil) {
        useFlat(m, m.plane);
    } else {
        const bool ids = pass == Pass::Ids;
        glUseProgram(ids ? shaders.ids.get() : shaders.surface.get());
        modelAt = ids ? shaders.idsAt.model : shaders.surfaceAt.model;
        normalAt = ids ? shaders.idsAt.normalMatrix : shaders.surfaceAt.normalMatrix;
        baseAt = ids ? shaders.idsAt.vertexBase : shaders.surfaceAt.vertexBase;
        setMatrix(ids ? shaders.idsAt.view : shaders.surfaceAt.view, m.view);
        setMatrix(ids ? shaders.idsAt.projection : shaders.surfaceAt.projection, m.projection);
        glUniform4fv(ids ? shaders.idsAt.plane : shaders.surfaceAt.plane, 1, m.plane.data());
        if (ids) {
            glUniform1i(shaders.idsAt.edge, 0);
        } else {
            glUniform1i(shaders.surfaceAt.texture, 0);
            glActiveTexture(GL_TEXTURE0);
        }
        // Faces step back a little so that their own edges win the depth test.
        glEnable(GL_POLYGON_OFFSET_FILL);
        glPolygonOffset(1.0f, 1.0f);
    }
    std::vector<GLint> firsts;
    std::vector<GLsizei> counts;
    for (int entry = 0; entry < batch.instances.size(); ++entry) {
        const auto& instance = batch.instances.getValue(entry);
        const int key = instance.second;
        const GpuScene::MeshBuffer* buffer = gpu.mesh(key);
        if (!buffer || entry >= batch.lists.size()) continue;
        const Matrix model = matrixOf(instance.first);
        setMatrix(modelAt, model);
        if (normalAt >= 0) setNormalMatrix(normalAt, m.view * model);
        const GLuint texture = pass == Pass::Shade ? gpu.texture(key) : 0;
        if (pass == Pass::Ids) glUniform1ui(shaders.idsAt.object, static_cast<GLuint>(key) + 1);
        if (pass == Pass::Shade) {
            material(*document.scene, key,
                     entry < batch.flags.size() && batch.flags.getValue(entry) != 0);
            glBindTexture(GL_TEXTURE_2D, texture);
        }
        for (const GpuScene::Segment& segment : buffer->segments) {
            runsIn(batch.lists.getValue(entry), segment.first, segment.count, firsts, counts);
            if (firsts.empty()) continue;
            if (pass == Pass::Shade) {
                glUniform1i(shaders.surfaceAt.useVertexColor, segment.colors ? 1 : 0);
                glUniform1i(shaders.surfaceAt.useTexture, segment.texCoords && texture ? 1 : 0);
                stats.triangles += sum(counts) / 3;
            }
            glUniform1ui(baseAt, static_cast<GLuint>(segment.first));
            glBindVertexArray(segment.array.get());
            glMultiDrawArrays(GL_TRIANGLES, firsts.data(), counts.data(),
                              static_cast<GLsizei>(firsts.size()));
            ++stats.drawCalls;
        }
    }
    glDisable(GL_POLYGON_OFFSET_FILL);
    glBindTexture(GL_TEXTURE_2D, 0);
}

void Renderer::edges(const vekhost::Document& document, const GpuScene& gpu, const Matrices& m,
                     bool ids, FrameStats& stats) {
    const veksg::SCScene& scene = *document.scene;
    const veksg::PolylineRT& batch = document.runtime->polylines;
    if (ids) {
        glUseProgram(shaders.ids.get());
        setMatrix(shaders.idsAt.view, m.view);
        setMatrix(shaders.idsAt.projection, m.projection);
        glUniform4fv(shaders.idsAt.plane, 1, m.plane.data());
        glUniform1i(shaders.idsAt.edge, 1);
    } else {
        useFlat(m, m.plane);
    }
    std::vector<GLint> firsts;
    std::vector<GLsizei> counts;
    for (int entry = 0; entry < batch.instances.size(); ++entry) {
        const auto& instance = batch.instances.getValue(entry);
        const int key = instance.second;
        const GpuScene::LineBuffer* buffer = gpu.lines(key);
        if (!buffer || entry >= batch.lists.size()) continue;
        runsIn(batch.lists.getValue(entry), 0, buffer->count, firsts, counts);
        if (firsts.empty()) continue;
        const Matrix model = matrixOf(instance.first);
        const bool lit = entry < batch.flags.size() && batch.flags.getValue(entry) != 0;
        if (ids) {
            setMatrix(shaders.idsAt.model, model);
            glUniform1ui(shaders.idsAt.object, static_cast<GLuint>(key) + 1);
            glUniform1ui(shaders.idsAt.vertexBase, 0);
        } else {
            setMatrix(shaders.flatAt.model, model);
            const veksg::PLMaterial* material = validAt(scene.polylineMaterials, key);
            glUniform4fv(shaders.flatAt.color, 1,
                         lit        ? highlightColor.data()
                         : material ? material->color.data()
                                    : defaultEdge.data());
            glLineWidth(lit ? highlightWidth : 1.0f);
        }
        glBindVertexArray(buffer->array.get());
        glMultiDrawArrays(GL_LINE_STRIP, firsts.data(), counts.data(),
                          static_cast<GLsizei>(firsts.size()));
        ++stats.drawCalls;
        stats.lineSegments += sum(counts) - static_cast<long long>(counts.size());
    }
    glLineWidth(1.0f);
}

// Counts, per pixel, how often the kept faces cross the line of sight: odd where the plane
// lies inside a closed solid, whichever way its triangles wind.
void Renderer::stencilOfSection(const vekhost::Document& document, const GpuScene& gpu,
                                const Matrices& m, FrameStats& stats) {
    glEnable(GL_STENCIL_TEST);
    glStencilMask(1);
    glStencilFunc(GL_ALWAYS, 0, 1);
    glStencilOp(GL_KEEP, GL_KEEP, GL_INVERT);
    glColorMask(GL_FALSE, GL_FALSE, GL_FALSE, GL_FALSE);
    glDepthMask(GL_FALSE);
    glDisable(GL_DEPTH_TEST);
    faces(document, gpu, m, Pass::Stencil, stats);
    glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
    glDepthMask(GL_TRUE);
    glEnable(GL_DEPTH_TEST);
}

// A square in the plane, larger than the model, drawn where the stencil is odd.
void Renderer::cap(const FrameSetup& setup, const Matrices& m, FrameStats& stats) {
    const Vec3 n = normalized(setup.section.normal);
    const Vec3 centre = setup.centre - n * (dot(n, setup.centre) - setup.section.offset);
    const Vec3 other = std::fabs(n[0]) < 0.9 ? Vec3{1, 0, 0} : Vec3{0, 1, 0};
    const Vec3 u = normalized(cross(n, other)) * (1.5 * setup.radius);
    const Vec3 v = normalized(cross(n, u)) * (1.5 * setup.radius);
    std::vector<float> corners;
    for (const Vec3& p : {centre - u - v, centre + u - v, centre + u + v, centre - u + v})
        for (const double c : p)
            corners.push_back(static_cast<float>(c));
    glStencilFunc(GL_NOTEQUAL, 0, 1);
    glStencilOp(GL_KEEP, GL_KEEP, GL_KEEP);
    useFlat(m, m.plane);
    setMatrix(shaders.flatAt.model, Matrix());
    glUniform4fv(shaders.flatAt.color, 1, capColor.data());
    scratch(corners, GL_TRIANGLE_FAN);
    ++stats.drawCalls;
    glDisable(GL_STENCIL_TEST);
}

// Picked points and measured distances, over everything.
void Renderer::markers(const vekhost::Document& document, const Matrices& m, FrameStats& stats) {
    const veksg::SCTempGraphics& temp = *document.tempGraphics;
    std::vector<float> points;
    for (const auto& p : temp.tempValues)
        points.insert(points.end(), {p[0], p[1], p[2]});
    std::vector<float> leaders;
    for (const auto& measure : temp.measures) {
        if (!measure || !measure->leader) continue;
        const auto& line = measure->leader->points;
        for (std::size_t i = 0; i + 1 < line.size(); ++i)
            for (const auto* p : {&line[i], &line[i + 1]})
                leaders.insert(leaders.end(), {(*p)[0], (*p)[1], (*p)[2]});
    }
    if (points.empty() && leaders.empty()) return;
    glDisable(GL_DEPTH_TEST);
    glEnable(GL_PROGRAM_POINT_SIZE);
    useFlat(m, {0, 0, 0, 1});
    setMatrix(shaders.flatAt.model, Matrix());
    glUniform4fv(shaders.flatAt.color, 1, markerColor.data());
    glUniform1f(shaders.flatAt.pointSize, markerSize);
    glLineWidth(2.0f);
    if (!leaders.empty()) {
        scratch(leaders, GL_LINES);
        ++stats.drawCalls;
    }
    if (!points.empty()) {
        scratch(points, GL_POINTS);
        ++stats.drawCalls;
    }
    glLineWidth(1.0f);
    glDisable(GL_PROGRAM_POINT_SIZE);
    glEnable(GL_DEPTH_TEST);
}

void Renderer::scratch(const std::vector<float>& points, GLenum mode) {
    glBindVertexArray(scratchArray.get());
    glBindBuffer(GL_ARRAY_BUFFER, scratchBuffer.get());
    glBufferData(GL_ARRAY_BUFFER, static_cast<GLsizeiptr>(points.size() * sizeof(float)),
                 points.data(), GL_STREAM_DRAW);
    glDrawArrays(mode, 0, static_cast<GLsizei>(points.size() / 3));
    glBindBuffer(GL_ARRAY_BUFFER, 0);
}

} // namespace vekview
