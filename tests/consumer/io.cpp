// Proves veksg::io from the installed package: a snapshot written and read back with its
// sharing, and the library's exception caught by its type across the library boundary.
#include <cstdio>
#include <memory>
#include <sstream>
#include <string>

#include "veksg/io/Snapshot.h"
#include "veksg/veksg.h"

int main() {
    auto scene = std::make_shared<veksg::SCScene>();
    auto mesh = std::make_shared<veksg::Mesh>();
    mesh->vn.resize(3);
    scene->meshes.insert(mesh), scene->meshes.insert(mesh);
    std::stringstream file;
    veksg::io::writeSnapshot(file, {scene});
    const std::string bytes = file.str();
    const auto read = veksg::io::readSnapshot(bytes.data(), bytes.size());
    const auto copy = std::dynamic_pointer_cast<veksg::SCScene>(read.components.at(0));
    const bool shared = copy && copy->meshes.getValue(0) == copy->meshes.getValue(1) &&
                        copy->meshes.getValue(0)->vn.size() == 3;
    std::printf("%s: a snapshot reads back with its sharing\n", shared ? "ok  " : "FAIL");
    bool refused = false;
    try {
        veksg::io::readSnapshot(bytes.data(), bytes.size() / 2);
    } catch (const veksg::io::SnapshotError& error) {
        refused = std::string(error.what()).rfind("snapshot: ", 0) == 0;
    }
    std::printf("%s: a truncated snapshot throws SnapshotError\n", refused ? "ok  " : "FAIL");
    return shared && refused ? 0 : 1;
}
