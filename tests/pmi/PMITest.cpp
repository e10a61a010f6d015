#include <gtest/gtest.h>

#include "veksg/veksg.h"

namespace {

using veksg::PMI;
using veksg::Point3;

TEST(PMI, EachClassReportsItsOwnKindUntilSetTypeChangesIt) {
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
    static_assert(sizeof(PMI::PMIType) == 4);
    for (const auto& row : rows) {
        EXPECT_EQ(row.object->type(), row.kind);
        EXPECT_EQ(row.object->id, 0) << row.kind;
        row.object->setType(static_cast<PMI::PMIType>(40));
        EXPECT_EQ(row.object->type(), 40);
    }
}

TEST(PMI, Defaults) {
    const veksg::Text3D text(L"Note A");
    EXPECT_STREQ(text.name(), L"Note A");
    EXPECT_EQ(text.matrix, vekmath::MatrixUtils::createIdentity());

    // A leader's text is a new one of the same name; a measure's is named "Dimension".
    const veksg::Text3DLeader leader(L"Datum B");
    const veksg::Measure m;
    ASSERT_TRUE(leader.text3d && m.text3d);
    EXPECT_STREQ(leader.name(), L"Datum B");
    EXPECT_STREQ(leader.text3d->name(), L"Datum B");
    EXPECT_STREQ(m.name(), L"");
    EXPECT_STREQ(m.text3d->name(), L"Dimension");
    EXPECT_NE(veksg::Measure().text3d, m.text3d);
    EXPECT_FALSE(leader.leader || m.leader);
    EXPECT_EQ(m.measureSetting, 1);

    EXPECT_EQ(veksg::Section().normal, Point3(0, 0, 1));
    const veksg::View v;
    EXPECT_EQ(v.viewIndex, -1);
    EXPECT_EQ(v.viewEnd, -1);
    EXPECT_EQ(v.up, Point3(0, 1, 0));
    EXPECT_TRUE(v.viewFlag);
}

} // namespace
