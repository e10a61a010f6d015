#include "vek2d/SCScene2D.h"

namespace vek2d {

SCScene2D::~SCScene2D() = default;

short SCScene2D::type() const {
    return Schema::type();
}

// Empty on purpose: unlike the draft-angle analysis, a drawing keeps everything here.
void SCScene2D::clearAll() {
}

} // namespace vek2d
