// Sections that features add to a file's report: carried by the worker, printed last.
#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "JsonReport.h"
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

} // namespace
} // namespace vekload::test
