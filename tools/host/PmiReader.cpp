#include "PmiReader.h"

#include <BRepAdaptor_Surface.hxx>
#include <BRepBndLib.hxx>
#include <BRepBuilderAPI_MakeVertex.hxx>
#include <BRepExtrema_DistShapeShape.hxx>
#include <BRep_Builder.hxx>
#include <Bnd_Box.hxx>
#include <TCollection_HAsciiString.hxx>
#include <TDF_LabelSequence.hxx>
#include <TDF_Tool.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Compound.hxx>
#include <XCAFDimTolObjects_DatumObject.hxx>
#include <XCAFDimTolObjects_DimensionObject.hxx>
#include <XCAFDimTolObjects_GeomToleranceObject.hxx>
#include <XCAFDoc_Datum.hxx>
#include <XCAFDoc_DimTolTool.hxx>
#include <XCAFDoc_Dimension.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_GeomTolerance.hxx>
#include <XCAFDoc_ShapeTool.hxx>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <unordered_map>
#include <utility>
#include <vector>

#include "Bounds.h"
#include "Text.h"

namespace vekhost {

namespace {
using veksg::Point3;

Point3 toPoint(const gp_XYZ& p) {
    return {static_cast<float>(p.X()), static_cast<float>(p.Y()), static_cast<float>(p.Z())};
}
Vec3 vec(const Point3& p) {
    return {p[0], p[1], p[2]};
}
Vec3 vec(const gp_XYZ& p) {
    return {p.X(), p.Y(), p.Z()};
}

std::wstring number(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%g", std::abs(value) < 1e-12 ? 0.0 : value);
    return wideFromUtf8(text);
}

// A deviation as a drawing writes it: "+0.05", "-0.1", "0".
std::wstring deviation(double value) {
    return (value > 1e-12 ? L"+" : L"") + number(value);
}

std::wstring wide(const Handle(TCollection_HAsciiString) & text) {
    return text.IsNull() ? std::wstring() : wideFromUtf8(text->ToCString());
}

const wchar_t* dimensionPrefix(XCAFDimTolObjects_DimensionType type) {
    switch (type) {
    case XCAFDimTolObjects_DimensionType_Size_Diameter:
    case XCAFDimTolObjects_DimensionType_Size_ToroidalMinorDiameter:
    case XCAFDimTolObjects_DimensionType_Size_ToroidalMajorDiameter:
    case XCAFDimTolObjects_DimensionType_Size_ToroidalHighMajorDiameter:
    case XCAFDimTolObjects_DimensionType_Size_ToroidalLowMajorDiameter:
        return L"\u2300";
    case XCAFDimTolObjects_DimensionType_Size_SphericalDiameter:
        return L"S\u2300";
    case XCAFDimTolObjects_DimensionType_Size_Radius:
    case XCAFDimTolObjects_DimensionType_Size_ToroidalMinorRadius:
    case XCAFDimTolObjects_DimensionType_Size_ToroidalMajorRadius:
    case XCAFDimTolObjects_DimensionType_Size_ToroidalHighMajorRadius:
    case XCAFDimTolObjects_DimensionType_Size_ToroidalLowMajorRadius:
        return L"R";
    case XCAFDimTolObjects_DimensionType_Size_SphericalRadius:
        return L"SR";
    default:
        return L"";
    }
}

bool isAngle(XCAFDimTolObjects_DimensionType type) {
    return type == XCAFDimTolObjects_DimensionType_Location_Angular ||
           type == XCAFDimTolObjects_DimensionType_Size_Angular;
}

const wchar_t* dimensionKind(XCAFDimTolObjects_DimensionType type) {
    if (isAngle(type)) return L"angle";
    if (std::wstring(dimensionPrefix(type)).find(L'R') != std::wstring::npos) return L"radius";
    if (*dimensionPrefix(type) != 0) return L"diameter";
    if (type == XCAFDimTolObjects_DimensionType_Location_LinearDistance ||
        type == XCAFDimTolObjects_DimensionType_Size_Thickness)
        return L"distance";
    return L"dimension";
}

struct ToleranceKind {
    const wchar_t* name;
    const wchar_t* symbol;
};

ToleranceKind toleranceKind(XCAFDimTolObjects_GeomToleranceType type) {
    switch (type) {
    case XCAFDimTolObjects_GeomToleranceType_Angularity:
        return {L"angularity", L"\u2220"};
    case XCAFDimTolObjects_GeomToleranceType_CircularRunout:
        return {L"circular runout", L"\u2197"};
    case XCAFDimTolObjects_GeomToleranceType_CircularityOrRoundness:
        return {L"circularity", L"\u25cb"};
    case XCAFDimTolObjects_GeomToleranceType_Coaxiality:
        return {L"coaxiality", L"\u25ce"};
    case XCAFDimTolObjects_GeomToleranceType_Concentricity:
        return {L"concentricity", L"\u25ce"};
    case XCAFDimTolObjects_GeomToleranceType_Cylindricity:
        return {L"cylindricity", L"\u232d"};
    case XCAFDimTolObjects_GeomToleranceType_Flatness:
        return {L"flatness", L"\u23e5"};
    case XCAFDimTolObjects_GeomToleranceType_Parallelism:
        return {L"parallelism", L"\u2225"};
    case XCAFDimTolObjects_GeomToleranceType_Perpendicularity:
        return {L"perpendicularity", L"\u22a5"};
    case XCAFDimTolObjects_GeomToleranceType_Position:
        return {L"position", L"\u2316"};
    case XCAFDimTolObjects_GeomToleranceType_ProfileOfLine:
        return {L"profile of a line", L"\u2312"};
    case XCAFDimTolObjects_GeomToleranceType_ProfileOfSurface:
        return {L"profile of a surface", L"\u2313"};
    case XCAFDimTolObjects_GeomToleranceType_Straightness:
        return {L"straightness", L"\u23e4"};
    case XCAFDimTolObjects_GeomToleranceType_Symmetry:
        return {L"symmetry", L"\u232f"};
    case XCAFDimTolObjects_GeomToleranceType_TotalRunout:
        return {L"total runout", L"\u2330"};
    default:
        return {L"tolerance", L""};
    }
}

// One annotation as read, before it becomes records.
struct Reading {
    TDF_Label label;
    std::shared_ptr<veksg::PMI> object;
    std::wstring kind;
    std::vector<std::pair<const wchar_t*, std::wstring>> values;
    std::vector<TDF_Label> datumLabels;
    TopoDS_Shape first;
    TopoDS_Shape second;
    TopoDS_Shape presentation;
    bool hasText = false;
    gp_XYZ text;
};

TopoDS_Shape shapeOf(const TDF_LabelSequence& labels) {
    if (labels.Length() == 1) return XCAFDoc_ShapeTool::GetShape(labels.First());
    return compoundOf(labels);
}

class PmiBuilder {
public:
    PmiBuilder(const CadShapes& shapes, Document& document)
        : shapes(shapes), doc(document), pmi(*document.pmi),
          gdt(XCAFDoc_DocumentTool::DimTolTool(shapes.document()->Main())) {
        for (int face = 0; face < shapes.faceCount(); ++face) {
            facesOf[shapes.face(face).TShape().get()].push_back(face);
            const veksg::Face& record = doc.topo->faces.getValue(face);
            model.add(vec(record.pointA));
            model.add(vec(record.pointB));
        }
        for (int edge = 0; edge < shapes.edgeCount(); ++edge)
            edgesOf[shapes.edge(edge).TShape().get()].push_back(edge);
    }

