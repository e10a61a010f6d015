#include <cstdio>
#include <memory>

#include "Steps.h"

namespace quickstart {

void showViews(veksg::IFactory& factory) {
    std::printf("views: the preset orientations a new view component starts with\n");
    const auto view = std::static_pointer_cast<veksg::SCView>(factory.create(veksg::Schema::VIEW));
    for (int key = 0; key < view->orientations.size(); ++key) {
        const auto& m = view->orientations.getValue(key);
        std::printf("  key %d: m0 m4 m8 = %g %g %g\n", key, m[0], m[4], m[8]);
    }
    view->viewObject = std::make_shared<int>(0);
    view->cleanup();
    std::printf("  after cleanup: %d presets, view object %s\n", view->orientations.size(),
                view->viewObject ? "kept" : "released");
}

} // namespace quickstart
