#pragma once

#include <functional>
#include <string>

#include "Report.h"

namespace vekload {

/// Runs `work` in a child process and returns its report, so that a reader library that
/// crashes or hangs on a broken file costs that file only. A crash or a run past
/// `timeoutSeconds` becomes a failed report naming the cause.
FileReport runIsolated(const std::string& file, const std::function<FileReport()>& work,
                       double timeoutSeconds);

} // namespace vekload
