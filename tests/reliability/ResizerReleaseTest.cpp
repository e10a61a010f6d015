// A resize that fails part way: the resizer refuses its k-th question, or answers a key no
// table can grow to. Every component must give the resizer back (its owner count returns to
// what it was) and keep what it grew before the failure; nothing after it is asked or grown.
#include <algorithm>
#include <climits>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "veksg/veksg.h"

namespace {

using namespace veksg;

// Answers 3 for every key space, except that its k-th question (from 1) fails: refused, or
// answered with a key whose table would need more slots than an int can count.
class FailingResizer : public SchemaResizer {
public:
    enum Failure { refuse, tooLarge };
    FailingResizer(int k, Failure failure) : k(k), failure(failure) {}

    int lastKeyOf(const short& keySpace) override {
        asked.push_back(keySpace);
        if (static_cast<int>(asked.size()) != k) return 3;
        if (failure == refuse) throw std::runtime_error("resizer refused");
        return INT_MAX;
    }

    int k;
    Failure failure;
    std::vector<short> asked;
};

// One component that asks: its questions in order and, per question, whether the tables of
// that key space have grown (to key 3).
struct Asking {
    const char* name;
    std::function<std::shared_ptr<Schema>()> make;
    std::vector<short> order;
    std::function<std::vector<bool>(Schema&)> grown;
    bool tooLargeApplies; // bit sets would really allocate 2^31 bits instead
};

template <typename C>
C& as(Schema& s) {
    return dynamic_cast<C&>(s);
}

std::vector<Asking> askingComponents() {
    return {
        {"SCScene",
         [] {
             auto s = std::make_shared<SCScene>();
             s->fonts.insert(Font());
             s->fonts.insert(Font());
             return s;
         },
         {6, 7, 8},
         [](Schema& s) {
             auto& c = as<SCScene>(s);
             // The hierarchy follows the fonts, between the questions for 7 and 8.
             return std::vector<bool>{c.links6a.size() == 4 && c.links6b.size() == 4,
                                      c.links7.size() == 4 && c.hierarchy.size() == 2,
                                      c.links8.size() == 4};
         },
         true},
        {"SCSceneTopo",
         [] { return std::make_shared<SCSceneTopo>(); },
         {10, 11, 12, 14, 13, 15},
         [](Schema& s) {
             auto& c = as<SCSceneTopo>(s);
             return std::vector<bool>{c.nodeRefs1.size() == 4 && c.nodeFlags.size() == 4,
                                      c.faceLists2.size() == 4 && c.faceRefs2.size() == 4,
                                      c.edgeLists2.size() == 4 && c.edgeLists4.size() == 4,
                                      c.refs14b.size() == 4 && c.refs14a.size() == 4,
                                      c.refs13b.size() == 4 && c.lists13.size() == 4,
                                      c.refs15a.size() == 4 && c.refs15b.size() == 4};
         },
         true},
        {"SCPmi",
         [] { return std::make_shared<SCPmi>(); },
         {10, 16, 17},
         [](Schema& s) {
             auto& c = as<SCPmi>(s);
             return std::vector<bool>{c.relation1.size() == 4 && c.relation3.size() == 4,
                                      c.map2.size() == 4 && c.relation6.size() == 4,
                                      c.relation9.size() == 4 && c.relation10.size() == 4};
         },
         true},
        {"SCFeatures",
         [] { return std::make_shared<SCFeatures>(); },
         {10},
         [](Schema& s) { return std::vector<bool>{as<SCFeatures>(s).nodeFeatures.size() == 4}; },
         true},
        {"SCSceneRT",
         [] { return std::make_shared<SCSceneRT>(); },
         {10, 11, 12, 14, 13, 15, 16},
         [](Schema& s) {
             auto& c = as<SCSceneRT>(s);
             const auto& sets = c.visibility.sets;
             return std::vector<bool>{sets[0].size() == 4 && c.nodeValues.size() == 4 &&
                                          c.texts.lists.size() == 4,
                                      sets[2].size() == 4,
                                      sets[3].size() == 4,
                                      sets[6].size() == 4,
                                      sets[5].size() == 4,
                                      sets[4].size() == 4,
                                      sets[1].size() == 4};
         },
         false},
    };
}

class ResizerRelease : public ::testing::TestWithParam<FailingResizer::Failure> {};

TEST_P(ResizerRelease, FailureAtEveryQuestionKeepsWhatGrewBefore) {
    const FailingResizer::Failure failure = GetParam();
    for (const Asking& a : askingComponents()) {
        if (failure == FailingResizer::tooLarge && !a.tooLargeApplies) continue;
        const int questions = static_cast<int>(a.order.size());
        for (int k = 1; k <= questions + 1; ++k) {
            SCOPED_TRACE(std::string(a.name) + ", failing question " + std::to_string(k));
            const auto component = a.make();
            auto resizer = std::make_shared<FailingResizer>(k, failure);
            if (k > questions) {
                component->resize(resizer);
            } else if (failure == FailingResizer::refuse) {
                EXPECT_THROW(component->resize(resizer), std::runtime_error);
            } else {
                try {
                    component->resize(resizer);
                    ADD_FAILURE() << "expected std::length_error";
                } catch (const std::length_error& e) {
                    EXPECT_STREQ(e.what(), "vector too long");
                }
            }
            EXPECT_EQ(resizer.use_count(), 1);
            const int answered = std::min(k - 1, questions);
            const std::vector<short> asked(a.order.begin(),
                                           a.order.begin() + std::min(k, questions));
            EXPECT_EQ(resizer->asked, asked);
            const std::vector<bool> grown = a.grown(*component);
            for (int q = 0; q < questions; ++q)
                EXPECT_EQ(grown[static_cast<std::size_t>(q)], q < answered)
                    << "key space " << a.order[static_cast<std::size_t>(q)];
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Failures, ResizerRelease,
                         ::testing::Values(FailingResizer::refuse, FailingResizer::tooLarge),
                         [](const auto& info) {
                             return std::string(info.param == FailingResizer::refuse ? "Refused"
                                                                                     : "TooLarge");
                         });

} // namespace