    PmiKeys read() {
        std::vector<Reading> readings;
        TDF_LabelSequence labels;
        gdt->GetDimensionLabels(labels);
        for (const TDF_Label& label : labels)
            dimension(label, readings);
        labels.Clear();
        gdt->GetGeomToleranceLabels(labels);
        for (const TDF_Label& label : labels)
            tolerance(label, readings);
        labels.Clear();
        gdt->GetDatumLabels(labels);
        for (const TDF_Label& label : labels)
            datum(label, readings);

        PmiKeys keys;
        for (Reading& reading : readings)
            keys.emplace(labelEntry(reading.label), add(reading));
        // Datums are annotations of their own; a tolerance lists the ones it refers to.
        for (const Reading& reading : readings)
            for (const TDF_Label& datum : reading.datumLabels) {
                const auto found = keys.find(labelEntry(datum));
                if (found != keys.end())
                    pmi.relation12.addChild(keys.at(labelEntry(reading.label)), found->second);
            }
        return keys;
    }

private:
    void references(const TDF_Label& label, Reading& reading) const {
        TDF_LabelSequence first;
        TDF_LabelSequence second;
        gdt->GetRefShapeLabel(label, first, second);
        if (!first.IsEmpty()) reading.first = shapeOf(first);
        if (!second.IsEmpty()) reading.second = shapeOf(second);
    }

