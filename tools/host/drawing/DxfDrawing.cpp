// The second step of reading a DXF file: blocks expanded where they are inserted, colours,
// line types and weights resolved through layers and blocks, and the records written.
#include <algorithm>
#include <cmath>
#include <string>

#include "DxfContent.h"
#include "DxfReader.h"
#include "Flatten.h"
#include "LoadError.h"

namespace vekhost {

using drawing::Affine;
using drawing::Pattern;

namespace {
using namespace dxf;

constexpr int deepestNesting = 64;

// The AutoCAD Color Index: 1 to 9 named colours, 10 to 249 hues in 24 steps of 15 degrees
// with five shades each at full and at half saturation, 250 to 255 greys. 7 is the ink
// colour, black on the white paper the drawings are shown on.
veksg::Color4 aciColor(int index) {
    static const unsigned char named[10][3] = {
        {0, 0, 0},   {255, 0, 0},   {255, 255, 0}, {0, 255, 0},     {0, 255, 255},
        {0, 0, 255}, {255, 0, 255}, {0, 0, 0},     {128, 128, 128}, {192, 192, 192}};
    double r = 0;
    double g = 0;
    double b = 0;
    if (index >= 1 && index <= 9) {
        r = named[index][0] / 255.0;
        g = named[index][1] / 255.0;
        b = named[index][2] / 255.0;
    } else if (index >= 250 && index <= 255) {
        static const double greys[6] = {0.2, 0.314, 0.455, 0.588, 0.745, 1.0};
        r = g = b = greys[index - 250];
    } else if (index >= 10 && index <= 249) {
        static const double values[5] = {1.0, 0.8, 0.6, 0.5, 0.3};
        // Each run of ten indices is one hue.
        const int step = index / 10 - 1;
        const double hue = step * 15.0;
        const double value = values[(index % 10) / 2];
        const double saturation = index % 2 == 0 ? 1.0 : 0.5;
        auto channel = [&](double n) {
            const double k = std::fmod(n + hue / 60, 6);
            return value * (1 - saturation * std::max(0.0, std::min({k, 4 - k, 1.0})));
        };
        r = channel(5);
        g = channel(3);
        b = channel(1);
    }
    return veksg::Color4(static_cast<float>(r), static_cast<float>(g), static_cast<float>(b), 1);
}

veksg::Color4 rgbColor(int rgb) {
    return veksg::Color4(static_cast<float>((rgb >> 16) & 0xFF) / 255.0f,
                         static_cast<float>((rgb >> 8) & 0xFF) / 255.0f,
                         static_cast<float>(rgb & 0xFF) / 255.0f, 1.0f);
}

bool endsWith(const std::string& text, const char* tail) {
    const std::string t(tail);
    return text.size() >= t.size() && text.compare(text.size() - t.size(), t.size(), t) == 0;
}

// What a block's entities take from the INSERT that places them.
struct Context {
    Affine placement;
    int view = 0;
    /// The layer of entities on layer 0 in a block; -1 outside blocks.
    int layer = -1;
    veksg::Color4 color = aciColor(7);
    Pattern pattern = Pattern::Solid;
    int weight = 0;
    int depth = 0;
};

class Expander {
public:
    Expander(Content& content, DrawingBuilder& target) : c(content), b(target) {}

    void run() {
        for (std::size_t i = 0; i < c.layers.size(); ++i)
            b.addLayer(c.layerNames[i], c.layers[i].hidden);
        const veksg::Color4 white(1, 1, 1, 1);
        // Counted before anything is made, so that a file cannot make the expansion run
        // long before the builder's limit stops it.
        long long total = std::min(count(c.model, 0) + count(c.paper, 0), saturated);
        std::vector<const Block*> layouts;
        for (const Block& block : c.blocks) {
            const std::string name = upper(block.name);
            if (name.compare(0, 12, "*PAPER_SPACE") == 0 && !block.shapes.empty()) {
                layouts.push_back(&block);
                total = std::min(total + count(block.shapes, 0), saturated);
            }
        }
        if (total > b.limits().entities)
            throw LoadError("its block insertions make more than " +
                            std::to_string(b.limits().entities) + " entities");
        Context top;
        top.view = sheet(L"Model", white);
        emit(c.model, top);
        if (!c.paper.empty()) {
            top.view = sheet(L"Paper space", white);
            emit(c.paper, top);
        }
        int n = 0;
        for (const Block* layout : layouts) {
            top.view = sheet(L"Paper space " + std::to_wstring(++n), white);
            emit(layout->shapes, top);
        }
        b.finish();
    }

private:
    int sheet(const std::wstring& name, const veksg::Color4& background) {
        return b.addView(b.addSheet(name, false, background), name, false);
    }

