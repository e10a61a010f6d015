#include <gtest/gtest.h>

#include "vek2d/SCScene2D.h"
#include "veksg/veksg.h"

namespace {

using namespace veksg;
using Matrix = vekmath::Tuple<float, 16>;
using Ints = std::vector<int>;

// What a host reads before it sets anything, grouped by the documented value: identifiers
// that name a table key start at -1, counts, codes and flags at 0, the rest as listed.
TEST(Defaults, RecordsAndComponentsStartAsDocumented) {
    const PrimitiveInfo primitive;
    const Node node;
    const Edge edge;
    const Font font;
    const Text text;
    const SCInfo info;
    const SCExtFile files;
    const View view;
    const SCView views;
    const SCDraftAngleAnalysis draft;
    const SCThicknessAnalysis thickness;
    const PairT<EntityType, int> pair;
    const vek2d::Sheet sheet;
    const vek2d::Entity entity;
    const vek2d::SCScene2D drawing;

    EXPECT_EQ((Ints{primitive.id, node.id, node.ref, Face().id, edge.id, edge.ref, Vertex().id,
                    Surface().id, Curve().id, info.info3, view.viewIndex, view.viewEnd,
                    views.previousView, SCSceneTopo().topoKey, draft.settingIndex,
                    draft.currentIndex, entity.id}),
              Ints(17, -1));
    EXPECT_EQ((Ints{primitive.first, primitive.count, primitive.mode, VertexInfo().count,
                    IndexInfo().count, edge.kind, node.flag, Face().flag, BBox().valid,
                    OBBox().valid, Transform().valid, MMaterial().valid, PLMaterial().valid}),
              Ints(13, 0));
    EXPECT_EQ((Ints{font.style, font.attributes, text.font, text.color, text.attributes, info.info0,
                    info.info1, info.info2, info.info4, info.info5, info.info6, info.info8,
                    info.info9, SCLayer().layer, ExtFile().id}),
              Ints(15, 0));
    EXPECT_EQ((Ints{files.deleteFilesOnDestroy, files.flagB, views.currentView,
                    SCAttributes().userValue, SCSceneTopo().topoCount, thickness.computed,
                    thickness.settingFlag, thickness.options, draft.settingFlag, draft.computed,
                    pair.first, pair.second, sheet.flag0, sheet.flag1, vek2d::View().flag}),
              Ints(15, 0));
    EXPECT_EQ((Ints{entity.value0, entity.value1, entity.value2, entity.style, drawing.current}),
              Ints(5, 0));
    EXPECT_EQ((Ints{VertexInfo().stride, files.flagA, Measure().measureSetting, view.viewFlag,
                    views.viewMode, draft.settingFlag2}),
              Ints(6, 1));
    EXPECT_EQ(SCStates().secondSetting + SCStates().firstSetting, 2);
    EXPECT_EQ((Ints{font.size, thickness.type(), draft.type(), SCFeatures().type(), drawing.type(),
                    vek2d::SCScene2D(static_cast<Schema::TYPE>(63)).type()}),
              (Ints{10, 33, 34, 22, 25, 63}));
    EXPECT_EQ((std::vector<float>{MMaterial().shininess, PLMaterial().width, info.tolerance,
                                  draft.minAngle, draft.maxAngle, drawing.scale}),
              (std::vector<float>{30.0f, 1.0f, 0.001f, -90.0f, 90.0f, -1.0f}));
    EXPECT_EQ(sheet.tolerance, 0.001);
    EXPECT_EQ(entity.scale, 1.0);

    // Drawing names start as one space; matrices are identities except where noted.
    EXPECT_EQ(sheet.name + vek2d::View().name, L"  ");
    const Matrix identity = vekmath::MatrixUtils::createIdentity();
    for (int i = 0; i < 16; ++i)
        EXPECT_EQ(identity[i] - Matrix()[i], i % 5 == 0 ? 1.0f : 0.0f) << i;
    for (const Matrix& matrix : {Transform().matrix, text.matrix, Text3D(L"t").matrix})
        EXPECT_EQ(matrix, identity);
    EXPECT_EQ(entity.matrix, Matrix()) << "zeros, not the identity";
    EXPECT_EQ(sheet.color, Color4(0.0f, 0.0f, 0.0f, 1.0f));
    EXPECT_EQ(Section().normal, Point3(0, 0, 1));
    EXPECT_EQ(view.up, Point3(0, 1, 0));
    // A state store starts with three empty containers of its own.
    const SCStates states;
    EXPECT_TRUE(states.firstStates->isEmpty() && states.secondStates->isEmpty() &&
                states.typeStates->isEmpty());
    EXPECT_NE(states.firstStates, states.secondStates);
    EXPECT_NE(states.firstStates, SCStates().firstStates);
}

} // namespace
