#pragma once

#include <map>
#include <memory>
#include <string>

#include "Builder.h"
#include "Progress.h"

namespace vekhost {

class CadShapes;

struct LoadOptions {
    /// Chordal deflection of the tessellation in model units; 0 or less picks one from the
    /// model's size.
    double deflection = 0;
    /// Told how the load proceeds; not owned, null for none.
    Progress* progress = nullptr;
};

/// One file format's way through the load phases. The phases run in order, each once;
/// `runReader` (Loader.h) times them and fills the document in between. They throw
/// LoadError for bad input.
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
    /// What the file holds that the data model cannot, counted by kind; empty by default.
    virtual std::map<std::string, long long> notHeld() const { return {}; }
};

} // namespace vekhost
