#include "DxfReader.h"

#include <dxflib/dl_creationadapter.h>
#include <dxflib/dl_dxf.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <new>
#include <set>

#include "DxfContent.h"
#include "DxfGuard.h"
#include "DxfText.h"
#include "Flatten.h"
#include "LoadError.h"

namespace vekhost {

using drawing::Affine;
using drawing::HAlign;
using drawing::VAlign;

namespace dxf {
std::string upper(std::string text) {
    for (char& c : text)
        c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return text;
}
} // namespace dxf

namespace {
using namespace dxf;

// The kinds the adapter turns into records; every other kind the census finds is reported
// as not held. VERTEX and SEQEND belong to the POLYLINE before them.
const std::set<std::string>& heldKinds() {
    static const std::set<std::string> kinds{"3DFACE", "ARC",    "ATTRIB",   "CIRCLE", "ELLIPSE",
                                             "HATCH",  "INSERT", "LEADER",   "LINE",   "LWPOLYLINE",
                                             "MTEXT",  "POINT",  "POLYLINE", "SEQEND", "SOLID",
                                             "SPLINE", "TEXT",   "TRACE",    "VERTEX"};
    return kinds;
}

double degrees(double value) {
    return value * drawing::pi / 180;
}

// Hatch patterns as families of parallel lines, by name; the standard ISO and ANSI ones
// that are plain line families, and one diagonal family for every other name.
std::vector<HatchLines> patternLines(const std::string& name, double angle, double scale) {
    struct Family {
        const char* name;
        double angles[2];
        int count;
        double spacing;
    };
    static const Family families[] = {
        {"ANSI31", {45, 0}, 1, 3.175},   {"ANSI32", {45, 0}, 1, 9.525 / 2},
        {"ANSI37", {45, 135}, 2, 3.175}, {"NET", {0, 90}, 2, 3.175},
        {"NET3", {0, 60}, 2, 3.175},     {"LINE", {0, 0}, 1, 3.175},
        {"SQUARE", {0, 90}, 2, 3.175},   {"ANGLE", {0, 90}, 2, 6.985},
    };
    const std::string key = upper(name);
    const Family* chosen = &families[0];
    for (const Family& family : families)
        if (key == family.name) chosen = &family;
    std::vector<HatchLines> lines;
    lines.reserve(static_cast<std::size_t>(chosen->count));
    const double s = std::isfinite(scale) && scale > 0 ? scale : 1;
    for (int i = 0; i < chosen->count; ++i)
        lines.push_back({degrees(chosen->angles[i] + angle), chosen->spacing * s});
    return lines;
}

drawing::Pattern classify(const std::string& name, const std::vector<double>& dashes) {
    int strokes = 0;
    int dots = 0;
    for (const double length : dashes) {
        if (length > 0) ++strokes;
        if (length == 0) ++dots;
    }
    if (strokes == 0 && dots == 0) return drawing::Pattern::Solid;
    if (name.find("HIDDEN") != std::string::npos) return drawing::Pattern::Hidden;
    if (strokes == 0) return drawing::Pattern::Dotted;
    if (strokes == 1) return dots == 0 ? drawing::Pattern::Dashed : drawing::Pattern::DashDot;
    if (strokes == 2 && dots == 0) return drawing::Pattern::Center;
    return drawing::Pattern::Phantom;
}

// Takes dxflib's calls into a Content. Bad values are recorded, not thrown through dxflib's
// frames, and the rest of the file is then ignored.
class Adapter : public DL_CreationAdapter {
public:
    Adapter(Content& target, DxfText& decoder) : c(target), text(decoder) {
        c.layers.push_back({});
        c.layers.back().name = "0";
        c.layerNames.push_back(L"0");
        c.layerKeys["0"] = 0;
    }

    const std::string& failure() const { return failed; }

    void finish() {
        endShape();
        for (const auto& [name, dashes] : linetypeDashes)
            c.linetypes[name] = classify(name, dashes);
        c.dashScale =
            (std::isfinite(ltscale) && ltscale > 0 ? ltscale : 1) * (metric ? 1 : 1 / 25.4);
    }

    // The header.
    void setVariableDouble(const std::string& key, double value, int) override {
        if (key == "$LTSCALE") ltscale = value;
    }
    void setVariableInt(const std::string& key, int value, int) override {
        if (key == "$MEASUREMENT") metric = value != 0;
    }

