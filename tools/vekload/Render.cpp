#include "Render.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "Animation.h"
#include "Bounds.h"
#include "Builder.h"
#include "PointCloud.h"
#include "Visibility.h"

namespace vekload {

using vekhost::Document;
using vekhost::Matrix;
using vekhost::Vec3;
using vekhost::vertexCount;

namespace {
using Color = std::array<double, 3>;

// Parts without a material of their own, and edges without one.
constexpr Color defaultFace{0.7, 0.7, 0.7};
constexpr Color defaultEdge{0.1, 0.1, 0.1};
// Light fixed to the viewer, from the upper left, so that every orientation is lit alike:
// (-3, 4, 6) normalised.
constexpr Vec3 light{-0.3841106397986879, 0.5121475197315839, 0.7682212795973759};
constexpr double ambient = 0.3;
// How far in front of the faces, in pixels of depth, edges still count as visible: enough
// to win over the facets of their own faces, too little to show through a wall.
constexpr double edgeBias = 2.5;

double dot(const Vec3& a, const Vec3& b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

Vec3 cross(const Vec3& a, const Vec3& b) {
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

Vec3 difference(const Vec3& a, const Vec3& b) {
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}

// Zero stays zero, so that a missing normal can be told apart.
Vec3 normalized(const Vec3& v) {
    const double length = std::sqrt(dot(v, v));
    if (!(length > 1e-30)) return {0, 0, 0};
    return {v[0] / length, v[1] / length, v[2] / length};
}

Vec3 toVec(const float* p) {
    return {p[0], p[1], p[2]};
}

Matrix toMatrix(const vekmath::Tuple<float, 16>& elements) {
    Matrix out;
    for (std::size_t i = 0; i < 16; ++i)
        out.m[i] = elements[static_cast<int>(i)];
    return out;
}

// The cofactors of the linear part carry normals along under any invertible placement,
// sheared and scaled ones too; the sign they may flip does not matter to two-sided light.
Matrix cofactors(const Matrix& place) {
    const Vec3 x{place.m[0], place.m[1], place.m[2]};
    const Vec3 y{place.m[4], place.m[5], place.m[6]};
    const Vec3 z{place.m[8], place.m[9], place.m[10]};
    Matrix out;
    const Vec3 columns[3] = {cross(y, z), cross(z, x), cross(x, y)};
    for (std::size_t c = 0; c < 3; ++c)
        for (std::size_t r = 0; r < 3; ++r)
            out.m[c * 4 + r] = columns[c][r];
    return out;
}

template <typename V>
bool has(const veksg::Container<int, V>& table, int key) {
    return key >= 0 && key < table.size();
}

int linkOf(const veksg::Container<int, int>& links, int key) {
    return has(links, key) ? links.getValue(key) : -1;
}

std::uint8_t toByte(double channel) {
    return static_cast<std::uint8_t>(std::lround(std::clamp(channel, 0.0, 1.0) * 255.0));
}

struct ScreenPoint {
    double x = 0;
    double y = 0;
    /// Grows towards the viewer.
    double z = 0;
    Color color{};
};

// A plane in the viewer's coordinates: what lies on the side its normal points to stays.
struct Cut {
    Vec3 point;
    Vec3 normal;
    double distance(const Vec3& p) const { return dot(difference(p, point), normal); }
};

bool finite(const ScreenPoint& p) {
    return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z);
}

// Colour and depth buffers with the two drawing steps.
class Canvas {
public:
    Canvas(int width, int height)
        : image(width, height),
          depth(static_cast<std::size_t>(width) * static_cast<std::size_t>(height),
                -std::numeric_limits<double>::infinity()) {}

    // Samples pixel centres; corners interpolate colour and depth linearly, which is exact
    // for an orthographic projection.
    void triangle(const ScreenPoint& a, const ScreenPoint& b, const ScreenPoint& c) {
        if (!finite(a) || !finite(b) || !finite(c)) return;
        const double area = (b.x - a.x) * (c.y - a.y) - (b.y - a.y) * (c.x - a.x);
        if (!(std::fabs(area) > 1e-12)) return;
        const int x0 = clampX(std::min({a.x, b.x, c.x}));
        const int x1 = clampX(std::max({a.x, b.x, c.x}));
        const int y0 = clampY(std::min({a.y, b.y, c.y}));
        const int y1 = clampY(std::max({a.y, b.y, c.y}));
        for (int y = y0; y <= y1; ++y) {
            const double py = y + 0.5;
            for (int x = x0; x <= x1; ++x) {
                const double px = x + 0.5;
                const double wa = ((b.x - px) * (c.y - py) - (b.y - py) * (c.x - px)) / area;
                const double wb = ((c.x - px) * (a.y - py) - (c.y - py) * (a.x - px)) / area;
                const double wc = 1.0 - wa - wb;
                if (wa < 0 || wb < 0 || wc < 0) continue;
                Color color;
                for (std::size_t i = 0; i < 3; ++i)
                    color[i] = wa * a.color[i] + wb * b.color[i] + wc * c.color[i];
                plot(x, y, wa * a.z + wb * b.z + wc * c.z, color);
            }
        }
    }

    // One pixel per step along the longer axis; `bias` moves the line towards the viewer.
    void line(const ScreenPoint& a, const ScreenPoint& b, double bias) {
        if (!finite(a) || !finite(b)) return;
        const double dx = b.x - a.x;
        const double dy = b.y - a.y;
        const double longest = std::max(std::fabs(dx), std::fabs(dy));
        // Fitted geometry stays within the picture; the cap only guards against nonsense.
        const int steps = static_cast<int>(std::ceil(std::min(longest, 65536.0)));
        for (int i = 0; i <= steps; ++i) {
            const double t = steps > 0 ? static_cast<double>(i) / steps : 0.0;
            const double x = std::floor(a.x + t * dx);
            const double y = std::floor(a.y + t * dy);
            if (x < 0 || y < 0 || x >= image.width || y >= image.height) continue;
            plot(static_cast<int>(x), static_cast<int>(y), a.z + t * (b.z - a.z) + bias, a.color);
        }
    }

    // A square of `size` pixels around the point.
    void square(const ScreenPoint& p, int size) {
        if (!finite(p)) return;
        const double x0 = std::floor(p.x - size / 2.0);
        const double y0 = std::floor(p.y - size / 2.0);
        for (int dy = 0; dy < size; ++dy)
            for (int dx = 0; dx < size; ++dx) {
                const double x = x0 + dx;
                const double y = y0 + dy;
                if (x < 0 || y < 0 || x >= image.width || y >= image.height) continue;
                plot(static_cast<int>(x), static_cast<int>(y), p.z, p.color);
            }
    }

    Image image;

private:
    int clampX(double x) const { return static_cast<int>(std::clamp(x, 0.0, image.width - 1.0)); }
    int clampY(double y) const { return static_cast<int>(std::clamp(y, 0.0, image.height - 1.0)); }

    void plot(int x, int y, double z, const Color& color) {
        const std::size_t index =
            static_cast<std::size_t>(y) * static_cast<std::size_t>(image.width) +
            static_cast<std::size_t>(x);
        if (!(z > depth[index])) return;
        depth[index] = z;
        std::uint8_t* pixel = &image.rgba[index * 4];
        for (std::size_t i = 0; i < 3; ++i)
            pixel[i] = toByte(color[i]);
        pixel[3] = 255;
    }

    std::vector<double> depth;
};

// Reads the components and feeds the canvas.
class Painter {
public:
    Painter(const Document& document, const Matrix& view, const RenderOptions& options)
        : scene(*document.scene), resources(*document.resources), visibility(document), view(view),
          canvas(options.width, options.height), faceColours(options.faceColours),
          overlay(options.overlay) {
        if (options.timed) pose.emplace(document, options.time);
        for (const auto& cut : options.cuts)
            cuts.push_back({view.point({cut[0], cut[1], cut[2]}),
                            normalized(view.vector({cut[3], cut[4], cut[5]}))});
        framed = fit(document, options);
    }

    Image paint() {
        if (framed) {
            meshes();
            edges();
            points();
            if (overlay)
                overlay(canvas.image, [this](const std::array<double, 3>& world) {
                    const ScreenPoint p = toScreen(view.point({world[0], world[1], world[2]}), {});
                    return std::array<double, 3>{p.x, p.y, p.z};
                });
        }
        return std::move(canvas.image);
    }

private:
    // Scale and centre from the projected corners of the roots' boxes (and at a time, of the
    // room the animation sweeps); false without a box.
    bool fit(const Document& document, const RenderOptions& options) {
        double low[2] = {std::numeric_limits<double>::max(), std::numeric_limits<double>::max()};
        double high[2] = {std::numeric_limits<double>::lowest(),
                          std::numeric_limits<double>::lowest()};
        bool any = false;
        auto take = [&](const Vec3& min, const Vec3& max) {
            for (int corner = 0; corner < 8; ++corner) {
                const Vec3 p =
                    view.point({corner & 1 ? max[0] : min[0], corner & 2 ? max[1] : min[1],
                                corner & 4 ? max[2] : min[2]});
                for (std::size_t i = 0; i < 2; ++i) {
                    low[i] = std::min(low[i], p[i]);
                    high[i] = std::max(high[i], p[i]);
                }
            }
            any = true;
        };
        for (const int root : visibility.roots()) {
            if (!has(scene.boxes, root) || !scene.boxes.getValue(root).valid) continue;
            const veksg::BBox& box = scene.boxes.getValue(root);
            take({box.min[0], box.min[1], box.min[2]}, {box.max[0], box.max[1], box.max[2]});
        }
        for (const auto& box : options.alsoFit)
            take({box[0], box[1], box[2]}, {box[3], box[4], box[5]});
        if (pose) {
            const vekhost::Box3 swept = vekhost::animationBounds(document);
            if (swept.valid) take(swept.min, swept.max);
        }
        if (!any) return false;
        const int margin = frameMargin(options.width, options.height);
        const double room[2] = {std::max(1.0, options.width - 2.0 * margin),
                                std::max(1.0, options.height - 2.0 * margin)};
        // A flat model is fitted by its other direction; a point by any scale.
        const double largest = std::max({high[0] - low[0], high[1] - low[1], 1e-30});
        scale = std::min(room[0] / std::max(high[0] - low[0], largest * 1e-6),
                         room[1] / std::max(high[1] - low[1], largest * 1e-6));
        centre = {(low[0] + high[0]) / 2, (low[1] + high[1]) / 2};
        halfSize = {options.width / 2.0, options.height / 2.0};
        return std::isfinite(scale) && scale > 0;
    }

    ScreenPoint toScreen(const Vec3& eye, const Color& color) const {
        return {halfSize[0] + (eye[0] - centre[0]) * scale,
                halfSize[1] - (eye[1] - centre[1]) * scale, eye[2], color};
    }

    Matrix placement(int node) const {
        if (const Matrix* moved = pose ? pose->placement(node) : nullptr) return view * *moved;
        if (!has(scene.transforms, node) || !scene.transforms.getValue(node).valid) return view;
        return view * toMatrix(scene.transforms.getValue(node).matrix);
    }

    // Faces draw their own triangles; a mesh that no face covers is drawn whole. Both only
    // where the visibility rule shows them.
    void meshes() {
        std::vector<bool> byFaces(static_cast<std::size_t>(scene.meshes.size()));
        for (int face = 0; face < resources.primitivesA.size(); ++face) {
            const int mesh = linkOf(resources.primALinks1, face);
            if (!has(scene.meshes, mesh)) continue;
            byFaces[static_cast<std::size_t>(mesh)] = true;
            const veksg::PrimitiveInfo& range = resources.primitivesA.getValue(face);
            if (visibility.faceShown(face)) triangles(mesh, range.first, range.count, face);
        }
        for (int mesh = 0; mesh < scene.meshes.size(); ++mesh)
            if (!byFaces[static_cast<std::size_t>(mesh)] && visibility.meshShown(mesh))
                triangles(mesh, 0, std::numeric_limits<int>::max());
    }

    void triangles(int meshKey, int first, int count, int face = -1) {
        const auto& pointer = scene.meshes.getValue(meshKey);
        if (!pointer) return;
        const int node = linkOf(scene.links6a, meshKey);
        const veksg::Mesh& mesh = *pointer;
        Color base = defaultFace;
        if (has(scene.meshMaterials, meshKey) && scene.meshMaterials.getValue(meshKey).valid) {
            const veksg::Color4& diffuse = scene.meshMaterials.getValue(meshKey).diffuse;
            base = {diffuse[0], diffuse[1], diffuse[2]};
        }
        const Matrix place = placement(node);
        const Matrix normals = cofactors(place);
        const long long total = vertexCount(mesh);
        const long long begin = std::clamp<long long>(first, 0, total);
        const long long end = std::min<long long>(total, begin + std::max(count, 0));
        for (long long i = begin; i + 3 <= end; i += 3) {
            Corner corners[3];
            for (std::size_t k = 0; k < 3; ++k) {
                corners[k] = corner(mesh, static_cast<std::size_t>(i) + k, base);
                std::array<double, 3> rgb{};
                if (face >= 0 && faceColours &&
                    faceColours(face, static_cast<int>(i - begin) + static_cast<int>(k), rgb))
                    corners[k].color = {rgb[0], rgb[1], rgb[2]};
            }
            Vec3 eye[3];
            for (std::size_t k = 0; k < 3; ++k)
                eye[k] = place.point(corners[k].position);
            const Vec3 flat =
                normalized(cross(difference(eye[1], eye[0]), difference(eye[2], eye[0])));
            ScreenPoint screen[3];
            for (std::size_t k = 0; k < 3; ++k) {
                Vec3 normal = normalized(normals.vector(corners[k].normal));
                if (normal == Vec3{0, 0, 0}) normal = flat;
                const double intensity = ambient + (1 - ambient) * std::fabs(dot(normal, light));
                Color color = corners[k].color;
                for (double& channel : color)
                    channel *= intensity;
                screen[k] = toScreen(eye[k], color);
            }
            clipped(eye, screen);
        }
    }

    using Clipped = std::pair<Vec3, ScreenPoint>;

    static Clipped between(const Clipped& a, const Clipped& b, double t) {
        Clipped out = a;
        for (std::size_t i = 0; i < 3; ++i) {
            out.first[i] += t * (b.first[i] - a.first[i]);
            out.second.color[i] += t * (b.second.color[i] - a.second.color[i]);
        }
        out.second.x += t * (b.second.x - a.second.x);
        out.second.y += t * (b.second.y - a.second.y);
        out.second.z += t * (b.second.z - a.second.z);
        return out;
    }

    // The triangle less what the cuts take away: clipped by each plane in turn, the rest
    // drawn as a fan. The projection is orthographic, so screen points clip as the eye's do.
    void clipped(const Vec3 (&eye)[3], const ScreenPoint (&screen)[3]) {
        std::vector<Clipped> polygon{{eye[0], screen[0]}, {eye[1], screen[1]}, {eye[2], screen[2]}};
        for (const Cut& cut : cuts) {
            std::vector<Clipped> kept;
            for (std::size_t i = 0; i < polygon.size(); ++i) {
                const Clipped& a = polygon[i];
                const Clipped& b = polygon[(i + 1) % polygon.size()];
                const double da = cut.distance(a.first);
                const double db = cut.distance(b.first);
                if (da >= 0) kept.push_back(a);
                if ((da >= 0) != (db >= 0)) kept.push_back(between(a, b, da / (da - db)));
            }
            polygon = std::move(kept);
        }
        for (std::size_t i = 1; i + 1 < polygon.size(); ++i)
            canvas.triangle(polygon[0].second, polygon[i].second, polygon[i + 1].second);
    }

    // Shortens the segment to what the cuts leave; false when nothing is left.
    bool uncut(Vec3& a, Vec3& b) const {
        for (const Cut& cut : cuts) {
            const double da = cut.distance(a);
            const double db = cut.distance(b);
            if (da < 0 && db < 0) return false;
            Vec3& gone = da < 0 ? a : b;
            if (da >= 0 && db >= 0) continue;
            const double t = da / (da - db);
            for (std::size_t i = 0; i < 3; ++i)
                gone[i] = a[i] + t * (b[i] - a[i]);
        }
        return true;
    }

    struct Corner {
        Vec3 position;
        Vec3 normal;
        Color color;
    };

    // Vertex `i` of the mesh counted through its layouts in order: VN, then VNC, then VNT.
    static Corner corner(const veksg::Mesh& mesh, std::size_t i, const Color& base) {
        if (i < mesh.vn.size()) return {toVec(mesh.vn[i].vertex), toVec(mesh.vn[i].normal), base};
        i -= mesh.vn.size();
        if (i < mesh.vnc.size()) {
            const veksg::VNC& v = mesh.vnc[i];
            return {toVec(v.vertex), toVec(v.normal), {v.color[0], v.color[1], v.color[2]}};
        }
        i -= mesh.vnc.size();
        // Textures are not drawn; the material's colour stands in for them.
        return {toVec(mesh.vnt[i].vertex), toVec(mesh.vnt[i].normal), base};
    }

    void edges() {
        const double bias = edgeBias / scale;
        for (int edge = 0; edge < resources.primitivesB.size(); ++edge) {
            if (!visibility.edgeShown(edge)) continue;
            const int lineKey = linkOf(resources.primBLinks2, edge);
            if (!has(scene.polylines, lineKey) || !scene.polylines.getValue(lineKey)) continue;
            const int node = linkOf(scene.links7, lineKey);
            Color color = defaultEdge;
            if (has(scene.polylineMaterials, lineKey) &&
                scene.polylineMaterials.getValue(lineKey).valid) {
                const veksg::Color4& c = scene.polylineMaterials.getValue(lineKey).color;
                color = {c[0], c[1], c[2]};
            }
            const auto& points = scene.polylines.getValue(lineKey)->points;
            const veksg::PrimitiveInfo& range = resources.primitivesB.getValue(edge);
            const long long size = static_cast<long long>(points.size());
            const long long begin = std::clamp<long long>(range.first, 0, size);
            const long long end = std::min<long long>(size, begin + std::max(range.count, 0));
            const Matrix place = placement(node);
            auto eye = [&](long long i) {
                return place.point(toVec(points[static_cast<std::size_t>(i)].data()));
            };
            for (long long i = begin; i + 1 < end; ++i) {
                Vec3 a = eye(i);
                Vec3 b = eye(i + 1);
                if (uncut(a, b)) canvas.line(toScreen(a, color), toScreen(b, color), bias);
            }
        }
    }

    // Points are squares this many pixels wide, so that a sparse cloud still shows.
    static int pointSize(const Image& image) {
        return std::max(1, std::min(image.width, image.height) / 128);
    }

    void points() {
        const int size = pointSize(canvas.image);
        for (int p = 0; p < resources.primitivesC.size(); ++p) {
            if (!visibility.pointsShown(p)) continue;
            const veksg::PrimitiveInfo& range = resources.primitivesC.getValue(p);
            const int key = linkOf(resources.primCLinks1, p);
            if (!has(resources.vertexInfos, key) || !resources.vertexInfos.getValue(key)) continue;
            const veksg::VertexInfo& buffer = *resources.vertexInfos.getValue(key);
            if (!buffer.data || (buffer.stride != vekhost::points::plainStride &&
                                 buffer.stride != vekhost::points::colouredStride))
                continue;
            const Matrix place = placement(range.id);
            const Color plain{range.color[0], range.color[1], range.color[2]};
            const long long begin = std::clamp<long long>(range.first, 0, buffer.count);
            const long long end =
                std::min<long long>(buffer.count, begin + std::max(range.count, 0));
            for (long long i = begin; i < end; ++i) {
                const float* point = buffer.data.get() + i * buffer.stride;
                const Color color = buffer.stride == vekhost::points::colouredStride
                                        ? Color{point[3], point[4], point[5]}
                                        : plain;
                Vec3 at = place.point(toVec(point));
                if (uncut(at, at)) canvas.square(toScreen(at, color), size);
            }
        }
    }

    const veksg::SCScene& scene;
    const veksg::SCSceneRes& resources;
    const vekhost::Visibility visibility;
    std::optional<vekhost::AnimationPose> pose;
    const Matrix view;
    std::vector<Cut> cuts;
    Canvas canvas;
    const std::function<bool(int, int, std::array<double, 3>&)>& faceColours;
    const decltype(RenderOptions::overlay) overlay;
    bool framed = false;
    double scale = 1;
    std::array<double, 2> centre{};
    std::array<double, 2> halfSize{};
};
} // namespace

Image::Image(int width, int height)
    : width(width), height(height),
      rgba(static_cast<std::size_t>(width) * static_cast<std::size_t>(height) * 4, 255) {
    for (std::size_t alpha = 3; alpha < rgba.size(); alpha += 4)
        rgba[alpha] = 0;
}

int frameMargin(int width, int height) {
    return std::max(1, std::min(width, height) / 32);
}

Image render(const Document& document, const RenderOptions& options) {
    if (options.width < 1 || options.height < 1)
        throw std::invalid_argument("a picture needs at least one pixel each way");
    const auto& orientations = document.views->orientations;
    if (options.orientation.size() == 16)
        return Painter(document, toMatrix(vekmath::Tuple<float, 16>(options.orientation.data())),
                       options)
            .paint();
    if (!has(orientations, options.view))
        throw std::invalid_argument("the document holds no view " + std::to_string(options.view));
    return Painter(document, toMatrix(orientations.getValue(options.view)), options).paint();
}

} // namespace vekload
