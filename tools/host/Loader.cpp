#include "Loader.h"

#include <cctype>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <new>

#include "CadReader.h"
#include "DxfFile.h"
#include "MeshReader.h"
#include "SnapshotFile.h"
#include "Text.h"

namespace vekhost {

namespace fs = std::filesystem;

Reader::~Reader() = default;
Progress::~Progress() = default;

double seconds() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

double PhaseTimes::total() const {
    double all = read + tessellate + fill + resize;
    for (const NamedPhase& phase : named)
        all += phase.seconds;
    return all;
}

double PhaseTimes::fillResizeShare() const {
    const double all = total();
    return all > 0 ? (fill + resize) / all : 0.0;
}

namespace {
class NoProgress : public Progress {
public:
    void phase(const char*) override {}
    void update(double) override {}
};

PhaseTimes runPhases(Reader& reader, const std::string& path, Document& document,
                     Progress& progress) {
    const double start = seconds();
    progress.phase("reading");
    reader.read(progress);
    const double read = seconds();
    progress.phase("tessellating");
    reader.tessellate(progress);
    const double tessellated = seconds();
    progress.phase("filling");
    DocumentBuilder builder(document);
    reader.fill(builder);
    builder.setSource(wideFromUtf8(path), reader.deflection());
    builder.complete();
    const double filled = seconds();
    progress.phase("resizing");
    document.resizeAll();
    const double resized = seconds();
    return {read - start, tessellated - read, filled - tessellated, resized - filled};
}
} // namespace

LoadResult runReader(Reader& reader, const std::string& path, const LoadOptions& options) {
    LoadResult result;
    result.format = reader.format();
    result.document = std::make_unique<Document>();
    NoProgress silent;
    Progress* progress = options.progress ? options.progress : &silent;
    try {
        result.times = runPhases(reader, path, *result.document, *progress);
    } catch (const LoadError&) {
        throw;
    } catch (const std::bad_alloc&) {
        throw LoadError("out of memory");
    } catch (const std::exception& failure) {
        throw LoadError(failure.what());
    }
    result.deflection = reader.deflection();
    result.shapes = reader.cadShapes();
    result.notHeld = reader.notHeld();
    return result;
}

namespace {
std::string lowerExtension(const std::string& path) {
    std::string extension = fs::path(path).extension().string();
    for (char& c : extension)
        c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return extension;
}

void checkReadable(const std::string& path) {
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    if (error || !fs::exists(status))
        throw LoadError(error ? error.message() : std::string("no such file"));
    if (fs::is_directory(status)) throw LoadError("is a directory");
    if (!fs::is_regular_file(status)) throw LoadError("not a regular file");
    std::ifstream probe(path, std::ios::binary);
    if (!probe) throw LoadError(std::string("cannot open: ") + std::strerror(errno));
    if (probe.peek() == std::ifstream::traits_type::eof()) throw LoadError("empty file");
}
} // namespace

LoadResult loadFile(const std::string& path, const LoadOptions& options) {
    checkReadable(path);
    const std::string extension = lowerExtension(path);
    std::unique_ptr<Reader> reader;
    if (extension == ".step" || extension == ".stp")
        reader = makeCadReader(path, CadFormat::Step, options);
    else if (extension == ".iges" || extension == ".igs")
        reader = makeCadReader(path, CadFormat::Iges, options);
    else if (extension == ".brep")
        reader = makeCadReader(path, CadFormat::Brep, options);
    else if (extension == ".dxf")
        reader = makeDxfReader(path);
    else if (extension == ".vks")
        return loadSnapshot(path, options);
    else if (isMeshExtension(extension))
        reader = makeMeshReader(path);
    else if (extension.empty())
        throw LoadError("no file extension to tell the format by");
    else
        throw LoadError("unknown file type '" + extension + "'");
    return runReader(*reader, path, options);
}

LoadResult loadSample(const LoadOptions& options) {
    const auto reader = makeCadReader({}, CadFormat::Sample, options);
    return runReader(*reader, {}, options);
}

} // namespace vekhost
