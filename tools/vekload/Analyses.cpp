#include "Analyses.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <sstream>
#include <stdexcept>

#include "Comparison.h"
#include "Draft.h"
#include "Holes.h"
#include "Text.h"
#include "Thickness.h"

namespace vekload {

namespace {
// JSON has no NaN; an undefined value is null.
std::string number(double value) {
    return std::isfinite(value) ? formatNumber(value) : "null";
}

void draftPart(vekhost::Document& document, const AnalysisRequest& request, AnalysisRun& run,
               std::ostringstream& json) {
    vekhost::analyseDraft(document, run.mesh, {request.pull, request.draftMinimum});
    const veksg::SCDraftAngleAnalysis& draft = *document.draft;
    int counts[5] = {};
    double low = std::numeric_limits<double>::infinity();
    double high = -low;
    json << "\"draft\": [";
    const char* separator = "";
    for (std::size_t face = 0; face < draft.rangesA.size(); ++face) {
        const auto kind = static_cast<vekhost::DraftClass>(draft.codes[face]);
        ++counts[draft.codes[face] + 1];
        if (kind == vekhost::DraftClass::none) continue;
        const veksg::DraftRange& range = draft.rangesA[face];
        low = std::min<double>(low, range.from);
        high = std::max<double>(high, range.to);
        json << separator << "{\"key\": " << face << ", \"min\": " << number(range.from)
             << ", \"max\": " << number(range.to) << ", \"class\": \""
             << vekhost::draftClassName(kind) << "\"}";
        separator = ", ";
    }
    json << ']';
    std::ostringstream line;
    line << "draft along (" << formatNumber(request.pull[0]) << ", "
         << formatNumber(request.pull[1]) << ", " << formatNumber(request.pull[2]) << "), minimum "
         << formatNumber(request.draftMinimum) << " degrees: " << counts[2] << " positive, "
         << counts[0] << " negative, " << counts[1] << " insufficient, " << counts[3]
         << " mixed faces";
    if (low <= high) line << "; from " << formatNumber(low) << " to " << formatNumber(high);
    run.section->lines.push_back(line.str());
    // The ramp is centred on zero so that its middle colour means "no draft".
    const double reach = std::max(request.draftMinimum * 2, 10.0);
    run.colours = AnalysisColours{"draft (degrees)", draft.anglesA, -reach, reach};
}
void thicknessPart(vekhost::Document& document, const AnalysisRequest& request,
                   const vekhost::RayScene& scene, AnalysisRun& run, std::ostringstream& json) {
    vekhost::analyseThickness(document, run.mesh, scene, {request.thicknessMinimum});
    const veksg::SCThicknessAnalysis& thickness = *document.thickness;
    const auto valueAt = [&](int index) {
        return index < 0 ? std::numeric_limits<double>::quiet_NaN()
                         : thickness.thicknesses[static_cast<std::size_t>(index)];
    };
    const double low = valueAt(thickness.index0);
    const double high = valueAt(thickness.index1);
    json << "\"thickness\": {\"min\": " << number(low) << ", \"max\": " << number(high)
         << ", \"below\": " << thickness.value0 << '}';
    std::ostringstream line;
    line << "thickness: " << thickness.value2 << " vertices measured";
    if (thickness.index0 >= 0)
        line << ", from " << formatNumber(low) << " at face " << thickness.index2 << " to "
             << formatNumber(high);
    if (request.thicknessMinimum > 0)
        line << ", " << thickness.value0 << " under " << formatNumber(request.thicknessMinimum);
    if (thickness.value1 > 0) line << ", " << thickness.value1 << " without an opposite wall";
    run.section->lines.push_back(line.str());
    std::vector<float> values = thickness.thicknesses;
    for (float& value : values)
        if (value < 0) value = std::numeric_limits<float>::quiet_NaN();
    // Thin is red. With a minimum the ramp ends at three times it, so that the walls near it
    // stand out from the rest.
    const double thick = request.thicknessMinimum > 0 ? 3 * request.thicknessMinimum : high;
    if (thickness.index0 >= 0)
        run.colours = AnalysisColours{"thickness", std::move(values), thick,
                                      request.thicknessMinimum > 0 ? 0.0 : low};
}

void comparePart(vekhost::Document& document, const AnalysisRequest& request,
                 const vekhost::LoadOptions& load, AnalysisRun& run, std::ostringstream& json) {
    // The file's line of error names the file; the cause names the reference.
    vekhost::LoadResult reference;
    try {
        reference = vekhost::loadFile(request.compare, load);
    } catch (const std::exception& error) {
        throw std::runtime_error("reference " + request.compare + ": " + error.what());
    }
    const vekhost::PlacedMesh referenceMesh = vekhost::PlacedMesh::of(*reference.document);
    if (referenceMesh.points.empty())
        throw std::runtime_error("--compare: " + request.compare +
                                 " has no surface to compare with");
    const vekhost::RayScene scene(referenceMesh);
    vekhost::ComparisonResult result =
        vekhost::compareWith(document, run.mesh, scene, vekhost::wideFromUtf8(request.compare));
    json << "\"compare\": {\"min\": " << number(result.min) << ", \"max\": " << number(result.max)
         << ", \"mean\": " << number(result.mean) << ", \"rms\": " << number(result.rms) << '}';
    run.section->lines.push_back("compared with " + request.compare + ": from " +
                                 formatNumber(result.min) + " to " + formatNumber(result.max) +
                                 ", mean " + formatNumber(result.mean) + ", rms " +
                                 formatNumber(result.rms));
    // Symmetric about zero, so that the middle colour means "where the reference is".
    const double reach = std::max({std::fabs(result.min), std::fabs(result.max), 1e-12});
    run.colours = AnalysisColours{"distance to " + request.compare, std::move(result.distances),
                                  -reach, reach};
}

std::string triple(const vekhost::Vec3& v) {
    return '[' + number(v[0]) + ", " + number(v[1]) + ", " + number(v[2]) + ']';
}

void holesPart(const vekhost::LoadResult& loaded, AnalysisRun& run, std::ostringstream& json) {
    json << "\"holes\": [";
    if (!loaded.shapes) {
        json << ']';
        run.section->lines.push_back("holes: none, a mesh file has no B-rep to find them in");
        return;
    }
    const std::vector<vekhost::HoleFound> holes =
        vekhost::findHoles(*loaded.document, *loaded.shapes);
    const char* separator = "";
    int through = 0;
    for (const vekhost::HoleFound& hole : holes) {
        json << separator << "{\"diameter\": " << number(hole.diameter)
             << ", \"depth\": " << number(hole.depth)
             << ", \"through\": " << (hole.through ? "true" : "false")
             << ", \"axis\": " << triple(hole.axis) << ", \"origin\": " << triple(hole.entry)
             << '}';
        separator = ", ";
        through += hole.through ? 1 : 0;
    }
    json << ']';
    run.section->lines.push_back("holes: " + std::to_string(holes.size()) + ", " +
                                 std::to_string(through) + " through");
    // One line per kind of hole: its name and how many there are.
    const veksg::SCHoleInfo& info = *loaded.document->holeInfo;
    std::vector<std::pair<std::wstring, int>> kinds;
    for (const veksg::HoleRecord& record : info.holeRecords) {
        auto same = std::find_if(kinds.begin(), kinds.end(),
                                 [&](const auto& kind) { return kind.first == record.name; });
        if (same == kinds.end())
            kinds.emplace_back(record.name, 1);
        else
            ++same->second;
    }
    for (const auto& [name, count] : kinds)
        run.section->lines.push_back("  " + std::to_string(count) + " x " +
                                     vekhost::utf8FromWide(name));
    // The holes' faces by diameter; the rest of the part grey.
    if (holes.empty()) return;
    std::vector<float> values(run.mesh.points.size(), std::numeric_limits<float>::quiet_NaN());
    double low = holes.front().diameter, high = low;
    for (const vekhost::HoleFound& hole : holes) {
        low = std::min(low, hole.diameter);
        high = std::max(high, hole.diameter);
        for (const int face : hole.faces) {
            if (face < 0 || static_cast<std::size_t>(face) >= run.mesh.ranges.size()) continue;
            const vekhost::PlacedMesh::Range& range =
                run.mesh.ranges[static_cast<std::size_t>(face)];
            std::fill_n(values.begin() + range.first, range.count,
                        static_cast<float>(hole.diameter));
        }
    }
    run.colours = AnalysisColours{"hole diameter", std::move(values), low, high};
}
} // namespace

AnalysisRun runAnalyses(const vekhost::LoadResult& loaded, const AnalysisRequest& request,
                        const vekhost::LoadOptions& load) {
    AnalysisRun run;
    if (!request.any()) return run;
    vekhost::Document& document = *loaded.document;
    run.mesh = vekhost::PlacedMesh::of(document);
    run.section = ReportSection{"analyses", "", "analyses", {}};
    std::ostringstream json;
    json << '{';
    const char* separator = "";
    auto next = [&] {
        json << separator;
        separator = ", ";
    };
    if (request.draft) {
        next();
        draftPart(document, request, run, json);
    }
    if (request.thickness) {
        next();
        const vekhost::RayScene scene(run.mesh);
        thicknessPart(document, request, scene, run, json);
    }
    if (request.holes) {
        next();
        holesPart(loaded, run, json);
    }
    if (!request.compare.empty()) {
        next();
        comparePart(document, request, load, run, json);
    }
    json << '}';
    run.section->json = json.str();
    return run;
}

} // namespace vekload
