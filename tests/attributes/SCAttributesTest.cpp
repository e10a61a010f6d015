#include <memory>
#include <vector>

#include <gtest/gtest.h>

#include "common/RecordingResizer.h"
#include "veksg/veksg.h"

namespace {

using testing_support::RecordingResizer;
using veksg::SCAttributes;

std::shared_ptr<veksg::StringValue> attribute(const wchar_t* key) {
    return std::make_shared<veksg::StringValue>(key, nullptr);
}

SCAttributes filled() {
    SCAttributes schema;
    schema.attributes.insert(attribute(L"material"));
    schema.attributes.insert(attribute(L"supplier"));
    schema.attributeIndices.insert({4, 7});
    schema.flags.insert(0);
    schema.userValue = 17;
    return schema;
}

TEST(SCAttributes, StartsEmptyWithItsCode) {
    const SCAttributes schema;
    EXPECT_EQ(schema.type(), veksg::Schema::ATTRIBUTES);
    EXPECT_EQ(schema.type(), 5);
    EXPECT_EQ(schema.attributes.size(), 0);
    EXPECT_EQ(schema.attributeIndices.size(), 0);
    EXPECT_EQ(schema.flags.size(), 0);
    EXPECT_EQ(schema.userValue, 0);
    EXPECT_EQ(SCAttributes(schema).type(), 5);
}

TEST(SCAttributes, ResizeGivesEveryAttributeAFlag) {
    const struct {
        int attributes;
        std::vector<unsigned char> before;
        std::vector<unsigned char> after;
    } cases[] = {
        {0, {}, {}},         {0, {0, 0}, {0, 0}},       {3, {}, {1, 1, 1}},
        {3, {0}, {0, 1, 1}}, {3, {0, 2, 5}, {0, 2, 5}}, {2, {0, 0, 0, 0, 0}, {0, 0, 0, 0, 0}},
    };
    for (const auto& c : cases) {
        SCAttributes schema;
        for (int i = 0; i < c.attributes; ++i)
            schema.attributes.insert(attribute(L"a"));
        for (unsigned char flag : c.before)
            schema.flags.insert(flag);
        schema.attributeIndices.insert({1});
        auto resizer = std::make_shared<RecordingResizer>(std::map<short, int>{{10, 50}});
        schema.resize(resizer);
        EXPECT_EQ(std::vector<unsigned char>(schema.flags.begin(), schema.flags.end()), c.after)
            << c.attributes << " attributes, " << c.before.size() << " flags";
        EXPECT_TRUE(resizer->asked.empty());
        EXPECT_EQ(resizer.use_count(), 1);
        EXPECT_EQ(schema.attributeIndices.size(), 1);
        EXPECT_EQ(schema.attributes.size(), c.attributes);
    }
}

TEST(SCAttributes, CopiesShareValuesAndOwnTheirTables) {
    const SCAttributes source = filled();
    const auto material = source.attributes.getValue(0);

    SCAttributes copy(source);
    SCAttributes assigned;
    assigned.attributes.insert(attribute(L"stale"));
    assigned = source;
    EXPECT_EQ(material.use_count(), 4);
    for (SCAttributes* target : {&copy, &assigned}) {
        EXPECT_EQ(target->type(), 5);
        EXPECT_EQ(target->attributes.size(), 2);
        EXPECT_EQ(target->attributes.getValue(0), material);
        EXPECT_EQ(target->userValue, 17);
        target->attributeIndices.setValue(0, {9});
        target->flags.setValue(0, 1);
    }
    EXPECT_EQ(source.attributeIndices.getValue(0), (std::vector<int>{4, 7}));
    EXPECT_EQ(source.flags.getValue(0), 0);

    const SCAttributes& self = assigned;
    assigned = self;
    EXPECT_EQ(assigned.attributes.size(), 2);
    EXPECT_EQ(assigned.attributeIndices.getValue(0), (std::vector<int>{9}));
    EXPECT_EQ(material.use_count(), 4);
}

TEST(SCAttributes, DestructionReleasesEveryValue) {
    std::shared_ptr<veksg::StringValue> kept;
    {
        std::shared_ptr<veksg::Schema> schema = std::make_shared<SCAttributes>(filled());
        kept = std::static_pointer_cast<SCAttributes>(schema)->attributes.getValue(1);
        EXPECT_EQ(kept.use_count(), 2);
        schema->cleanup();
        EXPECT_EQ(kept.use_count(), 2);
    }
    EXPECT_EQ(kept.use_count(), 1);
    EXPECT_STREQ(kept->key(), L"supplier");
}

} // namespace
