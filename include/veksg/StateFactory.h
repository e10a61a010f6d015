#pragma once

#include <memory>
#include <vector>

#include "veksg/Export.h"
#include "veksg/Geometry.h"
#include "veksg/PMI.h"
#include "veksg/States.h"

namespace veksg {

/// Makes view states. Every state leaves with command and sequence id -1; the host sets
/// both before filing it. Stateless: any number of factories behave the same.
class VEKSG_API StateFactory {
public:
    std::shared_ptr<IState> createCameraState(const Point3& position, const Point3& target,
                                              const Point3& up);
    /// Object and ownership record in one allocation.
    std::shared_ptr<IState> createColorState(const std::vector<int>& ids,
                                             const std::vector<unsigned long>& colors,
                                             const std::vector<float>& transparencies);
    /// The same contents as `createColorState`, but the state and its ownership record are
    /// allocated separately.
    std::shared_ptr<IState> createTransparencyState(const std::vector<int>& ids,
                                                    const std::vector<unsigned long>& colors,
                                                    const std::vector<float>& transparencies);
    /// `ids` = first, `values` = second.
    std::shared_ptr<IState> createVisibilityState(const std::vector<int>& first,
                                                  const std::vector<int>& second);
    std::shared_ptr<IState> createTransformState(const std::vector<int>& ids,
                                                 const std::vector<Transform>& transforms, int mode,
                                                 std::shared_ptr<TriadInfo> triad);
    /// `ids` is only read, although it is not taken as const.
    std::shared_ptr<IState>
    createSectionState(const std::vector<std::shared_ptr<Section>>& sections, std::vector<int>& ids,
                       int mode, const std::vector<bool>& flags, std::shared_ptr<TriadInfo> triad);
    /// `flag` starts false.
    std::shared_ptr<IState> createClipNodeState(const std::vector<bool>& flags);
};

} // namespace veksg
