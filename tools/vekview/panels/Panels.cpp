#include "Panel.h"

namespace vekview {

Panel::~Panel() = default;

std::vector<std::unique_ptr<Panel>> makePanels() {
    std::vector<std::unique_ptr<Panel>> panels;
    panels.push_back(makeModelTreePanel());
    panels.push_back(makePropertiesPanel());
    panels.push_back(makeViewsPanel());
    panels.push_back(makeMeasurePanel());
    panels.push_back(makePmiPanel());
    panels.push_back(makeAnalysesPanel());
    panels.push_back(makeStatsOverlay());
    return panels;
}

} // namespace vekview
