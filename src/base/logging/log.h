#pragma once

#include <cstdarg>
#include <string>

#include "platform/win32.h"

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

/// The system's text for an HRESULT, with the line end that system texts carry; for a value unknown to the
/// system "Unknown error 0x", the value in hexadecimal and a line feed.
std::string GetErrorText(HRESULT hr);
} // namespace base::logging
