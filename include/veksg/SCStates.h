#pragma once

#include <deque>
#include <map>
#include <memory>

#include "veksg/Export.h"
#include "veksg/Schema.h"
#include "veksg/States.h"

namespace veksg {

/// One ordered sequence of recorded states, usable from both ends. Copies share the states.
class VEKSG_API StateContainer {
public:
    StateContainer() = default;
    StateContainer(const StateContainer&) = default;
    StateContainer(StateContainer&&) = default;
    StateContainer& operator=(const StateContainer&) = default;
    StateContainer& operator=(StateContainer&&) = default;
    /// Releases the states from the back, newest first.
    ~StateContainer();

    bool isEmpty();

    std::deque<std::shared_ptr<IState>> states;
};

/// Sequences of states, one per key, ascending by key.
class VEKSG_API StateTypeContainer {
public:
    /// True only when there is no key; a key with an empty sequence still counts.
    bool isEmpty();

    std::map<int, StateContainer> containers;
};

/// Host-implemented: applies a state. The library only stores executors.
class VEKSG_API IStateExecutor {
public:
    IStateExecutor() = default;
    IStateExecutor(const IStateExecutor&) = default;
    IStateExecutor& operator=(const IStateExecutor&) = default;
    virtual ~IStateExecutor();

    virtual void execute(const std::shared_ptr<IState>& state) = 0;
};

/// Host-implemented: activates a state. The library only stores and releases it.
class VEKSG_API IStateActivator {
public:
    IStateActivator() = default;
    IStateActivator(const IStateActivator&) = default;
    IStateActivator& operator=(const IStateActivator&) = default;
    virtual ~IStateActivator();

    virtual void activate(const std::shared_ptr<IState>& state) = 0;
};

/// The state store: recorded view states and the host's executors by key.
///
/// Copies share the three state containers and both hooks, so every copy sees the same
/// recorded states; each copy has its own executor registry (same keys, same executors).
class VEKSG_API SCStates : public Schema {
public:
    SCStates();
    SCStates(const SCStates&) = default;
    SCStates& operator=(const SCStates&) = default;
    /// Empties the registry, then releases the hooks and the containers, last field first.
    ~SCStates() override;

    short type() const override;
    /// Nothing to grow: the store has no per-entity tables, so the resizer is never asked.
    void resize(std::shared_ptr<SchemaResizer> resizer) override;

    /// Registers `executor` under `key` unless `key` is taken; a taken key keeps its
    /// executor (remove it first to replace it). Throws std::length_error("map/set too long")
    /// when the registry cannot grow.
    void addStateExecutor(int key, std::shared_ptr<IStateExecutor> executor);
    /// No effect for an unknown key.
    void removeStateExecutor(int key);
    /// The executor under `key`, or an empty pointer.
    std::shared_ptr<IStateExecutor> getExecutor(int key);

    std::shared_ptr<StateContainer> firstStates = std::make_shared<StateContainer>();
    std::shared_ptr<StateContainer> secondStates = std::make_shared<StateContainer>();
    std::shared_ptr<StateTypeContainer> typeStates = std::make_shared<StateTypeContainer>();
    std::shared_ptr<IStateActivator> firstHook;
    std::shared_ptr<void> secondHook;
    bool firstSetting = false;
    int secondSetting = 2;
    std::map<int, std::shared_ptr<IStateExecutor>> executors;
};

} // namespace veksg