    // Tables.
    void addLayer(const DL_LayerData& data) override {
        if (!failed.empty()) return;
        const DL_Attributes a = getAttributes();
        const std::string key = upper(data.name);
        const auto found = c.layerKeys.find(key);
        const int index = found != c.layerKeys.end() ? found->second : newLayer(data.name);
        Layer& layer = c.layers[static_cast<std::size_t>(index)];
        layer.color = std::abs(a.getColor());
        if (layer.color == 0 || layer.color > 255) layer.color = 7;
        layer.trueColor = a.getColor24();
        layer.linetype = upper(a.getLinetype());
        layer.weight = a.getWidth();
        // A negative colour turns a layer off; flag 1 freezes it.
        layer.hidden = a.getColor() < 0 || (data.flags & 1) != 0;
    }
    // dxflib hands over a line type's dashes before the line type itself.
    void addLinetypeDash(double length) override {
        if (dashes.size() < 64) dashes.push_back(length);
    }
    void addLinetype(const DL_LinetypeData& data) override {
        linetypeDashes.emplace_back(upper(data.name), std::move(dashes));
        dashes.clear();
    }
    void addTextStyle(const DL_StyleData& data) override {
        c.textStyles[upper(data.name)] = {data.primaryFontFile, data.bold, data.italic};
        fixedHeights[upper(data.name)] = data.fixedTextHeight;
    }

    // Blocks.
    void addBlock(const DL_BlockData& data) override {
        if (!failed.empty()) return;
        endShape();
        const std::string key = upper(data.name);
        if (c.blockKeys.count(key) != 0) {
            fail("block '" + data.name + "' is defined twice");
            return;
        }
        c.blockKeys[key] = static_cast<int>(c.blocks.size());
        c.blocks.push_back({data.name, {number(data.bpx), number(data.bpy)}, {}});
        inBlock = static_cast<int>(c.blocks.size()) - 1;
    }
    void endBlock() override {
        endShape();
        inBlock = -1;
    }

