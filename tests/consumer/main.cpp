// Proves what crosses the library boundary: exported instantiations, exceptions thrown
// inside the library, and run-time type information for casts.
#include <cstdio>
#include <memory>
#include <stdexcept>
#include <string>

#include "vekmath/vekmath.h"
#include "veksg/veksg.h"

namespace {
int failures = 0;

void check(bool ok, const char* what) {
    std::printf("%s: %s\n", ok ? "ok  " : "FAIL", what);
    failures += ok ? 0 : 1;
}
} // namespace

int main() {
    auto factory = veksg::createFactory();
    check(std::dynamic_pointer_cast<veksg::SCFactory>(factory) != nullptr,
          "the factory casts to SCFactory");
    check(!factory->create(veksg::Schema::FEATURES), "features are never made by the factory");
    check(std::dynamic_pointer_cast<veksg::SCSceneTopo>(
              factory->create(veksg::Schema::SCENE_TOPO)) != nullptr,
          "a made topology casts to SCSceneTopo");

    veksg::Container<int, std::wstring> names;
    names.insert(3, L"flange", L"");
    check(names.size() == 4 && names.getValue(3) == L"flange", "store at key fills the gap");

    try {
        names.reserve(-1);
        check(false, "reserve(-1) throws");
    } catch (const std::length_error& e) {
        check(std::string(e.what()) == "vector too long", "reserve(-1) throws vector too long");
    }

    veksg::Hierarchy tree;
    tree.addChild(1, {4, 2, 4});
    tree.removeDuplicates();
    check(tree.getValue(1).size() == 2 && tree.getValue(1)[0] == 2, "hierarchy dedupe");

    const std::shared_ptr<veksg::IValue> count = std::make_shared<veksg::Int2Value>(L"count", 3);
    check(std::dynamic_pointer_cast<veksg::Int2Value>(count) != nullptr &&
              std::dynamic_pointer_cast<veksg::IntValue>(count) == nullptr,
          "typed values cast by their kind only");
    const auto view =
        std::dynamic_pointer_cast<veksg::SCView>(factory->create(veksg::Schema::VIEW));
    check(view && view->orientations.size() == 7, "a new view holds the seven presets");

    veksg::Transform t;
    check(t.matrix == vekmath::MatrixUtils::createIdentity() && !t.valid, "default transform");
    return failures == 0 ? 0 : 1;
}
