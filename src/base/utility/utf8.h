#pragma once

#include <string>
#include <string_view>

namespace base::utility
{
/// Converts null-terminated wide text to UTF-8 in `buffer` of `size` bytes and gives the count of bytes, the
/// terminator included; with a null buffer and size 0, the count needed; 0 when the conversion fails. Throws
/// std::invalid_argument for null text.
int WideToMultiByte(const wchar_t* text, char* buffer, int size);

/// The UTF-8 form of text without embedded nulls. Throws std::length_error for text too long for the system,
/// HresultError when it does not convert.
std::string ToUtf8(const std::wstring& text);

/// Appends the same.
void AppendUtf8(std::string& utf8, std::wstring_view text);

/// The wide form of UTF-8 text; malformed bytes become the replacement character. Throws as ToUtf8 does.
std::wstring FromUtf8(std::string_view text);
} // namespace base::utility
