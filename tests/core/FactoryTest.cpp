#include <map>

#include <gtest/gtest.h>

#include "veksg/veksg.h"

namespace {

using namespace veksg;

template <typename C>
bool is(const std::shared_ptr<Schema>& made) {
    return std::dynamic_pointer_cast<C>(made) != nullptr;
}

// The codes the factory makes today, each with its class; every other code must give an empty
// pointer. The cast crosses the library boundary, as a host's does.
const std::map<short, bool (*)(const std::shared_ptr<Schema>&)> madeCodes = {
    {0, is<SCScene>},      {1, is<SCSceneRT>},    {3, is<SCPmi>},          {4, is<SCExtFile>},
    {5, is<SCAttributes>}, {6, is<SCLayer>},      {7, is<SCTempGraphics>}, {8, is<SCInfo>},
    {10, is<SCView>},      {11, is<SCAnimation>}, {12, is<SCSceneTopo>},   {13, is<SCSceneRes>},
    {28, is<SCHoops>},     {29, is<SCComprae>},   {32, is<SCStates>},      {35, is<SCHoleInfo>}};

TEST(Factory, MakesExactlyItsCodesEachAsItsClassAndEachTimeSomethingNew) {
    const auto factory = createFactory();
    EXPECT_NE(factory, createFactory());
    for (int code = -2; code <= 40; ++code) {
        const auto component = factory->create(static_cast<short>(code));
        const auto made = madeCodes.find(static_cast<short>(code));
        if (made == madeCodes.end()) {
            EXPECT_FALSE(component) << code;
            continue;
        }
        ASSERT_TRUE(component) << code;
        EXPECT_TRUE(made->second(component)) << code;
        EXPECT_EQ(component->type(), code);
        EXPECT_EQ(component.use_count(), 1);
        EXPECT_NE(component, factory->create(static_cast<short>(code)));
    }
}

// These four components' copies are defined in the library, out of line; hosts link to them.
template <typename C>
short copied(const C& original) {
    C copy(original);
    copy = original;
    return copy.type();
}

TEST(Factory, CopiesDefinedInTheLibraryLinkAndKeepTheCode) {
    EXPECT_EQ(copied(SCScene()), 0);
    EXPECT_EQ(copied(SCPmi()), 3);
    EXPECT_EQ(copied(SCSceneTopo()), 12);
    EXPECT_EQ(copied(SCSceneRes()), 13);
}

} // namespace
