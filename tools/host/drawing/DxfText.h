#pragma once

#include <string>

#include "Iconv.h"

namespace vekhost {

/// DXF strings as the data model's wide strings: bytes in the file's encoding (UTF-8 from
/// AutoCAD 2007 on, the header's code page before), with the escapes DXF writes for
/// characters outside it (\U+XXXX, %%d and the like) and, for MTEXT, the formatting codes
/// removed (paragraph breaks become line breaks).
class DxfText {
public:
    /// `version` and `codepage` as the header gives them ($ACADVER, $DWGCODEPAGE).
    DxfText(const std::string& version, const std::string& codepage);
    ~DxfText();
    DxfText(const DxfText&) = delete;
    DxfText& operator=(const DxfText&) = delete;

    /// A name or a single-line text.
    std::wstring decode(const std::string& raw);
    /// The text of an MTEXT entity without its formatting.
    std::wstring decodeMText(const std::string& raw);

private:
    std::wstring convert(const std::string& raw);

    Iconv converter;
};

} // namespace vekhost
