// The check must catch what it claims to: each case breaks one cross-reference of a loaded
// sample and expects the check to name the table it broke.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <ostream>
#include <string>

#include "Check.h"
#include "Loader.h"
#include "PointCloud.h"

namespace vekhost::test {
namespace {

struct Damage {
    const char* name;
    const char* table;
    std::function<void(Document&)> apply;
};

const Damage damages[] = {
    {"face_lists_a_missing_edge", "faceLists2",
     [](Document& d) { d.topo->faceLists2.begin()[0].push_back(d.topo->edges.size()); }},
    {"edge_forgets_a_face", "edgeLists3",
     [](Document& d) {
         auto& faces = d.topo->edgeLists3.begin()[0];
         faces.erase(faces.begin());
     }},
    {"child_names_another_parent", "nodeRefs1",
     [](Document& d) { d.topo->nodeRefs1.setValue(2, 1); }},
    {"scene_tree_adopts_a_stranger", "hierarchy",
     [](Document& d) { d.scene->hierarchy.addChild(1, 3); }},
    {"scene_tree_loses_a_child", "hierarchy",
     [](Document& d) { d.scene->hierarchy.removeChild(0, 2, true); }},
    {"primitive_past_its_mesh", "primitivesA",
     [](Document& d) { d.resources->primitivesA.begin()[3].count += 3000000; }},
    {"primitive_splits_a_triangle", "primitivesA",
     [](Document& d) { d.resources->primitivesA.begin()[0].first += 1; }},
    {"polyline_range_negative", "primitivesB",
     [](Document& d) { d.resources->primitivesB.begin()[0].first = -2; }},
    {"primitive_in_a_mesh_its_node_does_not_draw", "primitivesA",
     [](Document& d) { d.resources->primALinks1.setValue(0, 1); }},
    {"side_table_short_of_its_key_space", "faceRefs1",
     [](Document& d) { d.topo->faceRefs1 = veksg::Container<int, int>(); }},
    {"visibility_set_off_its_range", "visibility.sets[3]",
     [](Document& d) { d.runtime->visibility.sets[3].push_back(true); }},
    {"entity_id_not_its_key", "vertices", [](Document& d) { d.topo->vertices.begin()[4].id = 9; }},
    {"mesh_missing", "meshes", [](Document& d) { d.scene->meshes.setValue(1, nullptr); }},
    {"layer_link_to_no_node", "links8", [](Document& d) { d.scene->links8.setValue(0, 99); }},
    {"animation_short_of_placements", "SCAnimation.transforms",
     [](Document& d) {
         d.topo->nodeRefs2.setValue(1, 0);
         d.animation->keys = {0, 40};
     }},
    {"two_nodes_in_one_column", "nodeRefs2",
     [](Document& d) {
         d.topo->nodeRefs2.setValue(1, 0);
         d.topo->nodeRefs2.setValue(2, 0);
         d.animation->keys = {0};
         d.animation->transforms.resize(1);
     }},
    {"columns_out_of_node_order", "out of node order",
     [](Document& d) {
         d.topo->nodeRefs2.setValue(1, 1);
         d.topo->nodeRefs2.setValue(2, 0);
         d.animation->keys = {0};
         d.animation->transforms.assign(2, veksg::Transform());
         for (auto& t : d.animation->transforms)
             t.valid = true;
     }},
    {"file_index_to_no_file", "SCExtFile.fileIndices",
     [](Document& d) { d.extFiles->fileIndices.insert(0, {0}, {}); }},
    {"points_past_their_buffer", "primitivesC",
     [](Document& d) {
         auto buffer = std::make_shared<veksg::VertexInfo>();
         buffer->stride = 3;
         buffer->count = 2;
         buffer->data.reset(new float[6]());
         addPointPrimitive(*d.resources, 1, addVertexBuffer(*d.resources, buffer), {});
         d.resources->primitivesC.begin()[0].count = 3;
     }},
    {"buffer_forgets_its_points", "vertexLists",
     [](Document& d) {
         auto buffer = std::make_shared<veksg::VertexInfo>();
         buffer->stride = 3;
         addPointPrimitive(*d.resources, 1, addVertexBuffer(*d.resources, buffer), {});
         d.resources->vertexLists.begin()[0].clear();
     }},
};

// Names the case in test listings instead of dumping its bytes.
void PrintTo(const Damage& file, std::ostream* out) {
    *out << file.name;
}

class DamagedDocument : public testing::TestWithParam<Damage> {};

TEST_P(DamagedDocument, IsReportedAtTheBrokenTable) {
    const LoadResult result = loadSample(LoadOptions());
    ASSERT_TRUE(checkDocument(*result.document).ok());
    GetParam().apply(*result.document);
    const CheckResult check = checkDocument(*result.document);
    ASSERT_FALSE(check.ok());
    bool named = false;
    for (const std::string& problem : check.problems)
        named = named || problem.find(GetParam().table) != std::string::npos;
    EXPECT_TRUE(named) << "first problem: " << check.problems.front();
}

INSTANTIATE_TEST_SUITE_P(Cases, DamagedDocument, testing::ValuesIn(damages),
                         [](const testing::TestParamInfo<Damage>& info) {
                             return std::string(info.param.name);
                         });

} // namespace
} // namespace vekhost::test
