#include "DxfText.h"

#include <cstring>
#include <cwctype>

namespace vekhost {

namespace {
constexpr wchar_t replacement = 0xFFFD;

// AC1021 is AutoCAD 2007, the first version to write UTF-8.
bool writesUtf8(const std::string& version) {
    return version.size() == 6 && version.compare(0, 2, "AC") == 0 && version >= "AC1021";
}

// "ANSI_1252" and its kin name Windows code pages, which iconv calls CP1252.
std::string iconvName(const std::string& version, const std::string& codepage) {
    if (writesUtf8(version)) return "UTF-8";
    if (codepage.compare(0, 5, "ANSI_") == 0 && codepage.size() > 5)
        return "CP" + codepage.substr(5);
    if (codepage.compare(0, 3, "DOS") == 0 && codepage.size() > 3) return "CP" + codepage.substr(3);
    return "CP1252";
}

int hexDigit(wchar_t c) {
    if (c >= L'0' && c <= L'9') return c - L'0';
    if (c >= L'a' && c <= L'f') return c - L'a' + 10;
    if (c >= L'A' && c <= L'F') return c - L'A' + 10;
    return -1;
}

// The four hexadecimal digits at `at`, or -1.
long hex4(const std::wstring& s, std::size_t at) {
    if (at + 4 > s.size()) return -1;
    long value = 0;
    for (std::size_t i = at; i < at + 4; ++i) {
        const int digit = hexDigit(s[i]);
        if (digit < 0) return -1;
        value = value * 16 + digit;
    }
    return value;
}

// \U+XXXX and the %% control codes, which TEXT and MTEXT share.
std::wstring unescape(const std::wstring& s) {
    std::wstring out;
    out.reserve(s.size());
    for (std::size_t i = 0; i < s.size(); ++i) {
        const wchar_t c = s[i];
        if (c == L'\\' && i + 2 < s.size() && (s[i + 1] == L'U' || s[i + 1] == L'u') &&
            s[i + 2] == L'+') {
            const long code = hex4(s, i + 3);
            if (code >= 0) {
                out += static_cast<wchar_t>(code);
                i += 6;
                continue;
            }
        }
        if (c == L'%' && i + 2 < s.size() && s[i + 1] == L'%') {
            const wchar_t code = static_cast<wchar_t>(std::towlower(static_cast<wint_t>(s[i + 2])));
            i += 2;
            if (code == L'c')
                out += L'\u2300';
            else if (code == L'd')
                out += L'\u00B0';
            else if (code == L'p')
                out += L'\u00B1';
            else if (code == L'%')
                out += L'%';
            else if (code == L'u' || code == L'o' || code == L'k')
                continue; // line toggles
            else
                out += code;
            continue;
        }
        out += c;
    }
    return out;
}

// Skips a formatting code's argument, which ends at a semicolon.
std::size_t afterSemicolon(const std::wstring& s, std::size_t from) {
    const std::size_t end = s.find(L';', from);
    return end == std::wstring::npos ? s.size() : end + 1;
}
} // namespace

DxfText::DxfText(const std::string& version, const std::string& codepage)
    : converter("WCHAR_T", iconvName(version, codepage).c_str()) {
}

DxfText::~DxfText() = default;

std::wstring DxfText::convert(const std::string& raw) {
    std::wstring out;
    // Plain ASCII is the same in every code page the files use.
    bool ascii = true;
    for (const char c : raw)
        ascii = ascii && static_cast<unsigned char>(c) < 0x80;
    if (ascii || !converter.valid()) {
        for (const char c : raw)
            out += static_cast<unsigned char>(c) < 0x80 ? static_cast<wchar_t>(c) : replacement;
        return out;
    }
    // An invalid or cut-off sequence: one replacement for its first byte.
    const wchar_t bad[1] = {replacement};
    const std::string wide = converter.convert(
        raw.data(), raw.size(), 1, std::string(reinterpret_cast<const char*>(bad), sizeof bad));
    out.resize(wide.size() / sizeof(wchar_t));
    std::memcpy(out.data(), wide.data(), out.size() * sizeof(wchar_t));
    return out;
}

std::wstring DxfText::decode(const std::string& raw) {
    return unescape(convert(raw));
}

std::wstring DxfText::decodeMText(const std::string& raw) {
    const std::wstring s = convert(raw);
    std::wstring out;
    out.reserve(s.size());
    for (std::size_t i = 0; i < s.size();) {
        const wchar_t c = s[i];
        if (c == L'{' || c == L'}') {
            ++i;
            continue;
        }
        if (c != L'\\' || i + 1 == s.size()) {
            out += c;
            ++i;
            continue;
        }
        const wchar_t code = s[i + 1];
        switch (code) {
        case L'P':
            out += L'\n';
            i += 2;
            break;
        case L'~':
            out += L'\u00A0';
            i += 2;
            break;
        case L'\\':
        case L'{':
        case L'}':
            out += code;
            i += 2;
            break;
        case L'U':
        case L'u':
            // Left for unescape.
            out += c;
            ++i;
            break;
        case L'S': {
            // Stacked text ("1^2", "1/2", "1#2"): written inline as a fraction.
            const std::size_t end = afterSemicolon(s, i + 2);
            for (std::size_t k = i + 2; k < end && s[k] != L';'; ++k)
                out += s[k] == L'^' || s[k] == L'#' ? L'/' : s[k];
            i = end;
            break;
        }
        case L'f':
        case L'F':
        case L'H':
        case L'W':
        case L'Q':
        case L'T':
        case L'A':
        case L'C':
        case L'c':
        case L'p':
            i = afterSemicolon(s, i + 2);
            break;
        default:
            // \L, \O, \K and their closing forms toggle lines; \N breaks columns.
            i += 2;
            break;
        }
    }
    return unescape(out);
}

} // namespace vekhost
