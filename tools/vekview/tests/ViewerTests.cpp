#include "ViewerTests.h"

#include <sys/wait.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

#include "Png.h"
#include "TestFiles.h"
#include "Window.h"

namespace vekview::test {

const std::string& noDisplay() {
    static const std::string reason = [] {
        try {
            const Window probe(8, 8, false, "probe");
            return std::string();
        } catch (const DisplayError& error) {
            return std::string(error.what());
        }
    }();
    return reason;
}

std::string scratch(const std::string& name) {
    return vekhost::test::scratchDirectory() + "/" + name;
}

namespace {
std::string slurp(const std::string& path) {
    std::ifstream in(path);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

Outcome execute(std::string command) {
    command += " >'" + scratch("out.txt") + "' 2>'" + scratch("err.txt") + "'";
    const int status = std::system(command.c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, slurp(scratch("out.txt")),
            slurp(scratch("err.txt"))};
}
} // namespace

Outcome runVekview(const std::vector<std::string>& args) {
#ifdef VEKVIEW_PRELOAD
    std::string command = std::string("LD_PRELOAD='") + VEKVIEW_PRELOAD + "' ";
#else
    std::string command;
#endif
    command += std::string("'") + VEKVIEW_EXECUTABLE + "'";
    for (const std::string& arg : args)
        command += " '" + arg + "'";
    return execute(command);
}

Outcome runScript(const std::vector<std::string>& lines, const std::vector<std::string>& files) {
    const std::string script = scratch("script.txt");
    std::ofstream text(script);
    for (const std::string& line : lines)
        text << line << '\n';
    text.close();
    std::vector<std::string> args = {"--script", script};
    args.insert(args.end(), files.begin(), files.end());
    return runVekview(args);
}

Outcome runVekload(const std::string& file, int view, int width, int height,
                   const std::string& png) {
    std::string command = std::string("'") + VEKLOAD_EXECUTABLE + "' --png '" + png + "' --view " +
                          std::to_string(view) + " --size " + std::to_string(width) + "x" +
                          std::to_string(height);
    if (!file.empty()) command += " '" + file + "'";
    return execute(command);
}

vekload::Image picture(const std::string& path) {
    return vekload::readPng(path);
}

Mask covered(const vekload::Image& image) {
    Mask mask;
    for (int y = 0; y < image.height; ++y)
        for (int x = 0; x < image.width; ++x)
            mask.push_back(image.covered(x, y));
    return mask;
}

Mask changed(const vekload::Image& a, const vekload::Image& b) {
    Mask mask(a.rgba.size() / 4);
    for (std::size_t i = 0; i < mask.size() && 4 * i + 3 < b.rgba.size(); ++i)
        for (std::size_t c = 0; c < 4; ++c)
            mask[i] = mask[i] || a.rgba[4 * i + c] != b.rgba[4 * i + c];
    return mask;
}

int count(const Mask& mask) {
    int n = 0;
    for (const bool on : mask)
        n += on ? 1 : 0;
    return n;
}

double iou(const Mask& a, const Mask& b) {
    int both = 0;
    int either = 0;
    for (std::size_t i = 0; i < a.size() && i < b.size(); ++i) {
        both += a[i] && b[i] ? 1 : 0;
        either += a[i] || b[i] ? 1 : 0;
    }
    return either == 0 ? 1.0 : static_cast<double>(both) / either;
}

} // namespace vekview::test
