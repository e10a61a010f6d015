#include "Loading.h"

#include <algorithm>

namespace vekview {

const char* const sampleLabel = "flanged-bolt (built-in sample)";

vekhost::LoadResult loadModel(const std::string& path, double deflection,
                              vekhost::Progress* progress) {
    vekhost::LoadOptions options;
    options.deflection = deflection;
    options.progress = progress;
    return path.empty() ? vekhost::loadSample(options) : vekhost::loadFile(path, options);
}

std::string labelOf(const std::string& path) {
    return path.empty() ? sampleLabel : path;
}

BackgroundLoad::BackgroundLoad(std::string path, double deflection) : file(std::move(path)) {
    worker = std::thread([this, deflection] {
        try {
            vekhost::LoadResult loaded = loadModel(file, deflection, this);
            const std::lock_guard<std::mutex> lock(guard);
            result = std::move(loaded);
        } catch (const std::exception& failure) {
            const std::lock_guard<std::mutex> lock(guard);
            error = failure.what();
        }
        done = true;
    });
}

BackgroundLoad::~BackgroundLoad() {
    if (worker.joinable()) worker.join();
}

std::string BackgroundLoad::phaseName() const {
    const std::lock_guard<std::mutex> lock(guard);
    return running;
}

vekhost::LoadResult BackgroundLoad::take() {
    if (worker.joinable()) worker.join();
    const std::lock_guard<std::mutex> lock(guard);
    if (!result) throw vekhost::LoadError(error.empty() ? "the load was taken already" : error);
    vekhost::LoadResult out = std::move(*result);
    result.reset();
    return out;
}

void BackgroundLoad::phase(const char* name) {
    const std::lock_guard<std::mutex> lock(guard);
    running = name;
    progress = 0;
}

// The mesher reports from its own threads, not always in order.
void BackgroundLoad::update(double fraction) {
    progress = std::clamp(fraction, 0.0, 1.0);
}

} // namespace vekview
