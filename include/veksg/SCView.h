#pragma once

#include <memory>

#include "vekmath/Tuple.h"
#include "veksg/Container.h"
#include "veksg/Export.h"
#include "veksg/Schema.h"

namespace veksg {

/// The view-orientation presets of a document and the consumers' view settings.
class VEKSG_API SCView : public Schema {
public:
    /// Fills keys 0 to 6 of `orientations` with the standard presets: 0 isometric, 1 to 6
    /// axis-aligned, 2 the identity.
    SCView();
    /// Copies share `viewObject`; the presets are copied.
    SCView(const SCView&) = default;
    SCView& operator=(const SCView&) = default;
    ~SCView() override;

    short type() const override;
    /// Releases `viewObject` only; the presets and the settings are kept.
    void cleanup() override;

    Container<int, vekmath::Tuple<float, 16>> orientations;
    int currentView = 0;
    int previousView = -1;
    int viewMode = 1;
    std::shared_ptr<void> viewObject;
};

} // namespace veksg
