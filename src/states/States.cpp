#include "veksg/States.h"

#include <utility>

namespace veksg {

TriadInfo::TriadInfo(const Point3& origin, const char& kind, const unsigned char& options,
                     const std::vector<std::vector<Point3>>& pointLists,
                     const std::vector<std::vector<vekmath::Tuple<float, 16>>>& matrixLists,
                     const std::vector<Point3>& points)
    : kind(kind), origin(origin), options(options), pointLists(pointLists),
      matrixLists(matrixLists), points(points) {
}

IState::IState(const int& cmdId) : cmdId(cmdId) {
}

IState::~IState() = default;

int IState::getCmdId() const {
    return cmdId;
}

void IState::setCmdId(int cmdId) {
    this->cmdId = cmdId;
}

int IState::getSeqId() const {
    return seqId;
}

void IState::setSeqId(int seqId) {
    this->seqId = seqId;
}

CameraState::CameraState(const int& cmdId, const Point3& position, const Point3& target,
                         const Point3& up)
    : IState(cmdId), position(position), target(target), up(up) {
}

CameraState::~CameraState() = default;

int CameraState::getCmdId() const {
    return cmdId;
}

AppearanceState::AppearanceState(const int& cmdId, const std::vector<int>& ids,
                                 const std::vector<unsigned long>& colors,
                                 const std::vector<float>& transparencies)
    : IState(cmdId), ids(ids), colors(colors), transparencies(transparencies) {
}

AppearanceState::~AppearanceState() = default;

int AppearanceState::getCmdId() const {
    return cmdId;
}

void AppearanceState::clear() {
    ids.clear();
    transparencies.clear();
    colors.clear();
}

TransformState::TransformState(const int& cmdId, const std::vector<int>& ids,
                               const std::vector<Transform>& transforms, const int& mode,
                               std::shared_ptr<TriadInfo> triad)
    : IState(cmdId), ids(ids), transforms(transforms), mode(mode), triad(std::move(triad)) {
}

TransformState::~TransformState() = default;

int TransformState::getCmdId() const {
    return cmdId;
}

void TransformState::clear() {
    ids.clear();
    transforms.clear();
}

VisibilityState::VisibilityState(const int& cmdId, const std::vector<int>& first,
                                 const std::vector<int>& second)
    : IState(cmdId), values(second), ids(first) {
}

VisibilityState::~VisibilityState() = default;

int VisibilityState::getCmdId() const {
    return cmdId;
}

SectionState::SectionState(const int& cmdId, const std::vector<std::shared_ptr<Section>>& sections,
                           const std::vector<int>& ids, const int& mode,
                           const std::vector<bool>& flags, std::shared_ptr<TriadInfo> triad)
    : IState(cmdId), sections(sections), mode(mode), ids(ids), triad(std::move(triad)),
      flags(flags) {
}

SectionState::~SectionState() = default;

int SectionState::getCmdId() const {
    return cmdId;
}

ClipNodeState::ClipNodeState(const int& cmdId, const std::vector<bool>& flags)
    : IState(cmdId), flags(flags) {
}

ClipNodeState::~ClipNodeState() = default;

int ClipNodeState::getCmdId() const {
    return cmdId;
}

} // namespace veksg
