#pragma once

#include <string>
#include <vector>

#include "Document.h"
#include "Render.h"

namespace vekload {

/// Sets `options` up to draw the annotations of `document.pmi` over the model: a dimension
/// as its dimension line with arrows and its text, a tolerance as a feature control frame, a
/// datum as its letter in a box on a triangle, each with its leader to the geometry; the
/// frame takes in their boxes. With a `viewName`, the picture looks as the saved view of that
/// name does, cut by its sections, and shows only the annotations it lists. Text is set with
/// FreeType in DejaVu Sans. Throws std::invalid_argument for a name that no saved view has,
/// std::runtime_error (when drawing) when the font cannot be read.
void addPmi(RenderOptions& options, const vekhost::Document& document, const std::string& viewName);

/// The orientation, stored as `SCView::orientations` stores it, that looks from the saved
/// view's position to its target with its up upwards.
std::vector<float> viewOrientation(const veksg::View& view);

} // namespace vekload
