// Growth of a container is all or nothing: with its n-th value copy refused, for every n,
// `resizeToFitKey` and `insert(key, ...)` either finish or leave the container exactly as it
// was, with no value lost or left over.
#include <algorithm>
#include <ostream>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "veksg/Container.h"

namespace {

// A value whose copy throws once a shared budget of copies is used up; -1 never throws.
struct ThrowingValue {
    static inline int copiesLeft = -1;
    static inline int alive = 0;

    int payload = 0;

    ThrowingValue() { ++alive; }
    explicit ThrowingValue(int p) : payload(p) { ++alive; }
    ThrowingValue(const ThrowingValue& other) : payload(other.payload) {
        spend();
        ++alive;
    }
    ThrowingValue& operator=(const ThrowingValue& other) {
        spend();
        payload = other.payload;
        return *this;
    }
    ~ThrowingValue() { --alive; }

private:
    static void spend() {
        if (copiesLeft == 0) throw std::runtime_error("copy refused");
        if (copiesLeft > 0) --copiesLeft;
    }
};
using Values = veksg::Container<int, ThrowingValue>;

std::vector<int> payloads(const Values& c) {
    std::vector<int> out;
    for (const ThrowingValue& v : c)
        out.push_back(v.payload);
    return out;
}

struct Growth {
    const char* name;
    int capacity; // reserved beforehand: room to grow in place, or not
    int key;
    bool insert; // insert(key, value, fill) rather than resizeToFitKey(key, fill)
};

// By name: GoogleTest would otherwise print the bytes of the record, padding included.
void PrintTo(const Growth& g, std::ostream* out) {
    *out << g.name;
}

class StrongGuarantee : public ::testing::TestWithParam<Growth> {
protected:
    void TearDown() override {
        ThrowingValue::copiesLeft = -1;
        EXPECT_EQ(ThrowingValue::alive, 0);
    }
};

TEST_P(StrongGuarantee, EveryRefusedCopyLeavesTheContainerAsItWas) {
    const Growth g = GetParam();
    const ThrowingValue value(7);
    const ThrowingValue fill(-1);
    int refusals = 0;
    int grownAt = -1;
    int budget = 0;
    for (;; ++budget) {
        Values c;
        c.reserve(g.capacity);
        for (int i = 0; i < 3; ++i)
            c.insert(ThrowingValue(i));
        const std::vector<int> before = payloads(c);
        const int aliveBefore = ThrowingValue::alive;

        ThrowingValue::copiesLeft = budget;
        bool refused = false;
        try {
            if (g.insert)
                c.insert(g.key, value, fill);
            else
                c.resizeToFitKey(g.key, fill);
        } catch (const std::runtime_error&) {
            refused = true;
        }
        ThrowingValue::copiesLeft = -1;

        if (refused && payloads(c) != before) {
            // The value is assigned after the growth, as documented, so only its own copy,
            // the very last one, can fail with the slots already grown. They hold the fill.
            ASSERT_TRUE(g.insert) << "budget " << budget;
            std::vector<int> grown = before;
            grown.resize(static_cast<std::size_t>(g.key) + 1, -1);
            EXPECT_EQ(payloads(c), grown) << "budget " << budget;
            grownAt = budget;
            continue;
        }
        if (refused) {
            ++refusals;
            EXPECT_EQ(ThrowingValue::alive, aliveBefore) << "budget " << budget;
            continue;
        }
        std::vector<int> expected = before;
        expected.resize(static_cast<std::size_t>(std::max(g.key + 1, 3)), -1);
        if (g.insert) expected[static_cast<std::size_t>(g.key)] = 7;
        EXPECT_EQ(payloads(c), expected);
        break;
    }
    EXPECT_GT(refusals, 0);
    if (grownAt >= 0) {
        EXPECT_EQ(grownAt, budget - 1) << "only the value's own copy comes last";
    }
}

INSTANTIATE_TEST_SUITE_P(Growths, StrongGuarantee,
                         ::testing::Values(Growth{"resizeInPlace", 32, 9, false},
                                           Growth{"resizeByReallocation", 0, 40, false},
                                           Growth{"insertInPlace", 32, 9, true},
                                           Growth{"insertByReallocation", 0, 40, true},
                                           Growth{"insertOverExistingSlot", 0, 1, true}),
                         [](const auto& info) { return std::string(info.param.name); });

} // namespace
