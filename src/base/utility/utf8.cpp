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
// Malformed text is converted too, with replacement characters: nothing comes of a failure only.
void RequireConverted(int count)
{
    if (count == 0)
    {
        exception::ThrowIfFailed(HRESULT_FROM_WIN32(GetLastError()));
    }
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
    // No UTF-16 unit takes more than three bytes, so that one pass is enough.
    constexpr std::size_t bytesPerUnit = 3;
    std::string result(text.size() * bytesPerUnit + 1, '\0');
    const int written = WideToMultiByte(text.c_str(), result.data(), CheckedLength(result.size()));
    RequireConverted(written);
    result.resize(static_cast<std::size_t>(written) - 1);
    return result;
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
