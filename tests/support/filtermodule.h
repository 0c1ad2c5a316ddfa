#pragma once

#include <cwchar>
#include <string>

namespace support
{
/// The module that a suite drives from outside: the one of its own build, or that of another compiler which
/// the environment variable FILTER_MODULE names.
inline std::wstring FilterModulePath()
{
    const wchar_t* const other = _wgetenv(L"FILTER_MODULE");
    return other != nullptr ? other : FILTER_MODULE;
}
} // namespace support
