#include "CadFile.h"

#include <BRepTools.hxx>
#include <BRep_Builder.hxx>
#include <IGESCAFControl_Reader.hxx>
#include <IGESControl_Controller.hxx>
#include <Interface_Check.hxx>
#include <Interface_CheckIterator.hxx>
#include <Message.hxx>
#include <Message_Messenger.hxx>
#include <Message_PrinterOStream.hxx>
#include <STEPCAFControl_Controller.hxx>
#include <STEPCAFControl_Reader.hxx>
#include <TDF_AttributeIterator.hxx>
#include <TDF_ChildIterator.hxx>
#include <TDataStd_Name.hxx>
#include <XCAFApp_Application.hxx>
#include <XCAFDoc_DocumentTool.hxx>
#include <XCAFDoc_GraphNode.hxx>
#include <XCAFDoc_LayerTool.hxx>
#include <XCAFDoc_ShapeTool.hxx>
#include <XSControl_Reader.hxx>
#include <XSControl_WorkSession.hxx>

#include <filesystem>
#include <iostream>

#include "CadHeader.h"
#include "CadSample.h"
#include "LeakCheck.h"
#include "LoadError.h"
#include "OcctProgress.h"

namespace vekhost {

namespace {
// Set up once per process: Open CASCADE's message printers write to stdout, which is the
// tool's; and its data-exchange controllers and document application fill global
// registries the first time they are made and never free them. Under LeakSanitizer those
// are made with leak tracking off, so that every other leak still fails the run.
void setUpOpenCascade() {
    static const bool done = [] {
#ifdef VEKHOST_LSAN
        const __lsan::ScopedDisabler registriesLiveForever;
#endif
        Message::DefaultMessenger()->RemovePrinters(STANDARD_TYPE(Message_PrinterOStream));
        STEPCAFControl_Controller::Init();
        IGESControl_Controller::Init();
        XCAFApp_Application::GetApplication();
        return true;
    }();
    static_cast<void>(done);
}

// The STEP and IGES readers accept damaged files and note what failed; transferring such
// data can crash Open CASCADE, and what does transfer is not the model.
void rejectFailures(XSControl_Reader& reader, const char* format) {
    const Interface_CheckIterator checks = reader.WS()->ModelCheckList();
    long failures = 0;
    for (checks.Start(); checks.More(); checks.Next())
        failures += checks.Value()->NbFails();
    if (failures > 0)
        throw LoadError(std::to_string(failures) + " error(s) in the " + format +
                        " data: the file is damaged");
}

// `plain` is the reader underneath `reader` that keeps the parser's notes.
template <typename DocumentReader>
void transfer(DocumentReader& reader, XSControl_Reader& plain, const std::string& path,
              const char* format, const Handle(TDocStd_Document) & document,
              const Message_ProgressRange& range) {
    reader.SetColorMode(true);
    reader.SetNameMode(true);
    reader.SetLayerMode(true);
    if (reader.ReadFile(path.c_str()) != IFSelect_RetDone)
        throw LoadError(std::string("not a readable ") + format + " file");
    rejectFailures(plain, format);
    // Transfer wants a handle it may reseat; a copy names the same document.
    Handle(TDocStd_Document) target = document;
    if (!reader.Transfer(target, range))
        throw LoadError(std::string("no shape could be transferred from the ") + format + " data");
}

// The BREP reader writes its complaints about broken files straight to std::cout.
class MutedStdout {
public:
    MutedStdout() : saved(std::cout.rdbuf(nullptr)) {}
    ~MutedStdout() { std::cout.rdbuf(saved); }
    MutedStdout(const MutedStdout&) = delete;
    MutedStdout& operator=(const MutedStdout&) = delete;

private:
    std::streambuf* saved;
};

// One part, named after the file.
void readBrep(const std::string& path, const Handle(TDocStd_Document) & document,
              const Message_ProgressRange& range) {
    TopoDS_Shape shape;
    BRep_Builder builder;
    bool read = false;
    {
        const MutedStdout muted;
        read = BRepTools::Read(shape, path.c_str(), builder, range);
    }
    if (!read || shape.IsNull()) throw LoadError("not a readable BREP file");
    const TDF_Label label =
        XCAFDoc_DocumentTool::ShapeTool(document->Main())->AddShape(shape, Standard_False);
    const std::string stem = std::filesystem::path(path).stem().string();
    TDataStd_Name::Set(label, TCollection_ExtendedString(stem.c_str(), Standard_True));
}
} // namespace

const char* formatName(CadFormat format) {
    switch (format) {
    case CadFormat::Step:
        return "STEP";
    case CadFormat::Iges:
        return "IGES";
    case CadFormat::Brep:
        return "BREP";
    case CadFormat::Sample:
        break;
    }
    return "sample";
}

opencascade::handle<TDocStd_Document> newCadDocument() {
    setUpOpenCascade();
    Handle(TDocStd_Document) document;
    XCAFApp_Application::GetApplication()->NewDocument("MDTV-XCAF", document);
    return document;
}

void closeCadDocument(const Handle(TDocStd_Document) & document) {
    // Layers and their shapes refer to each other; unless they are parted first the
    // document's memory outlives it.
    const Handle(XCAFDoc_LayerTool) layers = XCAFDoc_DocumentTool::LayerTool(document->Main());
    TDF_LabelSequence labels;
    layers->GetLayerLabels(labels);
    for (const TDF_Label& label : labels)
        layers->RemoveLayer(label);
    // So are tolerances and their datums, and saved views and what they show.
    for (TDF_ChildIterator it(document->Main(), Standard_True); it.More(); it.Next())
        for (TDF_AttributeIterator attributes(it.Value()); attributes.More(); attributes.Next()) {
            const Handle(XCAFDoc_GraphNode) node =
                Handle(XCAFDoc_GraphNode)::DownCast(attributes.Value());
            if (node.IsNull()) continue;
            while (node->NbFathers() > 0)
                node->UnSetFather(node->GetFather(1));
            while (node->NbChildren() > 0)
                node->UnSetChild(node->GetChild(1));
        }
    XCAFApp_Application::GetApplication()->Close(document);
}

TDF_LabelSequence readCadFile(const std::string& path, CadFormat format,
                              const Handle(TDocStd_Document) & document, Progress& progress,
                              SourceInfo* info) {
    Handle(OcctProgress) indicator = new OcctProgress(progress);
    SourceInfo told;
    if (format == CadFormat::Step) {
        STEPCAFControl_Reader reader;
        // Dimensions, tolerances, datums and saved views come into the document too.
        reader.SetGDTMode(true);
        reader.SetViewMode(true);
        transfer(reader, reader.ChangeReader(), path, "STEP", document, indicator->Start());
        told = stepInfo(reader, path);
    } else if (format == CadFormat::Iges) {
        IGESCAFControl_Reader reader;
        transfer(reader, reader, path, "IGES", document, indicator->Start());
        told = igesInfo(reader);
    } else if (format == CadFormat::Brep) {
        readBrep(path, document, indicator->Start());
    } else {
        buildSample(document);
        told.unit = MILLIMETRE;
    }
    TDF_LabelSequence roots;
    XCAFDoc_DocumentTool::ShapeTool(document->Main())->GetFreeShapes(roots);
    if (roots.IsEmpty()) throw LoadError("the file holds no shape");
    if (format == CadFormat::Brep) told = brepInfo(XCAFDoc_ShapeTool::GetShape(roots.First()));
    if (info) *info = told;
    return roots;
}

} // namespace vekhost
