#include <memory>
#include <typeinfo>
#include <vector>

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
        EXPECT_EQ(row.state.use_count(), 1) << row.name;
    }
}

TEST(StateFactory, ContentsFollowTheArguments) {
    StateFactory factory;
    const auto visibility = std::static_pointer_cast<veksg::VisibilityState>(
        factory.createVisibilityState({1, 2}, {5, 6, 7}));
    EXPECT_EQ(visibility->ids, (std::vector<int>{1, 2}));
    EXPECT_EQ(visibility->values, (std::vector<int>{5, 6, 7}));

    // Both names build the same thing; neither drops the list its name does not mention.
    const std::vector<int> ids{4, 5};
    const std::vector<unsigned long> colors{0x11223344UL, 0x55667788UL};
    const std::vector<float> transparencies{0.25f};
    const auto color = std::static_pointer_cast<veksg::AppearanceState>(
        factory.createColorState(ids, colors, transparencies));
    const auto transparency = std::static_pointer_cast<veksg::AppearanceState>(
        factory.createTransparencyState(ids, colors, transparencies));
    for (const auto& look : {color, transparency}) {
        EXPECT_EQ(look->ids, ids);
        EXPECT_EQ(look->colors, colors);
        EXPECT_EQ(look->transparencies, transparencies);
    }
}

TEST(StateFactory, SharedArgumentsGainOneOwnerUntilTheStateGoes) {
    StateFactory factory;
    const auto triad = std::make_shared<veksg::TriadInfo>();
    const auto plane = std::make_shared<veksg::Section>();
    std::vector<int> ids{3};
    {
        const auto transform = factory.createTransformState({1}, {veksg::Transform()}, 3, triad);
        EXPECT_EQ(triad.use_count(), 2);
        const auto section = factory.createSectionState({plane}, ids, 2, {true}, triad);
        EXPECT_EQ(triad.use_count(), 3);
        EXPECT_EQ(plane.use_count(), 2);
        const auto& made = static_cast<const veksg::SectionState&>(*section);
        EXPECT_EQ(made.ids, ids);
        EXPECT_EQ(made.mode, 2);
        EXPECT_EQ(static_cast<const veksg::TransformState&>(*transform).mode, 3);
    }
    EXPECT_EQ(triad.use_count(), 1);
    EXPECT_EQ(plane.use_count(), 1);
    EXPECT_EQ(ids, (std::vector<int>{3}));
}

// Empty lists allocate nothing, so only the state and its ownership record are counted.
TEST(StateFactory, ColorStatesTakeOneBlockTransparencyStatesTwo) {
    if (!testing_support::CountAllocations::active())
        GTEST_SKIP() << "operator new is replaced by a tool; allocations cannot be counted";
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
    const std::vector<int> ids;
    const std::vector<unsigned long> colors;
    const std::vector<float> transparencies;
    for (const auto& form : forms) {
        testing_support::CountAllocations count;
        auto made = (factory.*form.create)(ids, colors, transparencies);
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
