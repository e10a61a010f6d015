#include "Script.h"

#include <epoxy/gl.h>

#include <cerrno>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <map>
#include <memory>
#include <ostream>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "Analyses.h"
#include "Interface.h"
#include "Loading.h"
#include "Session.h"
#include "Text.h"
#include "Window.h"

namespace vekview {

namespace {
constexpr double degrees = 0.017453292519943295;
constexpr int largestSide = 8192;

/// A bad line: its message becomes "vekview: SCRIPT:LINE: message", exit status 2.
class BadLine : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// A file that fails: "vekview: FILE: cause", exit status 1.
class FileFailure : public std::runtime_error {
public:
    FileFailure(const std::string& file, const std::string& cause)
        : std::runtime_error(file + ": " + cause) {}
};

struct Command {
    int line = 0;
    std::string name;
    std::vector<double> numbers;
    /// The rest of the line after the name, for paths, names and nodes.
    std::string text;
};

// What each command takes: numbers (with their range), or text.
struct Syntax {
    int numbers = 0;
    double low = 0;
    double high = 0;
    bool integers = false;
    bool text = false;
};

const std::map<std::string, Syntax>& syntaxes() {
    static const std::map<std::string, Syntax> table = {
        {"open", {0, 0, 0, false, true}},
        {"size", {2, 1, largestSide, true, false}},
        {"view", {1, 0, 6, true, false}},
        {"fit", {0, 0, 0, false, false}},
        {"hide", {0, 0, 0, false, true}},
        {"show", {0, 0, 0, false, true}},
        {"select", {0, 0, 0, false, true}},
        {"annotation", {0, 0, 0, false, true}},
        {"holes", {0, 0, 0, false, false}},
        {"draft", {3, -1e300, 1e300, false, false}},
        {"thickness", {0, 0, 0, false, false}},
        {"pick", {2, 0, largestSide - 1, true, false}},
        {"section", {4, -1e300, 1e300, false, false}},
        {"measure", {4, 0, largestSide - 1, true, false}},
        {"save-view", {0, 0, 0, false, true}},
        {"restore-view", {0, 0, 0, false, true}},
        {"screenshot", {0, 0, 0, false, true}},
        {"capture", {0, 0, 0, false, true}},
        {"frames", {1, 1, 100000, true, false}},
        {"stats", {0, 0, 0, false, false}},
        {"orbit", {2, -1e6, 1e6, false, false}},
        {"projection", {0, 0, 0, false, true}},
    };
    return table;
}

std::string trimmed(const std::string& text) {
    const auto begin = text.find_first_not_of(" \t\r");
    if (begin == std::string::npos) return {};
    return text.substr(begin, text.find_last_not_of(" \t\r") - begin + 1);
}

std::string join(const std::vector<std::string>& words, std::size_t from) {
    std::string out;
    for (std::size_t i = from; i < words.size(); ++i)
        out += (i > from ? " " : "") + words[i];
    return out;
}

Command parse(const std::string& rawLine, int line) {
    std::istringstream split(rawLine);
    std::vector<std::string> words;
    for (std::string word; split >> word;)
        words.push_back(word);
    Command command;
    command.line = line;
    command.name = words.front();
    const auto found = syntaxes().find(command.name);
    if (found == syntaxes().end()) throw BadLine("unknown command '" + command.name + "'");
    const Syntax& syntax = found->second;
    if (syntax.text) {
        // Paths and names keep their inner spaces.
        command.text = trimmed(trimmed(rawLine).substr(command.name.size()));
        if (command.text.empty()) throw BadLine(command.name + " needs an argument");
        if (command.name == "projection" && command.text != "orthographic" &&
            command.text != "perspective")
            throw BadLine("projection is orthographic or perspective");
        return command;
    }
    if (command.name == "section" && words.size() == 2 && words[1] == "off") return command;
    if (static_cast<int>(words.size()) - 1 != syntax.numbers)
        throw BadLine(command.name + " takes " + std::to_string(syntax.numbers) + " number" +
                      (syntax.numbers == 1 ? "" : "s") + ", not '" + join(words, 1) + "'");
    for (std::size_t i = 1; i < words.size(); ++i) {
        const char* start = words[i].c_str();
        char* end = nullptr;
        errno = 0;
        const double value = std::strtod(start, &end);
        if (*end != '\0' || errno != 0 || !std::isfinite(value) ||
            (syntax.integers && value != std::floor(value)))
            throw BadLine(command.name + ": '" + words[i] + "' is not a" +
                          (syntax.integers ? " whole number" : " number"));
        if (value < syntax.low || value > syntax.high)
            throw BadLine(command.name + ": " + words[i] + " is out of range");
        command.numbers.push_back(value);
    }
    if (command.name == "section" && command.numbers[0] == 0 && command.numbers[1] == 0 &&
        command.numbers[2] == 0)
        throw BadLine("section needs a normal that is not zero");
    return command;
}

std::vector<Command> readScript(const std::string& path) {
    std::ifstream in(path);
    if (!in) throw FileFailure(path, std::string("cannot read: ") + std::strerror(errno));
    std::vector<Command> commands;
    std::string text;
    for (int line = 1; std::getline(in, text); ++line) {
        const std::string content = trimmed(text.substr(0, text.find('#')));
        if (content.empty()) continue;
        try {
            commands.push_back(parse(content, line));
        } catch (const BadLine& error) {
            throw BadLine(path + ":" + std::to_string(line) + ": " + error.what());
        }
    }
    return commands;
}

// Carries the commands out on a hidden window.
class Runner {
public:
    Runner(const Options& options, std::ostream& out, std::ostream& err)
        : options(options), out(out), err(err) {}

