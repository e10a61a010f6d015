// Allocation failures: each operation runs once for every allocation it makes, that
// allocation refused. Every refusal must surface as std::bad_alloc and give back everything
// allocated so far (the balance of allocations and frees is zero); under the asan preset
// LeakSanitizer checks the same at exit.
#include <cstdint>
#include <memory>
#include <new>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "reliability/FailingNew.h"
#include "vek2d/SCScene2D.h"
#include "veksg/veksg.h"

namespace {

using namespace veksg;
using testing_support::FailingNew;

class AllocationFailure : public ::testing::Test {
protected:
    void SetUp() override {
        if (!FailingNew::active()) GTEST_SKIP() << "operator new is replaced by a tool";
    }
};

struct Attempt {
    std::size_t refusedAllocation;
    bool refused;
    long balance; // allocations minus frees during the attempt
};

// Runs `op` with its 1st, 2nd, ... allocation refused until it gets through, handing each
// attempt to `check`; returns how many allocations the successful run made.
template <typename Op, typename Check>
std::size_t attemptEach(Op op, Check check) {
    for (std::size_t n = 1; n < 100000; ++n) {
        FailingNew::arm(n);
        bool refused = false;
        try {
            op();
        } catch (const std::bad_alloc&) {
            refused = true;
        }
        check(Attempt{n, refused, FailingNew::disarm()});
        if (!refused) return n - 1;
    }
    ADD_FAILURE() << "never got through";
    return 0;
}

// The same for an `op` that gives back everything it allocates, whether it succeeds or not.
template <typename Op>
std::size_t refuseEachAllocation(Op op) {
    return attemptEach(op, [](const Attempt& a) {
        EXPECT_EQ(a.balance, 0) << "with allocation " << a.refusedAllocation << " refused";
    });
}

TEST_F(AllocationFailure, CreateFactory) {
    EXPECT_GT(refuseEachAllocation([] { createFactory().reset(); }), 0u);
}

TEST_F(AllocationFailure, CreateEveryCodeOrNothing) {
    const auto factory = createFactory();
    for (short code = -1; code <= 36; ++code) {
        std::shared_ptr<Schema> made;
        bool refusedEmpty = true;
        const std::size_t needed = refuseEachAllocation([&] {
            try {
                made = factory->create(code);
            } catch (...) {
                refusedEmpty = refusedEmpty && !made;
                throw;
            }
            made.reset();
        });
        EXPECT_TRUE(refusedEmpty) << "code " << code;
        // The factory makes sixteen kinds; every other code allocates nothing at all.
        EXPECT_EQ(needed > 0, factory->create(code) != nullptr) << "code " << code;
    }
}

// A few entries in the tables that own memory, so that copies have something to allocate.
void fill(SCScene& c) {
    c.meshes.insert(std::make_shared<Mesh>());
    Font font;
    font.setName(L"a font name long enough to live on the heap");
    c.fonts.insert(font);
    c.hierarchy.addChild(2, {1, 2, 3});
    c.texts.insert(Text());
    c.links8.insert(4);
}
void fill(SCSceneTopo& c) {
    Node node;
    node.setName(L"a node name long enough to live on the heap");
    c.nodes.insert(node);
    c.nodeLists3.addChild(1, {5, 5, 7});
    c.namesByKey[3] = L"a face name long enough to live on the heap";
    c.nodeFlags.insert(1);
}
void fill(SCSceneRes& c) {
    c.vertexInfos.insert(std::make_shared<VertexInfo>());
    c.primitivesA.insert(PrimitiveInfo());
    c.fontLists.insert({1, 2});
}
void fill(SCSceneRT& c) {
    c.meshes.lists.insert({1, 2});
    c.visibility.sets[3].assign(70, true);
    c.selection.selection[4] = {1, 2, 3};
    c.setA.insert(3);
    c.appearance.appearance[1] = {7};
}
void fill(SCPmi& c) {
    c.pmis.insert(std::make_shared<Section>());
    c.pmiList1 = {1, 2};
    c.relation5.addChild(3, 1);
    c.pmiAttributes.insert(std::make_shared<StringValue>(L"key", nullptr));
    c.idSet2.insert(4);
}
void fill(SCAttributes& c) {
    c.attributes.insert(std::make_shared<StringValue>(L"key", nullptr));
    c.attributeIndices.insert({1, 2});
    c.flags.insert(0);
}
void fill(SCStates& c) {
    c.firstStates->states.push_back(std::make_shared<IState>(3));
    c.executors[2] = nullptr;
}
void fill(SCTempGraphics& c) {
    c.texts3d.insert(std::make_shared<Text3D>(L"t"));
    c.tempValues.insert(Point3());
}
void fill(SCExtFile& c) {
    c.files.insert(ExtFile());
    c.names.emplace_back(L"a name long enough to live on the heap");
}
void fill(SCFeatures& c) {
    c.holes.insert(Hole());
    c.nodeFeatures.insert({1});
}
void fill(vek2d::SCScene2D& c) {
    c.entities.emplace_back();
    c.entities[0].points.resize(3);
    c.lists2.insert({1});
    c.sheets.emplace_back();
}
void fill(SCHoleInfo& c) {
    c.holeGroups1[1].emplace_back();
    c.holeRecords.emplace_back();
}
void fill(SCDraftAngleAnalysis& c) {
    c.groups.push_back({1, 2});
    c.objects.push_back(nullptr);
}
void fill(SCThicknessAnalysis& c) {
    c.thicknesses = {1.0f};
}
void fill(SCAnimation& c) {
    c.transforms.emplace_back();
    c.keys.insert(1);
}
void fill(SCHoops& c) {
    c.names1.emplace_back(L"a name long enough to live on the heap");
}
void fill(SCInfo& c) {
    c.setFile(L"a path long enough to live on the heap");
}
void fill(SCComprae& c) {
    c.setFiles(L"a reference file name on the heap", L"a compared file name on the heap");
}
void fill(Schema&) {
}

template <typename C>
void copiesGiveBackEverything() {
    C source;
    fill(source);
    SCOPED_TRACE(source.type());
    // The copy itself is under test; nothing else uses it.
    refuseEachAllocation([&] { C(source).type(); });
    refuseEachAllocation([&] {
        C target;
        fill(target);
        target = source;
    });
}

TEST_F(AllocationFailure, ComponentCopies) {
    copiesGiveBackEverything<SCScene>();
    copiesGiveBackEverything<SCSceneRT>();
    copiesGiveBackEverything<SCPmi>();
    copiesGiveBackEverything<SCExtFile>();
    copiesGiveBackEverything<SCAttributes>();
    copiesGiveBackEverything<SCLayer>();
    copiesGiveBackEverything<SCTempGraphics>();
    copiesGiveBackEverything<SCInfo>();
    copiesGiveBackEverything<SCView>();
    copiesGiveBackEverything<SCAnimation>();
    copiesGiveBackEverything<SCSceneTopo>();
    copiesGiveBackEverything<SCSceneRes>();
    copiesGiveBackEverything<SCFeatures>();
    copiesGiveBackEverything<vek2d::SCScene2D>();
    copiesGiveBackEverything<SCHoops>();
    copiesGiveBackEverything<SCComprae>();
    copiesGiveBackEverything<SCStates>();
    copiesGiveBackEverything<SCThicknessAnalysis>();
    copiesGiveBackEverything<SCDraftAngleAnalysis>();
    copiesGiveBackEverything<SCHoleInfo>();
}

// Answers 9 for every key space and allocates nothing itself.
class NineEverywhere : public SchemaResizer {
public:
    int lastKeyOf(const short&) override { return 9; }
};

// A failed growth gives back the resizer as well as the memory.
template <typename C>
void resizeGivesBackEverything() {
    auto resizer = std::make_shared<NineEverywhere>();
    const std::size_t needed = attemptEach(
        [&] {
            C component;
            fill(component);
            component.resize(resizer);
        },
        [&](const Attempt& a) {
            EXPECT_EQ(a.balance, 0) << "with allocation " << a.refusedAllocation << " refused";
            EXPECT_EQ(resizer.use_count(), 1);
        });
    EXPECT_GT(needed, 0u);
}

TEST_F(AllocationFailure, Resize) {
    resizeGivesBackEverything<SCScene>();
    resizeGivesBackEverything<SCSceneTopo>();
    resizeGivesBackEverything<SCSceneRes>();
    resizeGivesBackEverything<SCSceneRT>();
    resizeGivesBackEverything<SCPmi>();
    resizeGivesBackEverything<SCAttributes>();
    resizeGivesBackEverything<SCFeatures>();
}

TEST_F(AllocationFailure, ValueConstructionAndCopy) {
    const auto each = [](const auto& make) {
        EXPECT_GT(refuseEachAllocation([&] { make(); }), 0u);
        const auto original = make();
        refuseEachAllocation([&] { std::decay_t<decltype(original)>(original).key(); });
    };
    const wchar_t* key = L"a key long enough to need its own buffer";
    each([&] { return BoolValue(key, true); });
    each([&] { return UCharValue(key, 7); });
    each([&] { return IntValue(key, -3); });
    each([&] { return Int2Value(key, 3); });
    each([&] { return FloatValue(key, 1.5f); });
    each([&] {
        return StringValue(key, std::shared_ptr<wchar_t>(new wchar_t[3]{L'a', L'b', 0},
                                                         std::default_delete<wchar_t[]>()));
    });
    each([&] { return UShortArrayValue(key, std::vector<unsigned short>{1, 2, 3}); });
    each([&] { return StringArrayValue(key, std::vector<wchar_t*>{nullptr, nullptr}); });
    each([&] { return ULongValue(key, 4000000000UL); });
    // Shared owners are what hosts keep.
    EXPECT_GT(refuseEachAllocation([&] { std::make_shared<StringValue>(key, nullptr).reset(); }),
              1u);
}

// A refused growth leaves the container exactly as it was.
TEST_F(AllocationFailure, ContainerGrowthIsAllOrNothing) {
    Container<int, std::wstring> names;
    names.insert(L"first name, long enough to live on the heap");
    names.insert(L"second name, long enough to live on the heap");
    const std::wstring fill = L"the fill, long enough to live on the heap as well";
    attemptEach([&] { names.resizeToFitKey(20, fill); },
                [&](const Attempt& a) {
                    if (!a.refused) return;
                    EXPECT_EQ(a.balance, 0);
                    ASSERT_EQ(names.size(), 2);
                    EXPECT_EQ(names.getValue(1), L"second name, long enough to live on the heap");
                });
    ASSERT_EQ(names.size(), 21);
    EXPECT_EQ(names.getValue(20), fill);
}

struct Executor : IStateExecutor {
    void execute(const std::shared_ptr<IState>&) override {}
};

// A registration that cannot get its entry leaves the registry as it was and gives the
// executor back.
TEST_F(AllocationFailure, ExecutorRegistrationIsAllOrNothing) {
    SCStates states;
    states.addStateExecutor(1, nullptr);
    const auto executor = std::make_shared<Executor>();
    const std::size_t needed = attemptEach([&] { states.addStateExecutor(5, executor); },
                                           [&](const Attempt& a) {
                                               if (!a.refused) return;
                                               EXPECT_EQ(a.balance, 0);
                                               EXPECT_EQ(states.executors.size(), 1u);
                                               EXPECT_EQ(executor.use_count(), 1);
                                           });
    EXPECT_GT(needed, 0u);
    EXPECT_EQ(states.getExecutor(5), executor);
}

} // namespace