    // Where the file puts the text, and its graphics.
    static void filePlacement(Reading& reading, bool hasText, const gp_Pnt& text,
                              const TopoDS_Shape& presentation) {
        reading.hasText = hasText;
        if (hasText) reading.text = text.XYZ();
        reading.presentation = presentation;
    }

    void dimension(const TDF_Label& label, std::vector<Reading>& readings) const {
        Handle(XCAFDoc_Dimension) attribute;
        if (!label.FindAttribute(XCAFDoc_Dimension::GetID(), attribute)) return;
        const Handle(XCAFDimTolObjects_DimensionObject) object = attribute->GetObject();
        if (object.IsNull()) return;
        Reading reading;
        reading.label = label;
        references(label, reading);
        const XCAFDimTolObjects_DimensionType type = object->GetType();
        if (type == XCAFDimTolObjects_DimensionType_CommonLabel ||
            type == XCAFDimTolObjects_DimensionType_DimensionPresentation) {
            // Graphics without semantics: a kind of annotation the library leaves to us.
            auto tess = std::make_shared<veksg::TessPMI>(presentationKind);
            tess->setName(wide(object->GetPresentationName()).c_str());
            reading.object = tess;
            reading.kind = L"presentation";
        } else {
            auto measure = std::make_shared<veksg::Measure>();
            const bool range = object->IsDimWithRange();
            const double low = range ? object->GetLowerBound() : 0;
            const double high = range ? object->GetUpperBound() : 0;
            const double nominal = range ? (low + high) / 2 : object->GetValue();
            const bool plusMinus = !range && object->IsDimWithPlusMinusTolerance();
            const double upper = range       ? high - nominal
                                 : plusMinus ? object->GetUpperTolValue()
                                             : 0;
            // Open CASCADE hands the lower deviation back as a magnitude, whatever its sign
            // in the file: it lies below the nominal.
            const double lower = range       ? low - nominal
                                 : plusMinus ? -std::abs(object->GetLowerTolValue())
                                             : 0;
            const std::wstring prefix = dimensionPrefix(type);
            const std::wstring suffix = isAngle(type) ? L"\u00b0" : L"";
            std::wstring text = prefix + number(nominal) + suffix;
            if (range)
                text = prefix + number(low) + L"\u2013" + number(high) + suffix;
            else if (plusMinus && std::abs(upper + lower) < 1e-12 && upper > 0)
                text += L" \u00b1" + number(upper);
            else if (plusMinus)
                text += L" " + deviation(upper) + L"/" + deviation(lower);
            measure->value = static_cast<float>(nominal);
            measure->measureText = text;
            measure->text3d->text = text;
            measure->setName(text.c_str());
            reading.object = measure;
            reading.kind = dimensionKind(type);
            reading.values = {{pmiattr::nominal, number(nominal)},
                              {pmiattr::upper, number(upper)},
                              {pmiattr::lower, number(lower)}};
        }
        filePlacement(reading, object->HasTextPoint(), object->GetPointTextAttach(),
                      object->GetPresentation());
        readings.push_back(std::move(reading));
    }

