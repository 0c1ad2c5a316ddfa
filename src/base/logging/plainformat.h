#pragma once

#include <cstdarg>
#include <string>

namespace base::logging
{
/// Formats like vprintf in the locale "C", whatever the process locale is. "%s" takes text of the same width
/// as the format. Throws std::runtime_error for a format that the runtime library rejects.
std::string FormatPlainly(const char* format, std::va_list arguments);
std::wstring FormatPlainly(const wchar_t* format, std::va_list arguments);
} // namespace base::logging
