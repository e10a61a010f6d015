#pragma once

// The catalogue of every component's public data: one list per class, in declaration order,
// that checkers, byte counters, serialisers and benchmarks walk instead of naming members by
// hand. A member added to a class without an entry here fails the library's own tests.
#include <type_traits>
#include <utility>

#include "vek2d/SCScene2D.h"
#include "veksg/Analysis.h"
#include "veksg/Documents.h"
#include "veksg/Features.h"
#include "veksg/RuntimeBuffers.h"
#include "veksg/SCAttributes.h"
#include "veksg/SCPmi.h"
#include "veksg/SCScene.h"
#include "veksg/SCSceneRT.h"
#include "veksg/SCSceneRes.h"
#include "veksg/SCSceneTopo.h"
#include "veksg/SCStates.h"
#include "veksg/SCTempGraphics.h"
#include "veksg/SCView.h"
#include "veksg/Schema.h"

namespace veksg {

/// What the catalogue says of one public member.
struct TableInfo {
    /// The member's name as declared; array elements carry their index ("sets[2]").
    const char* name = "";
    /// The key space whose resizer answer sizes the member in `resize`, or -1 for none.
    short keySpace = -1;
    /// The component's own table whose last key the member follows in `resize`, or null.
    const char* follows = nullptr;
    /// The component's own table that must hold entries for `resize` to grow the member at
    /// all, or null.
    const char* onlyWhile = nullptr;
    /// Whether `resize` sorts each of the member's lists and drops repeated children.
    bool dropsRepeats = false;
};

/// `forEachTable(c, visit)` calls `visit(const TableInfo&, member&)` once for each public
/// data member of `c` (tables, lists and the plain settings beside them), in declaration
/// order; the member is const when `c` is. Members that are records with a catalogue of their
/// own (the run-time buffers of `SCSceneRT`) are handed over whole: `HasTables` tells a
/// walker when to descend. `SCComprae` keeps its two paths private: its catalogue is empty and
/// its accessors reach them.
// A type argument cannot be parenthesised.
// NOLINTBEGIN(bugprone-macro-parentheses)
#define VEKSG_CATALOGUE(Type)                                                                      \
    template <typename C, typename Visitor>                                                        \
    std::enable_if_t<std::is_same_v<std::remove_const_t<C>, Type>> forEachTable(C& c,              \
                                                                                Visitor&& visit)
// NOLINTEND(bugprone-macro-parentheses)
// The member's name is spelled once, so it cannot drift from the member itself.
#define VEKSG_TABLE(member, ...) visit(TableInfo{#member, __VA_ARGS__}, c.member)
#define VEKSG_FIELD(member) visit(TableInfo{#member}, c.member)
#define VEKSG_DEDUPED(member, keySpace)                                                            \
    visit(TableInfo{#member, keySpace, nullptr, nullptr, true}, c.member)
#define VEKSG_ELEMENT(array, i, keySpace) visit(TableInfo{#array "[" #i "]", keySpace}, c.array[i])

VEKSG_CATALOGUE(SCScene) {
    VEKSG_FIELD(meshes);
    VEKSG_FIELD(meshMaterials);
    VEKSG_FIELD(polylines);
    VEKSG_FIELD(polylineMaterials);
    VEKSG_FIELD(boxes);
    VEKSG_FIELD(transforms);
    VEKSG_FIELD(points);
    VEKSG_FIELD(textures);
    VEKSG_TABLE(links6a, 6);
    VEKSG_TABLE(links7, 7);
    VEKSG_TABLE(links8, 8);
    VEKSG_TABLE(links6b, 6);
    VEKSG_FIELD(fonts);
    VEKSG_TABLE(hierarchy, -1, "fonts");
    VEKSG_FIELD(texts);
    VEKSG_TABLE(textLinksA, -1, "texts");
    VEKSG_TABLE(textLinksB, -1, "texts");
}

VEKSG_CATALOGUE(SCSceneTopo) {
    VEKSG_FIELD(nodes);
    VEKSG_FIELD(faces);
    VEKSG_FIELD(surfaces);
    VEKSG_FIELD(edges);
    VEKSG_FIELD(curves);
    VEKSG_FIELD(vertices);
    VEKSG_TABLE(nodeLists1, 10);
    VEKSG_TABLE(nodeLists2, 10);
    VEKSG_DEDUPED(nodeLists3, 10);
    VEKSG_DEDUPED(nodeLists4, 10);
    VEKSG_DEDUPED(nodeLists5, 10);
    VEKSG_DEDUPED(nodeLists6, 10);
    VEKSG_DEDUPED(nodeLists7, 10);
    VEKSG_TABLE(nodeRefs1, 10);
    VEKSG_TABLE(nodeRefs2, 10);
    VEKSG_TABLE(nodeRefs3, 10);
    VEKSG_TABLE(nodeRefs4, 10);
    VEKSG_DEDUPED(nodeLists8, 10);
    VEKSG_DEDUPED(nodeLists9, 10);
    VEKSG_DEDUPED(nodeLists10, 10);
    VEKSG_DEDUPED(nodeLists11, 10);
    VEKSG_TABLE(faceLists1, 11);
    VEKSG_DEDUPED(faceLists2, 11);
    VEKSG_DEDUPED(faceLists3, 11);
    VEKSG_DEDUPED(faceLists4, 11);
    VEKSG_TABLE(faceRefs1, 11);
    VEKSG_TABLE(faceRefs2, 11);
    VEKSG_TABLE(edgeLists1, 12);
    VEKSG_DEDUPED(edgeLists2, 12);
    VEKSG_DEDUPED(edgeLists3, 12);
    VEKSG_DEDUPED(edgeLists4, 12);
    VEKSG_TABLE(edgeRefs1, 12);
    VEKSG_TABLE(refs15a, 15);
    VEKSG_DEDUPED(lists15a, 15);
    VEKSG_DEDUPED(lists15b, 15);
    VEKSG_TABLE(refs15b, 15);
    VEKSG_TABLE(refs13a, 13);
    VEKSG_TABLE(lists13, 13);
    VEKSG_TABLE(refs13b, 13);
    VEKSG_TABLE(refs14a, 14);
    VEKSG_TABLE(lists14, 14);
    VEKSG_TABLE(refs14b, 14);
    VEKSG_TABLE(refs14c, 14);
    VEKSG_FIELD(namesByKey);
    VEKSG_TABLE(nodeFlags, 10);
    VEKSG_FIELD(topoKey);
    VEKSG_FIELD(topoCount);
}

VEKSG_CATALOGUE(SCSceneRes) {
    VEKSG_FIELD(meshMaterials);
    VEKSG_FIELD(polylineMaterials);
    VEKSG_FIELD(textures);
    VEKSG_FIELD(boxes);
    VEKSG_FIELD(orientedBoxes);
    VEKSG_FIELD(transforms);
    VEKSG_FIELD(transformsB);
    VEKSG_FIELD(vertexInfos);
    VEKSG_FIELD(indexInfos);
    VEKSG_TABLE(indexLinks, -1, "indexInfos");
    VEKSG_TABLE(vertexLists, -1, "vertexInfos");
    VEKSG_FIELD(primitivesA);
    VEKSG_TABLE(primALinks1, -1, "primitivesA");
    VEKSG_TABLE(indexLists1, -1, "indexInfos");
    VEKSG_TABLE(primALinks2, -1, "primitivesA");
    VEKSG_TABLE(primALinks3, -1, "primitivesA");
    VEKSG_FIELD(primitivesB);
    VEKSG_TABLE(primBLinks1, -1, "primitivesA", "primitivesB");
    VEKSG_TABLE(indexLists2, -1, "indexInfos");
    VEKSG_TABLE(primBLinks2, -1, "primitivesB");
    VEKSG_FIELD(primitivesC);
    VEKSG_TABLE(primCLinks1, -1, "primitivesC", "primitivesB");
    VEKSG_TABLE(indexLists3, -1, "indexInfos");
    VEKSG_TABLE(primCLinks2, -1, "primitivesC", "primitivesB");
    VEKSG_FIELD(fonts);
    VEKSG_TABLE(fontLists, -1, "fonts");
    VEKSG_FIELD(texts);
    VEKSG_TABLE(textLinksA, -1, "texts");
    VEKSG_TABLE(textLinksB, -1, "texts");
}

// The four batched buffers share one catalogue; `lists` follows the nodes (key space 10).
template <typename C, typename Visitor>
std::enable_if_t<std::is_same_v<std::remove_const_t<C>, MeshRT> ||
                 std::is_same_v<std::remove_const_t<C>, PolylineRT> ||
                 std::is_same_v<std::remove_const_t<C>, VertexRT> ||
                 std::is_same_v<std::remove_const_t<C>, TextRT>>
forEachTable(C& c, Visitor&& visit) {
    using Buffer = std::remove_const_t<C>;
    constexpr bool hasRefs4 = !std::is_same_v<Buffer, VertexRT> && !std::is_same_v<Buffer, TextRT>;
    VEKSG_FIELD(instances);
    VEKSG_FIELD(refs1);
    VEKSG_FIELD(refs2);
    VEKSG_FIELD(refs3);
    if constexpr (hasRefs4) VEKSG_FIELD(refs4);
    VEKSG_TABLE(lists, 10);
    VEKSG_FIELD(refs5);
    VEKSG_FIELD(flags);
    VEKSG_FIELD(refs6);
    if constexpr (!std::is_same_v<Buffer, VertexRT>) VEKSG_FIELD(dirty);
}

/// Each visibility set follows its key space exactly; set 7 follows key space 6 only while
/// key space 11 is empty.
VEKSG_CATALOGUE(VisibilityRT) {
    VEKSG_ELEMENT(sets, 0, 10);
    VEKSG_ELEMENT(sets, 1, 16);
    VEKSG_ELEMENT(sets, 2, 11);
    VEKSG_ELEMENT(sets, 3, 12);
    VEKSG_ELEMENT(sets, 4, 15);
    VEKSG_ELEMENT(sets, 5, 13);
    VEKSG_ELEMENT(sets, 6, 14);
    VEKSG_ELEMENT(sets, 7, 6);
    VEKSG_FIELD(functors);
}

VEKSG_CATALOGUE(SelectionRT) {
    VEKSG_FIELD(selection);
}

VEKSG_CATALOGUE(AppearanceRT) {
    VEKSG_FIELD(appearance);
}

VEKSG_CATALOGUE(TransientMatRT) {
    VEKSG_FIELD(refs1);
    VEKSG_FIELD(refs2);
    VEKSG_FIELD(refs3);
    VEKSG_FIELD(refs4);
    VEKSG_FIELD(refs5);
    VEKSG_FIELD(count);
}

VEKSG_CATALOGUE(SCSceneRT) {
    VEKSG_FIELD(meshes);
    VEKSG_FIELD(polylines);
    VEKSG_FIELD(vertices);
    VEKSG_FIELD(texts);
    VEKSG_FIELD(visibility);
    VEKSG_FIELD(selection);
    VEKSG_FIELD(nodeLists);
    VEKSG_TABLE(nodeValues, 10);
    VEKSG_FIELD(setA);
    VEKSG_FIELD(setB);
    VEKSG_FIELD(appearance);
    VEKSG_FIELD(transientMaterials);
}

VEKSG_CATALOGUE(SCTempGraphics) {
    VEKSG_FIELD(texts3d);
    VEKSG_FIELD(leaders);
    VEKSG_FIELD(tempShared1);
    VEKSG_FIELD(tempShared2);
    VEKSG_FIELD(measures);
    VEKSG_FIELD(tempValues);
    VEKSG_FIELD(tempShared3);
}

VEKSG_CATALOGUE(SCPmi) {
    VEKSG_FIELD(pmis);
    VEKSG_FIELD(pmiList1);
    VEKSG_FIELD(pmiList2);
    VEKSG_FIELD(views);
    VEKSG_FIELD(viewSets);
    VEKSG_FIELD(sections);
    VEKSG_FIELD(pmiBoxes);
    VEKSG_TABLE(relation1, 10);
    VEKSG_TABLE(relation2, 10);
    VEKSG_TABLE(relation3, 10);
    VEKSG_TABLE(relation4, 16);
    VEKSG_FIELD(map1);
    VEKSG_TABLE(relation5, 16);
    VEKSG_TABLE(map2, 16);
    VEKSG_TABLE(relation6, 16);
    VEKSG_FIELD(relation7);
    VEKSG_FIELD(map3);
    VEKSG_TABLE(relation8, 17);
    VEKSG_TABLE(relation9, 17);
    VEKSG_TABLE(map4, 17);
    VEKSG_TABLE(relation10, 17);
    VEKSG_TABLE(map5, 17);
    VEKSG_TABLE(relation11, 16);
    VEKSG_TABLE(relation12, 16);
    VEKSG_TABLE(relation13, 16);
    VEKSG_FIELD(pmiAttributes);
    VEKSG_FIELD(relation14);
    VEKSG_FIELD(map6);
    VEKSG_FIELD(pmiObject);
    VEKSG_FIELD(idSet1);
    VEKSG_FIELD(idSet2);
}

VEKSG_CATALOGUE(SCView) {
    VEKSG_FIELD(orientations);
    VEKSG_FIELD(currentView);
    VEKSG_FIELD(previousView);
    VEKSG_FIELD(viewMode);
    VEKSG_FIELD(viewObject);
}

VEKSG_CATALOGUE(SCStates) {
    VEKSG_FIELD(firstStates);
    VEKSG_FIELD(secondStates);
    VEKSG_FIELD(typeStates);
    VEKSG_FIELD(firstHook);
    VEKSG_FIELD(secondHook);
    VEKSG_FIELD(firstSetting);
    VEKSG_FIELD(secondSetting);
    VEKSG_FIELD(executors);
}

VEKSG_CATALOGUE(SCAttributes) {
    VEKSG_FIELD(attributes);
    VEKSG_FIELD(attributeIndices);
    VEKSG_TABLE(flags, -1, "attributes");
    VEKSG_FIELD(userValue);
}

VEKSG_CATALOGUE(SCInfo) {
    VEKSG_FIELD(info0);
    VEKSG_FIELD(info1);
    VEKSG_FIELD(info2);
    VEKSG_FIELD(info3);
    VEKSG_FIELD(info4);
    VEKSG_FIELD(info5);
    VEKSG_FIELD(info6);
    VEKSG_FIELD(tolerance);
    VEKSG_FIELD(info8);
    VEKSG_FIELD(info9);
    VEKSG_FIELD(filePath);
}

VEKSG_CATALOGUE(SCLayer) {
    VEKSG_FIELD(layer);
}

VEKSG_CATALOGUE(SCExtFile) {
    VEKSG_FIELD(files);
    VEKSG_FIELD(fileIds);
    VEKSG_FIELD(fileIndices);
    VEKSG_FIELD(flags);
    VEKSG_FIELD(deleteFilesOnDestroy);
    VEKSG_FIELD(flagA);
    VEKSG_FIELD(sharedObject);
    VEKSG_FIELD(flagB);
    VEKSG_FIELD(names);
}

VEKSG_CATALOGUE(SCAnimation) {
    VEKSG_FIELD(transforms);
    VEKSG_FIELD(keys);
}

VEKSG_CATALOGUE(SCThicknessAnalysis) {
    VEKSG_FIELD(computed);
    VEKSG_FIELD(index0);
    VEKSG_FIELD(index1);
    VEKSG_FIELD(index2);
    VEKSG_FIELD(value0);
    VEKSG_FIELD(value1);
    VEKSG_FIELD(value2);
    VEKSG_FIELD(value3);
    VEKSG_FIELD(value4);
    VEKSG_FIELD(settingIndex);
    VEKSG_FIELD(setting0);
    VEKSG_FIELD(setting1);
    VEKSG_FIELD(options);
    VEKSG_FIELD(point0);
    VEKSG_FIELD(point1);
    VEKSG_FIELD(point2);
    VEKSG_FIELD(settingFlag);
    VEKSG_FIELD(result0);
    VEKSG_FIELD(result1);
    VEKSG_FIELD(result2);
    VEKSG_FIELD(thicknesses);
    VEKSG_FIELD(ids);
}

VEKSG_CATALOGUE(SCDraftAngleAnalysis) {
    VEKSG_FIELD(anglesA);
    VEKSG_FIELD(anglesB);
    VEKSG_FIELD(rangesA);
    VEKSG_FIELD(rangesB);
    VEKSG_FIELD(groups);
    VEKSG_FIELD(pointGroups);
    VEKSG_FIELD(pointsA);
    VEKSG_FIELD(codes);
    VEKSG_FIELD(objects);
    VEKSG_FIELD(matrices);
    VEKSG_FIELD(pointsB);
    VEKSG_FIELD(shared0);
    VEKSG_FIELD(shared1);
    VEKSG_FIELD(settingIndex);
    VEKSG_FIELD(setting0);
    VEKSG_FIELD(setting1);
    VEKSG_FIELD(options);
    VEKSG_FIELD(point0);
    VEKSG_FIELD(point1);
    VEKSG_FIELD(point2);
    VEKSG_FIELD(settingFlag);
    VEKSG_FIELD(computed);
    VEKSG_FIELD(settingFlag2);
    VEKSG_FIELD(currentIndex);
    VEKSG_FIELD(minAngle);
    VEKSG_FIELD(maxAngle);
}

VEKSG_CATALOGUE(SCFeatures) {
    VEKSG_FIELD(holes);
    VEKSG_TABLE(nodeFeatures, 10);
}

VEKSG_CATALOGUE(SCHoleInfo) {
    VEKSG_FIELD(holeGroups0);
    VEKSG_FIELD(holeGroups1);
    VEKSG_FIELD(holeRecords);
}

VEKSG_CATALOGUE(SCComprae) {
    static_cast<void>(c);
    static_cast<void>(visit);
}

VEKSG_CATALOGUE(SCHoops) {
    VEKSG_FIELD(names0);
    VEKSG_FIELD(names1);
    VEKSG_FIELD(names2);
}

VEKSG_CATALOGUE(vek2d::SCScene2D) {
    VEKSG_FIELD(sheets);
    VEKSG_FIELD(views);
    VEKSG_FIELD(values);
    VEKSG_FIELD(names);
    VEKSG_FIELD(entities);
    VEKSG_FIELD(entities2);
    VEKSG_FIELD(colors);
    VEKSG_FIELD(hatches);
    VEKSG_FIELD(indices);
    VEKSG_FIELD(texts);
    VEKSG_FIELD(fonts);
    VEKSG_FIELD(ellipses);
    VEKSG_FIELD(lists0);
    VEKSG_FIELD(lists1);
    VEKSG_FIELD(lists2);
    VEKSG_FIELD(lists3);
    VEKSG_FIELD(lists4);
    VEKSG_FIELD(lists5);
    VEKSG_FIELD(lists6);
    VEKSG_FIELD(lists7);
    VEKSG_FIELD(map0);
    VEKSG_FIELD(map1);
    VEKSG_FIELD(map2);
    VEKSG_FIELD(map3);
    VEKSG_FIELD(map4);
    VEKSG_FIELD(map5);
    VEKSG_FIELD(map6);
    VEKSG_FIELD(map7);
    VEKSG_FIELD(map8);
    VEKSG_FIELD(map9);
    VEKSG_FIELD(map10);
    VEKSG_FIELD(current);
    VEKSG_FIELD(color);
    VEKSG_FIELD(scale);
}

#undef VEKSG_ELEMENT
#undef VEKSG_FIELD
#undef VEKSG_DEDUPED
#undef VEKSG_TABLE
#undef VEKSG_CATALOGUE

/// True for the types `forEachTable` walks.
template <typename T, typename = void>
struct HasTables : std::false_type {};
template <typename T>
struct HasTables<T, std::void_t<decltype(forEachTable(std::declval<T&>(), 0))>> : std::true_type {};
template <typename T>
inline constexpr bool hasTables = HasTables<T>::value;

/// The class name of each component, as reports and files spell it.
template <typename C>
struct ComponentName;
#define VEKSG_COMPONENT_NAME(Type, text)                                                           \
    template <>                                                                                    \
    struct ComponentName<Type> {                                                                   \
        static constexpr const char* value = text;                                                 \
    };
VEKSG_COMPONENT_NAME(SCScene, "SCScene")
VEKSG_COMPONENT_NAME(SCSceneRT, "SCSceneRT")
VEKSG_COMPONENT_NAME(SCPmi, "SCPmi")
VEKSG_COMPONENT_NAME(SCExtFile, "SCExtFile")
VEKSG_COMPONENT_NAME(SCAttributes, "SCAttributes")
VEKSG_COMPONENT_NAME(SCLayer, "SCLayer")
VEKSG_COMPONENT_NAME(SCTempGraphics, "SCTempGraphics")
VEKSG_COMPONENT_NAME(SCInfo, "SCInfo")
VEKSG_COMPONENT_NAME(SCView, "SCView")
VEKSG_COMPONENT_NAME(SCAnimation, "SCAnimation")
VEKSG_COMPONENT_NAME(SCSceneTopo, "SCSceneTopo")
VEKSG_COMPONENT_NAME(SCSceneRes, "SCSceneRes")
VEKSG_COMPONENT_NAME(SCFeatures, "SCFeatures")
VEKSG_COMPONENT_NAME(vek2d::SCScene2D, "SCScene2D")
VEKSG_COMPONENT_NAME(SCHoops, "SCHoops")
VEKSG_COMPONENT_NAME(SCComprae, "SCComprae")
VEKSG_COMPONENT_NAME(SCStates, "SCStates")
VEKSG_COMPONENT_NAME(SCThicknessAnalysis, "SCThicknessAnalysis")
VEKSG_COMPONENT_NAME(SCDraftAngleAnalysis, "SCDraftAngleAnalysis")
VEKSG_COMPONENT_NAME(SCHoleInfo, "SCHoleInfo")
#undef VEKSG_COMPONENT_NAME

/// Calls `f(concrete)` with `component` as its most derived class among the twenty, found
/// by its dynamic type (a `SCScene2D` may carry any type code). Returns false, without
/// calling `f`, for a class the library does not define. Works on const components too.
template <typename S, typename F>
std::enable_if_t<std::is_same_v<std::remove_const_t<S>, Schema>, bool> visitComponent(S& component,
                                                                                      F&& f) {
    bool found = false;
    auto tryAs = [&](auto* tag) {
        using T = std::remove_pointer_t<decltype(tag)>;
        using Target = std::conditional_t<std::is_const_v<S>, const T, T>;
        if (found) return;
        if (auto* concrete = dynamic_cast<Target*>(&component)) {
            found = true;
            f(*concrete);
        }
    };
    tryAs(static_cast<SCScene*>(nullptr));
    tryAs(static_cast<SCSceneRT*>(nullptr));
    tryAs(static_cast<SCPmi*>(nullptr));
    tryAs(static_cast<SCExtFile*>(nullptr));
    tryAs(static_cast<SCAttributes*>(nullptr));
    tryAs(static_cast<SCLayer*>(nullptr));
    tryAs(static_cast<SCTempGraphics*>(nullptr));
    tryAs(static_cast<SCInfo*>(nullptr));
    tryAs(static_cast<SCView*>(nullptr));
    tryAs(static_cast<SCAnimation*>(nullptr));
    tryAs(static_cast<SCSceneTopo*>(nullptr));
    tryAs(static_cast<SCSceneRes*>(nullptr));
    tryAs(static_cast<SCFeatures*>(nullptr));
    tryAs(static_cast<vek2d::SCScene2D*>(nullptr));
    tryAs(static_cast<SCHoops*>(nullptr));
    tryAs(static_cast<SCComprae*>(nullptr));
    tryAs(static_cast<SCStates*>(nullptr));
    tryAs(static_cast<SCThicknessAnalysis*>(nullptr));
    tryAs(static_cast<SCDraftAngleAnalysis*>(nullptr));
    tryAs(static_cast<SCHoleInfo*>(nullptr));
    return found;
}

/// The class name of a component by its dynamic type; "Schema" for a class the library does
/// not define.
inline const char* componentName(const Schema& component) {
    const char* name = "Schema";
    visitComponent(component, [&name](const auto& concrete) {
        name =
            ComponentName<std::remove_const_t<std::remove_reference_t<decltype(concrete)>>>::value;
    });
    return name;
}

} // namespace veksg
