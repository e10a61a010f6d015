#include <gtest/gtest.h>

#include "veksg/veksg.h"

namespace {

using namespace veksg;

TEST(PMI, EachClassReportsItsOwnKindUntilSetTypeChangesIt) {
    const struct {
        std::shared_ptr<PMI> object;
        int kind;
    } rows[] = {
        {std::make_shared<Text3D>(L"t"), 0},
        {std::make_shared<Text3DLeader>(L"l"), 1},
        {std::make_shared<Measure>(), 3},
        {std::make_shared<View>(), 12},
        {std::make_shared<Section>(), 17},
        {std::make_shared<ViewSet>(), 18},
        {std::make_shared<TessPMI>(static_cast<PMI::PMIType>(5)), 5},
    };
    static_assert(sizeof(PMI::PMIType) == 4);
    for (const auto& row : rows) {
        EXPECT_EQ(row.object->type(), row.kind);
        EXPECT_EQ(row.object->id, 0) << row.kind;
        row.object->setType(static_cast<PMI::PMIType>(40));
        EXPECT_EQ(row.object->type(), 40);
    }
}

// A leader's text is a new one of the same name; a measure's is a new one named "Dimension".
TEST(PMI, AnnotationsMakeTheirOwnTexts) {
    const Text3DLeader leader(L"Datum B");
    const Measure m;
    ASSERT_TRUE(leader.text3d && m.text3d);
    EXPECT_STREQ(Text3D(L"Note A").name(), L"Note A");
    EXPECT_STREQ(leader.name(), L"Datum B");
    EXPECT_STREQ(leader.text3d->name(), L"Datum B");
    EXPECT_STREQ(m.name(), L"");
    EXPECT_STREQ(m.text3d->name(), L"Dimension");
    EXPECT_NE(Measure().text3d, m.text3d);
}

} // namespace
