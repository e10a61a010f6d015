#include <gtest/gtest.h>

#include "common/Checks.h"
#include "common/RecordingResizer.h"
#include "veksg/veksg.h"

namespace {

using veksg::SCAttributes;
using Flags = std::vector<unsigned char>;

std::shared_ptr<veksg::StringValue> attribute(const wchar_t* key) {
    return std::make_shared<veksg::StringValue>(key, nullptr);
}

// Cleanup keeps everything; the values go with the component's own tables.
TEST(SCAttributes, ResizeGivesEveryAttributeAFlagAndCleanupKeepsAll) {
    const struct {
        int attributes;
        Flags before, after;
    } cases[] = {
        {0, {}, {}},         {0, {0, 0}, {0, 0}},       {3, {}, {1, 1, 1}},
        {3, {0}, {0, 1, 1}}, {3, {0, 2, 5}, {0, 2, 5}}, {2, {0, 0, 0, 0, 0}, {0, 0, 0, 0, 0}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.attributes << " attributes, " << c.before.size());
        SCAttributes schema;
        for (int i = 0; i < c.attributes; ++i)
            schema.attributes.insert(attribute(L"a"));
        for (unsigned char flag : c.before)
            schema.flags.insert(flag);
        schema.attributeIndices.insert({1});
        EXPECT_TRUE(testing_support::resizeAsking(schema, {{10, 50}}).empty());
        schema.cleanup();
        EXPECT_EQ(testing_support::valuesOf(schema.flags), c.after);
        EXPECT_EQ(schema.attributeIndices.size(), 1);
        EXPECT_EQ(schema.attributes.size(), c.attributes);
    }
}

} // namespace
