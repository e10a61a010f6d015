#include "veksg/Functors.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace veksg {

IPairFunctor::~IPairFunctor() = default;
IPairVisitor::~IPairVisitor() = default;
IActionFunctor::~IActionFunctor() = default;
IClipProfiler::~IClipProfiler() = default;
ISectionFunctor::~ISectionFunctor() = default;

namespace {
using Chain = std::vector<std::shared_ptr<IPairFunctor>>;

Chain::iterator findSame(Chain& chain, const std::shared_ptr<IPairFunctor>& f) {
    return std::find_if(
        chain.begin(), chain.end(),
        [&f](const std::shared_ptr<IPairFunctor>& entry) { return entry.get() == f.get(); });
}
} // namespace

PairFunctorHelper::~PairFunctorHelper() = default;

bool PairFunctorHelper::apply(const int& key) const {
    for (auto f = functors.rbegin(); f != functors.rend(); ++f)
        if (!(*f)->apply(key)) return false;
    return true;
}

void PairFunctorHelper::push_front(std::shared_ptr<IPairFunctor> f) {
    if (!f || findSame(functors, f) != functors.end()) return;
    functors.push_back(std::move(f));
}

void PairFunctorHelper::pop_front(std::shared_ptr<IPairFunctor> f) {
    if (!f) return;
    const auto found = findSame(functors, f);
    if (found != functors.end()) functors.erase(found);
}

void PairFunctorHelper::clear() {
    functors.clear();
}

void PairFunctorHelper::copyTo(PairFunctorHelper& other) {
    other.copyFrom(*this);
}

void PairFunctorHelper::copyFrom(const PairFunctorHelper& source) {
    // Counted and reserved first: the source may be this very chain, growing as it is read.
    const std::size_t count = source.functors.size();
    functors.reserve(functors.size() + count);
    for (std::size_t i = 0; i < count; ++i)
        functors.push_back(source.functors[i]);
}

} // namespace veksg
