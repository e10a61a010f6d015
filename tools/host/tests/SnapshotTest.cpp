// Snapshots of loaded documents: what a reopen gives back is the document that was saved,
// and it passes the check.
#include <gtest/gtest.h>

#include <string>

#include "Check.h"
#include "SnapshotFile.h"
#include "SnapshotTest.h"
#include "TestFiles.h"
#include "io/SameTables.h"

namespace vekhost::test {

void expectSameAfterSnapshot(Document& document) {
    const std::string path = scratchDirectory() + "/reopened.vks";
    saveSnapshot(document, path);
    const LoadResult reopened = loadFile(path, LoadOptions());
    EXPECT_EQ(reopened.format, "snapshot");
    ASSERT_EQ(reopened.times.named.size(), 4u);
    const auto written = document.components();
    const auto read = reopened.document->components();
    veksg::test::SameTables same;
    for (std::size_t i = 0; i < written.size(); ++i)
        same.component(*written[i], *read[i]);
    same.table(document.layers, reopened.document->layers, "Document.layers");
    for (const std::string& problem : same.problems)
        ADD_FAILURE() << problem;
    const CheckResult check = checkDocument(*reopened.document);
    EXPECT_TRUE(check.ok()) << (check.problems.empty() ? "" : check.problems.front());
}

namespace {
TEST(Snapshots, OfTheSampleReopenAsTheDocumentThatWasSaved) {
    const LoadResult sample = loadSample(LoadOptions());
    expectSameAfterSnapshot(*sample.document);
}
} // namespace

} // namespace vekhost::test
