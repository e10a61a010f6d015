#include "CadReader.h"

#include <Standard_Failure.hxx>
#include <XCAFDoc_ShapeTool.hxx>

#include <utility>

#include "CadShapes.h"
#include "LoadError.h"
#include "PmiReader.h"
#include "ProductWalk.h"
#include "SavedViews.h"
#include "Tessellation.h"

namespace vekhost {

namespace {
// The phases in order: the file into a document, its shapes meshed, its product structure
// into records. The shapes and the document stay with the load's result.
class CadReader : public Reader {
public:
    CadReader(std::string path, CadFormat format, const LoadOptions& options)
        : path(std::move(path)), kind(format), requestedDeflection(options.deflection),
          shapes(std::make_shared<CadShapes>()) {}

    const char* format() const override { return formatName(kind); }
    void read(Progress& progress) override {
        guarded([&] { roots = readCadFile(path, kind, shapes->document(), progress, &info); });
    }
    void tessellate(Progress& progress) override {
        guarded([&] {
            usedDeflection = vekhost::tessellate(compoundOf(roots), requestedDeflection, progress);
        });
    }
    void fill(DocumentBuilder& builder) override {
        guarded([&] {
            builder.setInfo(info);
            walkProducts(roots, *shapes, builder);
            const PmiKeys annotations = readPmi(*shapes, builder.document());
            readSavedViews(*shapes, annotations, builder.document());
        });
    }
    double deflection() const override { return usedDeflection; }
    std::shared_ptr<const CadShapes> cadShapes() const override { return shapes; }

private:
    // Open CASCADE's exceptions do not derive from std::exception.
    template <typename Phase>
    static void guarded(Phase phase) {
        try {
            phase();
        } catch (const Standard_Failure& failure) {
            throw LoadError(std::string("Open CASCADE failed: ") + failure.DynamicType()->Name() +
                            ": " + failure.GetMessageString());
        }
    }

    std::string path;
    CadFormat kind;
    double requestedDeflection;
    double usedDeflection = 0;
    std::shared_ptr<CadShapes> shapes;
    TDF_LabelSequence roots;
    SourceInfo info;
};
} // namespace

std::unique_ptr<Reader> makeCadReader(const std::string& path, CadFormat format,
                                      const LoadOptions& options) {
    return std::make_unique<CadReader>(path, format, options);
}

} // namespace vekhost