    // Entities.
    void addPoint(const DL_PointData& d) override {
        if (start()) add(Polyline{{world(d.x, d.y)}, false});
    }
    void addLine(const DL_LineData& d) override {
        if (start()) add(Polyline{{world(d.x1, d.y1), world(d.x2, d.y2)}, false});
    }
    void addArc(const DL_ArcData& d) override {
        if (!start()) return;
        const double r = length(d.radius);
        add(circle(d.cx, d.cy, d.cz, r, degrees(number(d.angle1)), degrees(number(d.angle2))));
    }
    void addCircle(const DL_CircleData& d) override {
        if (!start()) return;
        add(circle(d.cx, d.cy, d.cz, length(d.radius), 0, 2 * drawing::pi));
    }
    void addEllipse(const DL_EllipseData& d) override {
        if (!start()) return;
        const Point2 major{number(d.mx), number(d.my)};
        const double ratio = number(d.ratio);
        add(Ellipse{world(d.cx, d.cy),
                    major,
                    {-major[1] * ratio, major[0] * ratio},
                    number(d.angle1),
                    number(d.angle2)});
    }
    void addPolyline(const DL_PolylineData& d) override {
        if (!start()) return;
        // Polygon and polyface meshes (flags 16 and 64) are surfaces, not lines.
        if ((d.flags & (16 | 64)) != 0) {
            ++c.notHeld["POLYLINE (mesh)"];
            return;
        }
        open = Open::Polyline;
        style = currentStyle();
        closed = (d.flags & 1) != 0;
        // 3D polylines (flag 8) have their vertices in world coordinates.
        placement = (d.flags & 8) != 0 ? Affine() : ocs(number(d.elevation));
        vertices.clear();
    }
    void addVertex(const DL_VertexData& d) override {
        if (!failed.empty() || open != Open::Polyline) return;
        if (vertices.size() >= pointLimit) return fail("a polyline has too many vertices");
        vertices.push_back({number(d.x), number(d.y), number(d.bulge)});
    }
    void addSpline(const DL_SplineData& d) override {
        if (!start()) return;
        open = Open::Spline;
        style = currentStyle();
        degree = static_cast<int>(std::min(d.degree, 100u));
        closed = (d.flags & 1) != 0;
        vertices.clear();
        knots.clear();
        fitPoints.clear();
    }
    void addControlPoint(const DL_ControlPointData& d) override {
        if (!failed.empty() || open != Open::Spline) return;
        vertices.push_back({number(d.x), number(d.y), number(d.w)});
    }
    void addFitPoint(const DL_FitPointData& d) override {
        if (!failed.empty() || open != Open::Spline) return;
        fitPoints.push_back(world(d.x, d.y));
    }
    void addKnot(const DL_KnotData& d) override {
        if (!failed.empty() || open != Open::Spline) return;
        knots.push_back(number(d.k));
    }
    void addLeader(const DL_LeaderData&) override {
        if (!start()) return;
        open = Open::Leader;
        style = currentStyle();
        vertices.clear();
    }
    void addLeaderVertex(const DL_LeaderVertexData& d) override {
        if (!failed.empty() || open != Open::Leader) return;
        vertices.push_back({number(d.x), number(d.y), 0});
    }
    void addInsert(const DL_InsertData& d) override {
        if (!start()) return;
        Insert insert;
        insert.block = d.name;
        insert.outer = ocs(0) * Affine::translation(number(d.ipx), number(d.ipy)) *
                       Affine::rotation(degrees(number(d.angle)));
        insert.scale = {number(d.sx), 0, 0, number(d.sy), 0, 0};
        insert.columns = std::max(1, d.cols);
        insert.rows = std::max(1, d.rows);
        insert.spacing = {number(d.colSp), number(d.rowSp)};
        add(insert);
    }
    void addTrace(const DL_TraceData& d) override { quad(d.x, d.y); }
    void addSolid(const DL_SolidData& d) override { quad(d.x, d.y); }
    void add3dFace(const DL_3dFaceData& d) override {
        if (!start()) return;
        Polyline outline{{}, true};
        for (int i = 0; i < 4; ++i) {
            const Point2 p = world(d.x[i], d.y[i]);
            if (i < 3 || p != outline.points.back()) outline.points.push_back(p);
        }
        add(outline);
    }
    void addText(const DL_TextData& d) override { singleLine(d); }
    void addAttribute(const DL_AttributeData& d) override { singleLine(d); }
    void addMTextChunk(const std::string& chunk) override {
        if (mtextChunks.size() + chunk.size() <= textLimit) mtextChunks += chunk;
    }
    void addMText(const DL_MTextData& d) override {
        if (!start()) return;
        const std::string raw = mtextChunks + d.text;
        mtextChunks.clear();
        Text t;
        t.text = text.decodeMText(raw);
        t.style = d.style;
        // The direction vector, where given, says more than dxflib's angle from it.
        const double dx = number(d.dirx);
        const double dy = number(d.diry);
        const double angle = dx != 0 || dy != 0 ? std::atan2(dy, dx) : number(d.angle);
        const double h = textHeight(d.height, d.style);
        t.frame = Affine::translation(number(d.ipx), number(d.ipy)) * Affine::rotation(angle) *
                  Affine::scaling(h);
        const int point = std::clamp(d.attachmentPoint, 1, 9) - 1;
        t.h = static_cast<HAlign>(point % 3);
        t.v = point < 3 ? VAlign::Top : point < 6 ? VAlign::Middle : VAlign::Bottom;
        add(std::move(t));
    }
    void addHatch(const DL_HatchData& d) override {
        if (!start()) return;
        open = Open::Hatch;
        style = currentStyle();
        placement = ocs(0);
        hatch = Hatch();
        if (!d.solid) hatch.lines = patternLines(d.pattern, number(d.angle), number(d.scale));
    }
    void addHatchLoop(const DL_HatchLoopData&) override {
        if (!failed.empty() || open != Open::Hatch) return;
        hatch.loops.emplace_back();
    }
    void addHatchEdge(const DL_HatchEdgeData& d) override {
        if (!failed.empty() || open != Open::Hatch || hatch.loops.empty()) return;
        hatchEdge(d, hatch.loops.back());
    }
    void endEntity() override { endShape(); }
    void endSequence() override { endShape(); }

private:
    enum class Open { None, Polyline, Spline, Leader, Hatch };
    static constexpr std::size_t pointLimit = 10'000'000;
    static constexpr std::size_t textLimit = 1'000'000;

    void fail(const std::string& message) {
        if (failed.empty()) failed = message;
        open = Open::None;
    }

