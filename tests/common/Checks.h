#pragma once

#include <stdexcept>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "veksg/Functors.h"

namespace testing_support {

// Runs `f`, which must throw std::length_error with exactly `message`.
template <typename F>
void expectLengthError(F&& f, const char* message) {
    try {
        f();
        ADD_FAILURE() << "expected std::length_error";
    } catch (const std::length_error& e) {
        EXPECT_STREQ(e.what(), message);
    }
}

// The values of a keyed table in key order, comparable as a whole.
template <typename Table>
auto valuesOf(const Table& table) {
    return std::vector<std::decay_t<decltype(*table.begin())>>(table.begin(), table.end());
}

// A predicate that lets every key through.
class AlwaysTrue : public veksg::IPairFunctor {
public:
    bool apply(const int& /*key*/) const override { return true; }
};

} // namespace testing_support