    void tolerance(const TDF_Label& label, std::vector<Reading>& readings) const {
        Handle(XCAFDoc_GeomTolerance) attribute;
        if (!label.FindAttribute(XCAFDoc_GeomTolerance::GetID(), attribute)) return;
        const Handle(XCAFDimTolObjects_GeomToleranceObject) object = attribute->GetObject();
        if (object.IsNull()) return;
        Reading reading;
        reading.label = label;
        references(label, reading);
        const ToleranceKind kind = toleranceKind(object->GetType());
        std::wstring text = kind.symbol;
        text += L" ";
        if (object->GetTypeOfValue() == XCAFDimTolObjects_GeomToleranceTypeValue_Diameter)
            text += L"\u2300";
        else if (object->GetTypeOfValue() ==
                 XCAFDimTolObjects_GeomToleranceTypeValue_SphericalDiameter)
            text += L"S\u2300";
        text += number(object->GetValue());
        if (object->GetMaterialRequirementModifier() ==
            XCAFDimTolObjects_GeomToleranceMatReqModif_M)
            text += L" \u24c2";
        else if (object->GetMaterialRequirementModifier() ==
                 XCAFDimTolObjects_GeomToleranceMatReqModif_L)
            text += L" \u24c1";

        // The datums in the order of the frame: primary, secondary, tertiary.
        TDF_LabelSequence datums;
        gdt->GetDatumOfTolerLabels(label, datums);
        std::vector<std::pair<int, TDF_Label>> ordered;
        for (const TDF_Label& datum : datums) {
            Handle(XCAFDoc_Datum) datumAttribute;
            int position = 0;
            if (datum.FindAttribute(XCAFDoc_Datum::GetID(), datumAttribute) &&
                !datumAttribute->GetObject().IsNull())
                position = datumAttribute->GetObject()->GetPosition();
            ordered.emplace_back(position, datum);
        }
        std::stable_sort(ordered.begin(), ordered.end(),
                         [](const auto& a, const auto& b) { return a.first < b.first; });
        std::wstring letters;
        for (const auto& [position, datum] : ordered) {
            static_cast<void>(position);
            const std::wstring letter = datumName(datum);
            text += L" " + letter;
            letters += (letters.empty() ? L"" : L",") + letter;
            reading.datumLabels.push_back(datum);
        }
        auto leader = std::make_shared<veksg::Text3DLeader>(text.c_str());
        leader->text3d->text = text;
        reading.object = leader;
        reading.kind = kind.name;
        filePlacement(reading, object->HasPointText(), object->GetPointTextAttach(),
                      object->GetPresentation());
        reading.values = {{pmiattr::nominal, number(object->GetValue())},
                          {pmiattr::upper, number(object->GetValue())},
                          {pmiattr::lower, number(0)},
                          {pmiattr::datums, letters}};
        readings.push_back(std::move(reading));
    }

    void datum(const TDF_Label& label, std::vector<Reading>& readings) const {
        Reading reading;
        reading.label = label;
        references(label, reading);
        Handle(XCAFDoc_Datum) attribute;
        if (label.FindAttribute(XCAFDoc_Datum::GetID(), attribute) &&
            !attribute->GetObject().IsNull()) {
            const Handle(XCAFDimTolObjects_DatumObject) object = attribute->GetObject();
            filePlacement(reading, object->HasPointText(), object->GetPointTextAttach(),
                          object->GetPresentation());
        }
        const std::wstring letter = datumName(label);
        auto leader = std::make_shared<veksg::Text3DLeader>((L"Datum " + letter).c_str());
        leader->text3d->text = letter;
        reading.object = leader;
        reading.kind = L"datum";
        reading.values = {{pmiattr::datums, letter}};
        readings.push_back(std::move(reading));
    }

    static std::wstring datumName(const TDF_Label& label) {
        Handle(XCAFDoc_Datum) attribute;
        if (!label.FindAttribute(XCAFDoc_Datum::GetID(), attribute)) return L"?";
        const Handle(XCAFDimTolObjects_DatumObject) object = attribute->GetObject();
        if (!object.IsNull() && !object->GetName().IsNull()) return wide(object->GetName());
        return wide(attribute->GetName());
    }

    template <typename Index>
    static void keysOf(const TopoDS_Shape& shape, TopAbs_ShapeEnum kind, const Index& index,
                       std::vector<int>& keys) {
        if (shape.IsNull()) return;
        for (TopExp_Explorer it(shape, kind); it.More(); it.Next()) {
            const auto found = index.find(it.Current().TShape().get());
            if (found == index.end()) continue;
            keys.insert(keys.end(), found->second.begin(), found->second.end());
        }
        // Faces share edges, and a shape may name a face more than once.
        std::sort(keys.begin(), keys.end());
        keys.erase(std::unique(keys.begin(), keys.end()), keys.end());
    }

