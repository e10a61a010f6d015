// Drawings: reading the largest librecad-data sheets and symbols into the 2D component and
// drawing them, each beside its raw baseline (dxflib parsing the same bytes into an adapter
// that keeps nothing; cairo stroking the same polylines with nothing else to do); and the
// projected views of two Open CASCADE samples with both hidden-line removals, beside the
// removal alone. Items are entities (DXF) or views (projection).
#include <BRepBndLib.hxx>
#include <BRepMesh_IncrementalMesh.hxx>
#include <BRepTools.hxx>
#include <BRep_Builder.hxx>
#include <Bnd_Box.hxx>
#include <HLRAlgo_Projector.hxx>
#include <HLRBRep_Algo.hxx>
#include <HLRBRep_HLRToShape.hxx>
#include <HLRBRep_PolyAlgo.hxx>
#include <HLRBRep_PolyHLRToShape.hxx>
#include <STEPControl_Reader.hxx>
#include <cairo.h>
#include <dxflib/dl_creationadapter.h>
#include <dxflib/dl_dxf.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <sstream>
#include <string>

#include <benchmark/benchmark.h>

#include "BenchMain.h"
#include "Drawing.h"
#include "DrawingRender.h"
#include "DxfReader.h"
#include "Projection.h"

namespace {

const char* const drawings[] = {
    "/usr/share/librecad/library/sheets/A0H.dxf",
    "/usr/share/librecad/library/elektro/power/pe25.dxf",
    "/usr/share/librecad/library/plan/architect/Complete-Lib-E.dxf",
    "/usr/share/librecad/library/plan/vegetation/v21.dxf",
};

const std::string& bytesOf(const char* path) {
    static std::map<std::string, std::string> cache;
    auto& bytes = cache[path];
    if (bytes.empty()) {
        std::ifstream in(path, std::ios::binary);
        bytes.assign(std::istreambuf_iterator<char>(in), {});
    }
    return bytes;
}

vek2d::SCScene2D read(const std::string& bytes) {
    std::istringstream in(bytes);
    vek2d::SCScene2D drawing;
    vekhost::readDxf(in, drawing);
    return drawing;
}

void BM_ReadDxf(benchmark::State& state, const char* path) {
    const std::string& bytes = bytesOf(path);
    if (bytes.empty()) return state.SkipWithError("librecad-data is not installed");
    std::size_t entities = 0;
    for (auto _ : state) {
        const vek2d::SCScene2D drawing = read(bytes);
        entities = drawing.entities.size();
        benchmark::DoNotOptimize(entities);
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * entities));
}

// What dxflib alone costs on the same bytes.
void BM_RawDxflib(benchmark::State& state, const char* path) {
    const std::string& bytes = bytesOf(path);
    if (bytes.empty()) return state.SkipWithError("librecad-data is not installed");
    const std::size_t entities = read(bytes).entities.size();
    for (auto _ : state) {
        std::istringstream in(bytes);
        DL_CreationAdapter nothing;
        DL_Dxf dxf;
        benchmark::DoNotOptimize(dxf.in(in, &nothing));
    }
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * entities));
}

constexpr int pictureWidth = 1600;
constexpr int pictureHeight = 1131;

void BM_DrawSheet(benchmark::State& state, const char* path) {
    const std::string& bytes = bytesOf(path);
    if (bytes.empty()) return state.SkipWithError("librecad-data is not installed");
    const vek2d::SCScene2D drawing = read(bytes);
    vekhost::SheetPicture picture;
    picture.width = pictureWidth;
    picture.height = pictureHeight;
    for (auto _ : state)
        benchmark::DoNotOptimize(vekhost::drawSheetImage(drawing, picture).pixels.data());
    state.SetItemsProcessed(
        static_cast<std::int64_t>(state.iterations() * drawing.entities.size()));
}

// Cairo stroking the drawing's polylines, fitted by hand, one path each.
void BM_RawCairo(benchmark::State& state, const char* path) {
    const std::string& bytes = bytesOf(path);
    if (bytes.empty()) return state.SkipWithError("librecad-data is not installed");
    const vek2d::SCScene2D drawing = read(bytes);
    const auto& sheet = drawing.sheets[0];
    const double scale = std::min(pictureWidth / (sheet.point1[0] - sheet.point0[0] + 1e-9),
                                  pictureHeight / (sheet.point1[1] - sheet.point0[1] + 1e-9));
    for (auto _ : state) {
        cairo_surface_t* surface =
            cairo_image_surface_create(CAIRO_FORMAT_ARGB32, pictureWidth, pictureHeight);
        cairo_t* cr = cairo_create(surface);
        cairo_set_source_rgb(cr, 1, 1, 1);
        cairo_paint(cr);
        cairo_set_source_rgb(cr, 0, 0, 0);
        cairo_set_line_width(cr, 1);
        for (const vek2d::Entity& e : drawing.entities) {
            const auto m = vekhost::drawing::Affine::fromMatrix(e.matrix);
            for (std::size_t i = 0; i < e.points.size(); ++i) {
                const auto p = m.apply(e.points[i][0], e.points[i][1]);
                const double x = (p[0] - sheet.point0[0]) * scale;
                const double y = pictureHeight - (p[1] - sheet.point0[1]) * scale;
                i == 0 ? cairo_move_to(cr, x, y) : cairo_line_to(cr, x, y);
            }
            cairo_stroke(cr);
        }
        cairo_destroy(cr);
        cairo_surface_destroy(surface);
    }
    state.SetItemsProcessed(
        static_cast<std::int64_t>(state.iterations() * drawing.entities.size()));
}

