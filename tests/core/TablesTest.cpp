#include <algorithm>
#include <cstddef>
#include <cstring>
#include <map>
#include <new>
#include <set>
#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "common/RecordingResizer.h"
#include "veksg/Tables.h"
#include "veksg/veksg.h"

namespace {

using namespace veksg;

template <typename T, typename = void>
struct IsKeyed : std::false_type {};
template <typename T>
struct IsKeyed<T, std::void_t<decltype(std::declval<T&>().resizeToFitKey(0, {}))>>
    : std::true_type {};

struct Span {
    std::string name;
    std::size_t offset;
    std::size_t size;
    std::size_t align;
};

// Where the derived class's own members may start: after the base's data, which may reuse
// its tail padding.
std::size_t dataStart(const Schema*) {
    struct Probe : Schema {
        Probe() : Schema(0) {}
        short type() const override { return 0; }
        char first = 0;
    } probe;
    return static_cast<std::size_t>(reinterpret_cast<const char*>(&probe.first) -
                                    reinterpret_cast<const char*>(&probe));
}
std::size_t dataStart(const void*) {
    return 0;
}

template <typename T>
class Catalogue : public ::testing::Test {};
using Catalogued =
    ::testing::Types<SCScene, SCSceneTopo, SCSceneRes, SCSceneRT, MeshRT, PolylineRT, VertexRT,
                     TextRT, VisibilityRT, SelectionRT, AppearanceRT, TransientMatRT,
                     SCTempGraphics, SCPmi, SCView, SCStates, SCAttributes, SCInfo, SCLayer,
                     SCExtFile, SCAnimation, SCThicknessAnalysis, SCDraftAngleAnalysis, SCFeatures,
                     SCHoleInfo, SCHoops, vek2d::SCScene2D>;
TYPED_TEST_SUITE(Catalogue, Catalogued);

// Laying out the listed members one after another, each at its alignment, must give the
// class's own layout and size: a member missing from the list, listed twice or out of order
// moves what follows it. (Only a member small enough to hide in padding could go unseen;
// every table takes room of its own.)
TYPED_TEST(Catalogue, ListsEveryMemberInDeclarationOrder) {
    TypeParam object;
    const auto* base = reinterpret_cast<const char*>(&object);
    std::vector<Span> spans;
    forEachTable(object, [&](const TableInfo& table, auto& member) {
        spans.push_back({table.name,
                         static_cast<std::size_t>(reinterpret_cast<const char*>(&member) - base),
                         sizeof member, alignof(std::remove_reference_t<decltype(member)>)});
    });
    ASSERT_FALSE(spans.empty());
    std::size_t next = dataStart(&object);
    for (const Span& span : spans) {
        next = (next + span.align - 1) / span.align * span.align;
        EXPECT_EQ(span.offset, next) << span.name;
        next = span.offset + span.size;
    }
    EXPECT_EQ((next + alignof(TypeParam) - 1) / alignof(TypeParam) * alignof(TypeParam),
              sizeof(TypeParam));
}

// Every keyed table's and bit set's size, walking nested records with their own catalogue.
template <typename T>
void collectSizes(T& object, const std::string& prefix, std::map<std::string, int>& sizes,
                  std::map<std::string, TableInfo>& infos) {
    forEachTable(object, [&](const TableInfo& table, auto& member) {
        using Member = std::remove_reference_t<decltype(member)>;
        const std::string name = prefix + table.name;
        if constexpr (hasTables<Member>) {
            collectSizes(member, name + ".", sizes, infos);
        } else if constexpr (IsKeyed<Member>::value || std::is_same_v<Member, std::vector<bool>>) {
            sizes[name] = static_cast<int>(member.size());
            infos.emplace(name, table);
        }
    });
}

// Gives each table that another follows a distinct number of entries; returns their names.
template <typename T>
std::set<std::string> fillFollowedTables(T& component) {
    std::set<std::string> followed;
    forEachTable(component, [&](const TableInfo& table, auto&) {
        if (table.follows) followed.insert(table.follows);
    });
    int entries = 2;
    forEachTable(component, [&](const TableInfo& table, auto& member) {
        using Member = std::remove_reference_t<decltype(member)>;
        if constexpr (IsKeyed<Member>::value) {
            if (followed.count(table.name)) member.resizeToFitKey(++entries, {});
        }
    });
    return followed;
}

template <typename T>
class Resized : public ::testing::Test {};
using Resizable =
    ::testing::Types<SCScene, SCSceneTopo, SCSceneRes, SCSceneRT, SCPmi, SCAttributes, SCFeatures>;
TYPED_TEST_SUITE(Resized, Resizable);

// What the catalogue says sizes a table is what `resize` does: the answer for its key space
// plus one, or the size of the table it follows; tables with neither stay as they were.
TYPED_TEST(Resized, GrowsEachTableByItsListedKeySpace) {
    TypeParam component;
    const std::set<std::string> filled = fillFollowedTables(component);
    std::map<short, int> answers;
    for (short code = 0; code <= 20; ++code)
        answers[code] = 10 + code;
    testing_support::resizeAsking(component, answers);

    std::map<std::string, int> sizes;
    std::map<std::string, TableInfo> infos;
    collectSizes(component, "", sizes, infos);
    for (const auto& [name, size] : sizes) {
        if (filled.count(name)) continue;
        const TableInfo& table = infos.at(name);
        int expected = 0;
        if (table.keySpace >= 0)
            expected = answers[table.keySpace] + 1;
        else if (table.follows)
            expected = sizes.at(table.follows);
        // Set 7 stands in for the faces' set only while key space 11 is empty.
        if (name == "visibility.sets[7]") expected = 0;
        EXPECT_EQ(size, expected) << name;
    }
}

// An answer of -1 everywhere leaves every table of an empty component empty.
TYPED_TEST(Resized, NegativeAnswersGrowNothing) {
    TypeParam component;
    testing_support::resizeAsking(component);
    std::map<std::string, int> sizes;
    std::map<std::string, TableInfo> infos;
    collectSizes(component, "", sizes, infos);
    for (const auto& [name, size] : sizes)
        EXPECT_EQ(size, 0) << name;
}

// Exactly the hierarchies listed as dropping repeats come out of `resize` sorted and unique;
// the others keep their children as they were added.
TYPED_TEST(Resized, DropsRepeatsWhereListed) {
    TypeParam component;
    forEachTable(component, [](const TableInfo&, auto& member) {
        if constexpr (std::is_base_of_v<Hierarchy, std::remove_reference_t<decltype(member)>>)
            member.addChild(0, {3, 1, 3});
    });
    std::map<short, int> answers;
    for (short code = 0; code <= 20; ++code)
        answers[code] = 1;
    testing_support::resizeAsking(component, answers);
    const std::vector<int> unique = {1, 3};
    const std::vector<int> asAdded = {3, 1, 3};
    forEachTable(component, [&](const TableInfo& table, auto& member) {
        if constexpr (std::is_base_of_v<Hierarchy, std::remove_reference_t<decltype(member)>>) {
            EXPECT_EQ(member.getValue(0), table.dropsRepeats ? unique : asAdded) << table.name;
        }
    });
}

// A table grown only while another holds entries stays as it was without them.
TEST(Catalogue, OnlyWhileTablesWaitForTheirCondition) {
    SCSceneRes resources;
    resources.primitivesA.resizeToFitKey(3, {});
    resources.primitivesC.resizeToFitKey(2, {});
    testing_support::resizeAsking(resources);
    forEachTable(resources, [](const TableInfo& table, auto& member) {
        using Member = std::remove_reference_t<decltype(member)>;
        if constexpr (IsKeyed<Member>::value) {
            EXPECT_TRUE(!table.onlyWhile || member.size() == 0) << table.name;
        }
    });
    EXPECT_EQ(resources.primALinks1.size(), 4);
}

TEST(Catalogue, VisibilitySetSevenFollowsMeshesWithoutFaces) {
    SCSceneRT runtime;
    testing_support::resizeAsking(runtime, {{6, 4}});
    EXPECT_EQ(runtime.visibility.sets[7].size(), 5u);
}

// Dispatch by dynamic type reaches every class, whatever code it carries.
TEST(Catalogue, NamesEachComponentByItsClass) {
    const auto factory = createFactory();
    for (const short code : {0, 1, 3, 4, 5, 6, 7, 8, 10, 11, 12, 13, 28, 29, 32, 35}) {
        const auto component = factory->create(code);
        std::string name = componentName(*component);
        EXPECT_EQ(name.rfind("SC", 0), 0u) << code;
        EXPECT_TRUE(visitComponent(*component, [](auto&) {})) << code;
    }
    EXPECT_STREQ(componentName(*factory->create(Schema::SCENE_TOPO)), "SCSceneTopo");
    EXPECT_STREQ(componentName(vek2d::SCScene2D(Schema::SCENE)), "SCScene2D");
    EXPECT_STREQ(componentName(SCDraftAngleAnalysis()), "SCDraftAngleAnalysis");
    struct Foreign : Schema {
        Foreign() : Schema(99) {}
        short type() const override { return 99; }
    };
    EXPECT_STREQ(componentName(Foreign()), "Schema");
    EXPECT_FALSE(visitComponent(static_cast<Schema&>(*std::make_shared<Foreign>()), [](auto&) {}));
}

} // namespace
