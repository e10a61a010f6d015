#include "CadSample.h"

#include <BRepAdaptor_Surface.hxx>
#include <BRepAlgoAPI_Cut.hxx>
#include <BRepAlgoAPI_Fuse.hxx>
#include <BRepBuilderAPI_MakeFace.hxx>
#include <BRepBuilderAPI_MakePolygon.hxx>
#include <BRepPrimAPI_MakeCylinder.hxx>
#include <BRepPrimAPI_MakePrism.hxx>
#include <Quantity_Color.hxx>
#include <TDataStd_Name.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS.hxx>
#include <XCAFDoc_ColorTool.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_LayerTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>
#include <gp_Ax2.hxx>
#include <gp_Trsf.hxx>

#include <cmath>

namespace vekhost {

namespace {
// An M8 flanged hex bolt with a washer and two nuts, in millimetres; the bolt's axis is Z
// and the underside of its flange sits at Z = 0.
constexpr double acrossFlats = 13.0;
constexpr double shankRadius = 4.0;
constexpr double shankLength = 30.0;

TopoDS_Shape hexPrism(double z, double height) {
    const double radius = acrossFlats / std::sqrt(3.0);
    BRepBuilderAPI_MakePolygon outline;
    for (int corner = 0; corner < 6; ++corner) {
        const double angle = corner * M_PI / 3.0;
        outline.Add(gp_Pnt(radius * std::cos(angle), radius * std::sin(angle), z));
    }
    outline.Close();
    const TopoDS_Face base = BRepBuilderAPI_MakeFace(outline.Wire());
    return BRepPrimAPI_MakePrism(base, gp_Vec(0, 0, height)).Shape();
}

TopoDS_Shape cylinder(double radius, double z, double height) {
    return BRepPrimAPI_MakeCylinder(gp_Ax2(gp_Pnt(0, 0, z), gp::DZ()), radius, height).Shape();
}

TopoDS_Shape bolt() {
    const TopoDS_Shape head = hexPrism(1.5, 5.3);
    const TopoDS_Shape flange = cylinder(8.5, 0.0, 1.5);
    const TopoDS_Shape shank = cylinder(shankRadius, -shankLength, shankLength);
    const TopoDS_Shape headAndFlange = BRepAlgoAPI_Fuse(head, flange).Shape();
    return BRepAlgoAPI_Fuse(headAndFlange, shank).Shape();
}

TopoDS_Shape washer() {
    return BRepAlgoAPI_Cut(cylinder(8.0, 0.0, 1.6), cylinder(4.3, -1.0, 3.6)).Shape();
}

TopoDS_Shape nut() {
    return BRepAlgoAPI_Cut(hexPrism(0.0, 6.5), cylinder(shankRadius, -1.0, 8.5)).Shape();
}

// The planar face highest up the Z axis: the top of the bolt's head.
TopoDS_Face topFace(const TopoDS_Shape& shape) {
    TopoDS_Face best;
    double bestZ = -1e300;
    for (TopExp_Explorer ex(shape, TopAbs_FACE); ex.More(); ex.Next()) {
        const TopoDS_Face& face = TopoDS::Face(ex.Current());
        const BRepAdaptor_Surface surface(face);
        if (surface.GetType() != GeomAbs_Plane) continue;
        const double z = surface.Plane().Location().Z();
        if (z > bestZ) {
            bestZ = z;
            best = face;
        }
    }
    return best;
}

TopLoc_Location at(double z) {
    gp_Trsf move;
    move.SetTranslation(gp_Vec(0, 0, z));
    return TopLoc_Location(move);
}

void name(const TDF_Label& label, const char* text) {
    TDataStd_Name::Set(label, text);
}
} // namespace

void buildSample(const Handle(TDocStd_Document) & document) {
    const auto shapes = XCAFDoc_DocumentTool::ShapeTool(document->Main());
    const auto colors = XCAFDoc_DocumentTool::ColorTool(document->Main());
    const auto layers = XCAFDoc_DocumentTool::LayerTool(document->Main());

    const TopoDS_Shape boltShape = bolt();
    const TDF_Label boltPart = shapes->AddShape(boltShape, Standard_False);
    const TDF_Label washerPart = shapes->AddShape(washer(), Standard_False);
    const TDF_Label nutPart = shapes->AddShape(nut(), Standard_False);
    name(boltPart, "flanged bolt M8x30");
    name(washerPart, "washer M8");
    name(nutPart, "hex nut M8");
    colors->SetColor(boltPart, Quantity_Color(0.62, 0.64, 0.68, Quantity_TOC_RGB),
                     XCAFDoc_ColorSurf);
    colors->SetColor(washerPart, Quantity_Color(0.85, 0.72, 0.32, Quantity_TOC_RGB),
                     XCAFDoc_ColorSurf);
    colors->SetColor(nutPart, Quantity_Color(0.36, 0.39, 0.44, Quantity_TOC_RGB),
                     XCAFDoc_ColorSurf);
    // The grade mark on the head: one face coloured apart from its part.
    const TDF_Label mark = shapes->AddSubShape(boltPart, topFace(boltShape));
    if (!mark.IsNull())
        colors->SetColor(mark, Quantity_Color(0.15, 0.35, 0.75, Quantity_TOC_RGB),
                         XCAFDoc_ColorSurf);

    const TDF_Label assembly = shapes->NewShape();
    name(assembly, "flanged bolt assembly");
    const TDF_Label boltUse = shapes->AddComponent(assembly, boltPart, TopLoc_Location());
    const TDF_Label washerUse = shapes->AddComponent(assembly, washerPart, at(-13.6));
    const TDF_Label nutUse = shapes->AddComponent(assembly, nutPart, at(-20.1));
    const TDF_Label lockNutUse = shapes->AddComponent(assembly, nutPart, at(-26.6));
    name(boltUse, "bolt");
    name(washerUse, "washer");
    name(nutUse, "nut");
    name(lockNutUse, "lock nut");
    for (const TDF_Label& use : {boltUse, washerUse, nutUse, lockNutUse})
        layers->SetLayer(use, TCollection_ExtendedString("fasteners"));
    layers->SetLayer(lockNutUse, TCollection_ExtendedString("locking"));
    shapes->UpdateAssemblies();
}

} // namespace vekhost
