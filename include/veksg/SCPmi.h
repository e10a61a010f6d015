#pragma once

#include <memory>
#include <set>
#include <vector>

#include "veksg/Container.h"
#include "veksg/Export.h"
#include "veksg/Geometry.h"
#include "veksg/Hierarchy.h"
#include "veksg/PMI.h"
#include "veksg/Schema.h"
#include "veksg/Values.h"

namespace veksg {

/// A document's PMI: annotation objects, their boxes, and the relations and maps that tie
/// annotations to scene entities.
class VEKSG_API SCPmi : public Schema {
public:
    SCPmi();
    /// Member-wise in declaration order; annotation objects and `pmiObject` are shared.
    SCPmi(const SCPmi&);
    SCPmi& operator=(const SCPmi&);
    ~SCPmi() override;

    short type() const override;
    /// Asks key spaces 10, 16 and 17, in that order, and grows only the entity-keyed
    /// relations and maps; tables keyed by annotation are the host's to size.
    void resize(std::shared_ptr<SchemaResizer> resizer) override;
    /// Empties every table (capacity kept), then both id sets, then `pmiObject`.
    void cleanup() override;

    Container<int, std::shared_ptr<PMI>> pmis;
    std::vector<int> pmiList1;
    std::vector<int> pmiList2;
    Container<int, std::shared_ptr<View>> views;
    Container<int, std::shared_ptr<ViewSet>> viewSets;
    Container<int, std::shared_ptr<Section>> sections;
    Container<int, BBox> pmiBoxes;
    Hierarchy relation1;
    Hierarchy relation2;
    Hierarchy relation3;
    Hierarchy relation4;
    Container<int, int> map1;
    Hierarchy relation5;
    Container<int, int> map2;
    Hierarchy relation6;
    Hierarchy relation7;
    Container<int, int> map3;
    Hierarchy relation8;
    Hierarchy relation9;
    Container<int, int> map4;
    Hierarchy relation10;
    Container<int, int> map5;
    Hierarchy relation11;
    Hierarchy relation12;
    Hierarchy relation13;
    Container<int, std::shared_ptr<Value<std::shared_ptr<wchar_t>, 5>>> pmiAttributes;
    Hierarchy relation14;
    Container<int, int> map6;
    std::shared_ptr<void> pmiObject;
    std::set<int> idSet1;
    std::set<int> idSet2;
};

} // namespace veksg
