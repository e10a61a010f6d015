#pragma once

#include <memory>
#include <vector>

#include "vekmath/Tuple.h"
#include "veksg/Export.h"
#include "veksg/Geometry.h"
#include "veksg/PMI.h"

namespace veksg {

/// The on-screen three-axis manipulator shown with a transform or section state. States
/// share it; copies of a state never clone it.
class VEKSG_API TriadInfo {
public:
    TriadInfo() = default;
    /// The point comes first although `kind` is the first field. Every list is copied.
    TriadInfo(const Point3& origin, const char& kind, const unsigned char& options,
              const std::vector<std::vector<Point3>>& pointLists,
              const std::vector<std::vector<vekmath::Tuple<float, 16>>>& matrixLists,
              const std::vector<Point3>& points);

    char kind = 0;
    Point3 origin;
    unsigned char options = 0;
    std::vector<std::vector<Point3>> pointLists;
    std::vector<std::vector<vekmath::Tuple<float, 16>>> matrixLists;
    std::vector<Point3> points;
};

/// One recorded change to how the scene is shown. The library only holds states; hosts
/// apply them. Copies carry both identifiers.
class VEKSG_API IState {
public:
    /// `seqId` starts at -1, "not yet sequenced".
    explicit IState(const int& cmdId);
    IState(const IState&) = default;
    IState& operator=(const IState&) = default;
    virtual ~IState();

    virtual int getCmdId() const;
    virtual void setCmdId(int cmdId);
    virtual int getSeqId() const;
    virtual void setSeqId(int seqId);

    int cmdId;
    int seqId = -1;
};

// Each state class overrides `getCmdId` with the base body so that every class has its own
// entry for it.

/// A camera placement; the three vectors are stored as given and never interpreted.
class VEKSG_API CameraState : public IState {
public:
    CameraState(const int& cmdId, const Point3& position, const Point3& target, const Point3& up);
    CameraState(const CameraState&) = default;
    CameraState& operator=(const CameraState&) = default;
    ~CameraState() override;
    int getCmdId() const override;

    Point3 position;
    Point3 target;
    Point3 up;
};

/// A colour or transparency change; the host tells the two apart by the command id. The
/// three lists are independent and their lengths are not checked.
class VEKSG_API AppearanceState : public IState {
public:
    AppearanceState(const int& cmdId, const std::vector<int>& ids,
                    const std::vector<unsigned long>& colors,
                    const std::vector<float>& transparencies);
    AppearanceState(const AppearanceState&) = default;
    AppearanceState& operator=(const AppearanceState&) = default;
    ~AppearanceState() override;
    int getCmdId() const override;

    /// Empties the three lists for reuse, keeping their capacity and both identifiers.
    void clear();

    std::vector<int> ids;
    /// Packed colours, one 32-bit value each, in the host's channel order.
    std::vector<unsigned long> colors;
    std::vector<float> transparencies;
};

class VEKSG_API TransformState : public IState {
public:
    TransformState(const int& cmdId, const std::vector<int>& ids,
                   const std::vector<Transform>& transforms, const int& mode,
                   std::shared_ptr<TriadInfo> triad);
    TransformState(const TransformState&) = default;
    TransformState& operator=(const TransformState&) = default;
    ~TransformState() override;
    int getCmdId() const override;

    /// Empties `ids` and `transforms`, keeping their capacity; everything else stays.
    void clear();

    std::vector<int> ids;
    std::vector<Transform> transforms;
    int mode;
    std::shared_ptr<TriadInfo> triad;
};

class VEKSG_API VisibilityState : public IState {
public:
    /// Crossed on purpose: `first` fills `ids`, the second field, and `second` fills
    /// `values`, the first.
    VisibilityState(const int& cmdId, const std::vector<int>& first,
                    const std::vector<int>& second);
    VisibilityState(const VisibilityState&) = default;
    VisibilityState& operator=(const VisibilityState&) = default;
    ~VisibilityState() override;
    int getCmdId() const override;

    std::vector<int> values;
    std::vector<int> ids;
};

/// A cut set-up. Copies share the `Section` objects and the triad.
class VEKSG_API SectionState : public IState {
public:
    SectionState(const int& cmdId, const std::vector<std::shared_ptr<Section>>& sections,
                 const std::vector<int>& ids, const int& mode, const std::vector<bool>& flags,
                 std::shared_ptr<TriadInfo> triad);
    SectionState(const SectionState&) = default;
    SectionState& operator=(const SectionState&) = default;
    ~SectionState() override;
    int getCmdId() const override;

    std::vector<std::shared_ptr<Section>> sections;
    int mode;
    std::vector<int> ids;
    std::shared_ptr<TriadInfo> triad;
    std::vector<bool> flags;
};

class VEKSG_API ClipNodeState : public IState {
public:
    /// `flag` starts false; only a copy carries a set `flag` over.
    ClipNodeState(const int& cmdId, const std::vector<bool>& flags);
    ClipNodeState(const ClipNodeState&) = default;
    ClipNodeState& operator=(const ClipNodeState&) = default;
    ~ClipNodeState() override;
    int getCmdId() const override;

    std::vector<bool> flags;
    bool flag = false;
};

} // namespace veksg
