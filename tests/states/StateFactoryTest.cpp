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

TEST(StateFactory, ContentsFollowTheArgumentsAndSharedOnesGainAnOwner) {
    StateFactory factory;
    const auto visibility = std::static_pointer_cast<veksg::VisibilityState>(
        factory.createVisibilityState({1, 2}, {5, 6, 7}));
    EXPECT_EQ(visibility->ids, (std::vector<int>{1, 2}));
    EXPECT_EQ(visibility->values, (std::vector<int>{5, 6, 7}));

    // Both names build the same thing; neither drops the list its name does not mention.
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

    const auto triad = std::make_shared<veksg::TriadInfo>();
    const auto plane = std::make_shared<veksg::Section>();
    std::vector<int> sectionIds{3};
    {
        const auto transform = factory.createTransformState({1}, {veksg::Transform()}, 3, triad);
        const auto section = factory.createSectionState({plane}, sectionIds, 2, {true}, triad);
        EXPECT_EQ(triad.use_count(), 3);
        EXPECT_EQ(plane.use_count(), 2);
        EXPECT_EQ(static_cast<const veksg::SectionState&>(*section).ids, sectionIds);
        EXPECT_EQ(static_cast<const veksg::TransformState&>(*transform).mode, 3);
    }
    EXPECT_EQ(triad.use_count(), 1);
    EXPECT_EQ(plane.use_count(), 1);
}

// Empty lists allocate nothing, so only the state and its ownership record are counted.
TEST(StateFactory, ColorStatesTakeOneBlockTransparencyStatesTwo) {
    SKIP_UNLESS_COUNTING_ALLOCATIONS();
    StateFactory factory;
    const struct {
        const char* name;
        std::shared_ptr<veksg::IState> (StateFactory::*create)(const std::vector<int>&,
                                                               const std::vector<unsigned long>&,
                                                               const std::vector<float>&);
        std::size_t blocks;
    } forms[] = {
        {"color", &StateFactory::createColorState, 1},
        {"transparency", &StateFactory::createTransparencyState, 2},
    };
    for (const auto& form : forms) {
        testing_support::CountAllocations count;
        auto made = (factory.*form.create)({}, {}, {});
        EXPECT_EQ(count.allocations(), form.blocks) << form.name;
        auto copy = made;
        std::weak_ptr<veksg::IState> watch = copy;
        made.reset();
        EXPECT_EQ(count.deallocations(), 0u) << form.name;
        copy.reset();
        EXPECT_TRUE(watch.expired()) << form.name;
        watch.reset();
        EXPECT_EQ(count.deallocations(), form.blocks) << form.name;
    }
}

} // namespace
