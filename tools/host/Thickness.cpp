#include "Thickness.h"

#include <algorithm>
#include <cmath>
#include <thread>
#include <vector>

namespace vekhost {

namespace {
// A ray leaves the material through a wall that faces along it; one it meets at less than
// this cosine it only grazes or enters.
constexpr double leaving = 1e-3;
// How far towards its triangle's centre a ray starts, as a share of the way.
constexpr double inside = 1e-4;

double dot(const Vec3& a, const Vec3& b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

double diagonal(const Box3& box) {
    if (!box.valid) return 0;
    const Vec3 d{box.max[0] - box.min[0], box.max[1] - box.min[1], box.max[2] - box.min[2]};
    return std::sqrt(dot(d, d));
}
// From a hair inside its triangle: a ray from a corner of the solid would run along its
// edges and could slip past the far one.
Vec3 rayStart(const PlacedMesh& mesh, std::size_t i) {
    const std::size_t first = i / 3 * 3;
    Vec3 start = mesh.points[i];
    for (std::size_t k = 0; k < 3; ++k) {
        const double centre =
            (mesh.points[first][k] + mesh.points[first + 1][k] + mesh.points[first + 2][k]) / 3;
        start[k] += inside * (centre - start[k]);
    }
    return start;
}

// For every face, the faces that share an edge or a corner with it, in order.
std::vector<std::vector<int>> neighbours(const veksg::SCSceneTopo& topo) {
    auto listed = [](const veksg::Hierarchy& lists, int key) -> const std::vector<int>& {
        static const std::vector<int> none;
        return key >= 0 && key < lists.size() ? lists.getValue(key) : none;
    };
    std::vector<std::vector<int>> out(static_cast<std::size_t>(topo.faces.size()));
    for (int face = 0; face < topo.faces.size(); ++face) {
        std::vector<int>& near = out[static_cast<std::size_t>(face)];
        for (const int edge : listed(topo.faceLists2, face))
            for (const int vertex : listed(topo.edgeLists2, edge))
                for (const int touching : listed(topo.lists13, vertex))
                    for (const int other : listed(topo.edgeLists3, touching))
                        if (other != face) near.push_back(other);
        std::sort(near.begin(), near.end());
        near.erase(std::unique(near.begin(), near.end()), near.end());
    }
    return out;
}

double longestSide(const PlacedMesh& mesh, std::size_t first) {
    double longest = 0;
    for (std::size_t k = 0; k < 3; ++k) {
        const Vec3& a = mesh.points[first + k];
        const Vec3& b = mesh.points[first + (k + 1) % 3];
        const Vec3 d{b[0] - a[0], b[1] - a[1], b[2] - a[2]};
        longest = std::max(longest, std::sqrt(dot(d, d)));
    }
    return longest;
}
} // namespace

double wallThickness(const RayScene& scene, const Vec3& point, const Vec3& normal, double near,
                     const std::function<bool(int triangle, double distance)>& ignore) {
    const Vec3 inwards{-normal[0], -normal[1], -normal[2]};
    const auto hit = scene.cast(point, inwards, near, [&](int triangle, double distance) {
        return dot(inwards, scene.normal(triangle)) > leaving && !ignore(triangle, distance);
    });
    return hit ? hit->distance : -1.0;
}

void analyseThickness(Document& document, const PlacedMesh& mesh, const RayScene& scene,
                      const ThicknessSettings& settings) {
    const std::size_t count = mesh.points.size();
    std::vector<float> values(count, -1.0f);
    // Beyond the float rounding of the vertex the ray starts on.
    const double near = 1e-6 * diagonal(mesh.bounds());
    const std::vector<std::vector<int>> around = neighbours(*document.topo);
    auto measure = [&](std::size_t begin, std::size_t end) {
        for (std::size_t i = begin; i < end; ++i) {
            Vec3 normal = mesh.normals[i];
            if (dot(normal, normal) == 0) normal = scene.normal(static_cast<int>(i / 3));
            if (dot(normal, normal) == 0) continue;
            // A ray from an edge or a corner leaves at once through the face across it where
            // the two meet at less than a right angle (or at one, by rounding): a wall of no
            // thickness that says nothing. That face counts only beyond the start's triangle.
            const int face = mesh.faces[i];
            const double reach = longestSide(mesh, i / 3 * 3);
            const auto across = [&](int triangle, double distance) {
                const int other = mesh.faces[static_cast<std::size_t>(triangle) * 3];
                if (face < 0 || other < 0 || distance >= reach) return false;
                const auto& near = around[static_cast<std::size_t>(face)];
                return std::binary_search(near.begin(), near.end(), other);
            };
            values[i] =
                static_cast<float>(wallThickness(scene, rayStart(mesh, i), normal, near, across));
        }
    };
    const std::size_t threads = std::clamp<std::size_t>(std::thread::hardware_concurrency(), 1, 8);
    const std::size_t share = (count + threads - 1) / threads;
    std::vector<std::thread> workers;
    for (std::size_t t = 1; t < threads && t * share < count; ++t)
        workers.emplace_back(measure, t * share, std::min(count, (t + 1) * share));
    measure(0, std::min(count, share));
    for (std::thread& worker : workers)
        worker.join();

    veksg::SCThicknessAnalysis& thickness = *document.thickness;
    thickness.cleanup();
    thickness.point2 = veksg::Point3(static_cast<float>(settings.minimum), 0.0f, 0.0f);
    thickness.settingFlag = settings.minimum > 0;
    int low = -1, high = -1, open = 0, thin = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const float value = values[i];
        if (value < 0) {
            ++open;
            continue;
        }
        const int index = static_cast<int>(i);
        if (low < 0 || value < values[static_cast<std::size_t>(low)]) low = index;
        if (high < 0 || value > values[static_cast<std::size_t>(high)]) high = index;
        if (value < settings.minimum) {
            ++thin;
            thickness.ids.push_back(i);
        }
    }
    auto at = [&](int index) {
        if (index < 0) return veksg::Point3(0.0f, 0.0f, 0.0f);
        const Vec3& p = mesh.points[static_cast<std::size_t>(index)];
        return veksg::Point3(static_cast<float>(p[0]), static_cast<float>(p[1]),
                             static_cast<float>(p[2]));
    };
    thickness.index0 = low;
    thickness.index1 = high;
    thickness.index2 = low < 0 ? -1 : mesh.faces[static_cast<std::size_t>(low)];
    thickness.value0 = thin;
    thickness.value1 = open;
    thickness.value2 = static_cast<int>(count) - open;
    thickness.point0 = at(low);
    thickness.point1 = at(high);
    thickness.thicknesses = std::move(values);
    thickness.computed = true;
}

} // namespace vekhost