    Box3 facesBox(const std::vector<int>& faces) const {
        Box3 box;
        for (const int face : faces) {
            const veksg::Face& record = doc.topo->faces.getValue(face);
            box.add(vec(record.pointA));
            box.add(vec(record.pointB));
        }
        return box;
    }

    static gp_XYZ centre(const Box3& box) {
        return {(box.min[0] + box.max[0]) / 2, (box.min[1] + box.max[1]) / 2,
                (box.min[2] + box.max[2]) / 2};
    }

    double modelSize() const {
        if (!model.valid) return 1;
        const gp_XYZ extent(model.max[0] - model.min[0], model.max[1] - model.min[1],
                            model.max[2] - model.min[2]);
        return std::max(extent.Modulus(), 1e-6);
    }

    // The outside normal of the first planar face in `faces`, in the world; zero for none.
    gp_XYZ faceNormal(const std::vector<int>& faces) const {
        for (const int face : faces) {
            const TopoDS_Face& shape = shapes.face(face);
            const BRepAdaptor_Surface surface(shape);
            if (surface.GetType() != GeomAbs_Plane) continue;
            gp_XYZ normal = surface.Plane().Axis().Direction().XYZ();
            if (shape.Orientation() == TopAbs_REVERSED) normal.Reverse();
            return normal;
        }
        return {0, 0, 0};
    }

    // How far from `from` along `direction` the model's box ends.
    double toBoxSide(const gp_XYZ& from, const gp_XYZ& direction) const {
        double distance = 0;
        bool found = false;
        for (int axis = 0; axis < 3; ++axis) {
            const double d = direction.Coord(axis + 1);
            if (std::abs(d) < 1e-9) continue;
            const double side = d > 0 ? model.max[static_cast<std::size_t>(axis)]
                                      : model.min[static_cast<std::size_t>(axis)];
            const double t = (side - from.Coord(axis + 1)) / d;
            distance = found ? std::min(distance, t) : t;
            found = true;
        }
        return std::max(distance, 0.0);
    }

    // Where a text goes that the file does not place: out from its geometry, past the
    // model's box, so that it does not cover the part; texts going the same way are
    // stacked.
    gp_XYZ besides(const gp_XYZ& anchor, gp_XYZ outwards) {
        if (outwards.Modulus() < 1e-9) outwards = anchor - centre(model);
        if (outwards.Modulus() < 1e-9) outwards = gp_XYZ(0, 0, 1);
        outwards.Normalize();
        const double size = modelSize();
        const std::string way = std::to_string(std::lround(outwards.X() * 2)) + "," +
                                std::to_string(std::lround(outwards.Y() * 2)) + "," +
                                std::to_string(std::lround(outwards.Z() * 2));
        const int stacked = placed[way]++;
        const double reach = toBoxSide(anchor, outwards) + size * (0.12 + 0.08 * stacked);
        return anchor + outwards * reach;
    }

    // The point of the faces nearest to `point`: a face's middle may be a hole in it.
    gp_XYZ onFaces(const std::vector<int>& faces, const gp_XYZ& point) const {
        if (faces.empty()) return point;
        const TopoDS_Compound all = compound(faces);
        BRepExtrema_DistShapeShape nearest(BRepBuilderAPI_MakeVertex(gp_Pnt(point)).Vertex(), all);
        if (!nearest.IsDone() || nearest.NbSolution() == 0) return point;
        return nearest.PointOnShape2(1).XYZ();
    }

    TopoDS_Compound compound(const std::vector<int>& faces) const {
        TopoDS_Compound all;
        BRep_Builder builder;
        builder.MakeCompound(all);
        for (const int face : faces)
            builder.Add(all, shapes.face(face));
        return all;
    }

    gp_XYZ placeInWorld(const gp_XYZ& point, int node) const {
        gp_XYZ placed = point;
        if (node >= 0 && node < shapes.nodeCount())
            shapes.node(node).Location().Transformation().Transforms(placed);
        return placed;
    }

    static std::shared_ptr<veksg::Polyline> line(std::initializer_list<gp_XYZ> points) {
        auto polyline = std::make_shared<veksg::Polyline>();
        for (const gp_XYZ& point : points)
            polyline->points.push_back(toPoint(point));
        return polyline;
    }

