#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "vekmath/MatrixUtils.h"
#include "vekmath/Tuple.h"
#include "veksg/Container.h"
#include "veksg/Export.h"

namespace veksg {

using Color4 = vekmath::Tuple<float, 4>;

/// Mesh material in the usual lighting model.
struct VEKSG_API MMaterial {
    Color4 ambient;
    Color4 diffuse;
    Color4 specular;
    Color4 emission;
    float shininess = 30.0f;
    bool valid = false;
};

/// Polyline material.
struct VEKSG_API PLMaterial {
    Color4 color;
    float width = 1.0f;
    bool valid = false;
};

struct VEKSG_API Texture {
    std::wstring path;
};

class VEKSG_API Font {
public:
    int size = 10;
    int style = 0;
    std::uint16_t attributes = 0;

    /// The name's characters; an empty string when unset.
    const wchar_t* name() const { return name_.c_str(); }
    /// Replaces the name with a copy of the zero-terminated argument, which must not be null.
    void setName(const wchar_t* name);
    const wchar_t* path() const { return path_.c_str(); }
    void setPath(const wchar_t* path);

private:
    std::wstring name_;
    std::wstring path_;
};

struct VEKSG_API Text {
    vekmath::Tuple<float, 16> matrix = vekmath::MatrixUtils::createIdentity();
    vekmath::Tuple<float, 3> position;
    int font = 0;
    int color = 0;
    std::uint16_t attributes = 0;
    std::wstring text;

    const wchar_t* get() const { return text.c_str(); }
    /// Replaces the text with a copy of the zero-terminated argument.
    void set(const wchar_t* value);
    /// Number of characters.
    int length() const { return static_cast<int>(text.size()); }
};

extern template class VEKSG_API Container<int, MMaterial>;
extern template class VEKSG_API Container<int, PLMaterial>;
extern template class VEKSG_API Container<int, std::shared_ptr<Texture>>;
extern template class VEKSG_API Container<int, Font>;
extern template class VEKSG_API Container<int, Text>;

} // namespace veksg
