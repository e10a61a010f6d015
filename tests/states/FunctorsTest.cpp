#include <memory>
#include <vector>

#include <gtest/gtest.h>

#include "veksg/veksg.h"

namespace {

using veksg::IPairFunctor;
using veksg::PairFunctorHelper;

// Answers a fixed value and writes its label and the key to a shared log on every call.
class Recording : public IPairFunctor {
public:
    Recording(std::vector<char>& log, char label, bool answer)
        : log(log), label(label), answer(answer) {}
    bool apply(const int& key) const override {
        log.push_back(label);
        lastKey = key;
        return answer;
    }

    std::vector<char>& log;
    char label;
    bool answer;
    mutable int lastKey = -1;
};

struct Chain {
    std::vector<char> log;
    std::shared_ptr<Recording> make(char label, bool answer = true) {
        return std::make_shared<Recording>(log, label, answer);
    }
};

TEST(PairFunctorHelper, AppliesNewestFirstAndStopsAtTheFirstFalse) {
    Chain chain;
    PairFunctorHelper helper;
    EXPECT_TRUE(helper.apply(3));

    const auto a = chain.make('a');
    const auto b = chain.make('b');
    const auto c = chain.make('c');
    for (const auto& f : {a, b, c})
        helper.push_front(f);
    EXPECT_TRUE(helper.apply(42));
    EXPECT_EQ(chain.log, (std::vector<char>{'c', 'b', 'a'}));
    EXPECT_EQ(a->lastKey, 42);

    chain.log.clear();
    b->answer = false;
    EXPECT_FALSE(helper.apply(1));
    EXPECT_EQ(chain.log, (std::vector<char>{'c', 'b'}));

    chain.log.clear();
    c->answer = false;
    EXPECT_FALSE(helper.apply(1));
    EXPECT_EQ(chain.log, (std::vector<char>{'c'}));
}

TEST(PairFunctorHelper, PushAndPopGoByIdentity) {
    Chain chain;
    PairFunctorHelper helper;
    const auto a = chain.make('a');
    const auto twin = chain.make('a');
    const auto b = chain.make('b');
    helper.push_front(a);
    helper.push_front(a);
    helper.push_front(nullptr);
    helper.push_front(twin);
    helper.push_front(b);
    ASSERT_EQ(helper.functors.size(), 3u);
    EXPECT_EQ(a.use_count(), 2);

    helper.pop_front(chain.make('b'));
    helper.pop_front(nullptr);
    EXPECT_EQ(helper.functors.size(), 3u);

    helper.pop_front(a);
    EXPECT_EQ(helper.functors, (std::vector<std::shared_ptr<IPairFunctor>>{twin, b}));
    EXPECT_EQ(a.use_count(), 1);
    helper.pop_front(b);
    EXPECT_EQ(helper.functors, (std::vector<std::shared_ptr<IPairFunctor>>{twin}));
}

TEST(PairFunctorHelper, CopiesAppendWithoutFilteringAndShareThePredicates) {
    Chain chain;
    const auto a = chain.make('a');
    const auto b = chain.make('b');
    PairFunctorHelper source;
    source.push_front(a);
    source.push_front(b);

    PairFunctorHelper target;
    const auto own = chain.make('o');
    target.push_front(own);
    source.copyTo(target);
    source.copyTo(target);
    using List = std::vector<std::shared_ptr<IPairFunctor>>;
    EXPECT_EQ(target.functors, (List{own, a, b, a, b}));

    PairFunctorHelper grown;
    grown.copyFrom(source);
    grown.copyFrom(grown);
    EXPECT_EQ(grown.functors, (List{a, b, a, b}));

    const PairFunctorHelper copy(source);
    EXPECT_EQ(copy.functors, source.functors);
    EXPECT_EQ(a.use_count(), 1 + 1 + 2 + 2 + 1);

    grown = source;
    EXPECT_EQ(grown.functors, source.functors);

    target.clear();
    EXPECT_TRUE(target.functors.empty());
    EXPECT_TRUE(target.apply(0));
    EXPECT_EQ(own.use_count(), 1);
}

} // namespace
