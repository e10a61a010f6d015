#include <cstdio>

#include "Steps.h"

namespace quickstart {

void showDocuments(veksg::IFactory& factory) {
    using veksg::Schema;
    std::printf("document info: where the model came from\n");
    const auto info = std::dynamic_pointer_cast<veksg::SCInfo>(factory.create(Schema::INFO));
    info->setFile(L"/models/pump/pump.step");
    std::printf("  file %ls, tolerance %g\n", info->file(), static_cast<double>(info->tolerance));

    std::printf("layers: one layer setting and a table of named layers\n");
    const auto layer = std::dynamic_pointer_cast<veksg::SCLayer>(factory.create(Schema::LAYER));
    veksg::Container<int, veksg::Layer> layers;
    for (const wchar_t* name : {L"construction", L"dimensions"})
        layers.insert(veksg::Layer{name});
    layer->layer = layers.lastKey();
    std::printf("  %d layers, setting %d names \"%ls\"\n", layers.size(), layer->layer,
                layers.getValue(layer->layer).name.c_str());

    std::printf("external files: a referenced part, kept on disk\n");
    const auto external =
        std::dynamic_pointer_cast<veksg::SCExtFile>(factory.create(Schema::EXT_FILE));
    const int key = external->files.insert(veksg::ExtFile{L"/models/pump/impeller.step", 1});
    std::printf("  key %d: %ls; deleted when the component goes: %s\n", key,
                external->files.getValue(key).path.c_str(),
                external->deleteFilesOnDestroy ? "yes" : "no");
}

} // namespace quickstart
