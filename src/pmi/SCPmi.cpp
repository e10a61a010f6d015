#include "veksg/SCPmi.h"

#include "core/TableSteps.h"

namespace veksg {

using detail::clearTables;
using detail::growTables;

namespace {
const std::vector<int> noChildren;
} // namespace

SCPmi::SCPmi() : Schema(Schema::PMI_DATA) {
}

SCPmi::SCPmi(const SCPmi&) = default;

SCPmi& SCPmi::operator=(const SCPmi&) = default;

SCPmi::~SCPmi() = default;

short SCPmi::type() const {
    return Schema::type();
}

void SCPmi::resize(std::shared_ptr<SchemaResizer> resizer) {
    growTables(resizer->lastKeyOf(10), noChildren, relation1, relation2, relation3);

    const int last16 = resizer->lastKeyOf(16);
    growTables(last16, -1, map2);
    growTables(last16, noChildren, relation4, relation11, relation12, relation13, relation5,
               relation6);

    const int last17 = resizer->lastKeyOf(17);
    growTables(last17, noChildren, relation9, relation8);
    growTables(last17, -1, map4, map5);
    growTables(last17, noChildren, relation10);
}

void SCPmi::cleanup() {
    clearTables(pmis, pmiList1, pmiList2, views, viewSets, sections, pmiBoxes, relation1, relation2,
                relation3, relation4, map1, relation5, map2, relation6, relation7, map3, relation8,
                relation9, map4, relation10, map5, relation11, relation12, relation13,
                pmiAttributes, relation14, map6, idSet1, idSet2);
    pmiObject.reset();
}

} // namespace veksg
