#include "RayScene.h"

#include <embree3/rtcore.h>

#include <cmath>
#include <limits>
#include <stdexcept>
#include <string>

namespace vekhost {

namespace {
Vec3 minus(const Vec3& a, const Vec3& b) {
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}
double dot(const Vec3& a, const Vec3& b) {
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}
Vec3 cross(const Vec3& a, const Vec3& b) {
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}
Vec3 along(const Vec3& p, const Vec3& d, double t) {
    return {p[0] + t * d[0], p[1] + t * d[1], p[2] + t * d[2]};
}

// The point of triangle abc nearest to p, by the regions of its vertices, edges and inside.
Vec3 nearestOnTriangle(const Vec3& p, const Vec3& a, const Vec3& b, const Vec3& c) {
    const Vec3 ab = minus(b, a), ac = minus(c, a), ap = minus(p, a);
    const double d1 = dot(ab, ap), d2 = dot(ac, ap);
    if (d1 <= 0 && d2 <= 0) return a;
    const Vec3 bp = minus(p, b);
    const double d3 = dot(ab, bp), d4 = dot(ac, bp);
    if (d3 >= 0 && d4 <= d3) return b;
    const Vec3 cp = minus(p, c);
    const double d5 = dot(ab, cp), d6 = dot(ac, cp);
    if (d6 >= 0 && d5 <= d6) return c;
    const double vc = d1 * d4 - d3 * d2;
    if (vc <= 0 && d1 >= 0 && d3 <= 0) return along(a, ab, d1 / (d1 - d3));
    const double vb = d5 * d2 - d1 * d6;
    if (vb <= 0 && d2 >= 0 && d6 <= 0) return along(a, ac, d2 / (d2 - d6));
    const double va = d3 * d6 - d5 * d4;
    if (va <= 0 && d4 - d3 >= 0 && d5 - d6 >= 0)
        return along(b, minus(c, b), (d4 - d3) / ((d4 - d3) + (d5 - d6)));
    const double denominator = 1.0 / (va + vb + vc);
    const double v = vb * denominator, w = vc * denominator;
    return {a[0] + ab[0] * v + ac[0] * w, a[1] + ab[1] * v + ac[1] * w,
            a[2] + ab[2] * v + ac[2] * w};
}

// The context Embree hands to the filter: its own first, then what the filter needs.
struct FilterContext {
    RTCIntersectContext base;
    const RayScene::Accept* accept;
};

void filterHits(const RTCFilterFunctionNArguments* args) {
    const auto* context = reinterpret_cast<const FilterContext*>(args->context);
    for (unsigned i = 0; i < args->N; ++i) {
        if (args->valid[i] == 0) continue;
        // Embree sets the ray's far end to the hit it asks about.
        const unsigned triangle = RTCHitN_primID(args->hit, args->N, i);
        const float distance = RTCRayN_tfar(args->ray, args->N, i);
        if (!(*context->accept)(static_cast<int>(triangle), distance)) args->valid[i] = 0;
    }
}

struct NearestQuery {
    const PlacedMesh* mesh = nullptr;
    RayScene::Nearest best;
    bool found = false;
};

bool visitNearest(RTCPointQueryFunctionArguments* args) {
    auto* query = static_cast<NearestQuery*>(args->userPtr);
    const auto& points = query->mesh->points;
    const std::size_t first = static_cast<std::size_t>(args->primID) * 3;
    const Vec3 p{args->query->x, args->query->y, args->query->z};
    const Vec3 q = nearestOnTriangle(p, points[first], points[first + 1], points[first + 2]);
    const Vec3 d = minus(q, p);
    const double distance = std::sqrt(dot(d, d));
    if (query->found && !(distance < query->best.distance)) return false;
    query->best = {q, distance, static_cast<int>(args->primID)};
    query->found = true;
    args->query->radius = static_cast<float>(distance);
    return true;
}
} // namespace

struct RayScene::Handles {
    RTCDevice device = nullptr;
    RTCScene scene = nullptr;
    ~Handles() {
        if (scene) rtcReleaseScene(scene);
        if (device) rtcReleaseDevice(device);
    }
};

RayScene::RayScene(const PlacedMesh& mesh) : mesh(mesh), handles(std::make_unique<Handles>()) {
    handles->device = rtcNewDevice(nullptr);
    if (!handles->device)
        throw std::runtime_error("Embree: no device (error " +
                                 std::to_string(rtcGetDeviceError(nullptr)) + ")");
    handles->scene = rtcNewScene(handles->device);
    rtcSetSceneFlags(handles->scene, RTC_SCENE_FLAG_CONTEXT_FILTER_FUNCTION);
    rtcSetSceneBuildQuality(handles->scene, RTC_BUILD_QUALITY_HIGH);
    const auto triangles = static_cast<std::size_t>(mesh.triangleCount());
    if (triangles > 0) {
        RTCGeometry geometry = rtcNewGeometry(handles->device, RTC_GEOMETRY_TYPE_TRIANGLE);
        auto* vertices = static_cast<float*>(
            rtcSetNewGeometryBuffer(geometry, RTC_BUFFER_TYPE_VERTEX, 0, RTC_FORMAT_FLOAT3,
                                    3 * sizeof(float), triangles * 3));
        auto* indices = static_cast<unsigned*>(rtcSetNewGeometryBuffer(
            geometry, RTC_BUFFER_TYPE_INDEX, 0, RTC_FORMAT_UINT3, 3 * sizeof(unsigned), triangles));
        if (!vertices || !indices) {
            rtcReleaseGeometry(geometry);
            throw std::runtime_error("Embree: no memory for " + std::to_string(triangles) +
                                     " triangles");
        }
        for (std::size_t i = 0; i < triangles * 3; ++i) {
            for (std::size_t k = 0; k < 3; ++k)
                vertices[i * 3 + k] = static_cast<float>(mesh.points[i][k]);
            indices[i] = static_cast<unsigned>(i);
        }
        rtcSetGeometryPointQueryFunction(geometry, visitNearest);
        rtcCommitGeometry(geometry);
        rtcAttachGeometry(handles->scene, geometry);
        rtcReleaseGeometry(geometry);
    }
    rtcCommitScene(handles->scene);
}

RayScene::~RayScene() = default;

std::optional<RayScene::Hit> RayScene::cast(const Vec3& origin, const Vec3& direction, double near,
                                            const Accept& accept) const {
    FilterContext context{};
    rtcInitIntersectContext(&context.base);
    context.base.filter = filterHits;
    context.accept = &accept;
    RTCRayHit query{};
    query.ray.org_x = static_cast<float>(origin[0]);
    query.ray.org_y = static_cast<float>(origin[1]);
    query.ray.org_z = static_cast<float>(origin[2]);
    query.ray.dir_x = static_cast<float>(direction[0]);
    query.ray.dir_y = static_cast<float>(direction[1]);
    query.ray.dir_z = static_cast<float>(direction[2]);
    query.ray.tnear = static_cast<float>(near);
    query.ray.tfar = std::numeric_limits<float>::infinity();
    query.ray.mask = ~0u;
    query.hit.geomID = RTC_INVALID_GEOMETRY_ID;
    rtcIntersect1(handles->scene, &context.base, &query);
    if (query.hit.geomID == RTC_INVALID_GEOMETRY_ID) return std::nullopt;
    return Hit{query.ray.tfar, static_cast<int>(query.hit.primID)};
}

std::optional<RayScene::Nearest> RayScene::nearest(const Vec3& point) const {
    NearestQuery search{&mesh, {}, false};
    RTCPointQuery query{};
    query.x = static_cast<float>(point[0]);
    query.y = static_cast<float>(point[1]);
    query.z = static_cast<float>(point[2]);
    query.radius = std::numeric_limits<float>::infinity();
    RTCPointQueryContext context{};
    rtcInitPointQueryContext(&context);
    rtcPointQuery(handles->scene, &query, &context, nullptr, &search);
    if (!search.found) return std::nullopt;
    // The distance from the point as given, not its float copy.
    search.best.distance =
        std::sqrt(dot(minus(search.best.point, point), minus(search.best.point, point)));
    return search.best;
}

Vec3 RayScene::normal(int triangle) const {
    const std::size_t first = static_cast<std::size_t>(triangle) * 3;
    Vec3 sum{0, 0, 0};
    for (std::size_t k = 0; k < 3; ++k)
        for (std::size_t i = 0; i < 3; ++i)
            sum[i] += mesh.normals[first + k][i];
    if (dot(sum, sum) < 1e-12)
        sum = cross(minus(mesh.points[first + 1], mesh.points[first]),
                    minus(mesh.points[first + 2], mesh.points[first]));
    const double length = std::sqrt(dot(sum, sum));
    if (!(length > 0)) return {0, 0, 0};
    return {sum[0] / length, sum[1] / length, sum[2] / length};
}

} // namespace vekhost
