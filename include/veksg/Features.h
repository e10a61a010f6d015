#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "veksg/Container.h"
#include "veksg/Export.h"
#include "veksg/Geometry.h"
#include "veksg/Schema.h"

namespace veksg {

/// One hole of the model.
struct VEKSG_API Hole {
    Point3 origin;
    Point3 axis;
    /// Hosts must not rely on a default hole's size; it is zero so that copying a default
    /// hole never reads an indeterminate value.
    float size = 0.0f;

    Hole() = default;
    Hole(const Point3& origin, const Point3& axis, const float& size);
};

// Declared before `SCFeatures` uses it, so that nothing instantiates it here first.
extern template class VEKSG_API Container<int, Hole>;

/// The model's holes and the feature keys of each node. Hosts construct it directly.
class VEKSG_API SCFeatures : public Schema {
public:
    SCFeatures() : Schema(Schema::FEATURES) {}
    SCFeatures(const SCFeatures&) = default;
    SCFeatures& operator=(const SCFeatures&) = default;
    ~SCFeatures() override;
    short type() const override;
    /// Grows `nodeFeatures` to the last node (key space 10) with empty lists; `holes` has
    /// keys of its own and is never touched.
    void resize(std::shared_ptr<SchemaResizer> resizer) override;

    Container<int, Hole> holes;
    Container<int, std::vector<int>> nodeFeatures;
};

/// One member of a group of recognised holes: 16 bytes, copied as they are.
struct VEKSG_API HoleGroupEntry {
    int hole = -1;
    int face = -1;
    float diameter = 0.0f;
    float depth = 0.0f;
};

/// One recognised hole.
struct VEKSG_API HoleRecord {
    Point3 origin;
    Point3 axis;
    int kind = 0;
    int face = -1;
    float diameter = 0.0f;
    float depth = 0.0f;
    std::wstring name;
};

/// Results of hole recognition.
class VEKSG_API SCHoleInfo : public Schema {
public:
    SCHoleInfo() : Schema(Schema::HOLE_INFO) {}
    SCHoleInfo(const SCHoleInfo&) = default;
    SCHoleInfo& operator=(const SCHoleInfo&) = default;
    ~SCHoleInfo() override;
    short type() const override;

    std::map<int, std::vector<HoleGroupEntry>> holeGroups0;
    std::map<int, std::vector<HoleGroupEntry>> holeGroups1;
    std::vector<HoleRecord> holeRecords;
};

/// The reference and the compared file of a model comparison.
class VEKSG_API SCComprae : public Schema {
public:
    SCComprae() : Schema(Schema::COMPRAE) {}
    SCComprae(const SCComprae&) = default;
    SCComprae& operator=(const SCComprae&) = default;
    ~SCComprae() override;
    short type() const override;

    /// The files' characters; empty strings when unset, never null.
    const wchar_t* refFile() const { return refFile_.c_str(); }
    const wchar_t* cmpFile() const { return cmpFile_.c_str(); }
    /// A null `ref` empties both files and ignores `cmp`. Otherwise both are copied, and
    /// `cmp` must not be null: it is not checked.
    void setFiles(const wchar_t* ref, const wchar_t* cmp);

private:
    std::wstring refFile_;
    std::wstring cmpFile_;
};

/// Three lists of names exchanged with the HOOPS visualisation toolkit.
class VEKSG_API SCHoops : public Schema {
public:
    SCHoops() : Schema(Schema::HOOPS) {}
    SCHoops(const SCHoops&) = default;
    SCHoops& operator=(const SCHoops&) = default;
    ~SCHoops() override;
    short type() const override;

    std::vector<std::wstring> names0;
    std::vector<std::wstring> names1;
    std::vector<std::wstring> names2;
};

} // namespace veksg