    void run(const Command& c) {
        const std::string& n = c.name;
        if (n == "size") {
            session.resize(whole(c, 0), whole(c, 1));
        } else if (n == "open") {
            open(c.text);
        } else if (n == "projection") {
            model().camera().orthographic = c.text == "orthographic";
        } else if (n == "view") {
            if (!model().preset(whole(c, 0))) throw BadLine("the document holds no such view");
        } else if (n == "fit") {
            model().fit();
        } else if (n == "orbit") {
            model().camera().orbit(c.numbers[0] * degrees, c.numbers[1] * degrees);
        } else if (n == "hide" || n == "show") {
            model().setNodeShown(node(c.text), n == "show");
        } else if (n == "select") {
            model().selection().select(nodeKeys, node(c.text));
            session.selectionChanged();
        } else if (n == "annotation") {
            model().selection().selectAnnotation(annotation(c.text));
            session.selectionChanged();
        } else if (n == "holes" || n == "draft" || n == "thickness") {
            analyse(c);
        } else if (n == "pick") {
            pick(c);
        } else if (n == "section") {
            SectionPlane plane;
            plane.active = !c.numbers.empty();
            if (plane.active) {
                plane.normal = normalized({c.numbers[0], c.numbers[1], c.numbers[2]});
                plane.offset = c.numbers[3] / length({c.numbers[0], c.numbers[1], c.numbers[2]});
            }
            model().setSection(plane);
        } else if (n == "measure") {
            measure(c);
        } else if (n == "save-view") {
            model().views().saveView(vekhost::wideFromUtf8(c.text));
        } else if (n == "restore-view") {
            if (!model().views().restoreView(vekhost::wideFromUtf8(c.text)))
                throw BadLine("no saved view '" + c.text + "'");
        } else if (n == "screenshot") {
            write(c.text, model().screenshot());
        } else if (n == "capture") {
            capture(c.text);
        } else if (n == "frames") {
            frames(whole(c, 0));
        } else if (n == "stats") {
            stats();
        }
    }

private:
    static int whole(const Command& c, std::size_t i) { return static_cast<int>(c.numbers[i]); }

    void ensureWindow() {
        if (!window)
            window = std::make_unique<Window>(session.width(), session.height(), false, "vekview");
    }

    void open(const std::string& path) {
        vekhost::LoadResult loaded;
        try {
            loaded = loadModel(path, options.deflection);
        } catch (const std::exception& error) {
            throw FileFailure(labelOf(path), error.what());
        }
        ensureWindow();
        session.show(std::move(loaded), labelOf(path));
        for (const std::string& warning : session.gpu().warnings)
            err << "vekview: " << warning << '\n';
    }

