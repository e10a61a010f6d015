#include <cstdio>
#include <memory>

#include "Steps.h"

namespace quickstart {

namespace {
// The host's own command ids; the library only stores them.
enum Command { CAMERA = 1, VISIBILITY = 2 };

class PrintingExecutor : public veksg::IStateExecutor {
public:
    void execute(const std::shared_ptr<veksg::IState>& state) override {
        std::printf("  executor: applying state %d of command %d\n", state->getSeqId(),
                    state->getCmdId());
    }
};
} // namespace

void showStates(veksg::IFactory& factory) {
    std::printf("states: recording view changes in the state store\n");
    const auto store =
        std::dynamic_pointer_cast<veksg::SCStates>(factory.create(veksg::Schema::STATES));
    if (!store) return;

    veksg::StateFactory states;
    const auto camera = states.createCameraState(veksg::Point3(0.0f, 0.0f, 10.0f), veksg::Point3(),
                                                 veksg::Point3(0.0f, 1.0f, 0.0f));
    // First list: the entities; second: what each one becomes (here 0, hidden).
    const auto hide = states.createVisibilityState({1, 2}, {0, 0});
    std::printf("  made by the state factory: command %d, sequence %d\n", camera->getCmdId(),
                camera->getSeqId());

    int sequence = 0;
    for (const auto& [state, command] : {std::pair{camera, CAMERA}, std::pair{hide, VISIBILITY}}) {
        state->setCmdId(command);
        state->setSeqId(sequence++);
        store->firstStates->states.push_back(state);
        store->typeStates->containers[command].states.push_back(state);
    }
    std::printf("  recorded %zu states under %zu commands\n", store->firstStates->states.size(),
                store->typeStates->containers.size());

    const auto& visibility = static_cast<const veksg::VisibilityState&>(*hide);
    std::printf("  visibility state: %zu entities, first %d\n", visibility.ids.size(),
                visibility.ids.front());

    store->addStateExecutor(CAMERA, std::make_shared<PrintingExecutor>());
    store->addStateExecutor(CAMERA, std::make_shared<PrintingExecutor>());
    std::printf("  executors registered: %zu (a second one under the same key is ignored)\n",
                store->executors.size());
    for (const auto& state : store->firstStates->states) {
        if (const auto executor = store->getExecutor(state->getCmdId()))
            executor->execute(state);
        else
            std::printf("  no executor for command %d\n", state->getCmdId());
    }
}

} // namespace quickstart
