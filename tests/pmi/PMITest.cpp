#include <memory>

#include <gtest/gtest.h>

#include "veksg/veksg.h"

namespace {

using veksg::PMI;
using veksg::Point3;

TEST(PMI, EachClassReportsItsOwnKind) {
    const struct {
        std::shared_ptr<PMI> object;
        int kind;
    } rows[] = {
        {std::make_shared<veksg::Text3D>(L"t"), 0},
        {std::make_shared<veksg::Text3DLeader>(L"l"), 1},
        {std::make_shared<veksg::Measure>(), 3},
        {std::make_shared<veksg::View>(), 12},
        {std::make_shared<veksg::Section>(), 17},
        {std::make_shared<veksg::ViewSet>(), 18},
        {std::make_shared<veksg::TessPMI>(static_cast<PMI::PMIType>(5)), 5},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(row.object->type(), row.kind);
        EXPECT_EQ(row.object->pmiType, row.kind);
        EXPECT_EQ(row.object->id, 0) << row.kind;
    }
    static_assert(sizeof(PMI::PMIType) == 4);
}

TEST(PMI, SetTypeOverridesTheClassKind) {
    veksg::TessPMI tess(static_cast<PMI::PMIType>(5));
    tess.setType(PMI::SECTION);
    EXPECT_EQ(tess.type(), 17);
    veksg::Text3D text(L"a");
    text.setType(static_cast<PMI::PMIType>(40));
    PMI& base = text;
    EXPECT_EQ(base.type(), 40);
}

TEST(PMI, TextDefaultsAndNames) {
    veksg::Text3D text(L"Note A");
    EXPECT_STREQ(text.name(), L"Note A");
    EXPECT_TRUE(text.text.empty());
    EXPECT_EQ(text.position, Point3());
    EXPECT_EQ(text.secondPoint, Point3());
    EXPECT_EQ(text.matrix, vekmath::MatrixUtils::createIdentity());
    text.setName(L"");
    EXPECT_STREQ(text.name(), L"");

    const veksg::Text3DLeader leader(L"Datum B");
    EXPECT_STREQ(leader.name(), L"Datum B");
    ASSERT_TRUE(leader.text3d);
    EXPECT_STREQ(leader.text3d->name(), L"Datum B");
    EXPECT_EQ(leader.text3d->type(), PMI::TEXT3D);
    EXPECT_EQ(leader.text3d.use_count(), 1);
    EXPECT_FALSE(leader.leader);
}

TEST(PMI, MeasureDefaults) {
    const veksg::Measure m;
    EXPECT_STREQ(m.name(), L"");
    ASSERT_TRUE(m.text3d);
    EXPECT_STREQ(m.text3d->name(), L"Dimension");
    EXPECT_FALSE(m.leader);
    EXPECT_EQ(m.value, 0.0f);
    EXPECT_EQ(m.measureSetting, 1);
    EXPECT_TRUE(m.measureText.empty());
    for (const Point3& p : {m.point1, m.point2, m.point3, m.point4})
        EXPECT_EQ(p, Point3());
    EXPECT_NE(veksg::Measure().text3d, m.text3d);
}

TEST(PMI, SectionAndViewDefaults) {
    const veksg::Section s;
    EXPECT_EQ(s.origin, Point3());
    EXPECT_EQ(s.normal, Point3(0, 0, 1));
    EXPECT_EQ(s.sectionSetting, 0);

    const veksg::View v;
    EXPECT_EQ(v.viewIndex, -1);
    EXPECT_EQ(v.position, Point3());
    EXPECT_EQ(v.target, Point3());
    EXPECT_EQ(v.up, Point3(0, 1, 0));
    EXPECT_TRUE(v.viewFlag);
    EXPECT_EQ(v.viewValue, 0);
    EXPECT_EQ(v.viewEnd, -1);
    for (const std::wstring* t : {&v.text1, &v.text2, &v.text3, &v.text4})
        EXPECT_TRUE(t->empty());
    for (const std::vector<int>* l : {&v.list1, &v.list2, &v.list3, &v.list4, &v.list5, &v.list6})
        EXPECT_TRUE(l->empty());
    EXPECT_TRUE(v.floatList.empty());
    EXPECT_TRUE(v.transforms.empty());
    EXPECT_TRUE(v.points.empty());
    EXPECT_TRUE(v.colorList.empty());
}

TEST(PMI, CopiesShareTextAndLeaderAndCarryTheBasePart) {
    veksg::Text3DLeader leader(L"L1");
    leader.id = 9;
    leader.leader = std::make_shared<veksg::Polyline>();
    {
        const veksg::Text3DLeader copy(leader);
        EXPECT_EQ(copy.text3d, leader.text3d);
        EXPECT_EQ(leader.text3d.use_count(), 2);
        EXPECT_EQ(leader.leader.use_count(), 2);
        EXPECT_EQ(copy.id, 9);
        EXPECT_STREQ(copy.name(), L"L1");
    }
    EXPECT_EQ(leader.text3d.use_count(), 1);

    veksg::Measure measure;
    measure.value = 12.5f;
    measure.setName(L"D1");
    measure.setType(static_cast<PMI::PMIType>(7));
    veksg::Measure other;
    const auto othersText = other.text3d;
    other = measure;
    EXPECT_EQ(other.text3d, measure.text3d);
    EXPECT_EQ(othersText.use_count(), 1);
    EXPECT_EQ(other.value, 12.5f);
    EXPECT_STREQ(other.name(), L"D1");
    EXPECT_EQ(other.type(), 7);
}

} // namespace
