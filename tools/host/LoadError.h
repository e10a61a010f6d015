#pragma once

#include <stdexcept>

namespace vekhost {

/// Why a file could not be loaded; the message names the cause, not the file.
class LoadError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace vekhost
