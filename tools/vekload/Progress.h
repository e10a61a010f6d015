#pragma once

#include <string>

namespace vekload {

/// A one-line progress bar on stderr, drawn only when stderr is a terminal and only when
/// the shown percentage changes.
class ProgressBar {
public:
    /// `enabled` false makes every call a no-op.
    ProgressBar(std::string label, bool enabled);
    ~ProgressBar();
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    /// Names the running phase; the fraction restarts at zero.
    void phase(const char* name);
    /// `fraction` of the running phase done, 0 to 1.
    void update(double fraction);

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