    // A finite value within what the records hold; the first that is not fails the file.
    double number(double value) {
        if (!std::isfinite(value) || std::fabs(value) > DrawingBuilder::largestCoordinate) {
            char message[64];
            std::snprintf(message, sizeof message, "value %g is out of range", value);
            fail(message);
            return 0;
        }
        return value;
    }
    double length(double value) { return std::fabs(number(value)); }

    // Entity coordinates (OCS) to the holder's (WCS), dropping the height: the arbitrary
    // axis rule of DXF for the current entity's extrusion.
    Affine ocs(double elevation) {
        double n[3] = {0, 0, 1};
        getExtrusion()->getDirection(n);
        for (double& v : n)
            v = number(v);
        const double norm = std::sqrt(n[0] * n[0] + n[1] * n[1] + n[2] * n[2]);
        if (!(norm > 0) || (n[0] == 0 && n[1] == 0 && n[2] > 0)) return {};
        for (double& v : n)
            v /= norm;
        double ax[3] = {0, 0, 0};
        if (std::fabs(n[0]) < 1.0 / 64 && std::fabs(n[1]) < 1.0 / 64)
            ax[0] = n[2], ax[1] = 0, ax[2] = -n[0]; // world Y x N
        else
            ax[0] = -n[1], ax[1] = n[0], ax[2] = 0; // world Z x N
        const double an = std::sqrt(ax[0] * ax[0] + ax[1] * ax[1] + ax[2] * ax[2]);
        for (double& v : ax)
            v /= an;
        const double ay[3] = {n[1] * ax[2] - n[2] * ax[1], n[2] * ax[0] - n[0] * ax[2],
                              n[0] * ax[1] - n[1] * ax[0]};
        return {ax[0], ax[1], ay[0], ay[1], n[0] * elevation, n[1] * elevation};
    }

    Point2 world(double x, double y) { return {number(x), number(y)}; }

    bool start() {
        if (!failed.empty()) return false;
        endShape();
        return true;
    }

    Style currentStyle() {
        const DL_Attributes a = getAttributes();
        Style s;
        s.layer = a.getLayer();
        s.color = a.getColor();
        s.trueColor = a.getColor24();
        s.linetype = upper(a.getLinetype());
        s.weight = a.getWidth();
        const double scale = a.getLinetypeScale();
        s.dashScale = std::isfinite(scale) && scale > 0 ? scale : 1;
        s.paper = a.isInPaperSpace();
        return s;
    }

    int newLayer(const std::string& name) {
        c.layers.push_back({});
        c.layers.back().name = name;
        c.layerNames.push_back(text.decode(name));
        const int key = static_cast<int>(c.layers.size()) - 1;
        c.layerKeys[upper(name)] = key;
        return key;
    }

    template <typename Geometry>
    void add(Geometry geometry, const Style& shapeStyle) {
        if (!failed.empty()) return;
        if (c.layerKeys.count(upper(shapeStyle.layer)) == 0) newLayer(shapeStyle.layer);
        std::vector<Shape>& into = inBlock >= 0 ? c.blocks[static_cast<std::size_t>(inBlock)].shapes
                                   : shapeStyle.paper ? c.paper
                                                      : c.model;
        into.push_back({shapeStyle, std::move(geometry)});
    }
    template <typename Geometry>
    void add(Geometry geometry) {
        add(std::move(geometry), currentStyle());
    }

    Ellipse circle(double cx, double cy, double cz, double r, double from, double to) {
        const Affine o = ocs(number(cz));
        const auto center = o.apply(number(cx), number(cy));
        const auto a0 = o.applyVector(r, 0);
        const auto a1 = o.applyVector(0, r);
        // An arc runs counter-clockwise from its start to its end angle.
        if (to <= from) to += 2 * drawing::pi;
        return {{center[0], center[1]}, {a0[0], a0[1]}, {a1[0], a1[1]}, from, to};
    }

    void quad(const double* x, const double* y) {
        if (!start()) return;
        const Affine o = ocs(0);
        std::vector<Point2> loop;
        // A SOLID's third and fourth corners are drawn crosswise.
        for (const int i : {0, 1, 3, 2}) {
            const auto p = o.apply(number(x[i]), number(y[i]));
            if (loop.empty() || loop.back() != Point2{p[0], p[1]}) loop.push_back({p[0], p[1]});
        }
        add(Hatch{{loop}, {}});
    }

