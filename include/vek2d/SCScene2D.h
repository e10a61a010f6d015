#pragma once

// The whole public interface of the vek2d namespace: the records of 2D drawings and the one
// component that gathers them.
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "vekmath/Tuple.h"
#include "veksg/Container.h"
#include "veksg/Export.h"
#include "veksg/Geometry.h"
#include "veksg/Resources.h"
#include "veksg/Schema.h"

namespace vek2d {

using veksg::Color4;
using veksg::Point3;

struct VEKSG_API Ellipse {
    Point3 center;
    Point3 axis0;
    Point3 axis1;
    int param0 = 0;
    int param1 = 0;
};

/// A shared index buffer: copies share `indices`, never duplicate it.
struct VEKSG_API IndicesInfo {
    std::shared_ptr<std::uint32_t[]> indices;
    int count = 0;
};

struct VEKSG_API EntityColor {
    Color4 color;
};

/// One drawn item.
struct VEKSG_API Entity {
    std::vector<Point3> points;
    int id = -1;
    double scale = 1.0;
    int value0 = 0;
    int value1 = 0;
    bool flag = false;
    int value2 = 0;
    std::uint16_t style = 0;
    std::vector<Point3> points2;
    /// All zeros by default, not the identity.
    vekmath::Tuple<float, 16> matrix;
};

struct VEKSG_API HatchPattern {
    std::vector<std::vector<Point3>> loops;
};

/// A view on a sheet.
struct VEKSG_API View {
    /// One space, not empty.
    std::wstring name = L" ";
    Point3 point0;
    Point3 point1;
    bool flag = false;
};

struct VEKSG_API Sheet {
    bool flag0 = false;
    /// One space, not empty.
    std::wstring name = L" ";
    double tolerance = 0.001;
    Point3 point0;
    Point3 point1;
    bool flag1 = false;
    /// Opaque black.
    Color4 color = Color4(0.0f, 0.0f, 0.0f, 1.0f);
};

/// A 2D drawing: its sheets, views, entities, texts and fonts. Hosts construct it directly;
/// the factory does not make it.
class VEKSG_API SCScene2D : public veksg::Schema {
public:
    /// Type code 25.
    SCScene2D() : Schema(Schema::SCENE_2D) {}
    /// Stores `code` (truncated to 16 bits) instead of 25.
    explicit SCScene2D(Schema::TYPE code) : Schema(static_cast<short>(code)) {}
    SCScene2D(const SCScene2D&) = default;
    SCScene2D& operator=(const SCScene2D&) = default;
    ~SCScene2D() override;
    short type() const override;

    /// Does nothing and leaves every field as it is; kept empty on purpose.
    void clearAll();

    std::vector<Sheet> sheets;
    std::vector<View> views;
    std::vector<int> values;
    std::vector<std::wstring> names;
    std::vector<Entity> entities;
    std::vector<Entity> entities2;
    std::vector<EntityColor> colors;
    std::vector<HatchPattern> hatches;
    std::vector<IndicesInfo> indices;
    veksg::Container<int, veksg::Text> texts;
    veksg::Container<int, veksg::Font> fonts;
    std::vector<Ellipse> ellipses;
    veksg::Container<int, std::vector<int>> lists0;
    veksg::Container<int, std::vector<int>> lists1;
    veksg::Container<int, std::vector<int>> lists2;
    veksg::Container<int, std::vector<int>> lists3;
    veksg::Container<int, std::vector<int>> lists4;
    veksg::Container<int, std::vector<int>> lists5;
    veksg::Container<int, std::vector<int>> lists6;
    veksg::Container<int, std::vector<int>> lists7;
    veksg::Container<int, int> map0;
    veksg::Container<int, int> map1;
    veksg::Container<int, int> map2;
    veksg::Container<int, int> map3;
    veksg::Container<int, int> map4;
    veksg::Container<int, int> map5;
    veksg::Container<int, int> map6;
    veksg::Container<int, int> map7;
    veksg::Container<int, int> map8;
    veksg::Container<int, int> map9;
    veksg::Container<int, int> map10;
    std::uint16_t current = 0;
    /// Transparent black.
    Color4 color;
    float scale = -1.0f;
};

} // namespace vek2d
