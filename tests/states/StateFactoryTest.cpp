#include <typeinfo>

#include <gtest/gtest.h>

#include "common/AllocationCounter.h"
#include "veksg/veksg.h"

namespace {

using veksg::Point3;
using veksg::StateFactory;

// Every class answers with its own getCmdId, which must read the command id.
TEST(StateFactory, EveryStateLeavesUnidentified) {
    StateFactory factory;
    std::vector<int> ids{1};
    for (const auto& state :
         {factory.createCameraState(Point3(), Point3(), Point3()),
          factory.createColorState({}, {}, {}), factory.createTransparencyState({}, {}, {}),
          factory.createVisibilityState({}, {}), factory.createTransformState({}, {}, 0, nullptr),
          factory.createSectionState({}, ids, 0, {}, nullptr), factory.createClipNodeState({})}) {
        const veksg::IState& read = *state;
        EXPECT_EQ(read.getCmdId(), -1) << typeid(read).name();
        EXPECT_EQ(read.getSeqId(), -1) << typeid(read).name();
        state->setCmdId(40);
        state->setSeqId(3);
        EXPECT_EQ(read.getCmdId(), 40) << typeid(read).name();
        EXPECT_EQ(read.getSeqId(), 3) << typeid(read).name();
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
