#include "veksg/SCView.h"

namespace veksg {

namespace {
using Matrix = vekmath::Tuple<float, 16>;

// Elements m0..m15 per key. The signs of the zeros are part of the stored presets, and the
// isometric entries are exactly these single-precision roundings.
const float presets[7][16] = {
    {0.7071067f, 0.3535534f, -0.61237246f, 0.0f, -0.7071068f, 0.35355335f, -0.61237234f, 0.0f, 0.0f,
     0.8660254f, 0.5f, 0.0f, 0.0f, 0.0f, 0.0f, 1.0f},
    {1.0f, -0.0f, -0.0f, 0.0f, -0.0f, 0.0f, -1.0f, 0.0f, 0.0f, 1.0f, -0.0f, 0.0f, 0.0f, 0.0f, 0.0f,
     1.0f},
    {1.0f, -0.0f, -0.0f, 0.0f, 0.0f, 1.0f, -0.0f, 0.0f, 0.0f, 0.0f, 1.0f, 0.0f, 0.0f, 0.0f, 0.0f,
     1.0f},
    {-0.0f, 0.0f, 1.0f, 0.0f, 1.0f, -0.0f, 0.0f, 0.0f, 0.0f, 1.0f, 0.0f, 0.0f, 0.0f, 0.0f, 0.0f,
     1.0f},
    {-1.0f, 0.0f, 0.0f, 0.0f, 0.0f, -0.0f, 1.0f, 0.0f, 0.0f, 1.0f, 0.0f, 0.0f, 0.0f, 0.0f, 0.0f,
     1.0f},
    {-1.0f, 0.0f, 0.0f, 0.0f, 0.0f, 1.0f, 0.0f, 0.0f, -0.0f, 0.0f, -1.0f, 0.0f, 0.0f, 0.0f, 0.0f,
     1.0f},
    {-0.0f, 0.0f, -1.0f, 0.0f, -1.0f, -0.0f, 0.0f, 0.0f, -0.0f, 1.0f, 0.0f, 0.0f, 0.0f, 0.0f, 0.0f,
     1.0f},
};
} // namespace

SCView::SCView() : Schema(Schema::VIEW) {
    const int count = static_cast<int>(sizeof(presets) / sizeof(presets[0]));
    for (int key = 0; key < count; ++key)
        orientations.insert(key, Matrix(presets[key]), Matrix());
}

SCView::~SCView() = default;

short SCView::type() const {
    return Schema::type();
}

void SCView::cleanup() {
    viewObject.reset();
}

} // namespace veksg
