#include "Text.h"

#include <cstdio>
#include <cwchar>

namespace vekhost {

namespace {
constexpr char32_t replacement = 0xFFFD;

void appendUtf8(std::string& out, char32_t c) {
    if (c < 0x80) {
        out += static_cast<char>(c);
    } else if (c < 0x800) {
        out += static_cast<char>(0xC0 | (c >> 6));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        out += static_cast<char>(0xE0 | (c >> 12));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (c >> 18));
        out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    }
}
} // namespace

std::wstring wideFromUtf8(const std::string& text) {
    std::wstring out;
    out.reserve(text.size());
    for (std::size_t i = 0; i < text.size();) {
        const auto lead = static_cast<unsigned char>(text[i]);
        const int extra = lead < 0x80    ? 0
                          : lead >= 0xF0 ? 3
                          : lead >= 0xE0 ? 2
                          : lead >= 0xC0 ? 1
                                         : -1;
        char32_t c = extra == 0 ? lead : lead & (0x3F >> extra);
        bool valid = extra >= 0 && i + static_cast<std::size_t>(extra) < text.size();
        for (int k = 1; valid && k <= extra; ++k) {
            const auto next = static_cast<unsigned char>(text[i + static_cast<std::size_t>(k)]);
            valid = (next & 0xC0) == 0x80;
            c = (c << 6) | (next & 0x3F);
        }
        out += static_cast<wchar_t>(valid ? c : replacement);
        i += valid ? static_cast<std::size_t>(extra) + 1 : 1;
    }
    return out;
}

std::wstring wideFromUtf16(const char16_t* text) {
    std::wstring out;
    for (; text && *text; ++text) {
        char32_t c = *text;
        if (c >= 0xD800 && c < 0xDC00 && text[1] >= 0xDC00 && text[1] < 0xE000) {
            c = 0x10000 + ((c - 0xD800) << 10) + (text[1] - 0xDC00);
            ++text;
        } else if (c >= 0xD800 && c < 0xE000) {
            c = replacement;
        }
        out += static_cast<wchar_t>(c);
    }
    return out;
}

std::string utf8FromWide(const std::wstring& text) {
    std::string out;
    out.reserve(text.size());
    for (const wchar_t w : text) {
        const auto c = static_cast<char32_t>(w);
        appendUtf8(out, c > 0x10FFFF || (c >= 0xD800 && c < 0xE000) ? replacement : c);
    }
    return out;
}

std::string jsonEscape(const std::string& text) {
    std::string out;
    out.reserve(text.size());
    for (const char ch : text) {
        switch (ch) {
        case '"':
            out += "\\\"";
            break;
        case '\\':
            out += "\\\\";
            break;
        case '\n':
            out += "\\n";
            break;
        case '\t':
            out += "\\t";
            break;
        case '\r':
            out += "\\r";
            break;
        default:
            if (static_cast<unsigned char>(ch) < 0x20) {
                char code[8];
                std::snprintf(code, sizeof code, "\\u%04x", static_cast<unsigned>(ch));
                out += code;
            } else {
                out += ch;
            }
        }
    }
    return out;
}

std::shared_ptr<wchar_t> sharedText(const std::wstring& text) {
    std::shared_ptr<wchar_t> owned(new wchar_t[text.size() + 1], std::default_delete<wchar_t[]>());
    std::wmemcpy(owned.get(), text.c_str(), text.size() + 1);
    return owned;
}

} // namespace vekhost
