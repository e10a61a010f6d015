// A host walking the life of a document's data through the library's components.
#include <memory>

#include "Steps.h"

int main() {
    auto factory = veksg::createFactory();
    auto resizer = std::make_shared<quickstart::HostResizer>();

    quickstart::showFactory(*factory);
    quickstart::showTablesAndRecords(*resizer);
    quickstart::showSceneTopologyAndResources(*factory, resizer);
    quickstart::showDocuments(*factory);
    quickstart::showStates(*factory);
    quickstart::showAttributes(*factory, resizer);
    quickstart::showViews(*factory);
    quickstart::showRuntime(*factory, resizer);
    quickstart::showEveryComponent(*factory);
    return 0;
}
