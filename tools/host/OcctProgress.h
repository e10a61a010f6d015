#pragma once

#include <Message_ProgressIndicator.hxx>

#include "Progress.h"

namespace vekhost {

/// Open CASCADE's progress indicator, passing what its algorithms report on to a Progress.
class OcctProgress : public Message_ProgressIndicator {
public:
    explicit OcctProgress(Progress& progress) : progress(progress) {}

protected:
    void Show(const Message_ProgressScope& scope, const Standard_Boolean force) override;

private:
    Progress& progress;
};

} // namespace vekhost
