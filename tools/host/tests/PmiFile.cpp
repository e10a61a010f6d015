#include "PmiFile.h"

#include <BRepAdaptor_Surface.hxx>
#include <BRepAlgoAPI_Cut.hxx>
#include <BRepBuilderAPI_MakeEdge.hxx>
#include <BRepPrimAPI_MakeBox.hxx>
#include <BRepPrimAPI_MakeCylinder.hxx>
#include <BRep_Builder.hxx>
#include <BRep_Tool.hxx>
#include <Interface_Static.hxx>
#include <STEPCAFControl_Writer.hxx>
#include <TCollection_HAsciiString.hxx>
#include <TDF_LabelSequence.hxx>
#include <TopExp_Explorer.hxx>
#include <TopoDS.hxx>
#include <TopoDS_Compound.hxx>
#include <XCAFDimTolObjects_DatumObject.hxx>
#include <XCAFDimTolObjects_DimensionObject.hxx>
#include <XCAFDimTolObjects_GeomToleranceObject.hxx>
#include <XCAFDoc_ClippingPlaneTool.hxx>
#include <XCAFDoc_Datum.hxx>
#include <XCAFDoc_DimTolTool.hxx>
#include <XCAFDoc_Dimension.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_GeomTolerance.hxx>
#include <XCAFDoc_ShapeTool.hxx>
#include <XCAFDoc_View.hxx>
#include <XCAFDoc_ViewTool.hxx>
#include <XCAFView_Object.hxx>
#include <gp_Pln.hxx>

#include <stdexcept>

#include "CadFile.h"
#include "LeakCheck.h"

