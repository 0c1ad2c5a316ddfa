#include "base/logging/plainformat.h"

#include <clocale>
#include <cstdio>
#include <cwchar>
#include <memory>
#include <new>
#include <stdexcept>

namespace base::logging
{
namespace
{
struct LocaleCloser
{
    using pointer = _locale_t;
    void operator()(_locale_t locale) const noexcept { _free_locale(locale); }
};

using Locale = std::unique_ptr<_locale_t, LocaleCloser>;

Locale CreatePlainLocale()
{
    Locale locale(_create_locale(LC_ALL, "C"));
    if (!locale)
    {
        throw std::bad_alloc();
    }
    return locale;
}

_locale_t PlainLocale()
{
    // One locale for the life of the module; all threads format with it. If memory runs out here, the next
    // call tries again.
    static const Locale locale = CreatePlainLocale();
    return locale.get();
}

int CountFormatted(const char* format, std::va_list arguments)
{
    return _vscprintf_l(format, PlainLocale(), arguments);
}

int CountFormatted(const wchar_t* format, std::va_list arguments)
{
    return _vscwprintf_l(format, PlainLocale(), arguments);
}

int Format(char* buffer, std::size_t size, const char* format, std::va_list arguments)
{
    return _vsnprintf_l(buffer, size, format, PlainLocale(), arguments);
}

int Format(wchar_t* buffer, std::size_t size, const wchar_t* format, std::va_list arguments)
{
    return _vsnwprintf_l(buffer, size, format, PlainLocale(), arguments);
}

template <typename Character>
std::basic_string<Character> FormatText(const Character* format, std::va_list arguments)
{
    std::va_list counted;
    va_copy(counted, arguments);
    const int length = CountFormatted(format, counted);
    va_end(counted);
    if (length < 0)
    {
        throw std::runtime_error("a message cannot be formatted.");
    }
    const std::size_t size = static_cast<std::size_t>(length) + 1;
    const auto buffer = std::make_unique<Character[]>(size);
    Format(buffer.get(), size, format, arguments);
    return buffer.get();
}
} // namespace

std::string FormatPlainly(const char* format, std::va_list arguments)
{
    return FormatText(format, arguments);
}

std::wstring FormatPlainly(const wchar_t* format, std::va_list arguments)
{
    return FormatText(format, arguments);
}
} // namespace base::logging
