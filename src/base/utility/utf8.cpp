#include "base/utility/utf8.h"

#include <limits>
#include <stdexcept>

#include "base/logging/errors.h"
#include "platform/win32.h"

namespace base::utility
{
namespace
{
int CheckedLength(std::size_t length)
{
    if (length > static_cast<std::size_t>(std::numeric_limits<int>::max()))
    {
        exception::Throw<std::length_error>("text is too long to convert.");
    }
    return static_cast<int>(length);
}

// Malformed text is converted with replacement characters: the count is 0 only when the call fails.
void RequireConverted(int count)
{
    if (count == 0)
    {
        exception::ThrowIfFailed(exception::GetLastFailure());
    }
}

/// Copies text that is ASCII to `narrow`; returns false for other text.
bool NarrowAscii(std::wstring_view text, char* narrow)
{
    for (const wchar_t c : text)
    {
        if (c >= 0x80)
        {
            return false;
        }
        *narrow++ = static_cast<char>(c);
    }
    return true;
}
} // namespace

int WideToMultiByte(const wchar_t* text, char* buffer, int size)
{
    if (text == nullptr)
    {
        exception::Throw<std::invalid_argument>("pWideCharStr is null.");
    }
    return WideCharToMultiByte(CP_UTF8, 0, text, -1, buffer, size, nullptr, nullptr);
}

std::string ToUtf8(const std::wstring& text)
{
    std::string result;
    AppendUtf8(result, text);
    return result;
}

void AppendUtf8(std::string& utf8, std::wstring_view text)
{
    const std::size_t start = utf8.size();
    // Nearly all markup is ASCII: this saves the platform calls.
    utf8.resize(start + text.size());
    if (NarrowAscii(text, utf8.data() + start))
    {
        return;
    }
    // A UTF-16 unit takes at most three bytes, so one pass is enough.
    constexpr std::size_t bytesPerUnit = 3;
    const std::wstring terminated(text);
    const int size = CheckedLength(text.size() * bytesPerUnit + 1);
    utf8.resize(start + static_cast<std::size_t>(size));
    const int written = WideToMultiByte(terminated.c_str(), utf8.data() + start, size);
    RequireConverted(written);
    utf8.resize(start + static_cast<std::size_t>(written) - 1);
}

std::wstring FromUtf8(std::string_view text)
{
    if (text.empty())
    {
        return {};
    }
    std::wstring result(text.size(), L'\0');
    const int length = CheckedLength(text.size());
    const int written = MultiByteToWideChar(CP_UTF8, 0, text.data(), length, result.data(), length);
    RequireConverted(written);
    result.resize(static_cast<std::size_t>(written));
    return result;
}
} // namespace base::utility
