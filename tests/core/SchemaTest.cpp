#include <memory>

#include <gtest/gtest.h>

#include "common/RecordingResizer.h"
#include "veksg/Schema.h"

namespace {

using veksg::Schema;

// The smallest component: everything from the base.
class Bare : public Schema {
public:
    explicit Bare(short code) : Schema(code) {}
    short type() const override { return Schema::type(); }
};

TEST(Schema, TypeCodesKeepTheirNumbers) {
    const std::pair<Schema::TYPE, int> codes[] = {
        {Schema::SCENE, 0},
        {Schema::SCENE_RT, 1},
        {Schema::PMI_DATA, 3},
        {Schema::EXT_FILE, 4},
        {Schema::ATTRIBUTES, 5},
        {Schema::LAYER, 6},
        {Schema::TEMP_GRAPHICS, 7},
        {Schema::INFO, 8},
        {Schema::VIEW, 10},
        {Schema::ANIMATION, 11},
        {Schema::SCENE_TOPO, 12},
        {Schema::SCENE_RES, 13},
        {Schema::FEATURES, 22},
        {Schema::SCENE_2D, 25},
        {Schema::HOOPS, 28},
        {Schema::COMPRAE, 29},
        {Schema::STATES, 32},
        {Schema::THICKNESS_ANALYSIS, 33},
        {Schema::DRAFT_ANGLE_ANALYSIS, 34},
        {Schema::HOLE_INFO, 35},
    };
    for (const auto& [code, number] : codes)
        EXPECT_EQ(static_cast<int>(code), number);
}

TEST(Schema, TypeIsWhateverWasStoredAndTravelsWithCopies) {
    Bare a(12);
    Bare b(-7);
    EXPECT_EQ(a.type(), 12);
    EXPECT_EQ(b.type(), -7);
    Bare copy(a);
    EXPECT_EQ(copy.type(), 12);
    b = a;
    EXPECT_EQ(b.type(), 12);
}

TEST(Schema, BaseResizeAsksNothingAndReleasesTheResizer) {
    auto resizer = std::make_shared<testing_support::RecordingResizer>();
    Bare component(5);
    component.resize(resizer);
    component.cleanup();
    EXPECT_TRUE(resizer->asked.empty());
    EXPECT_EQ(resizer.use_count(), 1);
    EXPECT_EQ(component.type(), 5);
}

TEST(Schema, DestructionGoesThroughTheBase) {
    static int destroyed = 0;
    struct Counted : Bare {
        Counted() : Bare(1) {}
        ~Counted() override { ++destroyed; }
    };
    { std::shared_ptr<Schema> held(new Counted()); }
    EXPECT_EQ(destroyed, 1);
}

} // namespace