    // The measured points: the nearest points of the two sides, or across a round face.
    std::pair<gp_XYZ, gp_XYZ> measured(const std::vector<int>& first,
                                       const std::vector<int>& second) const {
        const gp_XYZ middle = centre(facesBox(first));
        if (!second.empty()) {
            BRepExtrema_DistShapeShape distance(compound(first), compound(second));
            if (distance.IsDone() && distance.NbSolution() > 0)
                return {distance.PointOnShape1(1).XYZ(), distance.PointOnShape2(1).XYZ()};
        }
        if (!first.empty()) {
            const BRepAdaptor_Surface surface(shapes.face(first.front()));
            if (surface.GetType() == GeomAbs_Cylinder) {
                const gp_Cylinder cylinder = surface.Cylinder();
                const gp_XYZ axis = cylinder.Axis().Direction().XYZ();
                const gp_XYZ base = cylinder.Axis().Location().XYZ();
                const gp_XYZ onAxis = base + axis * (middle - base).Dot(axis);
                const gp_XYZ across = cylinder.XAxis().Direction().XYZ() * cylinder.Radius();
                return {onAxis - across, onAxis + across};
            }
        }
        return {middle, middle};
    }

    int add(Reading& reading) {
        std::vector<int> first;
        std::vector<int> second;
        std::vector<int> edges;
        keysOf(reading.first, TopAbs_FACE, facesOf, first);
        keysOf(reading.second, TopAbs_FACE, facesOf, second);
        keysOf(reading.first, TopAbs_EDGE, edgesOf, edges);
        keysOf(reading.second, TopAbs_EDGE, edgesOf, edges);
        if (!first.empty() || !second.empty()) edges.clear();
        int node = -1;
        if (!first.empty())
            node = doc.topo->faceRefs2.getValue(first.front());
        else if (!second.empty())
            node = doc.topo->faceRefs2.getValue(second.front());
        else if (!edges.empty())
            node = doc.topo->edges.getValue(edges.front()).ref;

        std::vector<int> all = first;
        all.insert(all.end(), second.begin(), second.end());
        Box3 box = facesBox(all);
        for (const int edge : edges) {
            const veksg::Edge& record = doc.topo->edges.getValue(edge);
            box.add(vec(record.pointA));
            box.add(vec(record.pointB));
        }
        const gp_XYZ anchor = onFaces(all, box.valid ? centre(box) : centre(model));
        // The points drawn, the text's last; and the text.
        std::vector<gp_XYZ> drawn{anchor};
        std::wstring shown;

        if (auto* measure = dynamic_cast<veksg::Measure*>(reading.object.get())) {
            const auto [from, to] = measured(first, second);
            // The dimension line stands off the part, across the measured direction.
            gp_XYZ along = to - from;
            gp_XYZ away = (from + to) / 2 - centre(model);
            if (along.Modulus() > 1e-9) away -= along.Normalized() * away.Dot(along.Normalized());
            if (away.Modulus() < 1e-6 * modelSize()) {
                away = along.Modulus() > 1e-9 && std::abs(along.Normalized().Y()) < 0.9
                           ? gp_XYZ(0, -1, 0)
                           : gp_XYZ(0, 0, 1);
                if (second.empty() && along.Modulus() > 1e-9) {
                    // Across a hole: read it from the end the axis points out of.
                    const gp_XYZ normal = faceNormal(first);
                    away = normal.Modulus() > 0 ? normal : gp_XYZ(0, 0, 1);
                }
            }
            const gp_XYZ middle = (from + to) / 2;
            const gp_XYZ text =
                reading.hasText ? placeInWorld(reading.text, node) : besides(middle, away);
            const gp_XYZ offset = text - middle;
            const gp_XYZ lift =
                away.Modulus() > 1e-9 ? away.Normalized() * offset.Dot(away.Normalized()) : offset;
            measure->point1 = toPoint(from);
            measure->point2 = toPoint(to);
            measure->point3 = toPoint(text);
            measure->point4 = toPoint(middle + lift);
            measure->leader = line({from, from + lift, to + lift, to});
            measure->text3d->position = toPoint(text);
            measure->text3d->secondPoint = toPoint(middle + lift);
            drawn.insert(drawn.end(), {from, to, from + lift, to + lift, text});
            shown = measure->measureText;
        } else if (auto* leader = dynamic_cast<veksg::Text3DLeader*>(reading.object.get())) {
            const gp_XYZ text = reading.hasText ? placeInWorld(reading.text, node)
                                                : besides(anchor, faceNormal(all));
            leader->text3d->position = toPoint(text);
            leader->text3d->secondPoint = toPoint(anchor);
            leader->leader = line({anchor, text});
            drawn.push_back(text);
            shown = leader->text3d->text;
        }

        reading.object->id = pmi.pmis.size();
        const int key = pmi.pmis.insert(reading.object);
        for (const gp_XYZ& point : drawn)
            box.add(vec(point));
        if (!reading.presentation.IsNull()) {
            Bnd_Box graphics;
            BRepBndLib::Add(reading.presentation, graphics);
            if (!graphics.IsVoid()) {
                box.add(vec(placeInWorld(graphics.CornerMin().XYZ(), node)));
                box.add(vec(placeInWorld(graphics.CornerMax().XYZ(), node)));
            }
        }
        // Room for the text itself, in any direction it may be read from: letters about a
        // twenty-fifth of the model high, a little over half as wide.
        const double half = 0.5 * 0.6 * 0.04 * modelSize() * static_cast<double>(shown.size());
        box.add(vec(drawn.back() + gp_XYZ(half, half, half)));
        box.add(vec(drawn.back() - gp_XYZ(half, half, half)));
        veksg::BBox bounds;
        bounds.min = toPoint({box.min[0], box.min[1], box.min[2]});
        bounds.max = toPoint({box.max[0], box.max[1], box.max[2]});
        bounds.valid = box.valid;
        pmi.pmiBoxes.insert(key, bounds, {});
        pmi.relation4.resizeToFitKey(key, {});
        pmi.relation6.resizeToFitKey(key, {});
        pmi.relation11.resizeToFitKey(key, {});
        pmi.relation12.resizeToFitKey(key, {});
        pmi.relation5.resizeToFitKey(key, {});
        pmi.relation4.setValue(key, first);
        pmi.relation6.setValue(key, second);
        pmi.relation11.setValue(key, edges);
        pmi.map2.insert(key, node, -1);
        if (node >= 0) pmi.relation1.addChild(node, key);

        reading.values.insert(reading.values.begin(), {pmiattr::type, reading.kind});
        for (const auto& [name, value] : reading.values)
            pmi.relation5.addChild(
                key, pmi.pmiAttributes.insert(
                         std::make_shared<veksg::StringValue>(name, sharedText(value))));
        return key;
    }

