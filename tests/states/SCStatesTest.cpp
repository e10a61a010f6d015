#include <cstddef>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "common/RecordingResizer.h"
#include "veksg/veksg.h"

namespace {

using veksg::SCStates;

struct NoOpExecutor : veksg::IStateExecutor {
    void execute(const std::shared_ptr<veksg::IState>&) override {}
};

struct NoOpActivator : veksg::IStateActivator {
    void activate(const std::shared_ptr<veksg::IState>&) override {}
};

// Wraps `object` so that its release is written to `log` under `what`.
template <typename T>
std::shared_ptr<T> logged(T* object, std::vector<std::string>& log, std::string what) {
    return std::shared_ptr<T>(object, [&log, what](T* p) {
        log.push_back(what);
        delete p;
    });
}

TEST(SCStates, FactoryMakesAnEmptyStoreWithItsDefaults) {
    const auto made = veksg::createFactory()->create(veksg::Schema::STATES);
    const auto store = std::dynamic_pointer_cast<SCStates>(made);
    ASSERT_TRUE(store);
    EXPECT_EQ(store->type(), 32);
    ASSERT_TRUE(store->firstStates && store->secondStates && store->typeStates);
    EXPECT_NE(store->firstStates, store->secondStates);
    EXPECT_TRUE(store->firstStates->isEmpty());
    EXPECT_TRUE(store->secondStates->isEmpty());
    EXPECT_TRUE(store->typeStates->isEmpty());
    EXPECT_FALSE(store->firstHook);
    EXPECT_FALSE(store->secondHook);
    EXPECT_FALSE(store->firstSetting);
    EXPECT_EQ(store->secondSetting, 2);
    EXPECT_TRUE(store->executors.empty());
    EXPECT_FALSE(store->getExecutor(0));
    EXPECT_NE(SCStates().firstStates, SCStates().firstStates);
}

TEST(SCStates, RegistryNeverReplacesAndAnswersOnlyExactKeys) {
    SCStates store;
    const auto a = std::make_shared<NoOpExecutor>();
    const auto b = std::make_shared<NoOpExecutor>();
    store.addStateExecutor(5, a);
    store.addStateExecutor(5, b);
    EXPECT_EQ(store.getExecutor(5), a);
    EXPECT_EQ(b.use_count(), 1);
    EXPECT_EQ(a.use_count(), 2);

    store.addStateExecutor(9, b);
    EXPECT_FALSE(store.getExecutor(7));
    EXPECT_FALSE(store.getExecutor(10));
    EXPECT_FALSE(store.getExecutor(-5));
    store.removeStateExecutor(7);
    EXPECT_EQ(store.executors.size(), 2u);

    store.removeStateExecutor(5);
    EXPECT_FALSE(store.getExecutor(5));
    EXPECT_EQ(a.use_count(), 1);
    store.addStateExecutor(5, b);
    EXPECT_EQ(store.getExecutor(5), b);
    EXPECT_EQ(store.getExecutor(9), b);
}

TEST(SCStates, TreeRoomCheckNamesTheLimit) {
    struct FullTree {
        std::size_t size() const { return 8; }
        std::size_t max_size() const { return 8; }
    };
    try {
        veksg::detail::checkTreeRoom(FullTree());
        FAIL() << "no length error";
    } catch (const std::length_error& e) {
        EXPECT_STREQ(e.what(), "map/set too long");
    }
}

TEST(SCStates, CopiesShareStatesAndHooksButNotTheRegistry) {
    SCStates source;
    source.firstHook = std::make_shared<NoOpActivator>();
    source.secondHook = std::make_shared<int>(4);
    source.firstSetting = true;
    source.secondSetting = 11;
    const auto executor = std::make_shared<NoOpExecutor>();
    source.addStateExecutor(1, executor);

    SCStates copy(source);
    EXPECT_EQ(copy.type(), 32);
    EXPECT_EQ(copy.firstStates, source.firstStates);
    EXPECT_EQ(copy.secondStates, source.secondStates);
    EXPECT_EQ(copy.typeStates, source.typeStates);
    EXPECT_EQ(source.firstStates.use_count(), 2);
    EXPECT_EQ(source.firstHook.use_count(), 2);
    EXPECT_EQ(source.secondHook.use_count(), 2);
    EXPECT_TRUE(copy.firstSetting);
    EXPECT_EQ(copy.secondSetting, 11);
    EXPECT_EQ(copy.getExecutor(1), executor);
    EXPECT_EQ(executor.use_count(), 3);

    source.firstStates->states.push_back(std::make_shared<veksg::IState>(3));
    EXPECT_FALSE(copy.firstStates->isEmpty());
    copy.addStateExecutor(2, executor);
    EXPECT_FALSE(source.getExecutor(2));

    SCStates target;
    const auto targetsOwn = target.typeStates;
    target = source;
    EXPECT_EQ(target.typeStates, source.typeStates);
    EXPECT_EQ(targetsOwn.use_count(), 1);
    EXPECT_EQ(target.executors.size(), 1u);
    EXPECT_EQ(target.secondSetting, 11);
}

TEST(SCStates, DestructionEmptiesTheRegistryThenReleasesFromTheLastField) {
    std::vector<std::string> log;
    {
        SCStates store;
        store.firstStates = logged(new veksg::StateContainer(), log, "firstStates");
        store.secondStates = logged(new veksg::StateContainer(), log, "secondStates");
        store.typeStates = logged(new veksg::StateTypeContainer(), log, "typeStates");
        store.firstHook = logged<veksg::IStateActivator>(new NoOpActivator(), log, "firstHook");
        store.secondHook = logged(new int(1), log, "secondHook");
        store.addStateExecutor(4,
                               logged<veksg::IStateExecutor>(new NoOpExecutor(), log, "executor"));
    }
    EXPECT_EQ(log, (std::vector<std::string>{"executor", "secondHook", "firstHook", "typeStates",
                                             "secondStates", "firstStates"}));
}

TEST(SCStates, ResizeNeverAsksAndCleanupKeepsEverything) {
    SCStates store;
    store.addStateExecutor(1, std::make_shared<NoOpExecutor>());
    store.typeStates->containers[3];
    const auto first = store.firstStates;
    auto resizer = std::make_shared<testing_support::RecordingResizer>();
    store.resize(resizer);
    store.cleanup();
    EXPECT_TRUE(resizer->asked.empty());
    EXPECT_EQ(resizer.use_count(), 1);
    EXPECT_EQ(store.firstStates, first);
    EXPECT_EQ(store.executors.size(), 1u);
    EXPECT_EQ(store.typeStates->containers.size(), 1u);
    EXPECT_EQ(store.type(), 32);
}

TEST(StateContainers, SequencesShareStatesAndReleaseNewestFirst) {
    std::vector<std::string> log;
    {
        veksg::StateContainer sequence;
        for (const char* name : {"a", "b", "c"})
            sequence.states.push_back(logged(new veksg::IState(1), log, name));
        const veksg::StateContainer copy(sequence);
        EXPECT_EQ(copy.states.front(), sequence.states.front());
        EXPECT_EQ(sequence.states.back().use_count(), 2);

        veksg::StateTypeContainer table;
        EXPECT_TRUE(table.isEmpty());
        table.containers[7];
        EXPECT_FALSE(table.isEmpty());
        table.containers[2] = sequence;
        const veksg::StateTypeContainer tableCopy(table);
        EXPECT_EQ(sequence.states.front().use_count(), 4);
        EXPECT_TRUE(tableCopy.containers.at(7).states.empty());
    }
    EXPECT_EQ(log, (std::vector<std::string>{"c", "b", "a"}));
}

} // namespace
