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

TEST(SCStates, RegistryNeverReplacesAndAnswersOnlyExactKeys) {
    SCStates store;
    const auto a = std::make_shared<NoOpExecutor>();
    const auto b = std::make_shared<NoOpExecutor>();
    store.addStateExecutor(5, a);
    store.addStateExecutor(5, b);
    EXPECT_EQ(store.getExecutor(5), a);
    EXPECT_EQ(b.use_count(), 1);

    store.addStateExecutor(9, b);
    for (int missing : {7, 10, -5})
        EXPECT_FALSE(store.getExecutor(missing)) << missing;
    store.removeStateExecutor(7);
    EXPECT_EQ(store.executors.size(), 2u);

    store.removeStateExecutor(5);
    EXPECT_EQ(a.use_count(), 1);
    store.addStateExecutor(5, b);
    EXPECT_EQ(store.getExecutor(5), b);
}

// Hosts rely on copies seeing the same recorded states.
TEST(SCStates, CopiesShareTheStatesButNotTheRegistry) {
    SCStates source;
    SCStates copy(source);
    SCStates assigned;
    assigned = source;
    for (const SCStates* target : {&copy, &assigned}) {
        EXPECT_EQ(target->firstStates, source.firstStates);
        EXPECT_EQ(target->secondStates, source.secondStates);
        EXPECT_EQ(target->typeStates, source.typeStates);
    }
    copy.addStateExecutor(2, std::make_shared<NoOpExecutor>());
    EXPECT_FALSE(source.getExecutor(2));
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
        // Nothing to grow and nothing to empty: both leave every field as it is.
        EXPECT_TRUE(testing_support::resizeAsking(store, {{10, 3}}).empty());
        store.cleanup();
        EXPECT_TRUE(log.empty());
    }
    EXPECT_EQ(log, (std::vector<std::string>{"executor", "secondHook", "firstHook", "typeStates",
                                             "secondStates", "firstStates"}));
}

TEST(StateContainers, SequencesShareStatesAndReleaseNewestFirst) {
    std::vector<std::string> log;
    {
        veksg::StateContainer sequence;
        for (const char* name : {"a", "b", "c"})
            sequence.states.push_back(logged(new veksg::IState(1), log, name));
        veksg::StateTypeContainer table;
        table.containers[7];
        EXPECT_FALSE(table.isEmpty());
        table.containers[2] = sequence;
        const veksg::StateTypeContainer tableCopy(table);
        EXPECT_EQ(sequence.states.front().use_count(), 3);
    }
    EXPECT_EQ(log, (std::vector<std::string>{"c", "b", "a"}));
}

} // namespace