    // Entities the shapes make once blocks are expanded, saturating past the limit;
    // throws for a block that inserts itself and for nesting too deep to be meant.
    long long count(const std::vector<Shape>& shapes, int depth) {
        if (depth > deepestNesting)
            throw LoadError("blocks nest more than " + std::to_string(deepestNesting) +
                            " levels deep");
        long long total = 0;
        for (const Shape& shape : shapes) {
            const auto* insert = std::get_if<Insert>(&shape.geometry);
            if (!insert) {
                ++total;
                continue;
            }
            const int block = blockOf(insert->block);
            if (block < 0) continue;
            const long long copies = static_cast<long long>(insert->columns) * insert->rows;
            const long long each = blockCount(block, depth + 1);
            total =
                each > 0 && copies > (saturated - total) / each ? saturated : total + copies * each;
        }
        return total;
    }

    long long blockCount(int block, int depth) {
        const auto index = static_cast<std::size_t>(block);
        if (counts.size() < c.blocks.size()) counts.assign(c.blocks.size(), -1);
        if (counts[index] == visiting)
            throw LoadError("block '" + c.blocks[index].name + "' inserts itself");
        if (counts[index] >= 0) return counts[index];
        counts[index] = visiting;
        counts[index] = count(c.blocks[index].shapes, depth);
        return counts[index];
    }

    int blockOf(const std::string& name) const {
        const auto found = c.blockKeys.find(upper(name));
        return found == c.blockKeys.end() ? -1 : found->second;
    }

    int layerOf(const Style& style, const Context& context) const {
        const auto found = c.layerKeys.find(upper(style.layer));
        const int layer = found == c.layerKeys.end() ? 0 : found->second;
        // Block entities on layer 0 take the layer of their insert.
        return layer == 0 && context.layer >= 0 ? context.layer : layer;
    }

    Pattern patternNamed(const std::string& name) const {
        const auto found = c.linetypes.find(name);
        return found == c.linetypes.end() ? Pattern::Solid : found->second;
    }

    // The pen of a shape in a context: its own settings, else its layer's, else its block's.
    Pen penOf(const Style& style, const Context& context, veksg::Color4& color) const {
        const int layer = layerOf(style, context);
        const Layer& onLayer = c.layers[static_cast<std::size_t>(layer)];
        if (style.trueColor >= 0)
            color = rgbColor(style.trueColor);
        else if (style.color == byLayer)
            color = onLayer.trueColor >= 0 ? rgbColor(onLayer.trueColor) : aciColor(onLayer.color);
        else if (style.color == byBlock)
            color = context.color;
        else
            color = aciColor(std::abs(style.color));
        Pen pen;
        pen.view = context.view;
        pen.layer = layer;
        pen.placement = context.placement;
        if (style.linetype == "BYLAYER")
            pen.pattern = onLayer.linetype == "BYLAYER" || onLayer.linetype == "BYBLOCK"
                              ? Pattern::Solid
                              : patternNamed(onLayer.linetype);
        else if (style.linetype == "BYBLOCK")
            pen.pattern = context.pattern;
        else
            pen.pattern = patternNamed(style.linetype);
        const int weight = style.weight == weightByLayer   ? onLayer.weight
                           : style.weight == weightByBlock ? context.weight
                                                           : style.weight;
        pen.weight = std::clamp(weight, 0, 255);
        pen.dashScale = c.dashScale * style.dashScale;
        return pen;
    }