    // The model the commands act on: the first FILE, or the sample, until `open`.
    Session& model() {
        if (!session.hasModel())
            open(options.files.empty() ? std::string() : options.files.front());
        return session;
    }

    int node(const std::string& text) {
        const veksg::SCSceneTopo& topo = *model().document().topo;
        char* end = nullptr;
        const long key = std::strtol(text.c_str(), &end, 10);
        if (*end == '\0' && key >= 0 && key < topo.nodes.size()) return static_cast<int>(key);
        const std::wstring name = vekhost::wideFromUtf8(text);
        for (int k = 0; k < topo.nodes.size(); ++k)
            if (name == topo.nodes.getValue(k).name()) return k;
        throw BadLine("no node '" + text + "'");
    }

    int annotation(const std::string& text) {
        const veksg::SCPmi& pmi = *model().document().pmi;
        const std::wstring name = vekhost::wideFromUtf8(text);
        for (int k = 0; k < pmi.pmis.size(); ++k)
            if (pmi.pmis.getValue(k) && name == pmi.pmis.getValue(k)->name()) return k;
        throw BadLine("no annotation '" + text + "'");
    }

    void inside(int x, int y) const {
        if (x >= session.width() || y >= session.height())
            throw BadLine(std::to_string(x) + " " + std::to_string(y) + " lies outside the " +
                          std::to_string(session.width()) + "x" + std::to_string(session.height()) +
                          " view");
    }

    // Each analysis prints one line and selects what it found: every hole, the faces of
    // insufficient draft, the face of the thinnest wall.
    void analyse(const Command& c) {
        if (!model().model().shapes) throw BadLine("analyses need a CAD file");
        Analyses analyses(model());
        out << c.name << ":";
        if (c.name == "holes") {
            std::vector<int> faces;
            const std::size_t found = analyses.findHoles();
            const auto& records = model().document().holeInfo->holeRecords;
            for (std::size_t i = 0; i < found; ++i) {
                out << (i ? ", " : " ") << vekhost::utf8FromWide(records[i].name);
                const std::vector<int> steps = analyses.holeFaces(i);
                faces.insert(faces.end(), steps.begin(), steps.end());
            }
            out << (found == 0 ? " none\n" : "\n");
            analyses.select(faces);
        } else if (c.name == "draft") {
            analyses.draft({c.numbers[0], c.numbers[1], c.numbers[2]});
            for (const auto kind : {vekhost::DraftClass::positive, vekhost::DraftClass::negative,
                                    vekhost::DraftClass::insufficient, vekhost::DraftClass::mixed})
                out << ' ' << vekhost::draftClassName(kind) << ' ' << analyses.facesOf(kind).size();
            out << '\n';
            analyses.select(analyses.facesOf(vekhost::DraftClass::insufficient));
        } else if (!analyses.thickness()) {
            out << " no wall\n";
        } else {
            out << " thinnest " << analyses.thinnest() << " thickest " << analyses.thickest()
                << " face " << analyses.thinnestFace() << '\n';
            analyses.select({analyses.thinnestFace()});
        }
    }

    void pick(const Command& c) {
        const int x = whole(c, 0);
        const int y = whole(c, 1);
        inside(x, y);
        const Pick hit = model().select(x, y);
        out << "pick " << x << ' ' << y << ": ";
        if (hit.hit)
            out << "face " << hit.face << " node " << hit.node << '\n';
        else
            out << "nothing\n";
    }

    void measure(const Command& c) {
        Session& s = model();
        for (std::size_t i = 0; i < 4; i += 2)
            inside(whole(c, i), whole(c, i + 1));
        s.measurement().setMode(MeasureMode::Points);
        const Pick first = s.pick(whole(c, 0), whole(c, 1));
        const Pick second = s.pick(whole(c, 2), whole(c, 3));
        out << "measure " << whole(c, 0) << ' ' << whole(c, 1) << ' ' << whole(c, 2) << ' '
            << whole(c, 3) << ": ";
        if (!first.hit || !second.hit) {
            out << "nothing\n";
            return;
        }
        s.measurement().add(first);
        const auto result = s.measurement().add(second);
        char text[64];
        std::snprintf(text, sizeof text, "%.6g", result ? result->value : 0.0);
        out << text << '\n';
    }

