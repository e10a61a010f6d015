#include <gtest/gtest.h>

#include "common/Checks.h"
#include "veksg/veksg.h"

namespace {

using veksg::IPairFunctor;
using veksg::PairFunctorHelper;
using Chain = std::vector<std::shared_ptr<IPairFunctor>>;

// Answers a fixed value and writes its label to a shared log on every call.
class Recording : public IPairFunctor {
public:
    Recording(std::vector<char>& log, char label, bool answer = true)
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

TEST(PairFunctorHelper, AppliesNewestFirstAndStopsAtTheFirstFalse) {
    std::vector<char> log;
    PairFunctorHelper helper;
    EXPECT_TRUE(helper.apply(3));
    const auto a = std::make_shared<Recording>(log, 'a');
    const auto b = std::make_shared<Recording>(log, 'b');
    const auto c = std::make_shared<Recording>(log, 'c');
    for (const auto& f : {a, b, c})
        helper.push_front(f);
    EXPECT_TRUE(helper.apply(42));
    EXPECT_EQ(a->lastKey, 42);
    b->answer = false;
    EXPECT_FALSE(helper.apply(1));
    c->answer = false;
    EXPECT_FALSE(helper.apply(1));
    EXPECT_EQ(log, (std::vector<char>{'c', 'b', 'a', 'c', 'b', 'c'}));
}

// Identity is the object, never an equal one; copies append and filter nothing.
TEST(PairFunctorHelper, PushAndPopGoByIdentityAndCopiesAppendEverything) {
    const auto a = std::make_shared<testing_support::AlwaysTrue>();
    const auto twin = std::make_shared<testing_support::AlwaysTrue>();
    const auto b = std::make_shared<testing_support::AlwaysTrue>();
    PairFunctorHelper source;
    for (const auto& f : Chain{a, a, nullptr, twin, b})
        source.push_front(f);
    EXPECT_EQ(source.functors, (Chain{a, twin, b}));
    source.pop_front(std::make_shared<testing_support::AlwaysTrue>());
    source.pop_front(nullptr);
    source.pop_front(a);
    EXPECT_EQ(source.functors, (Chain{twin, b}));
    EXPECT_EQ(a.use_count(), 1);

    PairFunctorHelper target;
    target.push_front(a);
    source.copyTo(target);
    source.copyTo(target);
    EXPECT_EQ(target.functors, (Chain{a, twin, b, twin, b}));
    target.copyFrom(source);
    target.copyFrom(target);
    EXPECT_EQ(target.functors.size(), 14u);
    target.clear();
    EXPECT_TRUE(target.apply(0));
    EXPECT_EQ(a.use_count(), 1);
}

} // namespace
