// Allocation failures where the library allocates by hand: the key buffers of typed values.
// Each operation runs once for every allocation it makes, that allocation refused; every
// refusal must surface as std::bad_alloc and give back everything allocated so far (the
// balance of allocations and frees is zero), and so must the run that gets through.
// Everything else the library holds is owned by standard containers and smart pointers,
// whose own guarantees need no test here. Under the asan preset LeakSanitizer checks the
// same at exit.
#include <memory>
#include <new>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "common/AllocationCounter.h"
#include "veksg/veksg.h"

namespace {

using namespace veksg;

class AllocationFailure : public ::testing::Test {
protected:
    void SetUp() override { SKIP_UNLESS_COUNTING_ALLOCATIONS(); }
};

// Runs `op` with its 1st, 2nd, ... allocation refused until it gets through; returns how many
// allocations the successful run made.
template <typename Op>
std::size_t refuseEachAllocation(Op op) {
    for (std::size_t n = 1; n < 100000; ++n) {
        const testing_support::CountAllocations counting(n);
        bool refused = false;
        try {
            op();
        } catch (const std::bad_alloc&) {
            refused = true;
        }
        EXPECT_EQ(counting.allocations(), counting.deallocations())
            << "with allocation " << n << " refused";
        if (!refused) return n - 1;
    }
    ADD_FAILURE() << "never got through";
    return 0;
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

} // namespace
