#include <climits>
#include <memory>
#include <set>

#include <gtest/gtest.h>

#include "veksg/veksg.h"

namespace {

// The codes the factory makes today; every other code must give an empty pointer.
const std::set<short> madeCodes = {0, 1, 3, 4, 5, 6, 7, 8, 10, 11, 12, 13, 28, 29, 32, 35};
// Components that exist but that hosts always construct themselves.
const std::set<short> neverMade = {22, 25, 33, 34};

TEST(Factory, MakesExactlyItsCodesAndNothingElse) {
    auto factory = veksg::createFactory();
    ASSERT_TRUE(factory);
    for (int code = -2; code <= 40; ++code) {
        const auto component = factory->create(static_cast<short>(code));
        if (madeCodes.count(static_cast<short>(code)) != 0) {
            ASSERT_TRUE(component) << code;
            EXPECT_EQ(component->type(), code);
            EXPECT_EQ(component.use_count(), 1);
        } else {
            EXPECT_FALSE(component) << code;
        }
    }
    EXPECT_FALSE(factory->create(SHRT_MIN));
    EXPECT_FALSE(factory->create(SHRT_MAX));
    for (short code : neverMade)
        EXPECT_FALSE(factory->create(code)) << code;
}

TEST(Factory, EveryCallMakesSomethingNew) {
    const auto first = veksg::createFactory();
    const auto second = veksg::createFactory();
    EXPECT_NE(first.get(), second.get());
    EXPECT_NE(dynamic_cast<veksg::SCFactory*>(first.get()), nullptr);
    for (short code : madeCodes)
        EXPECT_NE(first->create(code).get(), first->create(code).get()) << code;
}

} // namespace
