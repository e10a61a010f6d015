#include "CadHeader.h"

#include <APIHeaderSection_MakeHeader.hxx>
#include <IGESData_IGESModel.hxx>
#include <Interface_HArray1OfHAsciiString.hxx>
#include <STEPCAFControl_ExternFile.hxx>
#include <STEPConstruct_UnitContext.hxx>
#include <StepData_StepModel.hxx>
#include <StepGeom_GeomRepContextAndGlobUnitAssCtxAndGlobUncertaintyAssCtx.hxx>
#include <StepRepr_GlobalUncertaintyAssignedContext.hxx>
#include <StepRepr_GlobalUnitAssignedContext.hxx>
#include <TopExp.hxx>
#include <TopTools_IndexedMapOfShape.hxx>
#include <UnitsMethods.hxx>

#include <filesystem>

#include "ExternalFiles.h"
#include "Text.h"

namespace vekhost {

namespace {
// Open CASCADE converts what it transfers into its own unit, the millimetre.
constexpr int transferredUnit = MILLIMETRE;

std::wstring wide(const Handle(TCollection_HAsciiString) & text) {
    return text.IsNull() ? std::wstring() : wideFromUtf8(text->ToCString());
}

void attribute(SourceInfo& info, const wchar_t* key,
               const Handle(TCollection_HAsciiString) & value) {
    const std::wstring text = wide(value);
    if (!text.empty()) info.attributes.emplace_back(key, text);
}

// The unit and the uncertainty (in millimetres) of the first geometric context that states
// its units.
void stepContext(const Handle(StepData_StepModel) & model, SourceInfo& info) {
    for (Standard_Integer i = 1; i <= model->NbEntities(); ++i) {
        const auto context =
            Handle(StepGeom_GeomRepContextAndGlobUnitAssCtxAndGlobUncertaintyAssCtx)::DownCast(
                model->Value(i));
        if (context.IsNull()) continue;
        STEPConstruct_UnitContext units;
        // Factors are relative to Open CASCADE's unit, the millimetre.
        if (units.ComputeFactors(context->GlobalUnitAssignedContext()) != 0) continue;
        info.fileUnit = unitOfSize(units.LengthFactor());
        units.ComputeTolerance(context->GlobalUncertaintyAssignedContext());
        if (units.HasUncertainty() && units.Uncertainty() > 0)
            info.tolerance = units.Uncertainty() * units.LengthFactor();
        return;
    }
}
} // namespace

SourceInfo stepInfo(STEPCAFControl_Reader& reader, const std::string& path) {
    SourceInfo info;
    STEPControl_Reader& plain = reader.ChangeReader();
    const Handle(StepData_StepModel) model = plain.StepModel();
    info.unit = transferredUnit;
    info.entities = model->NbEntities();
    info.roots = plain.NbRootsForTransfer();
    stepContext(model, info);

    APIHeaderSection_MakeHeader header(model);
    if (header.IsDone()) {
        attribute(info, L"fileName", header.Name());
        for (Standard_Integer i = 1; i <= header.NbAuthor(); ++i)
            attribute(info, L"author", header.AuthorValue(i));
        for (Standard_Integer i = 1; i <= header.NbOrganization(); ++i)
            attribute(info, L"organisation", header.OrganizationValue(i));
        attribute(info, L"originatingSystem", header.OriginatingSystem());
        attribute(info, L"timestamp", header.TimeStamp());
    }

    // Open CASCADE reads an assembly's external files from beside the file itself.
    const std::string directory = std::filesystem::path(path).parent_path().string();
    for (NCollection_DataMap<TCollection_AsciiString, Handle(STEPCAFControl_ExternFile)>::Iterator
             file(reader.ExternFiles());
         file.More(); file.Next()) {
        const Handle(TCollection_HAsciiString) name = file.Value()->GetName();
        const std::string reference = name.IsNull() ? file.Key().ToCString() : name->ToCString();
        ExternalFile external;
        external.path = resolveReference(directory, reference, external.found);
        external.role = roles::model;
        info.files.push_back(external);
    }
    return info;
}

SourceInfo igesInfo(IGESCAFControl_Reader& reader) {
    SourceInfo info;
    const Handle(IGESData_IGESModel) model = reader.IGESModel();
    const IGESData_GlobalSection& global = model->GlobalSection();
    info.unit = transferredUnit;
    info.entities = model->NbEntities();
    info.roots = reader.NbRootsForTransfer();
    // Flag 3 names the unit in the section instead of numbering it.
    const int flag = global.UnitFlag();
    if (flag == 3 && !global.UnitName().IsNull())
        info.fileUnit = UnitsMethods::LengthUnitFromString(global.UnitName()->ToCString(), false);
    else if (millimetresPer(flag) > 0)
        info.fileUnit = flag;
    // The resolution is in the file's unit.
    if (global.Resolution() > 0 && millimetresPer(info.fileUnit) > 0)
        info.tolerance = global.Resolution() * millimetresPer(info.fileUnit);
    attribute(info, L"fileName", global.FileName());
    attribute(info, L"author", global.AuthorName());
    attribute(info, L"organisation", global.CompanyName());
    attribute(info, L"originatingSystem", global.SystemId());
    attribute(info, L"timestamp", global.Date());
    return info;
}

SourceInfo brepInfo(const TopoDS_Shape& shape) {
    SourceInfo info;
    TopTools_IndexedMapOfShape shapes;
    TopExp::MapShapes(shape, shapes);
    info.entities = shapes.Extent();
    return info;
}

} // namespace vekhost
