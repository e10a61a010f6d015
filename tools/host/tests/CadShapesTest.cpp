// The B-rep a CAD load keeps: a shape for every node, face and edge key, placed as the
// records are.
#include <BRepBndLib.hxx>
#include <BRep_Tool.hxx>
#include <Bnd_Box.hxx>
#include <TopExp.hxx>
#include <TopoDS_Vertex.hxx>
#include <gtest/gtest.h>

#include <cmath>
#include <string>

#include "CadShapes.h"
#include "Loader.h"
#include "TestFiles.h"

namespace vekhost::test {
namespace {

// What the float records may be off by: a millionth of the model's size.
double roundingOf(const veksg::SCScene& scene) {
    const veksg::BBox& box = scene.boxes.getValue(0);
    double squares = 0;
    for (int i = 0; i < 3; ++i)
        squares += (box.max[i] - box.min[i]) * (box.max[i] - box.min[i]);
    return 1e-6 * std::sqrt(squares);
}

void expectShapesMatchRecords(const LoadResult& result) {
    ASSERT_TRUE(result.shapes);
    const CadShapes& shapes = *result.shapes;
    const veksg::SCSceneTopo& topo = *result.document->topo;
    ASSERT_EQ(shapes.nodeCount(), topo.nodes.size());
    ASSERT_EQ(shapes.faceCount(), topo.faces.size());
    ASSERT_EQ(shapes.edgeCount(), topo.edges.size());
    const double rounding = roundingOf(*result.document->scene);
    for (int key = 0; key < topo.nodes.size(); ++key)
        EXPECT_FALSE(shapes.node(key).IsNull()) << "node " << key;
    // Open CASCADE's box of a meshed face is the box of its mesh nodes, widened by its gap.
    for (int key = 0; key < topo.faces.size(); ++key) {
        Bnd_Box box;
        BRepBndLib::Add(shapes.face(key), box);
        double low[3];
        double high[3];
        box.Get(low[0], low[1], low[2], high[0], high[1], high[2]);
        const veksg::Face& face = topo.faces.getValue(key);
        for (int i = 0; i < 3; ++i) {
            EXPECT_NEAR(low[i], face.pointA[i], box.GetGap() + rounding) << "face " << key;
            EXPECT_NEAR(high[i], face.pointB[i], box.GetGap() + rounding) << "face " << key;
        }
    }
    for (int key = 0; key < topo.edges.size(); ++key) {
        TopoDS_Vertex start;
        TopoDS_Vertex end;
        TopExp::Vertices(shapes.edge(key), start, end);
        if (start.IsNull()) continue;
        const gp_Pnt p = BRep_Tool::Pnt(start);
        const veksg::Edge& edge = topo.edges.getValue(key);
        EXPECT_NEAR(p.Distance(gp_Pnt(edge.pointA[0], edge.pointA[1], edge.pointA[2])), 0, rounding)
            << "edge " << key;
    }
}

// The sample places instances of one part apart; the STEP file is a real one.
TEST(CadShapes, GiveEveryNodeFaceAndEdgeKeyItsShapePlacedAsTheRecords) {
    expectShapesMatchRecords(loadSample(LoadOptions()));
    const std::string path = occtFile("step/linkrods.step");
    if (!exists(path)) GTEST_SKIP() << path << " is missing";
    expectShapesMatchRecords(loadFile(path, LoadOptions()));
}

} // namespace
} // namespace vekhost::test
