#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "vekmath/Tuple.h"
#include "veksg/Container.h"
#include "veksg/Export.h"
#include "veksg/Geometry.h"

namespace veksg {

/// An annotation that travels with a model. Abstract: only the subclasses are made.
class VEKSG_API PMI {
public:
    /// The kind of an annotation. The library's own classes set the named values; every
    /// other value (2, 4 to 11, 13 to 16, above 18) is free for `TessPMI` kinds chosen by
    /// the host.
    enum PMIType : std::int32_t {
        TEXT3D = 0,
        TEXT3D_LEADER = 1,
        MEASURE = 3,
        VIEW = 12,
        SECTION = 17,
        VIEWSET = 18,
    };

    explicit PMI(const PMIType& type);
    PMI(const PMI&) = default;
    PMI& operator=(const PMI&) = default;
    virtual ~PMI();

    /// The stored kind. Pure so that every class states its own override; the base body is
    /// what each override returns.
    virtual PMIType type() = 0;

    /// The name's characters, valid until the name changes; empty when unnamed.
    const wchar_t* name() const { return name_.c_str(); }
    /// Replaces the name with a copy of the zero-terminated argument, which must not be null.
    void setName(const wchar_t* name);
    /// The only way the kind changes after construction.
    void setType(PMIType type);

    /// Host-assigned number; no constructor gives it a meaning.
    int id = 0;

private:
    // Kept between `id` and `pmiType`, where the record layout puts the name.
    std::wstring name_;

public:
    PMIType pmiType;
};

/// A tessellated annotation of a kind the host names.
class VEKSG_API TessPMI : public PMI {
public:
    explicit TessPMI(const PMIType& type);
    TessPMI(const TessPMI&) = default;
    TessPMI& operator=(const TessPMI&) = default;
    ~TessPMI() override;
    PMIType type() override;
};

class VEKSG_API Text3D : public PMI {
public:
    /// Names the annotation; `text` stays empty.
    explicit Text3D(const wchar_t* name);
    Text3D(const Text3D&) = default;
    Text3D& operator=(const Text3D&) = default;
    ~Text3D() override;
    PMIType type() override;

    std::wstring text;
    Point3 position;
    Point3 secondPoint;
    vekmath::Tuple<float, 16> matrix = vekmath::MatrixUtils::createIdentity();
};

/// A 3D text with a leader line. Copies share the text and the leader.
class VEKSG_API Text3DLeader : public PMI {
public:
    /// Names both this annotation and its new `text3d`.
    explicit Text3DLeader(const wchar_t* name);
    Text3DLeader(const Text3DLeader&) = default;
    Text3DLeader& operator=(const Text3DLeader&) = default;
    ~Text3DLeader() override;
    PMIType type() override;

    std::shared_ptr<Text3D> text3d;
    std::shared_ptr<Polyline> leader;
};

/// A dimension. Copies share the text and the leader.
class VEKSG_API Measure : public PMI {
public:
    /// The measure itself stays unnamed; its text is named "Dimension".
    Measure();
    Measure(const Measure&) = default;
    Measure& operator=(const Measure&) = default;
    ~Measure() override;
    PMIType type() override;

    Point3 point1;
    Point3 point2;
    Point3 point3;
    float value = 0.0f;
    std::shared_ptr<Text3D> text3d;
    std::shared_ptr<Polyline> leader;
    int measureSetting = 1;
    std::wstring measureText;
    Point3 point4;
};

/// A section plane.
class VEKSG_API Section : public PMI {
public:
    Section();
    Section(const Section&) = default;
    Section& operator=(const Section&) = default;
    ~Section() override;
    PMIType type() override;

    Point3 origin;
    Point3 normal = Point3(0.0f, 0.0f, 1.0f);
    int sectionSetting = 0;
};

/// A saved view: a camera and the display settings that go with it.
class VEKSG_API View : public PMI {
public:
    View();
    View(const View&) = default;
    View& operator=(const View&) = default;
    ~View() override;
    PMIType type() override;

    int viewIndex = -1;
    Point3 position;
    Point3 target;
    Point3 up = Point3(0.0f, 1.0f, 0.0f);
    bool viewFlag = true;
    std::wstring text1;
    std::wstring text2;
    std::wstring text3;
    std::wstring text4;
    int viewValue = 0;
    std::vector<int> list1;
    std::vector<int> list2;
    std::vector<int> list3;
    std::vector<int> list4;
    std::vector<float> floatList;
    std::vector<int> list5;
    std::vector<Transform> transforms;
    std::vector<Point3> points;
    std::vector<int> list6;
    /// Packed colours, one 32-bit value each.
    std::vector<unsigned long> colorList;
    int viewEnd = -1;
};

class VEKSG_API ViewSet : public PMI {
public:
    ViewSet();
    ViewSet(const ViewSet&) = default;
    ViewSet& operator=(const ViewSet&) = default;
    ~ViewSet() override;
    PMIType type() override;
};

extern template class VEKSG_API Container<int, std::shared_ptr<PMI>>;
extern template class VEKSG_API Container<int, std::shared_ptr<Text3D>>;
extern template class VEKSG_API Container<int, std::shared_ptr<Text3DLeader>>;
extern template class VEKSG_API Container<int, std::shared_ptr<View>>;
extern template class VEKSG_API Container<int, std::shared_ptr<ViewSet>>;
extern template class VEKSG_API Container<int, std::shared_ptr<Measure>>;
extern template class VEKSG_API Container<int, std::shared_ptr<Section>>;

} // namespace veksg
