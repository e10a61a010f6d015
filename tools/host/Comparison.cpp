#include "Comparison.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace vekhost {

ComparisonResult compareWith(Document& document, const PlacedMesh& mesh, const RayScene& reference,
                             const std::wstring& referenceFile) {
    ComparisonResult result;
    result.distances.assign(mesh.points.size(), std::numeric_limits<float>::quiet_NaN());
    double low = std::numeric_limits<double>::infinity(), high = -low, sum = 0, squares = 0;
    std::size_t count = 0;
    for (std::size_t i = 0; i < mesh.points.size(); ++i) {
        const Vec3& p = mesh.points[i];
        const auto nearest = reference.nearest(p);
        if (!nearest) break;
        const Vec3 n = reference.normal(nearest->triangle);
        const double side = (p[0] - nearest->point[0]) * n[0] + (p[1] - nearest->point[1]) * n[1] +
                            (p[2] - nearest->point[2]) * n[2];
        const double distance = side < 0 ? -nearest->distance : nearest->distance;
        result.distances[i] = static_cast<float>(distance);
        low = std::min(low, distance);
        high = std::max(high, distance);
        sum += distance;
        squares += distance * distance;
        ++count;
    }
    if (count > 0) {
        result.min = low;
        result.max = high;
        result.mean = sum / static_cast<double>(count);
        result.rms = std::sqrt(squares / static_cast<double>(count));
    }
    document.comparison->setFiles(referenceFile.c_str(), document.info->filePath.c_str());
    return result;
}

} // namespace vekhost
