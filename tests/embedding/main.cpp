#include <cstdio>
#include <memory>

#include "veksg/veksg.h"

int hostNodes();

int main() {
    const auto topo = std::dynamic_pointer_cast<veksg::SCSceneTopo>(
        veksg::createFactory()->create(veksg::Schema::SCENE_TOPO));
    const bool ok = topo && hostNodes() == 1 && HOST_MATH == 1;
    std::printf("%s: veksg built beside the host's own data and math targets\n",
                ok ? "ok  " : "FAIL");
    return ok ? 0 : 1;
}
