// Differential fuzzing of Hierarchy and HierarchySet against plain nested-vector models.
#include <cstdint>
#include <set>
#include <vector>

#include <fuzzer/FuzzedDataProvider.h>

#include "FuzzCheck.h"
#include "veksg/Hierarchy.h"

namespace {

using Lists = std::vector<std::vector<int>>;

void modelGrow(Lists& model, int parent) {
    while (static_cast<int>(model.size()) <= parent)
        model.emplace_back();
}

// Compaction without truncation: the kept children move to the front in order, the tail
// keeps whatever stood there before.
void modelRemove(std::vector<int>& list, int child, bool erase) {
    std::vector<int> kept;
    for (int c : list)
        if (c != child) kept.push_back(c);
    if (kept.size() == list.size()) return;
    if (erase) {
        list = kept;
        return;
    }
    for (size_t i = 0; i < kept.size(); ++i)
        list[i] = kept[i];
}

void modelDedupe(Lists& model) {
    for (auto& list : model) {
        std::vector<int> unique;
        for (int c : list) {
            size_t at = 0;
            while (at < unique.size() && unique[at] < c)
                ++at;
            if (at == unique.size() || unique[at] != c)
                unique.insert(unique.begin() + static_cast<long>(at), c);
        }
        list = unique;
    }
}

// Sorted unique insert into a plain vector, standing in for a set.
void modelSetInsert(std::vector<int>& set, int child) {
    size_t at = 0;
    while (at < set.size() && set[at] < child)
        ++at;
    if (at == set.size() || set[at] != child)
        set.insert(set.begin() + static_cast<long>(at), child);
}

int pickParent(FuzzedDataProvider& in) {
    return in.ConsumeIntegralInRange<int>(0, 40);
}
int pickChild(FuzzedDataProvider& in) {
    return in.ConsumeIntegralInRange<int>(-2, 12);
}

void runHierarchy(FuzzedDataProvider& in) {
    veksg::Hierarchy h;
    Lists model;
    while (in.remaining_bytes() > 0) {
        switch (in.ConsumeIntegralInRange<int>(0, 4)) {
        case 0: {
            const int parent = pickParent(in);
            const int child = pickChild(in);
            h.addChild(parent, child);
            modelGrow(model, parent);
            model[static_cast<size_t>(parent)].push_back(child);
            break;
        }
        case 1: {
            const int parent = pickParent(in);
            std::vector<int> children(in.ConsumeIntegralInRange<size_t>(0, 6));
            for (int& c : children)
                c = pickChild(in);
            h.addChild(parent, children);
            modelGrow(model, parent);
            for (int c : children)
                model[static_cast<size_t>(parent)].push_back(c);
            break;
        }
        case 2:
            if (!model.empty()) {
                const int parent =
                    in.ConsumeIntegralInRange<int>(0, static_cast<int>(model.size()) - 1);
                const int child = pickChild(in);
                const bool erase = in.ConsumeBool();
                h.removeChild(parent, child, erase);
                modelRemove(model[static_cast<size_t>(parent)], child, erase);
            }
            break;
        case 3:
            h.removeDuplicates();
            modelDedupe(model);
            break;
        default: {
            const veksg::Hierarchy copy(h);
            h = copy;
            break;
        }
        }
        FUZZ_CHECK(h.size() == static_cast<int>(model.size()));
        for (int p = 0; p < h.size(); ++p)
            FUZZ_CHECK(h.getValue(p) == model[static_cast<size_t>(p)]);
    }
}

void runHierarchySet(FuzzedDataProvider& in) {
    veksg::HierarchySet h;
    Lists model;
    while (in.remaining_bytes() > 0) {
        switch (in.ConsumeIntegralInRange<int>(0, 2)) {
        case 0: {
            const int parent = pickParent(in);
            const int child = pickChild(in);
            h.addChild(parent, child);
            modelGrow(model, parent);
            modelSetInsert(model[static_cast<size_t>(parent)], child);
            break;
        }
        case 1: {
            const int parent = pickParent(in);
            std::set<int> children;
            for (size_t n = in.ConsumeIntegralInRange<size_t>(0, 6); n > 0; --n)
                children.insert(pickChild(in));
            h.addChild(parent, children);
            modelGrow(model, parent);
            for (int c : children)
                modelSetInsert(model[static_cast<size_t>(parent)], c);
            break;
        }
        default:
            if (!model.empty()) {
                const int parent =
                    in.ConsumeIntegralInRange<int>(0, static_cast<int>(model.size()) - 1);
                const int child = pickChild(in);
                h.removeChild(parent, child);
                auto& set = model[static_cast<size_t>(parent)];
                for (size_t i = 0; i < set.size(); ++i)
                    if (set[i] == child) set.erase(set.begin() + static_cast<long>(i));
            }
            break;
        }
        FUZZ_CHECK(h.size() == static_cast<int>(model.size()));
        for (int p = 0; p < h.size(); ++p) {
            const std::set<int>& got = h.getValue(p);
            FUZZ_CHECK(std::vector<int>(got.begin(), got.end()) == model[static_cast<size_t>(p)]);
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    FuzzedDataProvider in(data, size);
    if (in.ConsumeBool())
        runHierarchy(in);
    else
        runHierarchySet(in);
    return 0;
}
