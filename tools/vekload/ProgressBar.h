#pragma once

#include <string>

#include "Progress.h"

namespace vekload {

/// A one-line progress bar on stderr, drawn only when stderr is a terminal and only when
/// the shown percentage changes.
class ProgressBar : public vekhost::Progress {
public:
    /// `enabled` false makes every call a no-op.
    ProgressBar(std::string label, bool enabled);
    ~ProgressBar() override;

    void phase(const char* name) override;
    void update(double fraction) override;

private:
    void draw();

    std::string label;
    const char* phaseName = "";
    int shown = -1;
    int percent = 0;
    bool enabled;
};

/// Whether stderr is a terminal.
bool stderrIsTerminal();

} // namespace vekload
