#pragma once

#include <cstdarg>
#include <string>

namespace base::logging
{
/// Formats like printf, always with a decimal point: the process locale, which belongs to the host, plays
/// no part. Throws std::invalid_argument for a null format, std::runtime_error for one that the runtime
/// library rejects.
std::string FormatString(const char* format, ...);
std::string FormatStringV(const char* format, std::va_list arguments);

/// The same for wide text. As everywhere in the Windows runtime, "%s" takes a wide string here.
std::wstring FormatWString(const wchar_t* format, ...);
std::wstring FormatWStringV(const wchar_t* format, std::va_list arguments);
} // namespace base::logging