    // The kind given to annotations that are graphics only; 2 is the first kind the
    // library leaves free.
    static constexpr veksg::PMI::PMIType presentationKind = static_cast<veksg::PMI::PMIType>(2);

    const CadShapes& shapes;
    Document& doc;
    veksg::SCPmi& pmi;
    Handle(XCAFDoc_DimTolTool) gdt;
    std::unordered_map<const TopoDS_TShape*, std::vector<int>> facesOf;
    std::unordered_map<const TopoDS_TShape*, std::vector<int>> edgesOf;
    Box3 model;
    std::map<std::string, int> placed;
};
} // namespace

std::string labelEntry(const TDF_Label& label) {
    TCollection_AsciiString text;
    TDF_Tool::Entry(label, text);
    return text.ToCString();
}

PmiKeys readPmi(const CadShapes& shapes, Document& document) {
    // Most files carry none: skip indexing their faces.
    const Handle(XCAFDoc_DimTolTool) gdt =
        XCAFDoc_DocumentTool::DimTolTool(shapes.document()->Main());
    TDF_LabelSequence dimensions;
    TDF_LabelSequence tolerances;
    TDF_LabelSequence datums;
    gdt->GetDimensionLabels(dimensions);
    gdt->GetGeomToleranceLabels(tolerances);
    gdt->GetDatumLabels(datums);
    if (dimensions.IsEmpty() && tolerances.IsEmpty() && datums.IsEmpty()) return {};
    return PmiBuilder(shapes, document).read();
}

} // namespace vekhost
