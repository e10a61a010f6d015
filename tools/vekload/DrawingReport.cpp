#include <type_traits>

#include "DrawingOutput.h"
#include "ProjectedSheet.h"
#include "Text.h"
#include "veksg/Tables.h"

namespace vekload {

namespace {
// Tables iterate; the settings beside them (a colour tuple has a size too) do not.
template <typename T, typename = void>
struct isTable : std::false_type {};
template <typename T>
struct isTable<T, std::void_t<decltype(std::declval<const T&>().begin())>> : std::true_type {};
} // namespace

ReportSection drawingSection(const vekhost::LoadResult& result, const DrawingWork* work) {
    const vek2d::SCScene2D& drawing = *result.document->drawing;
    ReportSection section;
    if (drawing.sheets.empty() && result.notHeld.empty()) return section;
    section.key = "drawing";
    section.label = "drawing";
    // Every table of the component by the catalogue, the empty ones in JSON only.
    std::string tables;
    std::string counts;
    veksg::forEachTable(drawing, [&](const veksg::TableInfo& info, const auto& member) {
        using Member = std::remove_const_t<std::remove_reference_t<decltype(member)>>;
        if constexpr (isTable<Member>::value) {
            const auto size = static_cast<long long>(member.size());
            tables += std::string(tables.empty() ? "" : ", ") + '"' + info.name +
                      "\": " + std::to_string(size);
            if (size > 0)
                counts += std::string(counts.empty() ? "" : ", ") + info.name + ' ' +
                          std::to_string(size);
        }
    });
    section.json = "{\"tables\": {" + tables + "}, \"notHeld\": {";
    section.lines.push_back(counts.empty() ? std::string("no records") : counts);
    std::string notHeld;
    for (const auto& [kind, count] : result.notHeld) {
        section.json += std::string(notHeld.empty() ? "" : ", ") + '"' + vekhost::jsonEscape(kind) +
                        "\": " + std::to_string(count);
        notHeld += (notHeld.empty() ? "" : ", ") + kind + ' ' + std::to_string(count);
    }
    section.json += "}";
    if (!notHeld.empty()) section.lines.push_back("not held: " + notHeld);
    if (work && !work->hiddenLines.empty()) {
        section.json += ", \"projection\": {\"hiddenLines\": \"" + work->hiddenLines +
                        "\", \"scale\": " + formatNumber(work->scale) +
                        ", \"seconds\": " + formatNumber(work->projectSeconds) + "}";
        section.lines.push_back("views projected with " + work->hiddenLines + " hidden lines in " +
                                formatNumber(work->projectSeconds) + " s, scale " +
                                vekhost::scaleText(work->scale));
    }
    if (work) {
        section.json += ", \"drawSeconds\": " + formatNumber(work->drawSeconds);
        section.lines.push_back("sheet drawn in " + formatNumber(work->drawSeconds) + " s");
    }
    section.json += "}";
    return section;
}

} // namespace vekload
