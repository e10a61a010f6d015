#include "veksg/RuntimeBuffers.h"

#include <algorithm>
#include <cstddef>

#include "core/TableSteps.h"

namespace veksg {

namespace {
// Meshes and polylines are batched alike.
template <typename Batch>
void clearBatch(Batch& batch) {
    detail::clearTables(batch.instances, batch.refs1, batch.refs2, batch.refs3, batch.refs4,
                        batch.lists, batch.refs5, batch.flags, batch.refs6);
    batch.dirty = false;
}

template <typename Batch>
void reserveBatch(Batch& batch, int n) {
    detail::reserveTables(n, batch.instances, batch.refs1, batch.refs2, batch.refs3, batch.refs4,
                          batch.lists, batch.refs5, batch.flags, batch.refs6);
}

template <typename Lists>
void clearEach(Lists& lists) {
    for (auto& list : lists)
        list.clear();
}
} // namespace

void MeshRT::clear() {
    clearBatch(*this);
}

void MeshRT::reserve(int n) {
    reserveBatch(*this, n);
}

void PolylineRT::clear() {
    clearBatch(*this);
}

void PolylineRT::reserve(int n) {
    reserveBatch(*this, n);
}

void VertexRT::clear() {
    detail::clearTables(instances, refs1, refs3, refs2, flags, lists, refs5, refs6);
}

void VertexRT::reserve(int n) {
    detail::reserveTables(n, instances, refs1, refs2, refs3, lists, refs5, flags, refs6);
}

void TextRT::clear() {
    detail::clearTables(instances, refs1, refs2, refs3, lists, refs5, flags, refs6);
    dirty = false;
}

void TextRT::reserve(int n) {
    detail::reserveTables(n, instances, refs1, refs2, refs3, lists, refs5, flags, refs6);
}

void VisibilityRT::clear() {
    clearEach(functors);
    clearEach(sets);
}

SelectionRT::SelectionRT(const SelectionRT& other) {
    *this = other;
}

SelectionRT& SelectionRT::operator=(const SelectionRT& other) {
    // Copying a list onto itself would empty it first.
    if (this != &other) {
        for (std::size_t i = 0; i < selection.size(); ++i)
            copySelection(other.selection[i], selection[i]);
    }
    return *this;
}

void SelectionRT::clear() {
    clearEach(selection);
}

void SelectionRT::copySelection(const std::vector<int>& from, std::vector<int>& to) {
    to.clear();
    const std::size_t n = from.size();
    if (n == 0) return;
    // Within the capacity this only zero-fills in place; beyond it the list reallocates.
    to.resize(n);
    std::copy(from.begin(), from.end(), to.begin());
}

void AppearanceRT::clear() {
    clearEach(appearance);
}

void TransientMatRT::clear() {
    detail::clearTables(refs1, refs3, refs4, refs5, refs2);
    count = 0;
}

} // namespace veksg
