#include "Draft.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <stdexcept>

namespace vekhost {

const char* draftClassName(DraftClass draftClass) {
    switch (draftClass) {
    case DraftClass::insufficient:
        return "insufficient";
    case DraftClass::positive:
        return "positive";
    case DraftClass::negative:
        return "negative";
    case DraftClass::mixed:
        return "mixed";
    case DraftClass::none:
        break;
    }
    return "none";
}

namespace {
constexpr double degrees = 180.0 / 3.14159265358979323846;

DraftClass classOf(double angle, double minimum) {
    if (angle >= minimum) return DraftClass::positive;
    if (angle <= -minimum) return DraftClass::negative;
    return DraftClass::insufficient;
}
} // namespace

void analyseDraft(Document& document, const PlacedMesh& mesh, const DraftSettings& settings) {
    const Vec3& p = settings.pull;
    const double length = std::sqrt(p[0] * p[0] + p[1] * p[1] + p[2] * p[2]);
    if (!(length > 0) || !std::isfinite(length))
        throw std::invalid_argument("the pull direction has no length");
    const Vec3 pull{p[0] / length, p[1] / length, p[2] / length};

    veksg::SCDraftAngleAnalysis& draft = *document.draft;
    draft.clearAll();
    draft.rangesA.clear();
    draft.point0 = veksg::Point3(static_cast<float>(pull[0]), static_cast<float>(pull[1]),
                                 static_cast<float>(pull[2]));
    draft.minAngle = static_cast<float>(-settings.minimum);
    draft.maxAngle = static_cast<float>(settings.minimum);

    const double nan = std::numeric_limits<double>::quiet_NaN();
    draft.anglesA.reserve(mesh.points.size());
    for (const Vec3& n : mesh.normals) {
        const double cosine = n[0] * pull[0] + n[1] * pull[1] + n[2] * pull[2];
        const bool defined = n[0] != 0 || n[1] != 0 || n[2] != 0;
        draft.anglesA.push_back(
            static_cast<float>(defined ? std::asin(std::clamp(cosine, -1.0, 1.0)) * degrees : nan));
    }
    for (const PlacedMesh::Range& range : mesh.ranges) {
        veksg::DraftRange extremes;
        extremes.first = range.first;
        extremes.count = range.count;
        double low = std::numeric_limits<double>::infinity();
        double high = -low;
        DraftClass faceClass = DraftClass::none;
        for (int i = range.first; i < range.first + range.count; ++i) {
            const double angle = draft.anglesA[static_cast<std::size_t>(i)];
            if (std::isnan(angle)) continue;
            low = std::min(low, angle);
            high = std::max(high, angle);
            const DraftClass vertexClass = classOf(angle, settings.minimum);
            faceClass = faceClass == DraftClass::none || faceClass == vertexClass
                            ? vertexClass
                            : DraftClass::mixed;
        }
        if (faceClass != DraftClass::none) {
            extremes.from = static_cast<float>(low);
            extremes.to = static_cast<float>(high);
        }
        draft.rangesA.push_back(extremes);
        draft.codes.push_back(static_cast<int>(faceClass));
    }
    draft.computed = true;
}

} // namespace vekhost
