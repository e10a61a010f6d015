// Projected views of a part whose drawing is known: a 40 x 30 x 20 block with a hole of
// diameter 10 through it along Z.
#include <BRepAlgoAPI_Cut.hxx>
#include <BRepPrimAPI_MakeBox.hxx>
#include <BRepPrimAPI_MakeCylinder.hxx>
#include <gtest/gtest.h>

#include <cmath>

#include "Check.h"
#include "DrawingCheck.h"
#include "ProjectedSheet.h"

namespace vekhost::test {
namespace {

using Line = ProjectedEdge::Line;

TopoDS_Shape blockWithHole() {
    const TopoDS_Shape block = BRepPrimAPI_MakeBox(gp_Pnt(10, 20, 30), 40, 30, 20).Shape();
    const TopoDS_Shape pin =
        BRepPrimAPI_MakeCylinder(gp_Ax2(gp_Pnt(30, 35, 20), gp::DZ()), 5, 40).Shape();
    return BRepAlgoAPI_Cut(block, pin).Shape();
}

struct Tally {
    int visibleLines = 0;
    int hiddenLines = 0;
    std::vector<double> radii;
    std::vector<Line> ellipseLines;
};

Tally tally(const ProjectedView& view) {
    Tally t;
    for (const ProjectedEdge& edge : view.edges) {
        if (edge.isEllipse) {
            t.radii.push_back(std::hypot(edge.axis0[0], edge.axis0[1]));
            t.ellipseLines.push_back(edge.line);
            EXPECT_NEAR(edge.end - edge.start, 2 * drawing::pi, 1e-9);
        } else {
            (edge.line == Line::Hidden ? t.hiddenLines : t.visibleLines) += 1;
        }
    }
    return t;
}

TEST(Projection, ViewsOfABlockWithAHoleHaveTheirKnownEdges) {
    const TopoDS_Shape part = blockWithHole();
    const gp_Ax2 front(gp::Origin(), gp_Dir(0, -1, 0), gp_Dir(1, 0, 0));
    const gp_Ax2 top(gp::Origin(), gp_Dir(0, 0, 1), gp_Dir(1, 0, 0));
    const gp_Ax2 right(gp::Origin(), gp_Dir(1, 0, 0), gp_Dir(0, 1, 0));

    // Front and right: the outline, and the hole's two sides dashed (its rims, seen edge-on,
    // lie on the outline and are left out).
    for (const gp_Ax2& side : {front, right}) {
        const ProjectedView view = projectShape(part, side, HiddenLines::Exact, true);
        const Tally t = tally(view);
        EXPECT_EQ(t.visibleLines, 4);
        EXPECT_EQ(t.hiddenLines, 2);
        EXPECT_TRUE(t.radii.empty());
    }
    // Top: the outline and the hole as one circle of radius 5, exact; its lower rim lies
    // under it.
    const ProjectedView above = projectShape(part, top, HiddenLines::Exact, true);
    const Tally t = tally(above);
    EXPECT_EQ(t.visibleLines, 4);
    EXPECT_EQ(t.hiddenLines, 0);
    ASSERT_EQ(t.radii.size(), 1U);
    EXPECT_NEAR(t.radii[0], 5, 1e-9);
    EXPECT_EQ(t.ellipseLines[0], Line::Visible);
    EXPECT_NEAR(above.box[2] - above.box[0], 40, 1e-6);
    EXPECT_NEAR(above.box[3] - above.box[1], 30, 1e-6);

    // Without hidden lines asked for, none; the polygonal method has no circles.
    EXPECT_EQ(tally(projectShape(part, front, HiddenLines::Exact, false)).hiddenLines, 0);
    const Tally polygonal = tally(projectShape(part, top, HiddenLines::Polygonal, true));
    EXPECT_TRUE(polygonal.radii.empty());
}

// A cylinder's seam joins its face to itself: no edge of a drawing, seen from the side.
TEST(Projection, SeamsAreNoEdges) {
    const TopoDS_Shape pin =
        BRepPrimAPI_MakeCylinder(gp_Ax2(gp::Origin(), gp::DZ()), 5, 20).Shape();
    const gp_Ax2 right(gp::Origin(), gp_Dir(1, 0, 0), gp_Dir(0, 1, 0));
    const ProjectedView view = projectShape(pin, right, HiddenLines::Exact, true);
    for (const ProjectedEdge& edge : view.edges) {
        double widest = 0;
        for (const Point2& p : edge.points)
            widest = std::max(widest, std::fabs(p[0]));
        EXPECT_GT(widest, 1) << "a line through the middle";
    }
}

// The centre of a view's box on the sheet.
std::array<double, 2> centreOf(const vek2d::SCScene2D& d, const wchar_t* name) {
    for (const vek2d::View& v : d.views)
        if (v.name == name)
            return {(v.point0[0] + v.point1[0]) / 2, (v.point0[1] + v.point1[1]) / 2};
    ADD_FAILURE() << "no view";
    return {0, 0};
}

TEST(Projection, SheetPlacesViewsByProjectionAngleAtAStandardScale) {
    const TopoDS_Shape part = blockWithHole();
    for (const ProjectionAngle angle : {ProjectionAngle::First, ProjectionAngle::Third}) {
        vek2d::SCScene2D d;
        SheetOptions options;
        options.angle = angle;
        options.title = L"block.step";
        const double scale = projectSheet(part, d, options);
        // The views of a 40 mm block fit an A3 sheet at 2:1, not at 5:1.
        EXPECT_EQ(scale, 2);
        EXPECT_EQ(d.scale, 2.0f);
        CheckResult check;
        checkDrawing(d, check);
        EXPECT_TRUE(check.ok()) << check.problems.front();
        ASSERT_EQ(d.views.size(), 5U);
        const auto front = centreOf(d, L"Front");
        const auto top = centreOf(d, L"Top");
        const auto right = centreOf(d, L"Right");
        const bool first = angle == ProjectionAngle::First;
        EXPECT_NEAR(top[0], front[0], 1e-3);
        EXPECT_EQ(top[1] < front[1], first);
        EXPECT_EQ(right[0] < front[0], first);
        // The hole at 2:1: a circle of radius 10 on paper, drawn exactly.
        int circles = 0;
        for (const vek2d::Entity& e : d.entities)
            if (drawing::kindOf(e.style) == drawing::Kind::Ellipse) {
                const auto& ellipse = d.ellipses[static_cast<std::size_t>(e.value2)];
                const auto axis = drawing::Affine::fromMatrix(e.matrix).applyVector(
                    ellipse.axis0[0], ellipse.axis0[1]);
                circles += std::fabs(std::hypot(axis[0], axis[1]) - 10) < 1e-4 ? 1 : 0;
            }
        EXPECT_GE(circles, 1);
        // The title block says the scale and the projection.
        std::wstring all;
        for (const veksg::Text& text : d.texts)
            all += text.text + L"|";
        EXPECT_NE(all.find(L"2:1|"), std::wstring::npos);
        EXPECT_NE(all.find(first ? L"first angle" : L"third angle"), std::wstring::npos);
    }
}

} // namespace
} // namespace vekhost::test
