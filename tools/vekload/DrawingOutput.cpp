#include "DrawingOutput.h"

#include <ctime>
#include <filesystem>
#include <stdexcept>

#include "DrawingRender.h"
#include "ProgressBar.h"
#include "ProjectedSheet.h"
#include "Text.h"

namespace vekload {

namespace {
std::wstring today() {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    char text[16];
    std::strftime(text, sizeof text, "%Y-%m-%d", &local);
    return vekhost::wideFromUtf8(text);
}
} // namespace

DrawingWork makeDrawing(vekhost::LoadResult& result, const std::string& label,
                        const Options& options) {
    DrawingWork work;
    vek2d::SCScene2D& drawing = *result.document->drawing;
    if (result.shapes) {
        vekhost::SheetOptions sheet;
        sheet.method =
            options.polygonalHidden ? vekhost::HiddenLines::Polygonal : vekhost::HiddenLines::Exact;
        sheet.angle =
            options.thirdAngle ? vekhost::ProjectionAngle::Third : vekhost::ProjectionAngle::First;
        sheet.title = vekhost::wideFromUtf8(std::filesystem::path(label).filename().string());
        sheet.date = today();
        ProgressBar bar(std::filesystem::path(label).filename().string(), stderrIsTerminal());
        sheet.progress = &bar;
        const double start = vekhost::seconds();
        work.scale = vekhost::projectSheet(vekhost::rootShape(*result.document, *result.shapes),
                                           drawing, sheet);
        work.projectSeconds = vekhost::seconds() - start;
        work.hiddenLines = options.polygonalHidden ? "polygonal" : "exact";
    } else if (drawing.sheets.empty()) {
        throw std::runtime_error("no drawing to write: the file holds neither a drawing nor a "
                                 "B-rep to project views of");
    }
    vekhost::SheetPicture picture;
    if (options.sized) {
        picture.width = options.width;
        picture.height = options.height;
    }
    const double start = vekhost::seconds();
    vekhost::drawSheet(drawing, options.drawing, picture);
    work.drawSeconds = vekhost::seconds() - start;
    return work;
}

} // namespace vekload
