#pragma once

#include <atomic>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

#include "Loader.h"

namespace vekview {

/// What vekload calls the built-in sample in its reports and errors.
extern const char* const sampleLabel;

/// Loads `path`, or the built-in sample when it is empty, through the host library as
/// vekload does; throws vekhost::LoadError with the cause.
vekhost::LoadResult loadModel(const std::string& path, double deflection,
                              vekhost::Progress* progress = nullptr);
/// The name of a load in messages: the path, or the sample's label.
std::string labelOf(const std::string& path);

/// A load on a thread of its own, so that the window keeps drawing and shows how far it
/// has come. Its progress may be read from any thread.
class BackgroundLoad : private vekhost::Progress {
public:
    BackgroundLoad(std::string path, double deflection);
    /// Waits for the load to end.
    ~BackgroundLoad() override;
    BackgroundLoad(const BackgroundLoad&) = delete;
    BackgroundLoad& operator=(const BackgroundLoad&) = delete;

    bool finished() const { return done.load(); }
    /// The phase running and how far it is, 0 to 1.
    std::string phaseName() const;
    double fraction() const { return progress.load(); }
    const std::string& path() const { return file; }
    /// After `finished`: the load, or throws the LoadError it ended in.
    vekhost::LoadResult take();

private:
    void phase(const char* name) override;
    void update(double fraction) override;

    std::string file;
    std::atomic<bool> done{false};
    std::atomic<double> progress{0};
    mutable std::mutex guard;
    std::string running;
    std::optional<vekhost::LoadResult> result;
    std::string error;
    std::thread worker;
};

} // namespace vekview
