#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "vekmath/Tuple.h"
#include "veksg/Export.h"
#include "veksg/Geometry.h"
#include "veksg/Schema.h"

namespace veksg {

/// Settings and results of a wall-thickness analysis. The analysis runs in the host; this
/// component only keeps what goes in and what comes out. Hosts construct it directly.
class VEKSG_API SCThicknessAnalysis : public Schema {
public:
    SCThicknessAnalysis() : Schema(Schema::THICKNESS_ANALYSIS) {}
    SCThicknessAnalysis(const SCThicknessAnalysis&) = default;
    SCThicknessAnalysis& operator=(const SCThicknessAnalysis&) = default;
    ~SCThicknessAnalysis() override;
    short type() const override;
    /// Drops every result (`computed` to `value4`, `result0` to `ids`) and keeps the
    /// settings (`settingIndex` to `settingFlag`), so the same analysis can run again.
    void cleanup() override;

    // Results.
    bool computed = false;
    int index0 = -1;
    int index1 = -1;
    int index2 = -1;
    int value0 = 0;
    int value1 = 0;
    int value2 = 0;
    int value3 = 0;
    int value4 = 0;
    // Settings.
    int settingIndex = -1;
    int setting0 = 0;
    int setting1 = 0;
    std::uint16_t options = 0;
    Point3 point0;
    Point3 point1;
    Point3 point2;
    bool settingFlag = false;
    // Results again.
    std::shared_ptr<void> result0;
    std::shared_ptr<void> result1;
    std::shared_ptr<void> result2;
    std::vector<float> thicknesses;
    std::vector<unsigned long> ids;
};

/// One range of a draft-angle result: 16 bytes, copied as they are.
struct VEKSG_API DraftRange {
    float from = 0.0f;
    float to = 0.0f;
    int first = 0;
    int count = 0;
};

/// Settings and results of a draft-angle analysis. Hosts construct it directly.
class VEKSG_API SCDraftAngleAnalysis : public Schema {
public:
    SCDraftAngleAnalysis() : Schema(Schema::DRAFT_ANGLE_ANALYSIS) {}
    SCDraftAngleAnalysis(const SCDraftAngleAnalysis&) = default;
    SCDraftAngleAnalysis& operator=(const SCDraftAngleAnalysis&) = default;
    ~SCDraftAngleAnalysis() override;
    short type() const override;

    /// Resets the results of the last run, in this order: `anglesA`, `computed`, `objects`,
    /// `rangesB`, `matrices`, `pointsB`, `codes`, `pointsA`, `currentIndex`, `groups`.
    /// Emptied vectors keep their capacity; everything else, settings included, stays.
    /// `cleanup` does not do this: it is the base no-op.
    void clearAll();

    std::vector<float> anglesA;
    std::vector<float> anglesB;
    std::vector<DraftRange> rangesA;
    std::vector<DraftRange> rangesB;
    std::vector<std::vector<int>> groups;
    std::vector<std::vector<Point3>> pointGroups;
    std::vector<Point3> pointsA;
    std::vector<int> codes;
    std::vector<std::shared_ptr<void>> objects;
    std::vector<vekmath::Tuple<float, 16>> matrices;
    std::vector<Point3> pointsB;
    std::shared_ptr<void> shared0;
    std::shared_ptr<void> shared1;
    int settingIndex = -1;
    int setting0 = 0;
    int setting1 = 0;
    std::uint16_t options = 0;
    Point3 point0;
    Point3 point1;
    Point3 point2;
    bool settingFlag = false;
    bool computed = false;
    bool settingFlag2 = true;
    int currentIndex = -1;
    /// Degrees.
    float minAngle = -90.0f;
    float maxAngle = 90.0f;
};

} // namespace veksg
