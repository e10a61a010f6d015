#include <gtest/gtest.h>

#include "vek2d/SCScene2D.h"
#include "veksg/veksg.h"

namespace {

using namespace veksg;
using Matrix = vekmath::Tuple<float, 16>;

// Any number widened, so that one table holds every kind of field.
struct Number {
    template <typename A, typename E>
    Number(const char* what, A actual, E expected)
        : what(what), actual(static_cast<double>(actual)), expected(static_cast<double>(expected)) {
    }
    const char* what;
    double actual;
    double expected;
};

// What a host reads before it sets anything, one row per documented number: identifiers
// that name a table key start at -1, counts and codes at 0, and the few others as listed.
TEST(Defaults, RecordsAndComponentsStartAsDocumented) {
    const PrimitiveInfo primitive;
    const VertexInfo vertexInfo;
    const Node node;
    const Edge edge;
    const Font font;
    const Text text;
    const SCInfo info;
    const SCExtFile files;
    const Measure measure;
    const View view;
    const SCView views;
    const SCDraftAngleAnalysis draft;
    const SCThicknessAnalysis thickness;
    const PairT<EntityType, int> pair;
    const vek2d::Sheet sheet;
    const vek2d::Entity entity;
    const vek2d::SCScene2D drawing;
    const Number numbers[] = {
        {"PrimitiveInfo.id", primitive.id, -1},
        {"PrimitiveInfo.first+count+mode", primitive.first + primitive.count + primitive.mode, 0},
        {"VertexInfo.stride", vertexInfo.stride, 1},
        {"VertexInfo.count", vertexInfo.count, 0},
        {"IndexInfo.count", IndexInfo().count, 0},
        {"Node.id", node.id, -1},
        {"Node.ref", node.ref, -1},
        {"Face.id", Face().id, -1},
        {"Edge.id", edge.id, -1},
        {"Edge.ref", edge.ref, -1},
        {"Edge.kind", edge.kind, 0},
        {"Vertex.id", Vertex().id, -1},
        {"Surface.id", Surface().id, -1},
        {"Curve.id", Curve().id, -1},
        {"valid flags and Node/Face.flag",
         node.flag + Face().flag + BBox().valid + OBBox().valid + Transform().valid +
             MMaterial().valid + PLMaterial().valid,
         0},
        {"MMaterial.shininess", MMaterial().shininess, 30.0f},
        {"PLMaterial.width", PLMaterial().width, 1.0f},
        {"Font.size", font.size, 10},
        {"Font.style+attributes", font.style + font.attributes, 0},
        {"Text.font+color+attributes+length",
         text.font + text.color + text.attributes + text.length(), 0},
        {"SCInfo.info3", info.info3, -1},
        {"SCInfo other numbers",
         info.info0 + info.info1 + info.info2 + info.info4 + info.info5 + info.info6 + info.info8 +
             info.info9,
         0},
        {"SCInfo.tolerance", info.tolerance, 0.001f},
        {"SCLayer.layer+ExtFile.id", SCLayer().layer + ExtFile().id, 0},
        {"SCExtFile.flagA", files.flagA, 1},
        {"SCExtFile.deleteFilesOnDestroy+flagB", files.deleteFilesOnDestroy + files.flagB, 0},
        {"Measure.measureSetting", measure.measureSetting, 1},
        {"View.viewIndex", view.viewIndex, -1},
        {"View.viewEnd", view.viewEnd, -1},
        {"View.viewFlag", view.viewFlag, 1},
        {"SCView.currentView", views.currentView, 0},
        {"SCView.previousView", views.previousView, -1},
        {"SCView.viewMode", views.viewMode, 1},
        {"SCAttributes.userValue", SCAttributes().userValue, 0},
        {"SCSceneTopo.topoKey", SCSceneTopo().topoKey, -1},
        {"SCSceneTopo.topoCount", SCSceneTopo().topoCount, 0},
        {"SCThicknessAnalysis.type", thickness.type(), 33},
        {"SCDraftAngleAnalysis.type", draft.type(), 34},
        {"SCFeatures.type", SCFeatures().type(), 22},
        {"SCThicknessAnalysis.computed+settingFlag+options",
         thickness.computed + thickness.settingFlag + thickness.options, 0},
        {"SCDraftAngleAnalysis.minAngle", draft.minAngle, -90.0f},
        {"SCDraftAngleAnalysis.maxAngle", draft.maxAngle, 90.0f},
        {"SCDraftAngleAnalysis.settingFlag2", draft.settingFlag2, 1},
        {"SCDraftAngleAnalysis.settingFlag+computed", draft.settingFlag + draft.computed, 0},
        {"SCDraftAngleAnalysis.settingIndex", draft.settingIndex, -1},
        {"SCDraftAngleAnalysis.currentIndex", draft.currentIndex, -1},
        {"PairT", pair.first + pair.second, 0},
        {"Sheet.tolerance", sheet.tolerance, 0.001},
        {"Sheet.flag0+flag1+View.flag", sheet.flag0 + sheet.flag1 + vek2d::View().flag, 0},
        {"Entity.id", entity.id, -1},
        {"Entity.scale", entity.scale, 1.0},
        {"Entity values and style", entity.value0 + entity.value1 + entity.value2 + entity.style,
         0},
        {"SCScene2D.type", drawing.type(), 25},
        {"SCScene2D.current", drawing.current, 0},
        {"SCScene2D.scale", drawing.scale, -1.0f},
    };
    for (const auto& n : numbers)
        EXPECT_EQ(n.actual, n.expected) << n.what;

    // Names start empty or as one space; matrices are identities except where noted.
    EXPECT_STREQ(node.name(), L"");
    EXPECT_STREQ(font.name(), L"");
    EXPECT_STREQ(info.file(), L"");
    EXPECT_EQ(sheet.name + vek2d::View().name, L"  ");
    for (const Matrix& identity : {Transform().matrix, text.matrix, Text3D(L"t").matrix})
        EXPECT_EQ(identity, vekmath::MatrixUtils::createIdentity());
    EXPECT_EQ(entity.matrix, Matrix()) << "zeros, not the identity";
    EXPECT_EQ((PairT<Matrix, int>().first), Matrix());
    EXPECT_EQ(sheet.color, Color4(0.0f, 0.0f, 0.0f, 1.0f));
    EXPECT_EQ(drawing.color, Color4());
    EXPECT_EQ(Section().normal, Point3(0, 0, 1));
    EXPECT_EQ(view.up, Point3(0, 1, 0));
    EXPECT_EQ(vek2d::SCScene2D(static_cast<Schema::TYPE>(63)).type(), 63);
}

} // namespace
