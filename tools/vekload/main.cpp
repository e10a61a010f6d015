// vekload: loads CAD and mesh files into the veksg data model, as a viewer would, and
// reports what each load made of them.
#include <cstdio>
#include <exception>
#include <filesystem>
#include <functional>
#include <iostream>
#include <string>
#include <vector>

#include "Analyses.h"
#include "Check.h"
#include "DrawingOutput.h"
#include "Isolation.h"
#include "JsonReport.h"
#include "Legend.h"
#include "Loader.h"
#include "Options.h"
#include "PmiDraw.h"
#include "Png.h"
#include "ProgressBar.h"
#include "Render.h"
#include "Report.h"
#include "Save.h"
#include "TextReport.h"

namespace {
constexpr const char* sampleName = "flanged-bolt (built-in sample)";

void drawPicture(const vekhost::Document& document, const vekload::Options& options,
                 const vekload::AnalysisRun& analyses) {
    vekload::RenderOptions picture;
    picture.width = options.width;
    picture.height = options.height;
    picture.view = options.view;
    picture.timed = options.timed;
    picture.time = options.time;
    vekload::addPmi(picture, document, options.pmiView);
    vekload::writePng(options.png, analyses.colours
                                       ? vekload::renderAnalysis(document, picture, analyses.mesh,
                                                                 *analyses.colours)
                                       : vekload::render(document, picture));
}

vekhost::LoadOptions reportingTo(vekhost::Progress& progress, vekhost::LoadOptions options) {
    options.progress = &progress;
    return options;
}

// A picture that cannot be written fails its file like a load does.
vekload::FileReport loadAndDescribe(const std::string& label,
                                    const std::function<vekhost::LoadResult()>& load,
                                    const vekload::Options& options) {
    try {
        vekhost::LoadResult result = load();
        vekhost::LoadOptions reference;
        reference.deflection = options.deflection;
        const vekload::AnalysisRun analyses =
            vekload::runAnalyses(result, options.analyses, reference);
        if (!options.png.empty()) drawPicture(*result.document, options, analyses);
        vekload::DrawingWork drawing;
        if (!options.drawing.empty()) drawing = vekload::makeDrawing(result, label, options);
        vekload::ReportSection saved;
        if (!options.save.empty())
            saved = vekload::saveDocument(*result.document, options.save, options.saveLevel);
        vekhost::CheckResult consistency;
        if (options.check) consistency = vekhost::checkDocument(*result.document);
        vekload::FileReport report =
            vekload::describe(label, result, options.check ? &consistency : nullptr);
        vekload::ReportSection section =
            vekload::drawingSection(result, options.drawing.empty() ? nullptr : &drawing);
        if (!section.key.empty()) report.sections.push_back(std::move(section));
        if (!options.save.empty()) report.sections.push_back(std::move(saved));
        if (analyses.section) report.sections.push_back(*analyses.section);
        return report;
    } catch (const std::exception& error) {
        vekload::FileReport report;
        report.file = label;
        report.error = error.what();
        return report;
    }
}
using Job = std::pair<std::string, std::function<vekhost::LoadResult()>>;

// A load per file, or the sample without files. Each draws its own progress bar, which
// clears its line when the load is over.
std::vector<Job> jobsOf(const vekload::Options& options) {
    vekhost::LoadOptions load;
    load.deflection = options.deflection;
    const bool terminal = vekload::stderrIsTerminal();
    std::vector<Job> jobs;
    if (options.files.empty())
        jobs.emplace_back(sampleName, [load, terminal] {
            vekload::ProgressBar bar("sample", terminal);
            return vekhost::loadSample(reportingTo(bar, load));
        });
    for (const std::string& file : options.files)
        jobs.emplace_back(file, [load, terminal, file] {
            vekload::ProgressBar bar(std::filesystem::path(file).filename().string(), terminal);
            return vekhost::loadFile(file, reportingTo(bar, load));
        });
    return jobs;
}
} // namespace

int main(int argc, char** argv) {
    vekload::Options options;
    try {
        options = vekload::parseOptions(argc, argv);
    } catch (const std::invalid_argument& error) {
        std::fprintf(stderr, "vekload: %s\n%s", error.what(), vekload::usage());
        return 2;
    }
    if (options.help) {
        std::fputs(vekload::usage(), stdout);
        return 0;
    }

    const std::vector<Job> jobs = jobsOf(options);
    std::vector<vekload::FileReport> reports;
    int printed = 0;
    bool loadFailed = false;
    bool checkFailed = false;
    for (const auto& [label, job] : jobs) {
        auto work = [&, label = label, job = job] { return loadAndDescribe(label, job, options); };
        vekload::FileReport report =
            options.isolate ? vekload::runIsolated(label, work, options.timeout) : work();
        if (!report.ok) {
            std::fprintf(stderr, "vekload: %s: %s\n", label.c_str(), report.error.c_str());
            loadFailed = true;
        } else {
            checkFailed = checkFailed || (report.checked && !report.check.ok());
            if (!options.json) {
                if (printed++ > 0) std::cout << '\n';
                vekload::printText(std::cout, report);
                std::cout.flush();
            }
        }
        reports.push_back(std::move(report));
    }
    if (options.json) vekload::printJson(std::cout, reports);
    return loadFailed ? 1 : checkFailed ? 3 : 0;
}
