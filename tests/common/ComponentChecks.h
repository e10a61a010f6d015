#pragma once

#include <memory>

#include <gtest/gtest.h>

#include "veksg/Factory.h"

namespace testing_support {

// The type code of a default component, of its copy, and of one the factory makes, which
// must also cast to the concrete class across the library boundary.
template <typename Component>
void expectTypeCode(short code) {
    const Component component;
    EXPECT_EQ(component.type(), code);
    EXPECT_EQ(Component(component).type(), code);
    const auto made = veksg::createFactory()->create(code);
    ASSERT_TRUE(std::dynamic_pointer_cast<Component>(made));
    EXPECT_EQ(made->type(), code);
    EXPECT_EQ(made.use_count(), 1);
}

} // namespace testing_support