    double textHeight(double height, const std::string& styleName) {
        const double h = number(height);
        if (h > 0) return h;
        const auto fixed = fixedHeights.find(upper(styleName));
        return fixed != fixedHeights.end() && fixed->second > 0 &&
                       fixed->second <= DrawingBuilder::largestCoordinate
                   ? fixed->second
                   : 2.5;
    }

    void singleLine(const DL_TextData& d) {
        if (!start()) return;
        Text t;
        t.text = text.decode(d.text);
        t.style = d.style;
        const int h = d.hJustification;
        const int v = d.vJustification;
        const Point2 first{number(d.ipx), number(d.ipy)};
        // The second point, when given, anchors any alignment but left on the baseline.
        const bool second = std::isfinite(d.apx) && std::isfinite(d.apy);
        const Point2 other = second ? Point2{number(d.apx), number(d.apy)} : first;
        double angle = number(d.angle);
        double width = number(d.xScaleFactor);
        if (!(width > 0)) width = 1;
        Point2 anchor = (h == 0 && v == 0) || !second ? first : other;
        t.h = h == 1 || h == 4 ? HAlign::Center : h == 2 ? HAlign::Right : HAlign::Left;
        t.v = h == 4 ? VAlign::Middle : static_cast<VAlign>(std::clamp(v, 0, 3));
        // Aligned and fitted text runs from the first point to the second.
        if ((h == 3 || h == 5) && second) {
            anchor = first;
            angle = std::atan2(other[1] - first[1], other[0] - first[0]);
            t.v = VAlign::Baseline;
        }
        const double height = textHeight(d.height, d.style);
        // Generation flags: 2 mirrors in X, 4 upside down.
        const double mx = (d.textGenerationFlags & 2) != 0 ? -1 : 1;
        const double my = (d.textGenerationFlags & 4) != 0 ? -1 : 1;
        t.frame = ocs(0) * Affine::translation(anchor[0], anchor[1]) * Affine::rotation(angle) *
                  Affine{height * width * mx, 0, 0, height * my, 0, 0};
        add(std::move(t));
    }

    void hatchEdge(const DL_HatchEdgeData& d, std::vector<Point2>& loop) {
        auto arc = [&](Point2 center, Point2 a0, Point2 a1, double from, double to, bool ccw) {
            // Clockwise edges give their angles mirrored.
            if (!ccw) {
                from = -from;
                to = -to;
                if (to >= from) to -= 2 * drawing::pi;
            } else if (to <= from) {
                to += 2 * drawing::pi;
            }
            flatten::appendArc(loop, center, a0, a1, from, to, true);
        };
        switch (d.type) {
        case 0: { // a polyline loop, with bulges
            std::vector<std::array<double, 3>> points;
            for (const auto& v : d.vertices)
                if (v.size() >= 2)
                    points.push_back({number(v[0]), number(v[1]), v.size() > 2 ? number(v[2]) : 0});
            appendBulged(loop, points, true);
            break;
        }
        case 1:
            if (loop.empty()) loop.push_back({number(d.x1), number(d.y1)});
            loop.push_back({number(d.x2), number(d.y2)});
            break;
        case 2: {
            const double r = length(d.radius);
            arc({number(d.cx), number(d.cy)}, {r, 0}, {0, r}, number(d.angle1), number(d.angle2),
                d.ccw);
            break;
        }
        case 3: {
            const Point2 major{number(d.mx), number(d.my)};
            const double ratio = number(d.ratio);
            arc({number(d.cx), number(d.cy)}, major, {-major[1] * ratio, major[0] * ratio},
                number(d.angle1), number(d.angle2), d.ccw);
            break;
        }
        case 4: {
            std::vector<Point2> control;
            for (const auto& p : d.controlPoints)
                if (p.size() >= 2) control.push_back({number(p[0]), number(p[1])});
            std::vector<double> k;
            for (const double value : d.knots)
                k.push_back(number(value));
            if (control.empty())
                for (const auto& p : d.fitPoints)
                    if (p.size() >= 2) control.push_back({number(p[0]), number(p[1])});
            const auto points =
                flatten::spline(static_cast<int>(std::min(d.degree, 100u)), k, control, d.weights);
            loop.insert(loop.end(), points.begin(), points.end());
            break;
        }
        default:
            break;
        }
    }

