#include <typeinfo>

#include <gtest/gtest.h>

#include "common/AllocationCounter.h"
#include "veksg/veksg.h"

namespace {

using veksg::Point3;
using veksg::StateFactory;

TEST(StateFactory, EveryStateLeavesUnidentifiedAndOfItsClass) {
    StateFactory factory;
    std::vector<int> ids{1};
    const struct {
        const char* name;
        std::shared_ptr<veksg::IState> state;
        const std::type_info* made;
    } rows[] = {
        {"camera", factory.createCameraState(Point3(), Point3(), Point3()),
         &typeid(veksg::CameraState)},
        {"color", factory.createColorState({}, {}, {}), &typeid(veksg::AppearanceState)},
        {"transparency", factory.createTransparencyState({}, {}, {}),
         &typeid(veksg::AppearanceState)},
        {"visibility", factory.createVisibilityState({}, {}), &typeid(veksg::VisibilityState)},
        {"transform", factory.createTransformState({}, {}, 0, nullptr),
         &typeid(veksg::TransformState)},
        {"section", factory.createSectionState({}, ids, 0, {}, nullptr),
         &typeid(veksg::SectionState)},
        {"clip", factory.createClipNodeState({}), &typeid(veksg::ClipNodeState)},
    };
    for (const auto& row : rows) {
        ASSERT_TRUE(row.state) << row.name;
        const veksg::IState& state = *row.state;
        EXPECT_EQ(typeid(state), *row.made) << row.name;
        EXPECT_EQ(state.getCmdId(), -1) << row.name;
        EXPECT_EQ(state.getSeqId(), -1) << row.name;
        // Every class answers with its own getCmdId, which must still read the command id.
        row.state->setCmdId(40);
        row.state->setSeqId(3);
        EXPECT_EQ(state.getCmdId(), 40) << row.name;
        EXPECT_EQ(state.getSeqId(), 3) << row.name;
    }
}

// Both names build the same thing; neither drops the list its name does not mention.
TEST(StateFactory, AppearanceStatesKeepEveryList) {
    StateFactory factory;
    const std::vector<int> ids{4, 5};
    const std::vector<unsigned long> colors{0x11223344UL};
    const std::vector<float> transparencies{0.25f};
    for (const auto& made : {factory.createColorState(ids, colors, transparencies),
                             factory.createTransparencyState(ids, colors, transparencies)}) {
        const auto& look = static_cast<const veksg::AppearanceState&>(*made);
        EXPECT_EQ(look.ids, ids);
        EXPECT_EQ(look.colors, colors);
        EXPECT_EQ(look.transparencies, transparencies);
    }
}

// A transparency state keeps its ownership record apart from the state; a colour state does
// not. With empty lists these are the only blocks.
TEST(StateFactory, ColorStatesTakeOneBlockTransparencyStatesTwo) {
    SKIP_UNLESS_COUNTING_ALLOCATIONS();
    StateFactory factory;
    for (const auto& [create, blocks] : {std::pair{&StateFactory::createColorState, 1u},
                                         std::pair{&StateFactory::createTransparencyState, 2u}}) {
        const testing_support::CountAllocations count;
        (factory.*create)({}, {}, {}).reset();
        EXPECT_EQ(count.allocations(), blocks);
        EXPECT_EQ(count.deallocations(), blocks);
    }
}

} // namespace
