// Sections that features add to a file's report: carried by the worker, printed last.
#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "Builder.h"
#include "JsonReport.h"
#include "RecordsReport.h"
#include "Report.h"
#include "TextReport.h"
#include "Wire.h"

namespace vekload::test {
namespace {

bool endsWith(const std::string& text, const std::string& end) {
    return text.size() >= end.size() &&
           text.compare(text.size() - end.size(), end.size(), end) == 0;
}

TEST(ReportSections, TravelFromTheWorkerAndFollowEverythingElseInBothPrinters) {
    FileReport report;
    report.file = "part.step";
    report.ok = true;
    report.format = "STEP";
    report.checked = true;
    report.check.references = 3;
    // Tabs, line breaks and backslashes are the wire format's own separators.
    report.sections = {{"holes",
                        "{\"count\": 2,\n    \"note\": \"a\\tb\"}",
                        "holes",
                        {"2 through holes", "diameters\t6, 8"}},
                       {"documentInfo", "[]", "document info", {"author unknown"}}};

    const FileReport back = deserialize(serialize(report));
    ASSERT_EQ(back.sections.size(), 2U);
    for (std::size_t i = 0; i < 2; ++i) {
        EXPECT_EQ(back.sections[i].key, report.sections[i].key);
        EXPECT_EQ(back.sections[i].json, report.sections[i].json);
        EXPECT_EQ(back.sections[i].label, report.sections[i].label);
        EXPECT_EQ(back.sections[i].lines, report.sections[i].lines);
    }

    std::ostringstream text;
    printText(text, back);
    EXPECT_TRUE(endsWith(text.str(), "  check    3 references, all consistent\n"
                                     "  holes    2 through holes\n"
                                     "           diameters\t6, 8\n"
                                     "  document info author unknown\n"))
        << text.str();

    std::ostringstream json;
    printJson(json, {back});
    EXPECT_TRUE(
        endsWith(json.str(), "\"problems\": []},\n   \"holes\": " + report.sections[0].json +
                                 ",\n   \"documentInfo\": []}\n]}\n"))
        << json.str();
}

// The document's own attributes, not its nodes'; the animation's span; each external file and
// a warning for the one that is missing.
TEST(ReportSections, TellTheDocumentsRecords) {
    vekhost::Document doc;
    vekhost::DocumentBuilder builder(doc);
    vekhost::SourceInfo info;
    info.unit = vekhost::MILLIMETRE;
    info.fileUnit = vekhost::INCH;
    info.attributes = {{L"author", L"Ann"}};
    info.files = {{L"/nowhere/a.png", vekhost::roles::texture, false}};
    builder.setInfo(info);
    builder.addNode(L"part", -1, vekhost::Matrix());
    builder.setAnimation({{40, 1000}, {0}, {vekhost::Matrix(), vekhost::Matrix()}});
    builder.complete();

    const std::vector<ReportSection> sections = recordSections(doc, nullptr);
    ASSERT_EQ(sections.size(), 4U);
    EXPECT_EQ(sections[0].json, "{\"unit\": \"mm\", \"fileUnit\": \"in\", \"tolerance\": 0.001, "
                                "\"entities\": 0, \"roots\": -1, \"animations\": 0, "
                                "\"attributes\": [{\"key\": \"author\", \"value\": \"Ann\"}]}");
    EXPECT_EQ(sections[0].lines, (std::vector<std::string>{
                                     "unit mm, file unit in, tolerance 0.001", "author: Ann"}));
    EXPECT_EQ(sections[1].json, "{\"keys\": 2, \"start\": 40, \"end\": 1000, \"nodes\": 1}");
    EXPECT_EQ(sections[2].lines, (std::vector<std::string>{"texture /nowhere/a.png (missing)"}));
    EXPECT_EQ(sections[3].json, "[\"missing texture: /nowhere/a.png\"]");
}

} // namespace
} // namespace vekload::test
