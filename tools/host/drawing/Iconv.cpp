#include "Iconv.h"

#include <cerrno>
#include <cstdint>
#include <vector>

namespace vekhost {

Iconv::Iconv(const char* to, const char* from) : handle(iconv_open(to, from)) {
}

Iconv::~Iconv() {
    if (valid()) iconv_close(handle);
}

// iconv_open tells failure by a handle of -1.
bool Iconv::valid() const {
    return reinterpret_cast<std::intptr_t>(handle) != -1;
}

std::string Iconv::convert(const void* data, std::size_t bytes, std::size_t step,
                           const std::string& replacement) {
    std::string out;
    if (!valid() || bytes == 0) return out;
    std::vector<char> input(static_cast<const char*>(data), static_cast<const char*>(data) + bytes);
    // UTF-8 takes at most four bytes for any character, UTF-32 four.
    std::vector<char> buffer(bytes * 4 + 16);
    char* in = input.data();
    std::size_t inLeft = input.size();
    iconv(handle, nullptr, nullptr, nullptr, nullptr);
    while (inLeft > 0) {
        char* to = buffer.data();
        std::size_t outLeft = buffer.size();
        const std::size_t done = iconv(handle, &in, &inLeft, &to, &outLeft);
        out.append(buffer.data(), buffer.size() - outLeft);
        if (done != static_cast<std::size_t>(-1) || errno == E2BIG) continue;
        out += replacement;
        const std::size_t skip = std::min(step, inLeft);
        in += skip;
        inLeft -= skip;
    }
    return out;
}

} // namespace vekhost
