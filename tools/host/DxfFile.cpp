#include "DxfFile.h"

#include <fstream>

#include "DxfReader.h"
#include "Flatten.h"
#include "LoadError.h"

namespace vekhost {

namespace {
class DxfFile : public Reader {
public:
    explicit DxfFile(std::string file) : path(std::move(file)) {}

    const char* format() const override { return "DXF"; }

    void read(Progress& progress) override {
        std::ifstream in(path, std::ios::binary);
        if (!in) throw LoadError("cannot open the file");
        reader.read(in, [&progress](double fraction) { progress.update(fraction); });
    }
    void tessellate(Progress&) override {}
    void fill(DocumentBuilder& builder) override {
        DrawingBuilder drawing(builder.drawing(), flatten::relativeTolerance);
        reader.fill(drawing);
    }
    std::map<std::string, long long> notHeld() const override { return reader.notHeld(); }

private:
    std::string path;
    DxfReader reader;
};
} // namespace

std::unique_ptr<Reader> makeDxfReader(const std::string& path) {
    return std::make_unique<DxfFile>(path);
}

} // namespace vekhost
