#include "veksg/Resources.h"

namespace veksg {

void Font::setName(const wchar_t* name) {
    name_ = std::wstring(name);
}

void Font::setPath(const wchar_t* path) {
    path_ = std::wstring(path);
}

void Text::set(const wchar_t* value) {
    text = std::wstring(value);
}

} // namespace veksg