    int fontOf(const std::string& styleName) {
        const auto found = c.textStyles.find(upper(styleName));
        const TextStyle style =
            found == c.textStyles.end() ? TextStyle{"txt", false, false} : found->second;
        const std::string file = style.font.empty() ? std::string("txt") : style.font;
        const std::string lower = [&] {
            std::string l = file;
            for (char& ch : l)
                ch = static_cast<char>(std::tolower(static_cast<unsigned char>(ch)));
            return l;
        }();
        const bool outline = endsWith(lower, ".ttf") || endsWith(lower, ".otf");
        const std::wstring wideFile(file.begin(), file.end());
        const std::wstring family =
            outline ? wideFile.substr(0, wideFile.size() - 4) : L"sans-serif";
        return b.font(family, wideFile,
                      (style.bold ? drawing::boldFont : 0) |
                          (style.italic ? drawing::italicFont : 0),
                      !outline);
    }

    void emit(const std::vector<Shape>& shapes, const Context& context) {
        for (const Shape& shape : shapes) {
            veksg::Color4 color;
            Pen pen = penOf(shape.style, context, color);
            pen.color = b.color(color);
            std::visit([&](const auto& geometry) { emitOne(geometry, shape, pen, color, context); },
                       shape.geometry);
        }
    }

    void emitOne(const Polyline& line, const Shape&, const Pen& pen, const veksg::Color4&,
                 const Context&) {
        b.addPolyline(pen, line.points, line.closed);
    }
    void emitOne(const Ellipse& e, const Shape&, const Pen& pen, const veksg::Color4&,
                 const Context&) {
        b.addEllipse(pen, e.center, e.axis0, e.axis1, e.start, e.end);
    }
    void emitOne(const Hatch& h, const Shape&, const Pen& pen, const veksg::Color4&,
                 const Context&) {
        b.addHatch(pen, h.loops, h.lines);
    }
    void emitOne(const Text& t, const Shape&, const Pen& pen, const veksg::Color4&,
                 const Context&) {
        if (t.text.empty()) return;
        b.addText(pen, fontOf(t.style), t.text, t.frame, t.h, t.v);
    }
    void emitOne(const Insert& insert, const Shape&, const Pen& pen, const veksg::Color4& color,
                 const Context& context) {
        const int block = blockOf(insert.block);
        if (block < 0) {
            ++c.notHeld["INSERT (missing block)"];
            return;
        }
        // An empty block makes nothing however often an array repeats it.
        if (blockCount(block, 0) == 0) return;
        if (context.depth >= deepestNesting)
            throw LoadError("blocks nest more than " + std::to_string(deepestNesting) +
                            " levels deep");
        const Block& definition = c.blocks[static_cast<std::size_t>(block)];
        Context inner;
        inner.view = context.view;
        inner.layer = pen.layer;
        inner.color = color;
        inner.pattern = pen.pattern;
        inner.weight = pen.weight;
        inner.depth = context.depth + 1;
        const Affine base = Affine::translation(-definition.base[0], -definition.base[1]);
        for (int row = 0; row < insert.rows; ++row)
            for (int column = 0; column < insert.columns; ++column) {
                inner.placement =
                    context.placement * insert.outer *
                    Affine::translation(column * insert.spacing[0], row * insert.spacing[1]) *
                    insert.scale * base;
                emit(definition.shapes, inner);
            }
    }

    Content& c;
    DrawingBuilder& b;
    const long long saturated = b.limits().entities + 1;
    static constexpr long long visiting = -2;
    std::vector<long long> counts;
};
} // namespace

void DxfReader::fill(DrawingBuilder& builder) {
    Expander(*content, builder).run();
}

std::map<std::string, long long> readDxf(std::istream& in, vek2d::SCScene2D& drawing,
                                         DrawingLimits limits) {
    DxfReader reader;
    reader.read(in, nullptr);
    DrawingBuilder builder(drawing, flatten::relativeTolerance, limits);
    reader.fill(builder);
    return reader.notHeld();
}

} // namespace vekhost
