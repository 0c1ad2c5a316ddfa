#include "base/logging/plainformat.h"

#include <clocale>
#include <cstdio>
#include <cwchar>
#include <new>
#include <stdexcept>
#include <string_view>

namespace base::logging
{
namespace
{
/// Sets the locale "C" for this thread while the object lives.
class PlainLocale
{
public:
    PlainLocale() : m_plain(newlocale(LC_ALL_MASK, "C", nullptr))
    {
        if (m_plain == nullptr)
        {
            throw std::bad_alloc();
        }
        m_previous = uselocale(m_plain);
    }
    PlainLocale(const PlainLocale&) = delete;
    PlainLocale& operator=(const PlainLocale&) = delete;
    ~PlainLocale()
    {
        uselocale(m_previous);
        freelocale(m_plain);
    }

private:
    locale_t m_plain;
    locale_t m_previous = nullptr;
};

[[noreturn]] void Reject()
{
    throw std::runtime_error("a message cannot be formatted.");
}

/// Replaces "%s" by "%ls", which takes wide text in this runtime library.
std::wstring TakingWideText(std::wstring_view format)
{
    constexpr std::wstring_view flagsAndLengths = L"-+ #0123456789.*hlLjzt";
    std::wstring result;
    bool inSpecification = false;
    for (const wchar_t c : format)
    {
        if (inSpecification && c == L's')
        {
            result += L'l';
        }
        result += c;
        inSpecification = inSpecification ? flagsAndLengths.find(c) != std::wstring_view::npos : c == L'%';
    }
    return result;
}
} // namespace

std::string FormatPlainly(const char* format, std::va_list arguments)
{
    const PlainLocale plain;
    std::va_list counted;
    va_copy(counted, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, counted);
    va_end(counted);
    if (length < 0)
    {
        Reject();
    }
    std::string text(static_cast<std::size_t>(length), '\0');
    std::vsnprintf(text.data(), text.size() + 1, format, arguments);
    return text;
}

// vswprintf cannot count the characters beforehand: the buffer grows until they fit.
std::wstring FormatPlainly(const wchar_t* format, std::va_list arguments)
{
    constexpr std::size_t limit = 1 << 24;
    const PlainLocale plain;
    const std::wstring posixFormat = TakingWideText(format);
    for (std::size_t size = 128; size <= limit; size *= 2)
    {
        std::wstring text(size, L'\0');
        std::va_list used;
        va_copy(used, arguments);
        const int length = std::vswprintf(text.data(), size, posixFormat.c_str(), used);
        va_end(used);
        if (length >= 0)
        {
            text.resize(static_cast<std::size_t>(length));
            return text;
        }
    }
    Reject();
}
} // namespace base::logging
