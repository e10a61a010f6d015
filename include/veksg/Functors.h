#pragma once

#include <memory>
#include <vector>

#include "veksg/Export.h"

namespace veksg {

/// Host-implemented predicate over entity keys.
class VEKSG_API IPairFunctor {
public:
    IPairFunctor() = default;
    IPairFunctor(const IPairFunctor&) = default;
    IPairFunctor& operator=(const IPairFunctor&) = default;
    virtual ~IPairFunctor();

    virtual bool apply(const int& key) const = 0;
};

/// Host-implemented visitor of key/value pairs. The library never calls it.
class VEKSG_API IPairVisitor {
public:
    IPairVisitor() = default;
    IPairVisitor(const IPairVisitor&) = default;
    IPairVisitor& operator=(const IPairVisitor&) = default;
    virtual ~IPairVisitor();

    virtual void visit(const int& key, const int& value) = 0;
    virtual void finish() = 0;
};

/// Host-implemented action on an entity key. The library never calls it.
class VEKSG_API IActionFunctor {
public:
    IActionFunctor() = default;
    IActionFunctor(const IActionFunctor&) = default;
    IActionFunctor& operator=(const IActionFunctor&) = default;
    virtual ~IActionFunctor();

    virtual void run(const int& key) = 0;
};

/// Host-implemented clip profiler. The library never calls it.
class VEKSG_API IClipProfiler {
public:
    IClipProfiler() = default;
    IClipProfiler(const IClipProfiler&) = default;
    IClipProfiler& operator=(const IClipProfiler&) = default;
    virtual ~IClipProfiler();

    virtual void profile(const int& key) = 0;
};

/// Host-implemented section callback. The library never calls it.
class VEKSG_API ISectionFunctor {
public:
    ISectionFunctor() = default;
    ISectionFunctor(const ISectionFunctor&) = default;
    ISectionFunctor& operator=(const ISectionFunctor&) = default;
    virtual ~ISectionFunctor();

    virtual bool apply(const int& key) = 0;
};

/// Chains predicates into one logical AND, evaluated newest first. Copies share the
/// predicates; identity is the object's address, never a value comparison.
class VEKSG_API PairFunctorHelper : public IPairFunctor {
public:
    PairFunctorHelper() = default;
    PairFunctorHelper(const PairFunctorHelper&) = default;
    PairFunctorHelper& operator=(const PairFunctorHelper&) = default;
    ~PairFunctorHelper() override;

    /// True when every predicate is; walks from the last entry to the first and stops at
    /// the first false. An empty chain answers true.
    bool apply(const int& key) const override;

    /// Appends `f` to `functors`, the front of the evaluation order, unless `f` is empty
    /// or already chained.
    void push_front(std::shared_ptr<IPairFunctor> f);
    /// Removes `f` wherever it is in the chain, keeping the others in order.
    void pop_front(std::shared_ptr<IPairFunctor> f);
    void clear();
    /// Appends this chain to the end of `other`'s; nothing is filtered.
    void copyTo(PairFunctorHelper& other);
    /// Appends `source`'s chain to the end of this one; nothing is filtered.
    void copyFrom(const PairFunctorHelper& source);

    std::vector<std::shared_ptr<IPairFunctor>> functors;
};

} // namespace veksg
