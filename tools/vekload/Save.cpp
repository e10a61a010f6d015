#include "Save.h"

#include "SnapshotFile.h"
#include "Text.h"

namespace vekload {

ReportSection saveDocument(vekhost::Document& document, const std::string& path, int level) {
    const double start = vekhost::seconds();
    const veksg::io::WriteReport written = vekhost::saveSnapshot(document, path, level);
    const double took = vekhost::seconds() - start;
    constexpr double kibi = 1024;
    ReportSection section;
    section.key = "saved";
    section.label = "saved";
    section.lines.push_back(path + ": " + formatNumber(double(written.fileBytes) / kibi) +
                            " KiB from " + formatNumber(double(written.tableBytes) / kibi) +
                            " KiB of tables, " + formatNumber(took * 1000) + " ms");
    section.lines.push_back(std::to_string(written.chunks) + " chunks, " +
                            std::to_string(written.sharedObjects) + " shared objects, " +
                            std::to_string(written.hostObjects) + " host objects left out");
    section.json = "{\"file\": \"" + vekhost::jsonEscape(path) +
                   "\", \"bytes\": " + std::to_string(written.fileBytes) +
                   ", \"tableBytes\": " + std::to_string(written.tableBytes) +
                   ", \"seconds\": " + formatNumber(took) +
                   ", \"chunks\": " + std::to_string(written.chunks) +
                   ", \"sharedObjects\": " + std::to_string(written.sharedObjects) +
                   ", \"hostObjects\": " + std::to_string(written.hostObjects) +
                   ", \"replacedCharacters\": " + std::to_string(written.replacedCharacters) + "}";
    return section;
}

} // namespace vekload