const char* const parts[] = {
    "/usr/share/opencascade/data/step/linkrods.step",
    "/usr/share/opencascade/data/occ/Motor-c.brep",
};

// The part, tessellated as a load would (the polygonal removal works on the triangles).
const TopoDS_Shape& shapeOf(const char* path) {
    static std::map<std::string, TopoDS_Shape> cache;
    TopoDS_Shape& shape = cache[path];
    if (!shape.IsNull()) return shape;
    const std::string file(path);
    if (file.size() > 5 && file.compare(file.size() - 5, 5, ".brep") == 0) {
        BRep_Builder builder;
        BRepTools::Read(shape, path, builder);
    } else {
        STEPControl_Reader reader;
        if (reader.ReadFile(path) == IFSelect_RetDone && reader.TransferRoots() > 0)
            shape = reader.OneShape();
    }
    if (shape.IsNull()) return shape;
    // A thousandth of the diagonal, as loads choose by default.
    Bnd_Box box;
    BRepBndLib::Add(shape, box);
    BRepMesh_IncrementalMesh(shape, 0.001 * std::sqrt(box.SquareExtent()), false, 0.5, true);
    return shape;
}

// The four views of a sheet: front, top, right with hidden lines, isometric without.
const gp_Ax2 views[4] = {{gp::Origin(), gp_Dir(0, -1, 0), gp_Dir(1, 0, 0)},
                         {gp::Origin(), gp_Dir(0, 0, 1), gp_Dir(1, 0, 0)},
                         {gp::Origin(), gp_Dir(1, 0, 0), gp_Dir(0, 1, 0)},
                         {gp::Origin(), gp_Dir(-1, -1, 1), gp_Dir(1, -1, 0)}};

void BM_Project(benchmark::State& state, const char* path, vekhost::HiddenLines method) {
    const TopoDS_Shape& shape = shapeOf(path);
    if (shape.IsNull()) return state.SkipWithError("occt-misc is not installed");
    std::size_t edges = 0;
    for (auto _ : state)
        for (int v = 0; v < 4; ++v)
            edges = vekhost::projectShape(shape, views[v], method, v < 3).edges.size();
    benchmark::DoNotOptimize(edges);
    state.SetItemsProcessed(state.iterations() * 4);
}

// The removal and its result shapes alone, as Open CASCADE gives them.
void BM_RawHlr(benchmark::State& state, const char* path, vekhost::HiddenLines method) {
    const TopoDS_Shape& shape = shapeOf(path);
    if (shape.IsNull()) return state.SkipWithError("occt-misc is not installed");
    for (auto _ : state)
        for (int v = 0; v < 4; ++v) {
            if (method == vekhost::HiddenLines::Exact) {
                Handle(HLRBRep_Algo) algo = new HLRBRep_Algo();
                algo->Add(shape);
                algo->Projector(HLRAlgo_Projector(views[v]));
                algo->Update();
                algo->Hide();
                HLRBRep_HLRToShape result(algo);
                benchmark::DoNotOptimize(result.VCompound());
                benchmark::DoNotOptimize(result.HCompound());
            } else {
                Handle(HLRBRep_PolyAlgo) algo = new HLRBRep_PolyAlgo();
                algo->Load(shape);
                algo->Projector(HLRAlgo_Projector(views[v]));
                algo->Update();
                HLRBRep_PolyHLRToShape result;
                result.Update(algo);
                benchmark::DoNotOptimize(result.VCompound());
                benchmark::DoNotOptimize(result.HCompound());
            }
        }
    state.SetItemsProcessed(state.iterations() * 4);
}

int registerAll() {
    for (const char* path : drawings) {
        const std::string name = std::filesystem::path(path).filename().string();
        benchmark::RegisterBenchmark(("ReadDxf/" + name).c_str(), BM_ReadDxf, path);
        benchmark::RegisterBenchmark(("RawDxflib/" + name).c_str(), BM_RawDxflib, path);
        benchmark::RegisterBenchmark(("DrawSheet/" + name).c_str(), BM_DrawSheet, path)
            ->Unit(benchmark::kMillisecond);
        benchmark::RegisterBenchmark(("RawCairo/" + name).c_str(), BM_RawCairo, path)
            ->Unit(benchmark::kMillisecond);
    }
    for (const char* path : parts) {
        const std::string name = std::filesystem::path(path).filename().string();
        for (const auto method : {vekhost::HiddenLines::Exact, vekhost::HiddenLines::Polygonal}) {
            const std::string how = method == vekhost::HiddenLines::Exact ? "exact" : "polygonal";
            benchmark::RegisterBenchmark(("Project/" + name + "/" + how).c_str(), BM_Project, path,
                                         method)
                ->Unit(benchmark::kMillisecond);
            benchmark::RegisterBenchmark(("RawHlr/" + name + "/" + how).c_str(), BM_RawHlr, path,
                                         method)
                ->Unit(benchmark::kMillisecond);
        }
    }
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    registerAll();
    return veksgbench::runBenchmarks(argc, argv);
}
