#pragma once

#include <memory>
#include <string>

// Conversions between the readers' text (UTF-8, UTF-16) and the data model's wide strings.
namespace vekhost {

std::wstring wideFromUtf8(const std::string& text);
std::wstring wideFromUtf16(const char16_t* text);
std::string utf8FromWide(const std::wstring& text);
/// A zero-terminated copy of the text, as string values hold it.
std::shared_ptr<wchar_t> sharedText(const std::wstring& text);
/// The text as the body of a JSON string literal (quotes not included).
std::string jsonEscape(const std::string& text);

} // namespace vekhost
