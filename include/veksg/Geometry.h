#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "vekmath/MatrixUtils.h"
#include "vekmath/Tuple.h"
#include "veksg/Container.h"
#include "veksg/Export.h"

namespace veksg {

using Point3 = vekmath::Tuple<float, 3>;

/// Axis-aligned box.
struct VEKSG_API BBox {
    Point3 min;
    Point3 max;
    bool valid = false;
};

/// Oriented box: a centre and three half-axis vectors. The corner accessors ignore `valid`.
/// In a corner's name the first letter picks upper (+Y) or lower (-Y), the second right (+X)
/// or left (-X), the third front (+Z) or back (-Z).
struct VEKSG_API OBBox {
    Point3 center;
    Point3 axisX;
    Point3 axisY;
    Point3 axisZ;
    bool valid = false;

    Point3 llb() const;
    Point3 lrb() const;
    Point3 lrf() const;
    Point3 llf() const;
    Point3 urf() const;
    Point3 ulf() const;
    Point3 urb() const;
    Point3 ulb() const;
};

/// A default transform holds the identity matrix but is not marked as set.
struct VEKSG_API Transform {
    vekmath::Tuple<float, 16> matrix = vekmath::MatrixUtils::createIdentity();
    bool valid = false;
};

// Interleaved vertex layouts: tightly packed floats, left uninitialised by their default
// constructors and copied bytewise. NV, CNV and TNV are OpenGL's N3F_V3F, C4F_N3F_V3F and
// T2F_N3F_V3F.
struct VN {
    float vertex[3];
    float normal[3];
};
struct VNC {
    float vertex[3];
    float normal[3];
    float color[4];
};
struct VNT {
    float vertex[3];
    float normal[3];
    float texture[2];
};
struct NV {
    float normal[3];
    float vertex[3];
};
struct CNV {
    float color[4];
    float normal[3];
    float vertex[3];
};
struct TNV {
    float texture[2];
    float normal[3];
    float vertex[3];
};

/// Tessellated triangles in the three scene layouts; copies are deep.
struct VEKSG_API Mesh {
    std::vector<VN> vn;
    std::vector<VNC> vnc;
    std::vector<VNT> vnt;
};

/// A polyline's points and one 32-bit value list travelling with them; copies are deep.
struct VEKSG_API Polyline {
    std::vector<Point3> points;
    std::vector<int> values;
};

/// One drawable primitive.
struct VEKSG_API PrimitiveInfo {
    int id = -1;
    int first = 0;
    int count = 0;
    std::uint16_t mode = 0;
    Point3 color;
};

/// A shared vertex buffer: copies share `data`, never duplicate it.
struct VEKSG_API VertexInfo {
    int stride = 1;
    int count = 0;
    std::shared_ptr<float[]> data;

    VertexInfo() = default;
    VertexInfo(const VertexInfo&) = default;
    VertexInfo(VertexInfo&&) = default;
    VertexInfo& operator=(const VertexInfo&) = default;
    VertexInfo& operator=(VertexInfo&&) = default;
    /// Releases `data` and sets `count` to 0 before the object ends.
    ~VertexInfo();
};

/// A shared index buffer: copies share `data`, never duplicate it.
struct VEKSG_API IndexInfo {
    int count = 0;
    std::shared_ptr<std::uint32_t[]> data;

    IndexInfo() = default;
    IndexInfo(const IndexInfo&) = default;
    IndexInfo(IndexInfo&&) = default;
    IndexInfo& operator=(const IndexInfo&) = default;
    IndexInfo& operator=(IndexInfo&&) = default;
    /// Releases `data` and sets `count` to 0 before the object ends.
    ~IndexInfo();
};

/// A named scene node.
class VEKSG_API Node {
public:
    int id = -1;
    bool flag = false;
    int ref = -1;

    /// The name's characters; an unnamed node gives an empty string, never null.
    const wchar_t* name() const { return name_.c_str(); }
    /// Replaces the name with a copy of the zero-terminated `name`, which must not be null.
    void setName(const wchar_t* name);

private:
    std::wstring name_;
};

// Topological entities; every id that names a table key is -1 until set.
struct VEKSG_API Face {
    int id = -1;
    bool flag = false;
    Point3 pointA;
    Point3 pointB;
};

struct VEKSG_API Edge {
    int id = -1;
    int ref = -1;
    Point3 pointA;
    Point3 pointB;
    int kind = 0;
};

struct VEKSG_API Vertex {
    int id = -1;
    Point3 position;
};

struct VEKSG_API Surface {
    int id = -1;
};

struct VEKSG_API Curve {
    int id = -1;
};

extern template class VEKSG_API Container<int, std::shared_ptr<Mesh>>;
extern template class VEKSG_API Container<int, std::shared_ptr<Polyline>>;
extern template class VEKSG_API Container<int, Node>;
extern template class VEKSG_API Container<int, Face>;
extern template class VEKSG_API Container<int, Edge>;
extern template class VEKSG_API Container<int, Curve>;
extern template class VEKSG_API Container<int, Surface>;
extern template class VEKSG_API Container<int, Vertex>;
extern template class VEKSG_API Container<int, BBox>;
extern template class VEKSG_API Container<int, OBBox>;
extern template class VEKSG_API Container<int, Transform>;
extern template class VEKSG_API Container<int, std::shared_ptr<VertexInfo>>;
extern template class VEKSG_API Container<int, std::shared_ptr<IndexInfo>>;
extern template class VEKSG_API Container<int, std::shared_ptr<PrimitiveInfo>>;
extern template class VEKSG_API Container<int, PrimitiveInfo>;

} // namespace veksg
