// Wall thickness rays: Intel Embree over the tessellation against Open CASCADE's own
// intersector (IntCurvesFace_ShapeIntersector) over the exact B-rep, the same rays on the same
// part (Open CASCADE's sample Motor-c.brep, else the host's built-in sample). Items are rays.
// The OcctRays benchmark is the baseline; EmbreeRays casts the same first hits, and
// EmbreeThickness adds the thickness rules (walls the ray leaves through, faces next to the
// start passed). Agreement counts the rays where both find a wall within the deflection.
#include <IntCurvesFace_ShapeIntersector.hxx>
#include <gp_Lin.hxx>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <memory>
#include <vector>

#include "BenchMain.h"
#include "CadShapes.h"
#include "Loader.h"
#include "PlacedMesh.h"
#include "RayScene.h"
#include "Thickness.h"

namespace {

struct Ray {
    vekhost::Vec3 origin;
    vekhost::Vec3 direction;
};

// The part, its mesh and scene, and rays inwards from its vertices, made once.
struct Part {
    vekhost::LoadResult loaded;
    vekhost::PlacedMesh mesh;
    std::unique_ptr<vekhost::RayScene> scene;
    std::vector<Ray> rays;
    double near = 0;

    Part() {
        const std::string file = "/usr/share/opencascade/data/occ/Motor-c.brep";
        vekhost::LoadOptions options;
        loaded = std::filesystem::exists(file) ? vekhost::loadFile(file, options)
                                               : vekhost::loadSample(options);
        mesh = vekhost::PlacedMesh::of(*loaded.document);
        scene = std::make_unique<vekhost::RayScene>(mesh);
        const vekhost::Box3 box = mesh.bounds();
        near = 1e-6 * std::hypot(box.max[0] - box.min[0], box.max[1] - box.min[1],
                                 box.max[2] - box.min[2]);
        // Every vertex's ray, from a hair inside its triangle as the analysis starts it.
        for (std::size_t i = 0; i < mesh.points.size(); ++i) {
            const vekhost::Vec3& n = mesh.normals[i];
            if (n[0] == 0 && n[1] == 0 && n[2] == 0) continue;
            const std::size_t first = i / 3 * 3;
            vekhost::Vec3 start = mesh.points[i];
            for (std::size_t k = 0; k < 3; ++k)
                start[k] += 1e-4 * ((mesh.points[first][k] + mesh.points[first + 1][k] +
                                     mesh.points[first + 2][k]) /
                                        3 -
                                    start[k]);
            rays.push_back({start, {-n[0], -n[1], -n[2]}});
        }
    }
};

Part& part() {
    static Part shared;
    return shared;
}

// `count` rays spread over the part.
std::vector<Ray> sample(std::size_t count) {
    const std::vector<Ray>& all = part().rays;
    std::vector<Ray> out;
    for (std::size_t i = 0; i < count && !all.empty(); ++i)
        out.push_back(all[i * all.size() / count]);
    return out;
}

double occtHit(IntCurvesFace_ShapeIntersector& intersector, const Ray& ray, double near) {
    intersector.PerformNearest(gp_Lin(gp_Pnt(ray.origin[0], ray.origin[1], ray.origin[2]),
                                      gp_Dir(ray.direction[0], ray.direction[1], ray.direction[2])),
                               near, 1e100);
    if (!intersector.IsDone() || intersector.NbPnt() == 0) return -1;
    return intersector.WParameter(1);
}

double embreeHit(const Ray& ray, double near) {
    const auto hit =
        part().scene->cast(ray.origin, ray.direction, near, [](int, double) { return true; });
    return hit ? hit->distance : -1;
}

void OcctRays(benchmark::State& state) {
    const std::vector<Ray> rays = sample(static_cast<std::size_t>(state.range(0)));
    IntCurvesFace_ShapeIntersector intersector;
    intersector.Load(part().loaded.shapes->node(0), 1e-7);
    const double near = part().near;
    for (auto _ : state)
        for (const Ray& ray : rays)
            benchmark::DoNotOptimize(occtHit(intersector, ray, near));
    state.SetItemsProcessed(state.iterations() * static_cast<long long>(rays.size()));

    // How often the two agree, counted once, outside the timing.
    int agree = 0, both = 0;
    for (const Ray& ray : rays) {
        const double exact = occtHit(intersector, ray, near);
        const double meshed = embreeHit(ray, near);
        if (exact < 0 || meshed < 0) continue;
        ++both;
        agree += std::fabs(exact - meshed) <= 2 * part().loaded.deflection ? 1 : 0;
    }
    state.counters["agreement"] = both > 0 ? static_cast<double>(agree) / both : 0;
}

void EmbreeRays(benchmark::State& state) {
    const std::vector<Ray> rays = sample(static_cast<std::size_t>(state.range(0)));
    const double near = part().near;
    for (auto _ : state)
        for (const Ray& ray : rays)
            benchmark::DoNotOptimize(embreeHit(ray, near));
    state.SetItemsProcessed(state.iterations() * static_cast<long long>(rays.size()));
}

void EmbreeThickness(benchmark::State& state) {
    const std::vector<Ray> rays = sample(static_cast<std::size_t>(state.range(0)));
    const double near = part().near;
    const auto none = [](int, double) { return false; };
    for (auto _ : state)
        for (const Ray& ray : rays) {
            const vekhost::Vec3 outwards{-ray.direction[0], -ray.direction[1], -ray.direction[2]};
            benchmark::DoNotOptimize(
                vekhost::wallThickness(*part().scene, ray.origin, outwards, near, none));
        }
    state.SetItemsProcessed(state.iterations() * static_cast<long long>(rays.size()));
}

// The whole analysis on the part, every vertex, on the threads it uses, beside the load.
void ThicknessAnalysis(benchmark::State& state) {
    vekhost::Document& document = *part().loaded.document;
    for (auto _ : state)
        vekhost::analyseThickness(document, part().mesh, *part().scene, {});
    state.SetItemsProcessed(state.iterations() * static_cast<long long>(part().mesh.points.size()));
    state.counters["loadSeconds"] = part().loaded.times.total();
}

BENCHMARK(OcctRays)->Arg(250)->Arg(4096)->Unit(benchmark::kMillisecond);
BENCHMARK(EmbreeRays)->Arg(250)->Arg(4096)->Unit(benchmark::kMillisecond);
BENCHMARK(EmbreeThickness)->Arg(250)->Arg(4096)->Unit(benchmark::kMillisecond);
BENCHMARK(ThicknessAnalysis)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    return veksgbench::runBenchmarks(argc, argv);
}
