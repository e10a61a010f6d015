#include <cstddef>
#include <cstdio>
#include <memory>

#include "Steps.h"

namespace quickstart {

void showRuntime(veksg::IFactory& factory, const std::shared_ptr<HostResizer>& resizer) {
    std::printf("runtime: visibility bit sets follow the resizer's key ranges\n");
    const auto runtime =
        std::dynamic_pointer_cast<veksg::SCSceneRT>(factory.create(veksg::Schema::SCENE_RT));
    if (!runtime) return;

    runtime->resize(resizer);
    const auto& sets = runtime->visibility.sets;
    for (std::size_t set = 0; set < sets.size(); ++set)
        std::printf("  set %zu: %zu bits\n", set, sets[set].size());
    std::printf("  %d per-node values, %d mesh lists\n", runtime->nodeValues.size(),
                runtime->meshes.lists.size());

    // Only what the resizer reports shrinks: the sets follow it, the tables keep their size.
    resizer->lastEdge = 0;
    runtime->resize(resizer);
    std::printf("  after the edges shrink to one: set 3 has %zu bit(s)\n", sets[3].size());
}

} // namespace quickstart
