#include "io/Archive.h"

#include <cwchar>

namespace veksg::io::detail {

namespace {
constexpr std::uint32_t replacement = 0xFFFD;

void put(char*& to, std::uint32_t unit) {
    const auto value = static_cast<std::uint16_t>(unit);
    std::memcpy(to, &value, 2);
    to += 2;
}
} // namespace

void encodeUtf16(const wchar_t* chars, std::size_t n, Buffer& out, std::uint64_t& replaced) {
    // At most two units per character.
    char* const start = out.grow(std::size_t{4} * n);
    char* to = start;
    for (std::size_t i = 0; i < n; ++i) {
        // The character's number, whether wchar_t is signed or not.
        const auto c =
            static_cast<std::uint32_t>(chars[i]) & (sizeof(wchar_t) == 2 ? 0xFFFFu : 0xFFFFFFFFu);
        if constexpr (sizeof(wchar_t) == 2) {
            put(to, c);
        } else {
            if (c < 0xD800 || (c > 0xDFFF && c < 0x10000)) {
                put(to, c);
            } else if (c >= 0x10000 && c <= 0x10FFFF) {
                put(to, 0xD800 + ((c - 0x10000) >> 10));
                put(to, 0xDC00 + ((c - 0x10000) & 0x3FF));
            } else {
                // A lone surrogate or a number above Unicode's range has no UTF-16 form.
                put(to, replacement);
                ++replaced;
            }
        }
    }
    // Give back what the worst case kept.
    const std::size_t unused = static_cast<std::size_t>(start + 4 * n - to);
    out.resize(out.size() - unused);
}

void Out::length(std::size_t n) {
    if (n > std::numeric_limits<std::uint32_t>::max())
        throw SnapshotError("table", 0, "a list of more than 2^32 elements");
    u32(static_cast<std::uint32_t>(n));
}

void Out::text(const wchar_t* chars, std::size_t n) {
    const std::size_t at = buf.size();
    u32(0);
    encodeUtf16(chars, n, buf, report.replacedCharacters);
    const std::size_t units = (buf.size() - at - 4) / 2;
    if (units > std::numeric_limits<std::uint32_t>::max())
        throw SnapshotError("table", 0, "a text of more than 2^32 units");
    const auto count = static_cast<std::uint32_t>(units);
    std::memcpy(buf.data() + at, &count, 4);
}

void Out::entry(int kind, const void* object, std::uint64_t length) {
    auto fieldsOf = [this](const auto& concrete) {
        Record<std::decay_t<decltype(concrete)>>::fields(*this, concrete);
    };
    switch (kind) {
    case WideStrings: {
        const auto* chars = static_cast<const wchar_t*>(object);
        text(chars, std::wcslen(chars));
        break;
    }
    case FloatBuffers:
    case IndexBuffers:
        // Both hold four-byte elements.
        u64(length);
        buf.append(object, static_cast<std::size_t>(length) * 4);
        break;
    case Meshes:
        fieldsOf(*static_cast<const veksg::Mesh*>(object));
        break;
    case Polylines:
        fieldsOf(*static_cast<const veksg::Polyline*>(object));
        break;
    case Textures:
        fieldsOf(*static_cast<const veksg::Texture*>(object));
        break;
    case Triads:
        fieldsOf(*static_cast<const veksg::TriadInfo*>(object));
        break;
    case Pmis: {
        const auto& pmi = *static_cast<const veksg::PMI*>(object);
        u8(static_cast<std::uint8_t>(withPmi(pmi, [](const auto&) {})));
        withPmi(pmi, fieldsOf);
        break;
    }
    case VertexInfos:
        fieldsOf(*static_cast<const veksg::VertexInfo*>(object));
        break;
    case IndexInfos:
        fieldsOf(*static_cast<const veksg::IndexInfo*>(object));
        break;
    case StringValues: {
        const auto& value = *static_cast<const veksg::StringValue*>(object);
        text(value.key(), std::wcslen(value.key()));
        (*this)(value.get());
        break;
    }
    case States: {
        const auto& state = *static_cast<const veksg::IState*>(object);
        u8(static_cast<std::uint8_t>(withState(state, [](const auto&) {})));
        withState(state, fieldsOf);
        break;
    }
    case StateContainers:
        fieldsOf(*static_cast<const veksg::StateContainer*>(object));
        break;
    default:
        fieldsOf(*static_cast<const veksg::StateTypeContainer*>(object));
        break;
    }
}

void In::text(std::wstring& out) {
    const std::uint32_t units = u32();
    if (units > remaining() / 2) fail("a text runs past the end of its table");
    const char* from = take(std::size_t{units} * 2);
    out.resize(units);
    std::size_t n = 0;
    for (std::size_t i = 0; i < units; ++i) {
        std::uint16_t unit = 0;
        std::memcpy(&unit, from + 2 * i, 2);
        // Where wchar_t is 16 bits wide, units are characters as they are.
        if (sizeof(wchar_t) == 2 || unit < 0xD800 || unit > 0xDFFF) {
            out[n++] = static_cast<wchar_t>(unit);
        } else {
            std::uint16_t low = 0;
            if (unit < 0xDC00 && i + 1 < units) std::memcpy(&low, from + 2 * (i + 1), 2);
            if (low >= 0xDC00 && low <= 0xDFFF) {
                out[n++] =
                    static_cast<wchar_t>(0x10000 + ((unit - 0xD800u) << 10) + (low - 0xDC00u));
                ++i;
            } else {
                // An unpaired surrogate is no character: it reads as U+FFFD.
                out[n++] = static_cast<wchar_t>(replacement);
            }
        }
    }
    out.resize(n);
}

namespace {
template <typename Element>
std::pair<std::shared_ptr<Element[]>, std::uint64_t> readBuffer(In& in) {
    const std::uint64_t length = in.u64();
    if (length > in.remaining() / sizeof(Element))
        in.fail("a buffer runs past the end of its table");
    const auto n = static_cast<std::size_t>(length);
    std::shared_ptr<Element[]> data(new Element[n]);
    if (n > 0) std::memcpy(data.get(), in.take(n * sizeof(Element)), n * sizeof(Element));
    return {std::move(data), length};
}

template <typename T, typename... Args>
std::shared_ptr<T> filled(In& in, Args&&... args) {
    auto object = std::make_shared<T>(std::forward<Args>(args)...);
    Record<T>::fields(in, *object);
    return object;
}

std::shared_ptr<veksg::PMI> readPmi(In& in) {
    const std::uint8_t tag = in.u8();
    switch (tag) {
    case 0:
        return filled<veksg::TessPMI>(in, veksg::PMI::TEXT3D);
    case 1:
        return filled<veksg::Text3D>(in, L"");
    case 2:
        return filled<veksg::Text3DLeader>(in, L"");
    case 3:
        return filled<veksg::Measure>(in);
    case 4:
        return filled<veksg::Section>(in);
    case 5:
        return filled<veksg::View>(in);
    case 6:
        return filled<veksg::ViewSet>(in);
    default:
        in.fail("an annotation of unknown class " + std::to_string(tag));
    }
}

std::shared_ptr<veksg::IState> readState(In& in) {
    const std::uint8_t tag = in.u8();
    const veksg::Point3 none;
    switch (tag) {
    case 0:
        return filled<veksg::CameraState>(in, 0, none, none, none);
    case 1:
        return filled<veksg::AppearanceState>(in, 0, std::vector<int>(),
                                              std::vector<unsigned long>(), std::vector<float>());
    case 2:
        return filled<veksg::TransformState>(in, 0, std::vector<int>(),
                                             std::vector<veksg::Transform>(), 0, nullptr);
    case 3:
        return filled<veksg::VisibilityState>(in, 0, std::vector<int>(), std::vector<int>());
    case 4:
        return filled<veksg::SectionState>(in, 0, std::vector<std::shared_ptr<veksg::Section>>(),
                                           std::vector<int>(), 0, std::vector<bool>(), nullptr);
    case 5:
        return filled<veksg::ClipNodeState>(in, 0, std::vector<bool>());
    default:
        in.fail("a state of unknown class " + std::to_string(tag));
    }
}
} // namespace

void In::entries(int kind, std::uint64_t count) {
    // Every entry takes four bytes at least.
    if (count > remaining() / 4)
        fail(std::to_string(count) + " shared objects cannot fit in the " +
             std::to_string(remaining()) + " bytes left");
    for (std::uint64_t i = 0; i < count; ++i) {
        switch (kind) {
        case WideStrings: {
            text(scratch);
            std::shared_ptr<wchar_t> chars(new wchar_t[scratch.size() + 1],
                                           std::default_delete<wchar_t[]>());
            std::wmemcpy(chars.get(), scratch.c_str(), scratch.size() + 1);
            pools.wideStrings.push_back(std::move(chars));
            break;
        }
        case FloatBuffers:
            pools.floatBuffers.push_back(readBuffer<float>(*this));
            break;
        case IndexBuffers:
            pools.indexBuffers.push_back(readBuffer<std::uint32_t>(*this));
            break;
        case Meshes:
            pools.meshes.push_back(filled<veksg::Mesh>(*this));
            break;
        case Polylines:
            pools.polylines.push_back(filled<veksg::Polyline>(*this));
            break;
        case Textures:
            pools.textures.push_back(filled<veksg::Texture>(*this));
            break;
        case Triads:
            pools.triads.push_back(filled<veksg::TriadInfo>(*this));
            break;
        case Pmis:
            pools.pmis.push_back(readPmi(*this));
            break;
        case VertexInfos:
            pools.vertexInfos.push_back(filled<veksg::VertexInfo>(*this));
            break;
        case IndexInfos:
            pools.indexInfos.push_back(filled<veksg::IndexInfo>(*this));
            break;
        case StringValues: {
            std::wstring key;
            text(key);
            std::shared_ptr<wchar_t> value;
            (*this)(value);
            pools.stringValues.push_back(std::make_shared<veksg::StringValue>(key.c_str(), value));
            break;
        }
        case States:
            pools.states.push_back(readState(*this));
            break;
        case StateContainers:
            pools.stateContainers.push_back(filled<veksg::StateContainer>(*this));
            break;
        default:
            pools.stateTypeContainers.push_back(filled<veksg::StateTypeContainer>(*this));
            break;
        }
    }
}

} // namespace veksg::io::detail
