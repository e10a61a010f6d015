#pragma once

#include <memory>

#include "veksg/veksg.h"

// Each step of the quickstart walks one part of a document's life and prints what it does.
namespace quickstart {

// The host decides what its key spaces mean; this one reports the last node, face and
// edge keys (key spaces 10, 11 and 12) and nothing else.
class HostResizer : public veksg::SchemaResizer {
public:
    int lastNode = -1;
    int lastFace = -1;
    int lastEdge = -1;

    int lastKeyOf(const short& keySpace) override {
        switch (keySpace) {
        case 10:
            return lastNode;
        case 11:
            return lastFace;
        case 12:
            return lastEdge;
        default:
            return -1;
        }
    }
};

void showFactory(veksg::IFactory& factory);
void showTablesAndRecords(HostResizer& resizer);
void showSceneTopologyAndResources(veksg::IFactory& factory,
                                   const std::shared_ptr<HostResizer>& resizer);
void showDocuments(veksg::IFactory& factory);
void showStates(veksg::IFactory& factory);
void showAttributes(veksg::IFactory& factory, const std::shared_ptr<HostResizer>& resizer);
void showViews(veksg::IFactory& factory);
void showEveryComponent(veksg::IFactory& factory);
void showRuntime(veksg::IFactory& factory, const std::shared_ptr<HostResizer>& resizer);

} // namespace quickstart
