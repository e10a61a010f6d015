#include "ProgressBar.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <utility>

namespace vekload {

bool stderrIsTerminal() {
    return isatty(STDERR_FILENO) == 1;
}

ProgressBar::ProgressBar(std::string label, bool enabled)
    : label(std::move(label)), enabled(enabled) {
}

ProgressBar::~ProgressBar() {
    // Leaves the line empty for whatever is printed next.
    if (enabled && shown >= 0) std::fputs("\r\033[K", stderr);
}

void ProgressBar::phase(const char* name) {
    phaseName = name;
    percent = 0;
    draw();
}

void ProgressBar::update(double fraction) {
    const int now = static_cast<int>(std::clamp(fraction, 0.0, 1.0) * 100.0);
    if (now == percent && shown >= 0) return;
    percent = now;
    draw();
}

void ProgressBar::draw() {
    if (!enabled) return;
    constexpr int width = 30;
    const int filled = percent * width / 100;
    char bar[width + 1];
    for (int i = 0; i < width; ++i)
        bar[i] = i < filled ? '#' : '.';
    bar[width] = '\0';
    std::fprintf(stderr, "\r\033[K%s [%s] %3d%% %s", label.c_str(), bar, percent, phaseName);
    std::fflush(stderr);
    shown = percent;
}

} // namespace vekload
