#pragma once

#include "Document.h"

namespace vekhost::test {

/// Saves `document`, reopens it through `loadFile`, and expects every table back as it was,
/// with its sharing, and the check to pass.
void expectSameAfterSnapshot(Document& document);

} // namespace vekhost::test
