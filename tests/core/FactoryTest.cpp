#include <gtest/gtest.h>

#include "veksg/veksg.h"

namespace {

using namespace veksg;

// The codes the factory makes today; every other code must give an empty pointer.
const std::set<short> madeCodes = {0, 1, 3, 4, 5, 6, 7, 8, 10, 11, 12, 13, 28, 29, 32, 35};

TEST(Factory, MakesExactlyItsCodesAndEachTimeSomethingNew) {
    const auto factory = createFactory();
    EXPECT_NE(factory, createFactory());
    for (int code = -2; code <= 40; ++code) {
        const auto component = factory->create(static_cast<short>(code));
        if (madeCodes.count(static_cast<short>(code)) == 0) {
            EXPECT_FALSE(component) << code;
            continue;
        }
        ASSERT_TRUE(component) << code;
        EXPECT_EQ(component->type(), code);
        EXPECT_EQ(component.use_count(), 1);
        EXPECT_NE(component, factory->create(static_cast<short>(code)));
    }
}

template <typename C, short Code>
struct Made {
    using Component = C;
    static constexpr short code = Code;
};
template <typename M>
class FactoryProduct : public ::testing::Test {};
using Products =
    ::testing::Types<Made<SCScene, 0>, Made<SCSceneRT, 1>, Made<SCPmi, 3>, Made<SCExtFile, 4>,
                     Made<SCAttributes, 5>, Made<SCLayer, 6>, Made<SCTempGraphics, 7>,
                     Made<SCInfo, 8>, Made<SCView, 10>, Made<SCAnimation, 11>,
                     Made<SCSceneTopo, 12>, Made<SCSceneRes, 13>, Made<SCHoops, 28>,
                     Made<SCComprae, 29>, Made<SCStates, 32>, Made<SCHoleInfo, 35>>;
TYPED_TEST_SUITE(FactoryProduct, Products);

// What the factory makes casts to its class across the library boundary, and the class, made
// directly or copied, carries the same code.
TYPED_TEST(FactoryProduct, IsItsClassWithItsCode) {
    using Component = typename TypeParam::Component;
    EXPECT_TRUE(std::dynamic_pointer_cast<Component>(createFactory()->create(TypeParam::code)));
    const Component component;
    EXPECT_EQ(component.type(), TypeParam::code);
    EXPECT_EQ(Component(component).type(), TypeParam::code);
}

} // namespace
