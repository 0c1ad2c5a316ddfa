#include "base/logging/log.h"

#include <stdexcept>

#include "base/logging/failure.h"
#include "base/logging/plainformat.h"

namespace base::logging
{
namespace
{
template <typename Character>
std::basic_string<Character> FormatText(const Character* format, std::va_list arguments)
{
    if (format == nullptr)
    {
        exception::Throw<std::invalid_argument>("pMessage is null.");
    }
    return FormatPlainly(format, arguments);
}
} // namespace

std::string FormatStringV(const char* format, std::va_list arguments)
{
    return FormatText(format, arguments);
}

std::wstring FormatWStringV(const wchar_t* format, std::va_list arguments)
{
    return FormatText(format, arguments);
}

// Without a period, unlike the check of the other functions: the two can be distinguished (docs/surface.md).
std::string FormatString(const char* format, ...)
{
    if (format == nullptr)
    {
        exception::Throw<std::invalid_argument>("pMessage is null");
    }
    std::va_list arguments;
    va_start(arguments, format);
    std::string text = FormatStringV(format, arguments);
    va_end(arguments);
    return text;
}

std::wstring FormatWString(const wchar_t* format, ...)
{
    if (format == nullptr)
    {
        exception::Throw<std::invalid_argument>("pMessage is null");
    }
    std::va_list arguments;
    va_start(arguments, format);
    std::wstring text = FormatWStringV(format, arguments);
    va_end(arguments);
    return text;
}
} // namespace base::logging