namespace vekhost::test {

namespace {
// The face of `shape` whose surface is of `kind` and, for planes, passes through `point`
// with its normal along `axis` (0 x, 1 y, 2 z).
TopoDS_Face findFace(const TopoDS_Shape& shape, GeomAbs_SurfaceType kind, double at = 0,
                     int axis = 0) {
    for (TopExp_Explorer it(shape, TopAbs_FACE); it.More(); it.Next()) {
        TopoDS_Face face = TopoDS::Face(it.Current());
        const BRepAdaptor_Surface surface(face);
        if (surface.GetType() != kind) continue;
        if (kind != GeomAbs_Plane) return face;
        const gp_Pln plane = surface.Plane();
        if (std::abs(plane.Axis().Direction().Coord(axis + 1)) > 0.99 &&
            std::abs(plane.Location().Coord(axis + 1) - at) < 1e-6)
            return face;
    }
    throw std::logic_error("the test part lacks a face");
}
} // namespace

void writePmiPart(const std::string& path) {
    const TopoDS_Shape block = BRepPrimAPI_MakeBox(40, 20, 10).Shape();
    const TopoDS_Shape hole =
        BRepPrimAPI_MakeCylinder(gp_Ax2(gp_Pnt(20, 10, -1), gp::DZ()), 6, 12).Shape();
    const TopoDS_Shape part = BRepAlgoAPI_Cut(block, hole).Shape();

    // Made as the loader makes its documents, so that the writer's controller is set up.
    const Handle(TDocStd_Document) doc = newCadDocument();
    const Handle(XCAFDoc_ShapeTool) shapes = XCAFDoc_DocumentTool::ShapeTool(doc->Main());
    const Handle(XCAFDoc_DimTolTool) gdt = XCAFDoc_DocumentTool::DimTolTool(doc->Main());
    const TDF_Label partLabel = shapes->AddShape(part, Standard_False);
    auto faceLabel = [&](const TopoDS_Face& face) { return shapes->AddSubShape(partLabel, face); };
    const TDF_Label left = faceLabel(findFace(part, GeomAbs_Plane, 0, 0));
    const TDF_Label right = faceLabel(findFace(part, GeomAbs_Plane, 40, 0));
    const TDF_Label bottom = faceLabel(findFace(part, GeomAbs_Plane, 0, 2));
    const TDF_Label top = faceLabel(findFace(part, GeomAbs_Plane, 10, 2));
    const TDF_Label bore = faceLabel(findFace(part, GeomAbs_Cylinder));

    const TDF_Label length = gdt->AddDimension();
    gdt->SetDimension(left, right, length);
    Handle(XCAFDimTolObjects_DimensionObject) lengthObject = new XCAFDimTolObjects_DimensionObject;
    lengthObject->SetType(XCAFDimTolObjects_DimensionType_Location_LinearDistance);
    lengthObject->SetValue(40);
    lengthObject->SetUpperTolValue(0.1);
    lengthObject->SetLowerTolValue(-0.1);
    XCAFDoc_Dimension::Set(length)->SetObject(lengthObject);

    const TDF_Label diameter = gdt->AddDimension();
    gdt->SetDimension(bore, diameter);
    Handle(XCAFDimTolObjects_DimensionObject) diameterObject =
        new XCAFDimTolObjects_DimensionObject;
    diameterObject->SetType(XCAFDimTolObjects_DimensionType_Size_Diameter);
    diameterObject->SetValue(12);
    diameterObject->SetUpperTolValue(0.05);
    diameterObject->SetLowerTolValue(0);
    XCAFDoc_Dimension::Set(diameter)->SetObject(diameterObject);

    // Graphics without semantics: a note drawn by two lines over the top face.
    const TDF_Label note = gdt->AddDimension();
    gdt->SetDimension(top, note);
    Handle(XCAFDimTolObjects_DimensionObject) noteObject = new XCAFDimTolObjects_DimensionObject;
    noteObject->SetType(XCAFDimTolObjects_DimensionType_DimensionPresentation);
    noteObject->SetPointTextAttach(gp_Pnt(5, 5, 12));
    noteObject->SetPlane(gp_Ax2(gp_Pnt(5, 5, 12), gp::DZ(), gp::DX()));
    TopoDS_Compound strokes;
    BRep_Builder builder;
    builder.MakeCompound(strokes);
    builder.Add(strokes, BRepBuilderAPI_MakeEdge(gp_Pnt(5, 5, 12), gp_Pnt(9, 5, 12)).Edge());
    builder.Add(strokes, BRepBuilderAPI_MakeEdge(gp_Pnt(5, 5, 12), gp_Pnt(5, 8, 12)).Edge());
    noteObject->SetPresentation(strokes, new TCollection_HAsciiString("note"));
    XCAFDoc_Dimension::Set(note)->SetObject(noteObject);

    const TDF_Label flatness = gdt->AddGeomTolerance();
    gdt->SetGeomTolerance(top, flatness);
    Handle(XCAFDimTolObjects_GeomToleranceObject) flatObject =
        new XCAFDimTolObjects_GeomToleranceObject;
    flatObject->SetType(XCAFDimTolObjects_GeomToleranceType_Flatness);
    flatObject->SetValue(0.05);
    // The writer keeps the text's position only with a plane and a presentation.
    flatObject->SetPointTextAttach(gp_Pnt(30, 15, 25));
    flatObject->SetPlane(gp_Ax2(gp_Pnt(30, 15, 25), gp::DY(), gp::DX()));
    flatObject->SetPresentation(
        BRepBuilderAPI_MakeEdge(gp_Pnt(30, 15, 25), gp_Pnt(36, 15, 25)).Edge(),
        new TCollection_HAsciiString("flatness"));
    XCAFDoc_GeomTolerance::Set(flatness)->SetObject(flatObject);

    const TDF_Label square = gdt->AddGeomTolerance();
    gdt->SetGeomTolerance(right, square);
    Handle(XCAFDimTolObjects_GeomToleranceObject) squareObject =
        new XCAFDimTolObjects_GeomToleranceObject;
    squareObject->SetType(XCAFDimTolObjects_GeomToleranceType_Perpendicularity);
    squareObject->SetValue(0.02);
    XCAFDoc_GeomTolerance::Set(square)->SetObject(squareObject);

    const TDF_Label datum = gdt->AddDatum();
    TDF_LabelSequence datumFaces;
    datumFaces.Append(bottom);
    gdt->SetDatum(datumFaces, datum);
    Handle(XCAFDimTolObjects_DatumObject) datumObject = new XCAFDimTolObjects_DatumObject;
    datumObject->SetName(new TCollection_HAsciiString("A"));
    datumObject->SetPosition(1);
    XCAFDoc_Datum::Set(datum)->SetObject(datumObject);
    gdt->SetDatumToGeomTol(datum, square);

    // Without this schema the writer fails on tolerances.
    Interface_Static::SetCVal("write.step.schema", "AP242DIS");
    bool written = false;
    {
#ifdef VEKHOST_LSAN
        // The writer leaks the directions of annotation planes.
        const __lsan::ScopedDisabler writerLeaks;
#endif
        STEPCAFControl_Writer writer;
        writer.SetDimTolMode(Standard_True);
        written = writer.Transfer(doc, STEPControl_AsIs) &&
                  writer.Write(path.c_str()) == IFSelect_RetDone;
    }
    Interface_Static::SetCVal("write.step.schema", "AP214IS");
    closeCadDocument(doc);
    if (!written) throw std::runtime_error("could not write " + path);
}

void addSavedView(const Handle(TDocStd_Document) & document) {
    const Handle(XCAFDoc_ShapeTool) shapes = XCAFDoc_DocumentTool::ShapeTool(document->Main());
    const Handle(XCAFDoc_DimTolTool) gdt = XCAFDoc_DocumentTool::DimTolTool(document->Main());
    const Handle(XCAFDoc_ViewTool) views = XCAFDoc_DocumentTool::ViewTool(document->Main());
    const Handle(XCAFDoc_ClippingPlaneTool) planes =
        XCAFDoc_DocumentTool::ClippingPlaneTool(document->Main());

    TDF_LabelSequence parts;
    shapes->GetFreeShapes(parts);
    TDF_LabelSequence tolerances;
    gdt->GetGeomToleranceLabels(tolerances);
    TDF_LabelSequence cuts;
    cuts.Append(planes->AddClippingPlane(gp_Pln(gp_Pnt(0, 0, 5), gp::DZ()),
                                         TCollection_ExtendedString("middle")));
    const TDF_Label view = views->AddView();
    views->SetView(parts, tolerances, cuts, view);
    Handle(XCAFView_Object) camera = new XCAFView_Object;
    camera->SetName(new TCollection_HAsciiString("Top"));
    camera->SetType(XCAFView_ProjectionType_Parallel);
    camera->SetProjectionPoint(gp_Pnt(20, 10, 100));
    camera->SetViewDirection(-gp::DZ());
    camera->SetUpDirection(gp::DY());
    XCAFDoc_View::Set(view)->SetObject(camera);
}

} // namespace vekhost::test
