#pragma once

#include <iconv.h>

#include <cstddef>
#include <string>

namespace vekhost {

/// One conversion between two of iconv's encodings, open for the object's life: the one
/// place the drawing library calls iconv.
class Iconv {
public:
    Iconv(const char* to, const char* from);
    ~Iconv();
    Iconv(const Iconv&) = delete;
    Iconv& operator=(const Iconv&) = delete;

    /// False when iconv knows neither encoding by these names.
    bool valid() const;
    /// The `bytes` at `data` converted; a sequence the source encoding does not allow (or
    /// the target cannot hold) becomes `replacement`, skipping `step` bytes of the input.
    std::string convert(const void* data, std::size_t bytes, std::size_t step,
                        const std::string& replacement);

private:
    iconv_t handle;
};

} // namespace vekhost
