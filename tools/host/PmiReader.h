#pragma once

#include <TDF_Label.hxx>

#include <map>
#include <string>

#include "CadShapes.h"
#include "Document.h"

namespace vekhost {

/// The annotation key that each dimension, tolerance and datum label of the XDE document
/// became, by the label's entry ("0:1:4:2").
using PmiKeys = std::map<std::string, int>;

/// A label's entry, the key of `PmiKeys`.
std::string labelEntry(const TDF_Label& label);

/// The names of the semantic values in `SCPmi::pmiAttributes`.
namespace pmiattr {
constexpr const wchar_t* type = L"type";
constexpr const wchar_t* nominal = L"nominal";
constexpr const wchar_t* upper = L"upper";
constexpr const wchar_t* lower = L"lower";
constexpr const wchar_t* datums = L"datums";
} // namespace pmiattr

/// Turns the dimensions, geometric tolerances and datums of `shapes`' document into
/// annotations of `document.pmi`: a `Measure` for a dimension, a `Text3DLeader` for a
/// tolerance or datum, a `TessPMI` for a presentation that carries no semantics. Each is
/// tied to the face and edge keys of every instance of the geometry it applies to (the
/// relations are listed in the README). Annotations without a position in the file are put
/// beside their geometry, outside the model's box. Call after the topology is filled.
PmiKeys readPmi(const CadShapes& shapes, Document& document);

} // namespace vekhost
