#include "OcctProgress.h"

namespace vekhost {

void OcctProgress::Show(const Message_ProgressScope&, const Standard_Boolean) {
    progress.update(GetPosition());
}

} // namespace vekhost
