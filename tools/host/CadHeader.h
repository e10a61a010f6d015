#pragma once

#include <IGESCAFControl_Reader.hxx>
#include <STEPCAFControl_Reader.hxx>
#include <TopoDS_Shape.hxx>

#include <string>

#include "DocumentInfo.h"

// What CAD files tell about themselves beside their shapes, through Open CASCADE.
namespace vekhost {

/// A STEP file's header (file name, author, organisation, originating system, timestamp),
/// its length unit, the uncertainty of its geometric context as tolerance, its counts, and
/// the external files its assembly references. `reader` has transferred `path`.
SourceInfo stepInfo(STEPCAFControl_Reader& reader, const std::string& path);

/// An IGES file's global section (the same fields, the minimum resolution as tolerance) and
/// its counts.
SourceInfo igesInfo(IGESCAFControl_Reader& reader);

/// A BREP file's count of distinct sub-shapes; the format states no unit or tolerance.
SourceInfo brepInfo(const TopoDS_Shape& shape);

} // namespace vekhost
