#include "Animation.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>

namespace vekhost {

namespace {
struct Quaternion {
    double w = 1, x = 0, y = 0, z = 0;
};

// A placement taken apart; the placements of scene graphs are made of these three, so
// shear is not kept.
struct Parts {
    Vec3 translation{};
    Quaternion rotation;
    Vec3 scale{1, 1, 1};
};

double dot(const Vec3& a, const Vec3& b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

Vec3 cross(const Vec3& a, const Vec3& b) {
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

Vec3 column(const Matrix& m, std::size_t c) {
    return {m.m[c * 4], m.m[c * 4 + 1], m.m[c * 4 + 2]};
}

Quaternion normalized(Quaternion q) {
    const double length = std::sqrt(q.w * q.w + q.x * q.x + q.y * q.y + q.z * q.z);
    if (!(length > 0)) return {};
    return {q.w / length, q.x / length, q.y / length, q.z / length};
}

// r[row][col], a rotation; the largest of the four candidates keeps the division stable.
Quaternion fromRotation(const double r[3][3]) {
    const double trace = r[0][0] + r[1][1] + r[2][2];
    Quaternion q;
    if (trace > 0) {
        const double s = 2 * std::sqrt(trace + 1);
        q = {s / 4, (r[2][1] - r[1][2]) / s, (r[0][2] - r[2][0]) / s, (r[1][0] - r[0][1]) / s};
    } else if (r[0][0] > r[1][1] && r[0][0] > r[2][2]) {
        const double s = 2 * std::sqrt(1 + r[0][0] - r[1][1] - r[2][2]);
        q = {(r[2][1] - r[1][2]) / s, s / 4, (r[0][1] + r[1][0]) / s, (r[0][2] + r[2][0]) / s};
    } else if (r[1][1] > r[2][2]) {
        const double s = 2 * std::sqrt(1 + r[1][1] - r[0][0] - r[2][2]);
        q = {(r[0][2] - r[2][0]) / s, (r[0][1] + r[1][0]) / s, s / 4, (r[1][2] + r[2][1]) / s};
    } else {
        const double s = 2 * std::sqrt(1 + r[2][2] - r[0][0] - r[1][1]);
        q = {(r[1][0] - r[0][1]) / s, (r[0][2] + r[2][0]) / s, (r[1][2] + r[2][1]) / s, s / 4};
    }
    return normalized(q);
}

Parts decompose(const Matrix& m) {
    Parts parts;
    parts.translation = {m.m[12], m.m[13], m.m[14]};
    const Vec3 axes[3] = {column(m, 0), column(m, 1), column(m, 2)};
    for (std::size_t c = 0; c < 3; ++c)
        parts.scale[c] = std::sqrt(dot(axes[c], axes[c]));
    // A mirroring placement is a rotation with one negative scale.
    if (dot(cross(axes[0], axes[1]), axes[2]) < 0) parts.scale[0] = -parts.scale[0];
    double r[3][3];
    for (std::size_t c = 0; c < 3; ++c)
        for (std::size_t row = 0; row < 3; ++row)
            r[row][c] = parts.scale[c] != 0 ? axes[c][row] / parts.scale[c] : (row == c ? 1 : 0);
    parts.rotation = fromRotation(r);
    return parts;
}

Matrix compose(const Parts& parts) {
    const Quaternion& q = parts.rotation;
    const double r[3][3] = {
        {1 - 2 * (q.y * q.y + q.z * q.z), 2 * (q.x * q.y - q.w * q.z), 2 * (q.x * q.z + q.w * q.y)},
        {2 * (q.x * q.y + q.w * q.z), 1 - 2 * (q.x * q.x + q.z * q.z), 2 * (q.y * q.z - q.w * q.x)},
        {2 * (q.x * q.z - q.w * q.y), 2 * (q.y * q.z + q.w * q.x),
         1 - 2 * (q.x * q.x + q.y * q.y)}};
    Matrix m;
    for (std::size_t c = 0; c < 3; ++c) {
        for (std::size_t row = 0; row < 3; ++row)
            m.m[c * 4 + row] = r[row][c] * parts.scale[c];
        m.m[12 + c] = parts.translation[c];
    }
    return m;
}

Quaternion slerp(const Quaternion& a, Quaternion b, double t) {
    double cosine = a.w * b.w + a.x * b.x + a.y * b.y + a.z * b.z;
    // q and -q are one rotation; the shorter arc goes to whichever is nearer.
    if (cosine < 0) {
        b = {-b.w, -b.x, -b.y, -b.z};
        cosine = -cosine;
    }
    double wa = 1 - t;
    double wb = t;
    // Nearly equal rotations: the sine below would vanish, and a straight line is as good.
    if (cosine < 0.9999) {
        const double angle = std::acos(cosine);
        wa = std::sin((1 - t) * angle) / std::sin(angle);
        wb = std::sin(t * angle) / std::sin(angle);
    }
    return normalized(
        {wa * a.w + wb * b.w, wa * a.x + wb * b.x, wa * a.y + wb * b.y, wa * a.z + wb * b.z});
}

Matrix interpolate(const Matrix& from, const Matrix& to, double t) {
    const Parts a = decompose(from);
    const Parts b = decompose(to);
    Parts mid;
    for (std::size_t i = 0; i < 3; ++i) {
        mid.translation[i] = a.translation[i] + t * (b.translation[i] - a.translation[i]);
        mid.scale[i] = a.scale[i] + t * (b.scale[i] - a.scale[i]);
    }
    mid.rotation = slerp(a.rotation, b.rotation, t);
    return compose(mid);
}

Matrix toMatrix(const veksg::Transform& transform) {
    Matrix out;
    for (std::size_t i = 0; i < 16; ++i)
        out.m[i] = transform.matrix[static_cast<int>(i)];
    return out;
}

// The inverse of an affine placement; false when it flattens space.
bool inverted(const Matrix& m, Matrix& out) {
    const Vec3 x = column(m, 0);
    const Vec3 y = column(m, 1);
    const Vec3 z = column(m, 2);
    const double determinant = dot(cross(x, y), z);
    if (!(std::fabs(determinant) > 1e-300)) return false;
    // The rows of the inverse of [x y z] are the pairwise cross products over the determinant.
    const Vec3 rows[3] = {cross(y, z), cross(z, x), cross(x, y)};
    out = Matrix();
    for (std::size_t r = 0; r < 3; ++r)
        for (std::size_t c = 0; c < 3; ++c)
            out.m[c * 4 + r] = rows[r][c] / determinant;
    const Vec3 moved = out.vector({m.m[12], m.m[13], m.m[14]});
    for (std::size_t i = 0; i < 3; ++i)
        out.m[12 + i] = -moved[i];
    return true;
}

// Each node's column, -1 where it has none; all -1 unless the component holds one placement
// per column and key.
std::vector<int> columnsOf(const Document& document) {
    const auto& refs = document.topo->nodeRefs2;
    std::vector<int> columns(static_cast<std::size_t>(refs.size()), -1);
    for (int node = 0; node < refs.size(); ++node)
        columns[static_cast<std::size_t>(node)] = std::max(-1, refs.getValue(node));
    const auto count = static_cast<std::size_t>(
        std::count_if(columns.begin(), columns.end(), [](int c) { return c >= 0; }));
    const auto& animation = *document.animation;
    const bool whole = count > 0 && animation.transforms.size() == animation.keys.size() * count &&
                       std::all_of(columns.begin(), columns.end(),
                                   [count](int c) { return c < static_cast<int>(count); });
    if (!whole) columns.assign(columns.size(), -1);
    return columns;
}

std::size_t columnCount(const std::vector<int>& columns) {
    return static_cast<std::size_t>(
        std::count_if(columns.begin(), columns.end(), [](int c) { return c >= 0; }));
}
} // namespace

void writeAnimation(Document& document, const AnimationData& animation) {
    auto& target = *document.animation;
    target.keys.insert(animation.keys.begin(), animation.keys.end());
    target.transforms.reserve(animation.placements.size());
    for (const Matrix& placement : animation.placements) {
        veksg::Transform transform;
        for (std::size_t i = 0; i < 16; ++i)
            transform.matrix[static_cast<int>(i)] = static_cast<float>(placement.m[i]);
        transform.valid = true;
        target.transforms.push_back(transform);
    }
    for (std::size_t c = 0; c < animation.nodes.size(); ++c)
        document.topo->nodeRefs2.insert(animation.nodes[c], static_cast<int>(c), -1);
}

std::vector<int> animatedNodes(const Document& document) {
    const std::vector<int> columns = columnsOf(document);
    std::vector<int> nodes(columnCount(columns), -1);
    for (std::size_t node = 0; node < columns.size(); ++node)
        if (columns[node] >= 0)
            nodes[static_cast<std::size_t>(columns[node])] = static_cast<int>(node);
    return nodes;
}

AnimationPose::AnimationPose(const Document& document, double milliseconds)
    : columnOf(columnsOf(document)) {
    const std::size_t count = columnCount(columnOf);
    const auto& keys = document.animation->keys;
    const auto& transforms = document.animation->transforms;
    if (count == 0 || keys.empty()) return;
    // The keys around the time, and how far between them it lies.
    const auto after = keys.upper_bound(static_cast<int>(
        std::clamp(std::floor(milliseconds), double(*keys.begin()), double(*keys.rbegin()))));
    std::size_t later = static_cast<std::size_t>(std::distance(keys.begin(), after));
    double share = 0;
    std::size_t earlier = later - 1;
    if (after != keys.end()) {
        const int start = *std::prev(after);
        share = std::clamp((milliseconds - start) / double(*after - start), 0.0, 1.0);
    } else {
        later = earlier;
    }
    placements.reserve(count);
    for (std::size_t c = 0; c < count; ++c) {
        const Matrix from = toMatrix(transforms[earlier * count + c]);
        placements.push_back(
            share > 0 ? interpolate(from, toMatrix(transforms[later * count + c]), share) : from);
    }
}

const Matrix* AnimationPose::placement(int node) const {
    if (node < 0 || static_cast<std::size_t>(node) >= columnOf.size() || placements.empty())
        return nullptr;
    const int c = columnOf[static_cast<std::size_t>(node)];
    return c < 0 ? nullptr : &placements[static_cast<std::size_t>(c)];
}

Box3 animationBounds(const Document& document) {
    const std::vector<int> nodes = animatedNodes(document);
    const auto& transforms = document.animation->transforms;
    const auto& scene = *document.scene;
    const auto& oriented = document.resources->orientedBoxes;
    Box3 bounds;
    for (std::size_t c = 0; c < nodes.size(); ++c) {
        const int node = nodes[c];
        if (node >= oriented.size() || node >= scene.transforms.size()) continue;
        const veksg::OBBox& box = oriented.getValue(node);
        Matrix resting;
        if (!box.valid || !inverted(toMatrix(scene.transforms.getValue(node)), resting)) continue;
        // The oriented box's corners, carried along exactly, keep the bounds tight.
        std::vector<Vec3> corners;
        for (int corner = 0; corner < 8; ++corner) {
            Vec3 p{box.center[0], box.center[1], box.center[2]};
            for (int axis = 0; axis < 3; ++axis) {
                const auto& half = axis == 0 ? box.axisX : axis == 1 ? box.axisY : box.axisZ;
                const double sign = corner & (1 << axis) ? 1.0 : -1.0;
                for (std::size_t i = 0; i < 3; ++i)
                    p[i] += sign * half[static_cast<int>(i)];
            }
            corners.push_back(resting.point(p));
        }
        for (std::size_t k = c; k < transforms.size(); k += nodes.size()) {
            const Matrix placed = toMatrix(transforms[k]);
            for (const Vec3& corner : corners)
                bounds.add(placed.point(corner));
        }
    }
    return bounds;
}

} // namespace vekhost
