#include "veksg/Geometry.h"

#include "vekmath/TupleUtils.h"

namespace veksg {

namespace {
using Ops = vekmath::TupleUtils<float, 3>;

// A negated axis is the axis scaled by -1, and terms are summed left to right from the
// centre, so every corner rounds the same way wherever it is computed.
Point3 axisTerm(const Point3& axis, bool negative) {
    Point3 term(axis);
    if (negative) Ops::multiply(term, -1.0f);
    return term;
}

Point3 corner(const OBBox& box, bool minusX, bool minusY, bool minusZ) {
    const Point3 withX = Ops::add(box.center, axisTerm(box.axisX, minusX));
    const Point3 withY = Ops::add(withX, axisTerm(box.axisY, minusY));
    return Ops::add(withY, axisTerm(box.axisZ, minusZ));
}
} // namespace

Point3 OBBox::llb() const {
    return corner(*this, true, true, true);
}
Point3 OBBox::lrb() const {
    return corner(*this, false, true, true);
}
Point3 OBBox::lrf() const {
    return corner(*this, false, true, false);
}
Point3 OBBox::llf() const {
    return corner(*this, true, true, false);
}
Point3 OBBox::urf() const {
    return corner(*this, false, false, false);
}
Point3 OBBox::ulf() const {
    return corner(*this, true, false, false);
}
Point3 OBBox::urb() const {
    return corner(*this, false, false, true);
}
Point3 OBBox::ulb() const {
    return corner(*this, true, false, true);
}

VertexInfo::~VertexInfo() {
    data.reset();
    count = 0;
}

IndexInfo::~IndexInfo() {
    data.reset();
    count = 0;
}

void Node::setName(const wchar_t* name) {
    name_ = std::wstring(name);
}

} // namespace veksg
