// The host's own library called data. Built as a shared library, so CMake defines
// data_EXPORTS here: veksg's headers must still import, not export, their symbols.
#include "veksg/veksg.h"

__attribute__((visibility("default"))) int hostNodes() {
    veksg::SCSceneTopo topo;
    topo.nodes.insert(veksg::Node());
    return topo.nodes.size();
}
