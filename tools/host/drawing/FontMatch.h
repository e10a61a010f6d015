#pragma once

#include <cairo.h>

#include <map>
#include <string>
#include <utility>

#include "veksg/Resources.h"

namespace vekhost {

/// Cairo font faces for the fonts of a drawing, each found through fontconfig by the
/// family, weight and slant the `veksg::Font` names; fontconfig's best match stands in for
/// families that are not installed.
class FontFaces {
public:
    FontFaces() = default;
    ~FontFaces();
    FontFaces(const FontFaces&) = delete;
    FontFaces& operator=(const FontFaces&) = delete;

    /// Owned by this object; valid while it lives.
    cairo_font_face_t* face(const veksg::Font& font);
    /// The height of a capital letter at font size 1, by which text heights become sizes.
    double capHeight(const veksg::Font& font);

private:
    struct Face {
        cairo_font_face_t* face = nullptr;
        double capHeight = 0.7;
    };
    Face& find(const veksg::Font& font);

    std::map<std::pair<std::wstring, int>, Face> faces;
};

} // namespace vekhost
