#pragma once

#include <string>
#include <string_view>

namespace base::utility
{
/// Converts null-terminated wide text to UTF-8 in `buffer` of `size` bytes. Returns the number of bytes, with
/// the terminator; for a null buffer and size 0 the number needed; 0 when the conversion fails. Throws
/// std::invalid_argument for null text. All text that leaves the module is converted by it.
int WideToMultiByte(const wchar_t* text, char* buffer, int size);

/// Converts text without embedded nulls to UTF-8. Throws std::length_error for text too long for the system,
/// HresultError when the conversion fails.
std::string ToUtf8(const std::wstring& text);

/// The same, appended to `utf8`.
void AppendUtf8(std::string& utf8, std::wstring_view text);

/// Converts UTF-8 text; malformed bytes become the replacement character. Throws as ToUtf8 does.
std::wstring FromUtf8(std::string_view text);
} // namespace base::utility
