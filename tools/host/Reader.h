#pragma once

#include <memory>
#include <string>

#include "Builder.h"
#include "Loader.h"
#include "Progress.h"

namespace vekhost {

/// One file format's way through the load phases. The phases run in order, each once;
/// `runReader` times them and fills the document in between.
class Reader {
public:
    Reader() = default;
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;
    virtual ~Reader();

    virtual const char* format() const = 0;
    virtual void read(Progress& progress) = 0;
    virtual void tessellate(Progress& progress) = 0;
    virtual void fill(DocumentBuilder& builder) = 0;
    /// The deflection the tessellation used, 0 when the file held triangles already.
    virtual double deflection() const { return 0; }
    /// The B-rep behind the records, for readers of CAD files; null for others.
    virtual std::shared_ptr<const CadShapes> cadShapes() const { return nullptr; }
};

/// Runs the phases of `reader` for the file at `path` (empty for the built-in sample).
LoadResult runReader(Reader& reader, const std::string& path, const LoadOptions& options);

} // namespace vekhost
