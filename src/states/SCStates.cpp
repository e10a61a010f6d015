#include "veksg/SCStates.h"

#include <utility>

#include "veksg/Set.h"

namespace veksg {

StateContainer::~StateContainer() {
    // Newest first: a state goes before the states recorded ahead of it.
    while (!states.empty())
        states.pop_back();
}

bool StateContainer::isEmpty() {
    return states.empty();
}

bool StateTypeContainer::isEmpty() {
    return containers.empty();
}

IStateExecutor::~IStateExecutor() = default;

IStateActivator::~IStateActivator() = default;

SCStates::SCStates() : Schema(Schema::STATES) {
}

// Members go in reverse declaration order, which is the release order hosts rely on:
// executors, secondHook, firstHook, typeStates, secondStates, firstStates.
SCStates::~SCStates() = default;

short SCStates::type() const {
    return Schema::type();
}

void SCStates::resize(std::shared_ptr<SchemaResizer> /*resizer*/) {
}

void SCStates::addStateExecutor(int key, std::shared_ptr<IStateExecutor> executor) {
    const auto slot = executors.lower_bound(key);
    if (slot != executors.end() && slot->first == key) return;
    detail::checkTreeRoom(executors);
    executors.emplace_hint(slot, key, std::move(executor));
}

void SCStates::removeStateExecutor(int key) {
    executors.erase(key);
}

std::shared_ptr<IStateExecutor> SCStates::getExecutor(int key) {
    const auto found = executors.lower_bound(key);
    if (found == executors.end() || found->first != key) return {};
    return found->second;
}

} // namespace veksg
