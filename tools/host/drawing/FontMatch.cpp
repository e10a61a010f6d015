#include "FontMatch.h"

#include <cairo-ft.h>
#include <fontconfig/fontconfig.h>

#include <string>

#include "Drawing.h"

namespace vekhost {

namespace {
// Family names are ASCII in practice; anything else falls back to fontconfig's default.
std::string asciiOf(const std::wstring& text) {
    std::string out;
    for (const wchar_t c : text)
        out += c > 0 && c < 0x80 ? static_cast<char>(c) : '?';
    return out;
}
} // namespace

FontFaces::~FontFaces() {
    for (auto& entry : faces)
        cairo_font_face_destroy(entry.second.face);
}

FontFaces::Face& FontFaces::find(const veksg::Font& font) {
    const auto key = std::make_pair(std::wstring(font.name()), font.style);
    const auto found = faces.find(key);
    if (found != faces.end()) return found->second;
    Face made;
    FcPattern* wanted = FcPatternCreate();
    const std::string family = asciiOf(font.name());
    FcPatternAddString(
        wanted, FC_FAMILY,
        reinterpret_cast<const FcChar8*>(family.empty() ? "sans-serif" : family.c_str()));
    FcPatternAddInteger(wanted, FC_WEIGHT,
                        (font.style & drawing::boldFont) != 0 ? FC_WEIGHT_BOLD : FC_WEIGHT_REGULAR);
    FcPatternAddInteger(wanted, FC_SLANT,
                        (font.style & drawing::italicFont) != 0 ? FC_SLANT_ITALIC : FC_SLANT_ROMAN);
    FcConfigSubstitute(nullptr, wanted, FcMatchPattern);
    FcDefaultSubstitute(wanted);
    FcResult outcome = FcResultNoMatch;
    FcPattern* match = FcFontMatch(nullptr, wanted, &outcome);
    FcPatternDestroy(wanted);
    if (match) {
        // Cairo keeps its own reference to the pattern.
        made.face = cairo_ft_font_face_create_for_pattern(match);
        FcPatternDestroy(match);
    } else {
        made.face = cairo_toy_font_face_create("sans-serif", CAIRO_FONT_SLANT_NORMAL,
                                               CAIRO_FONT_WEIGHT_NORMAL);
    }
    // The cap height, measured once on a scratch surface.
    cairo_surface_t* scratch = cairo_image_surface_create(CAIRO_FORMAT_A8, 1, 1);
    cairo_t* cr = cairo_create(scratch);
    cairo_set_font_face(cr, made.face);
    cairo_set_font_size(cr, 100);
    cairo_text_extents_t extents{};
    cairo_text_extents(cr, "H", &extents);
    if (extents.height > 1) made.capHeight = extents.height / 100;
    cairo_destroy(cr);
    cairo_surface_destroy(scratch);
    return faces.emplace(key, made).first->second;
}

cairo_font_face_t* FontFaces::face(const veksg::Font& font) {
    return find(font).face;
}

double FontFaces::capHeight(const veksg::Font& font) {
    return find(font).capHeight;
}

} // namespace vekhost