    void frames(int count) {
        Session& s = model();
        ColorTarget target;
        target.resize(s.width(), s.height());
        target.bind();
        s.draw();
        glFinish();
        double total = 0;
        for (int i = 0; i < count; ++i) {
            const auto start = std::chrono::steady_clock::now();
            s.draw();
            glFinish();
            total +=
                std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        }
        glBindFramebuffer(GL_FRAMEBUFFER, 0);
        char text[64];
        std::snprintf(text, sizeof text, "%.3f", total / count * 1000);
        out << "frames " << count << ": " << text << " ms\n";
    }

    // What a frame of the view draws, and what showing the model took.
    void stats() {
        Session& s = model();
        ColorTarget target;
        target.resize(s.width(), s.height());
        target.bind();
        const auto start = std::chrono::steady_clock::now();
        const FrameStats frame = s.draw();
        glFinish();
        const double took =
            std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        glBindFramebuffer(GL_FRAMEBUFFER, 0);
        char text[200];
        std::snprintf(text, sizeof text,
                      "stats: triangles %lld, line segments %lld, draw calls %d, frame %.1f ms, "
                      "load %.1f ms, upload %.1f ms\n",
                      frame.triangles, frame.lineSegments, frame.drawCalls, took * 1000,
                      s.model().times.total() * 1000, s.uploadSeconds() * 1000);
        out << text;
    }

    // The view with the panels over it, as the window shows it.
    void capture(const std::string& path) {
        Session& s = model();
        if (!ui) ui = std::make_unique<Interface>(window->handle(), s);
        ColorTarget target;
        target.resize(s.width(), s.height());
        target.bind();
        // The panels settle their sizes over the first frames.
        for (int frame = 0; frame < 3; ++frame) {
            const auto start = std::chrono::steady_clock::now();
            ui->begin(s.width(), s.height());
            ui->context().stats = s.draw();
            ui->panels();
            ui->end();
            glFinish();
            ui->context().frameSeconds =
                std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        }
        Image image = target.read();
        glBindFramebuffer(GL_FRAMEBUFFER, 0);
        // A window shows no background through; the picture should not either.
        for (std::size_t alpha = 3; alpha < image.rgba.size(); alpha += 4)
            image.rgba[alpha] = 255;
        write(path, image);
    }

    static void write(const std::string& path, const Image& image) {
        try {
            writePng(path, image);
        } catch (const std::exception& error) {
            throw FileFailure(path, error.what());
        }
    }

    const Options& options;
    std::ostream& out;
    std::ostream& err;
    std::unique_ptr<Window> window;
    Session session;
    std::unique_ptr<Interface> ui;
};
} // namespace

int runScript(const Options& options, std::ostream& out, std::ostream& err) {
    std::vector<Command> commands;
    try {
        if (options.files.size() > 1) throw BadLine("--script takes one FILE at most");
        commands = readScript(options.script);
    } catch (const BadLine& error) {
        err << "vekview: " << error.what() << '\n';
        return 2;
    } catch (const FileFailure& error) {
        err << "vekview: " << error.what() << '\n';
        return 2;
    }
    const Command* current = nullptr;
    try {
        Runner runner(options, out, err);
        for (const Command& command : commands) {
            current = &command;
            runner.run(command);
            out.flush();
        }
    } catch (const BadLine& error) {
        err << "vekview: " << options.script << ':' << current->line << ": " << error.what()
            << '\n';
        return 2;
    } catch (const FileFailure& error) {
        err << "vekview: " << error.what() << '\n';
        return 1;
    } catch (const DisplayError& error) {
        err << "vekview: " << error.what() << '\n';
        return 1;
    } catch (const std::exception& error) {
        err << "vekview: " << options.script << ':' << (current ? current->line : 0) << ": "
            << error.what() << '\n';
        return 1;
    }
    return 0;
}

} // namespace vekview