    // Vertices with their bulges (x, y, bulge) as points.
    static void appendBulged(std::vector<Point2>& out,
                             const std::vector<std::array<double, 3>>& points, bool closed) {
        for (std::size_t i = 0; i < points.size(); ++i) {
            const Point2 p{points[i][0], points[i][1]};
            if (i == 0) out.push_back(p);
            const bool last = i + 1 == points.size();
            if (last && !closed) break;
            const auto& next = points[last ? 0 : i + 1];
            flatten::appendBulge(out, p, {next[0], next[1]}, points[i][2]);
        }
        // A closed ring repeats its first point last; the records close it by their flag.
        if (closed && out.size() > 1 && out.back() == out.front()) out.pop_back();
    }

    void endShape() {
        const Open was = open;
        open = Open::None;
        if (!failed.empty()) return;
        switch (was) {
        case Open::Polyline: {
            Polyline line;
            // A closing bulge is drawn by the closed flag: the ring closes itself.
            std::vector<Point2> flat;
            appendBulged(flat, vertices, closed);
            for (const Point2& p : flat) {
                const auto w = placement.apply(p[0], p[1]);
                line.points.push_back({w[0], w[1]});
            }
            line.closed = closed;
            if (!line.points.empty()) add(std::move(line), style);
            break;
        }
        case Open::Spline: {
            std::vector<Point2> control;
            std::vector<double> weights;
            for (const auto& v : vertices) {
                control.push_back({v[0], v[1]});
                weights.push_back(v[2]);
            }
            Polyline line;
            line.closed = false;
            line.points =
                control.empty() ? fitPoints : flatten::spline(degree, knots, control, weights);
            if (line.points.empty())
                ++c.notHeld["SPLINE (no points)"];
            else
                add(std::move(line), style);
            break;
        }
        case Open::Leader: {
            Polyline line;
            for (const auto& v : vertices)
                line.points.push_back({v[0], v[1]});
            if (!line.points.empty()) add(std::move(line), style);
            break;
        }
        case Open::Hatch: {
            Hatch placed;
            placed.lines = std::move(hatch.lines);
            for (auto& loop : hatch.loops) {
                if (loop.size() < 3) continue;
                for (Point2& p : loop) {
                    const auto w = placement.apply(p[0], p[1]);
                    p = {w[0], w[1]};
                }
                placed.loops.push_back(std::move(loop));
            }
            if (placed.loops.empty())
                ++c.notHeld["HATCH (no boundary)"];
            else
                add(std::move(placed), style);
            break;
        }
        case Open::None:
            break;
        }
    }

    Content& c;
    DxfText& text;
    std::string failed;
    int inBlock = -1;
    double ltscale = 1;
    bool metric = true;
    std::vector<std::pair<std::string, std::vector<double>>> linetypeDashes;
    std::vector<double> dashes;
    std::map<std::string, double> fixedHeights;
    std::string mtextChunks;
    // The entity whose parts come in several calls.
    Open open = Open::None;
    Style style;
    bool closed = false;
    int degree = 3;
    Affine placement;
    std::vector<std::array<double, 3>> vertices;
    std::vector<double> knots;
    std::vector<Point2> fitPoints;
    Hatch hatch;
};
} // namespace

DxfReader::DxfReader() : content(std::make_unique<Content>()) {
}
DxfReader::~DxfReader() = default;

void DxfReader::read(std::istream& in, const std::function<void(double)>& progress) {
    in.seekg(0, std::ios::end);
    const auto size = static_cast<double>(std::max<std::streamoff>(1, in.tellg()));
    in.seekg(0);
    // The check reads the first half of the work, dxflib the second.
    const DxfCensus census = scanDxf(in, [&](long long bytes) {
        if (progress) progress(0.5 * static_cast<double>(bytes) / size);
    });
    in.clear();
    in.seekg(0);
    DxfText decoder(census.version, census.codepage);
    Adapter adapter(*content, decoder);
    DL_Dxf dxf;
    bool understood = false;
    try {
        understood = dxf.in(in, &adapter);
    } catch (const std::bad_alloc&) {
        throw LoadError("out of memory in dxflib");
    }
    if (!understood) throw LoadError("dxflib could not read the file");
    adapter.finish();
    if (!adapter.failure().empty()) throw LoadError(adapter.failure());
    for (const auto& [kind, count] : census.kinds)
        if (heldKinds().count(kind) == 0) content->notHeld[kind] += count;
    if (progress) progress(1.0);
}

const std::map<std::string, long long>& DxfReader::notHeld() const {
    return content->notHeld;
}

} // namespace vekhost
