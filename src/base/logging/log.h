#pragma once

#include <cstdarg>
#include <string>

namespace base::logging
{
/// Formats like printf, but always with a decimal point: the process locale belongs to the host and is
/// ignored. Throws std::invalid_argument for a null format, std::runtime_error for a format that the runtime
/// library rejects.
std::string FormatString(const char* format, ...);
std::string FormatStringV(const char* format, std::va_list arguments);

/// The same for wide text. "%s" takes a wide string, as everywhere in the Windows runtime.
std::wstring FormatWString(const wchar_t* format, ...);
std::wstring FormatWStringV(const wchar_t* format, std::va_list arguments);
} // namespace base::logging
