// Differential fuzzing of Container against a plain std::vector model, for plain numbers,
// shared pointers (owner counts included) and wide strings.
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include <fuzzer/FuzzedDataProvider.h>

#include "FuzzCheck.h"
#include "veksg/Container.h"
#include "veksg/Geometry.h"

namespace {

// Keys stay small enough to keep memory bounded; a few land below -1 on purpose.
int pickKey(FuzzedDataProvider& in) {
    return in.ConsumeIntegralInRange<int>(-4, 200);
}

template <typename Op>
bool throwsTooLong(Op op) {
    try {
        op();
    } catch (const std::length_error& e) {
        return std::string(e.what()) == "vector too long";
    }
    return false;
}

// Model rules, written out independently of the library.
template <typename V>
void modelFit(std::vector<V>& model, int key, const V& fill) {
    if (key < -1) return; // the library throws instead; checked by the caller
    while (static_cast<int>(model.size()) < key + 1)
        model.push_back(fill);
}

template <typename V>
void modelRemove(std::vector<V>& model, int key) {
    std::vector<V> rest;
    for (int i = 0; i < static_cast<int>(model.size()); ++i)
        if (i != key) rest.push_back(model[static_cast<size_t>(i)]);
    model.swap(rest);
}

template <typename V, typename Same>
void compare(veksg::Container<int, V>& c, const std::vector<V>& model, Same same) {
    FUZZ_CHECK(c.size() == static_cast<int>(model.size()));
    FUZZ_CHECK(c.lastKey() == static_cast<int>(model.size()) - 1);
    int key = 0;
    for (const V& v : c) {
        FUZZ_CHECK(same(v, model[static_cast<size_t>(key)]));
        FUZZ_CHECK(same(c.getValue(key), v));
        ++key;
    }
}

// Runs one operation chosen by the input on a pair (library, model) of containers; `other`
// is a second pair used for copies and moves.
template <typename V, typename Make>
void step(FuzzedDataProvider& in, veksg::Container<int, V>& c, std::vector<V>& model,
          veksg::Container<int, V>& other, std::vector<V>& otherModel, Make make) {
    switch (in.ConsumeIntegralInRange<int>(0, 11)) {
    case 0: {
        const V v = make(in);
        FUZZ_CHECK(c.insert(v) == static_cast<int>(model.size()));
        model.push_back(v);
        break;
    }
    case 1: {
        const int key = pickKey(in);
        const V v = make(in);
        const V fill = make(in);
        if (key < -1) {
            FUZZ_CHECK(throwsTooLong([&] { c.insert(key, v, fill); }));
        } else if (key >= 0) {
            c.insert(key, v, fill);
            modelFit(model, key, fill);
            model[static_cast<size_t>(key)] = v;
        }
        break;
    }
    case 2: {
        const int key = pickKey(in);
        const V fill = make(in);
        if (key < -1) {
            FUZZ_CHECK(throwsTooLong([&] { c.resizeToFitKey(key, fill); }));
        } else {
            c.resizeToFitKey(key, fill);
            modelFit(model, key, fill);
        }
        break;
    }
    case 3:
        if (!model.empty()) {
            const int key = in.ConsumeIntegralInRange<int>(0, static_cast<int>(model.size()) - 1);
            const V v = make(in);
            c.setValue(key, v);
            model[static_cast<size_t>(key)] = v;
        }
        break;
    case 4:
        if (!model.empty()) {
            const int key = in.ConsumeIntegralInRange<int>(0, static_cast<int>(model.size()) - 1);
            c.removeAt(key);
            modelRemove(model, key);
        }
        break;
    case 5:
        c.clear();
        model.clear();
        break;
    case 6: {
        const int count = in.ConsumeIntegralInRange<int>(-3, 300);
        if (count < 0)
            FUZZ_CHECK(throwsTooLong([&] { c.reserve(count); }));
        else
            c.reserve(count);
        break;
    }
    case 7:
        other = c;
        otherModel = model;
        break;
    case 8: {
        veksg::Container<int, V> copy(c);
        other = std::move(copy);
        otherModel = model;
        FUZZ_CHECK(copy.size() == 0); // NOLINT(bugprone-use-after-move)
        break;
    }
    case 9:
        c = std::move(other);
        model = otherModel;
        otherModel.clear();
        FUZZ_CHECK(other.size() == 0); // NOLINT(bugprone-use-after-move)
        break;
    case 10:
        if (!model.empty()) {
            // Storing one of its own values at a key that may force growth.
            const int from = in.ConsumeIntegralInRange<int>(0, static_cast<int>(model.size()) - 1);
            const int key = in.ConsumeIntegralInRange<int>(0, 400);
            const V copy = model[static_cast<size_t>(from)];
            c.insert(key, c.getValue(from), V());
            modelFit(model, key, V());
            model[static_cast<size_t>(key)] = copy;
        }
        break;
    default: {
        auto& self = c;
        c = self; // cppcheck-suppress selfAssignment
        break;
    }
    }
}

template <typename V, typename Make, typename Same, typename Check>
void run(FuzzedDataProvider& in, Make make, Same same, Check extra) {
    veksg::Container<int, V> c;
    veksg::Container<int, V> other;
    std::vector<V> model;
    std::vector<V> otherModel;
    while (in.remaining_bytes() > 0) {
        step(in, c, model, other, otherModel, make);
        compare(c, model, same);
        compare(other, otherModel, same);
        extra(model, otherModel);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider in(data, size);
    const auto equal = [](const auto& a, const auto& b) { return a == b; };
    const auto nothing = [](const auto&, const auto&) {};
    switch (in.ConsumeIntegralInRange<int>(0, 2)) {
    case 0:
        run<int>(
            in, [](FuzzedDataProvider& p) { return p.ConsumeIntegral<int>(); }, equal, nothing);
        break;
    case 1:
        run<std::wstring>(
            in,
            [](FuzzedDataProvider& p) {
                return std::wstring(
                    p.ConsumeIntegralInRange<size_t>(0, 40),
                    static_cast<wchar_t>(p.ConsumeIntegralInRange<int>(32, 0x4e2d)));
            },
            equal, nothing);
        break;
    default: {
        // A small pool of shared meshes: each one's owner count must equal one (the pool)
        // plus the number of slots holding it in both models.
        std::vector<std::shared_ptr<veksg::Mesh>> pool;
        pool.reserve(4);
        for (int i = 0; i < 4; ++i)
            pool.push_back(std::make_shared<veksg::Mesh>());
        const auto make = [&pool](FuzzedDataProvider& p) -> std::shared_ptr<veksg::Mesh> {
            const int pick = p.ConsumeIntegralInRange<int>(-1, 3);
            return pick < 0 ? nullptr : pool[static_cast<size_t>(pick)];
        };
        const auto owners = [&pool](const std::vector<std::shared_ptr<veksg::Mesh>>& a,
                                    const std::vector<std::shared_ptr<veksg::Mesh>>& b) {
            for (const auto& mesh : pool) {
                long expected = 1;
                for (const auto* model : {&a, &b})
                    for (const auto& slot : *model)
                        expected += slot == mesh ? 2 : 0; // the model holds one, the library one
                FUZZ_CHECK(mesh.use_count() == expected);
            }
        };
        run<std::shared_ptr<veksg::Mesh>>(in, make, equal, owners);
        break;
    }
    }
    return 0;
}
