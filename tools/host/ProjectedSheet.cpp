#include "ProjectedSheet.h"

#include <BRep_Builder.hxx>
#include <TopoDS_Compound.hxx>

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "Flatten.h"

namespace vekhost {

using drawing::Affine;
using drawing::HAlign;
using drawing::VAlign;

namespace {
// An A3 sheet in landscape, its frame 10 mm in from the edge and the title block in the
// frame's lower right corner; the views share what the frame leaves above the block.
constexpr double paperWidth = 420;
constexpr double paperHeight = 297;
constexpr double border = 10;
constexpr double blockWidth = 180;
constexpr double blockHeight = 28;
constexpr double viewsLeft = border + 5;
constexpr double viewsBottom = border + blockHeight + 5;
constexpr double viewsWidth = paperWidth - 2 * viewsLeft;
constexpr double viewsHeight = paperHeight - border - 5 - viewsBottom;
// Between views, and below each for its name.
constexpr double gap = 15;
constexpr double labelHeight = 3.5;
constexpr double labelRoom = 8;

enum View { Front, Top, Right, Iso, viewCount };
const wchar_t* const viewNames[viewCount] = {L"Front", L"Top", L"Right", L"Isometric"};

// Each direction points from the part to the eye; Z is up in the world.
gp_Ax2 axesOf(View view) {
    switch (view) {
    case Front:
        return {gp::Origin(), gp_Dir(0, -1, 0), gp_Dir(1, 0, 0)};
    case Top:
        return {gp::Origin(), gp_Dir(0, 0, 1), gp_Dir(1, 0, 0)};
    case Right:
        return {gp::Origin(), gp_Dir(1, 0, 0), gp_Dir(0, 1, 0)};
    default:
        return {gp::Origin(), gp_Dir(-1, -1, 1), gp_Dir(1, -1, 0)};
    }
}

double width(const ProjectedView& v) {
    return v.box[2] - v.box[0];
}
double height(const ProjectedView& v) {
    return v.box[3] - v.box[1];
}

// The views in a grid: the column and row of front, top, right and isometric view.
struct Cell {
    int column;
    int row;
};
struct Grid {
    const Cell* cells;
    int columns;
    int rows;
};
// Third angle: top above front, right to the right of front, the isometric view above it.
constexpr Cell thirdAngle[viewCount] = {{0, 1}, {0, 0}, {1, 1}, {1, 0}};
// First angle: top below front, right to the left of front, the isometric view beside them.
constexpr Cell firstAngle[viewCount] = {{1, 0}, {1, 1}, {0, 0}, {2, 0}};

Grid gridOf(ProjectionAngle angle) {
    return angle == ProjectionAngle::Third ? Grid{thirdAngle, 2, 2} : Grid{firstAngle, 3, 2};
}

struct Layout {
    double columnWidth[3] = {};
    double rowHeight[2] = {};
    double width = 0;
    double height = 0;
};

Layout layoutAt(const Grid& g, const ProjectedView* views, double scale) {
    Layout l;
    for (int v = 0; v < viewCount; ++v) {
        double& w = l.columnWidth[g.cells[v].column];
        double& h = l.rowHeight[g.cells[v].row];
        w = std::max(w, width(views[v]) * scale);
        h = std::max(h, height(views[v]) * scale + labelRoom);
    }
    for (int c = 0; c < g.columns; ++c)
        l.width += l.columnWidth[c] + (c > 0 ? gap : 0);
    for (int r = 0; r < g.rows; ++r)
        l.height += l.rowHeight[r] + (r > 0 ? gap : 0);
    return l;
}

// 5000:1 down to 1:1000000 in steps of 1, 2, 5; the largest at which the views fit.
double chooseScale(const Grid& g, const ProjectedView* views) {
    for (int exponent = 3; exponent >= -6; --exponent)
        for (const double mantissa : {5.0, 2.0, 1.0}) {
            const double scale = mantissa * std::pow(10.0, exponent);
            const Layout l = layoutAt(g, views, scale);
            if (l.width <= viewsWidth && l.height <= viewsHeight) return scale;
        }
    return 1e-6;
}

class SheetWriter {
public:
    SheetWriter(vek2d::SCScene2D& drawing, const SheetOptions& sheetOptions)
        : b(drawing, flatten::relativeTolerance), options(sheetOptions) {
        sheet = b.addSheet(options.title.empty() ? L"Projected views" : options.title, true,
                           veksg::Color4(1, 1, 1, 1));
        b.setPaper(sheet, {0, 0}, {paperWidth, paperHeight});
        visible = b.addLayer(L"visible", false);
        hidden = b.addLayer(L"hidden", false);
        tangent = b.addLayer(L"tangent", false);
        notes = b.addLayer(L"annotation", false);
        black = b.color(veksg::Color4(0, 0, 0, 1));
        font = b.font(L"sans-serif", L"", 0, false);
    }

    void view(const ProjectedView& projected, const wchar_t* name, bool showsHidden,
              const Affine& placement, Point2 labelAt) {
        const int key = b.addView(sheet, name, showsHidden);
        for (const ProjectedEdge& edge : projected.edges) {
            Pen pen = penFor(edge.line);
            pen.view = key;
            pen.placement = placement;
            if (edge.isEllipse)
                b.addEllipse(pen, edge.center, edge.axis0, edge.axis1, edge.start, edge.end);
            else
                b.addPolyline(pen, edge.points, false);
        }
        Pen label = annotation(key, 25);
        b.addText(label, font, name,
                  Affine::translation(labelAt[0], labelAt[1]) * Affine::scaling(labelHeight),
                  HAlign::Center, VAlign::Top);
    }

