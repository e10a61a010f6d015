#include "veksg/StateFactory.h"

#include <utility>

namespace veksg {

namespace {
// The factory never assigns identifiers; the host does.
constexpr int unassigned = -1;

template <typename State, typename... Args>
std::shared_ptr<IState> makeState(Args&&... args) {
    return std::make_shared<State>(unassigned, std::forward<Args>(args)...);
}
} // namespace

std::shared_ptr<IState> StateFactory::createCameraState(const Point3& position,
                                                        const Point3& target, const Point3& up) {
    return makeState<CameraState>(position, target, up);
}

std::shared_ptr<IState> StateFactory::createColorState(const std::vector<int>& ids,
                                                       const std::vector<unsigned long>& colors,
                                                       const std::vector<float>& transparencies) {
    return makeState<AppearanceState>(ids, colors, transparencies);
}

std::shared_ptr<IState>
StateFactory::createTransparencyState(const std::vector<int>& ids,
                                      const std::vector<unsigned long>& colors,
                                      const std::vector<float>& transparencies) {
    return std::shared_ptr<IState>(new AppearanceState(unassigned, ids, colors, transparencies));
}

std::shared_ptr<IState> StateFactory::createVisibilityState(const std::vector<int>& first,
                                                            const std::vector<int>& second) {
    return makeState<VisibilityState>(first, second);
}

std::shared_ptr<IState> StateFactory::createTransformState(const std::vector<int>& ids,
                                                           const std::vector<Transform>& transforms,
                                                           int mode,
                                                           std::shared_ptr<TriadInfo> triad) {
    return makeState<TransformState>(ids, transforms, mode, std::move(triad));
}

std::shared_ptr<IState>
StateFactory::createSectionState(const std::vector<std::shared_ptr<Section>>& sections,
                                 std::vector<int>& ids, int mode, const std::vector<bool>& flags,
                                 std::shared_ptr<TriadInfo> triad) {
    return makeState<SectionState>(sections, ids, mode, flags, std::move(triad));
}

std::shared_ptr<IState> StateFactory::createClipNodeState(const std::vector<bool>& flags) {
    return makeState<ClipNodeState>(flags);
}

} // namespace veksg
