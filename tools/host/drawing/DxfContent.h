#pragma once

#include <map>
#include <string>
#include <variant>
#include <vector>

#include "DrawingBuilder.h"

// A DXF file as read, before blocks are expanded and styles resolved: what the dxflib
// adapter (DxfReader.cpp) collects and the expansion (DxfDrawing.cpp) turns into records.
// Geometry is in the coordinates of the block or space that holds it, curves that the
// records keep as points already flattened.
namespace vekhost::dxf {

/// ACI colour codes with a meaning of their own.
constexpr int byBlock = 0;
constexpr int byLayer = 256;
/// Line weight codes (hundredths of a millimetre otherwise).
constexpr int weightByLayer = -1;
constexpr int weightByBlock = -2;

struct Style {
    std::string layer = "0";
    int color = byLayer;
    /// 0xRRGGBB, or -1 for none (the ACI colour holds).
    int trueColor = -1;
    std::string linetype = "BYLAYER";
    int weight = weightByLayer;
    double dashScale = 1;
    /// In paper space rather than model space (entities outside blocks only).
    bool paper = false;
};

struct Polyline {
    std::vector<Point2> points;
    bool closed = false;
};

struct Ellipse {
    Point2 center{0, 0};
    Point2 axis0{1, 0};
    Point2 axis1{0, 1};
    double start = 0;
    double end = 2 * drawing::pi;
};

struct Hatch {
    std::vector<std::vector<Point2>> loops;
    /// Empty for a solid fill.
    std::vector<HatchLines> lines;
};

struct Text {
    std::wstring text;
    std::string style;
    drawing::Affine frame;
    drawing::HAlign h = drawing::HAlign::Left;
    drawing::VAlign v = drawing::VAlign::Baseline;
};

struct Insert {
    std::string block;
    /// Everything of the placement but the block's base point and the array offsets.
    drawing::Affine outer;
    drawing::Affine scale;
    int columns = 1;
    int rows = 1;
    Point2 spacing{0, 0};
};

struct Shape {
    Style style;
    std::variant<Polyline, Ellipse, Hatch, Text, Insert> geometry;
};

struct Block {
    std::string name;
    Point2 base{0, 0};
    std::vector<Shape> shapes;
};

struct Layer {
    std::string name;
    int color = 7;
    int trueColor = -1;
    std::string linetype = "CONTINUOUS";
    int weight = -3;
    bool hidden = false;
};

struct TextStyle {
    std::string font;
    bool bold = false;
    bool italic = false;
};

struct Content {
    std::vector<Layer> layers;
    std::vector<std::wstring> layerNames;
    /// By upper-case name, here and below: DXF names ignore case.
    std::map<std::string, int> layerKeys;
    std::map<std::string, drawing::Pattern> linetypes;
    std::map<std::string, TextStyle> textStyles;
    std::vector<Block> blocks;
    std::map<std::string, int> blockKeys;
    std::vector<Shape> model;
    std::vector<Shape> paper;
    double dashScale = 1;
    /// Entities that the data model cannot hold, by kind.
    std::map<std::string, long long> notHeld;
};

std::string upper(std::string text);

} // namespace vekhost::dxf