    void titleBlock(double scale) {
        const int key = b.addView(sheet, L"Title block", false);
        const Pen heavy = annotation(key, 70);
        const Pen thin = annotation(key, 25);
        const double left = paperWidth - border - blockWidth;
        const double middle = border + blockHeight / 2;
        b.addPolyline(heavy,
                      {{border, border},
                       {paperWidth - border, border},
                       {paperWidth - border, paperHeight - border},
                       {border, paperHeight - border}},
                      true);
        b.addPolyline(heavy,
                      {{left, border},
                       {left, border + blockHeight},
                       {paperWidth - border, border + blockHeight}},
                      false);
        b.addPolyline(thin, {{left, middle}, {paperWidth - border, middle}}, false);
        const double cell = blockWidth / 3;
        for (int i = 1; i < 3; ++i)
            b.addPolyline(thin, {{left + i * cell, border}, {left + i * cell, middle}}, false);
        field(thin, left, middle, L"Title", options.title, 5);
        const std::string scaleName = scaleText(scale);
        field(thin, left, border, L"Scale", std::wstring(scaleName.begin(), scaleName.end()), 3.5);
        field(thin, left + cell, border, L"Date", options.date, 3.5);
        field(thin, left + 2 * cell, border, L"Projection",
              options.angle == ProjectionAngle::First ? L"first angle" : L"third angle", 3.5);
    }

    void finish() { b.finish(); }

private:
    Pen annotation(int view, int weight) const {
        Pen pen;
        pen.view = view;
        pen.layer = notes;
        pen.color = black;
        pen.weight = weight;
        return pen;
    }

    Pen penFor(ProjectedEdge::Line line) const {
        Pen pen;
        pen.color = black;
        switch (line) {
        case ProjectedEdge::Line::Visible:
            pen.layer = visible;
            pen.weight = 50;
            break;
        case ProjectedEdge::Line::Smooth:
            pen.layer = tangent;
            pen.weight = 18;
            break;
        case ProjectedEdge::Line::Hidden:
            pen.layer = hidden;
            pen.weight = 25;
            pen.pattern = drawing::Pattern::Hidden;
            break;
        }
        return pen;
    }

    // A small caption in the cell's upper left corner, the value below it.
    void field(const Pen& pen, double x, double y, const wchar_t* caption,
               const std::wstring& value, double size) {
        const double top = y + blockHeight / 2;
        b.addText(pen, font, caption, Affine::translation(x + 1.5, top - 1.5) * Affine::scaling(2),
                  HAlign::Left, VAlign::Top);
        if (!value.empty())
            b.addText(pen, font, value, Affine::translation(x + 3, y + 3) * Affine::scaling(size),
                      HAlign::Left, VAlign::Baseline);
    }

    DrawingBuilder b;
    const SheetOptions& options;
    int sheet = 0;
    int visible = 0;
    int hidden = 0;
    int tangent = 0;
    int notes = 0;
    int black = 0;
    int font = 0;
};
} // namespace

std::string scaleText(double scale) {
    char text[48];
    if (scale >= 1)
        std::snprintf(text, sizeof text, "%.0f:1", scale);
    else
        std::snprintf(text, sizeof text, "1:%.0f", 1 / scale);
    return text;
}

double projectSheet(const TopoDS_Shape& shape, vek2d::SCScene2D& drawing,
                    const SheetOptions& options) {
    ProjectedView views[viewCount];
    for (int v = 0; v < viewCount; ++v) {
        if (options.progress) {
            options.progress->phase("projecting");
            options.progress->update(static_cast<double>(v) / viewCount);
        }
        views[v] = projectShape(shape, axesOf(static_cast<View>(v)), options.method, v != Iso);
    }
    const Grid grid = gridOf(options.angle);
    const double scale = chooseScale(grid, views);
    const Layout layout = layoutAt(grid, views, scale);
    // The grid centred in the space above the title block, each view centred in its cell.
    double columnLeft[3] = {};
    double rowTop[2] = {};
    double x = viewsLeft + (viewsWidth - layout.width) / 2;
    for (int c = 0; c < grid.columns; ++c) {
        columnLeft[c] = x;
        x += layout.columnWidth[c] + gap;
    }
    double y = viewsBottom + viewsHeight - (viewsHeight - layout.height) / 2;
    for (int r = 0; r < grid.rows; ++r) {
        rowTop[r] = y;
        y -= layout.rowHeight[r] + gap;
    }
    SheetWriter writer(drawing, options);
    for (int v = 0; v < viewCount; ++v) {
        const ProjectedView& view = views[v];
        const Cell& cell = grid.cells[v];
        const double cx = columnLeft[cell.column] + layout.columnWidth[cell.column] / 2;
        const double cy = rowTop[cell.row] - (layout.rowHeight[cell.row] - labelRoom) / 2;
        const Affine placement =
            Affine::translation(cx, cy) * Affine::scaling(scale) *
            Affine::translation(-(view.box[0] + view.box[2]) / 2, -(view.box[1] + view.box[3]) / 2);
        writer.view(view, viewNames[v], v != Iso, placement,
                    {cx, cy - height(view) * scale / 2 - 2});
    }
    writer.titleBlock(scale);
    writer.finish();
    drawing.scale = static_cast<float>(scale);
    return scale;
}

TopoDS_Shape rootShape(const Document& document, const CadShapes& shapes) {
    TopoDS_Compound all;
    BRep_Builder builder;
    builder.MakeCompound(all);
    const auto& parents = document.topo->nodeRefs1;
    for (int node = 0; node < shapes.nodeCount(); ++node)
        if (node >= parents.size() || parents.getValue(node) < 0)
            builder.Add(all, shapes.node(node));
    return all;
}

} // namespace vekhost
