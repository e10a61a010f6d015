#include "veksg/PMI.h"

namespace veksg {

PMI::PMI(const PMIType& type) : pmiType(type) {
}

PMI::~PMI() = default;

PMI::PMIType PMI::type() {
    return pmiType;
}

void PMI::setName(const wchar_t* name) {
    name_ = std::wstring(name);
}

void PMI::setType(PMIType type) {
    pmiType = type;
}

TessPMI::TessPMI(const PMIType& type) : PMI(type) {
}

TessPMI::~TessPMI() = default;

PMI::PMIType TessPMI::type() {
    return PMI::type();
}

Text3D::Text3D(const wchar_t* name) : PMI(TEXT3D) {
    setName(name);
}

Text3D::~Text3D() = default;

PMI::PMIType Text3D::type() {
    return PMI::type();
}

// The text gets its own ownership record rather than a combined allocation.
Text3DLeader::Text3DLeader(const wchar_t* name) : PMI(TEXT3D_LEADER), text3d(new Text3D(name)) {
    setName(name);
}

Text3DLeader::~Text3DLeader() = default;

PMI::PMIType Text3DLeader::type() {
    return PMI::type();
}

Measure::Measure() : PMI(MEASURE), text3d(std::make_shared<Text3D>(L"Dimension")) {
}

Measure::~Measure() = default;

PMI::PMIType Measure::type() {
    return PMI::type();
}

Section::Section() : PMI(SECTION) {
}

Section::~Section() = default;

PMI::PMIType Section::type() {
    return PMI::type();
}

View::View() : PMI(VIEW) {
}

View::~View() = default;

PMI::PMIType View::type() {
    return PMI::type();
}

ViewSet::ViewSet() : PMI(VIEWSET) {
}

ViewSet::~ViewSet() = default;

PMI::PMIType ViewSet::type() {
    return PMI::type();
}

} // namespace veksg
