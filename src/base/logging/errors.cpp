#include "base/logging/errors.h"

#include <charconv>
#include <cstdint>
#include <memory>

namespace base::exception
{
namespace
{
struct LocalFreeCloser
{
    void operator()(char* text) const noexcept { LocalFree(text); }
};
} // namespace

HresultError::HresultError(HRESULT hr, const char* path, int line)
    : hresult(hr), message(DescribeFailure(GetErrorText(hr).c_str(), path, line))
{
}

std::string GetErrorText(HRESULT hr)
{
    constexpr DWORD neutralLanguage = MAKELANGID(LANG_NEUTRAL, SUBLANG_DEFAULT);
    char* allocated = nullptr;
    const DWORD length = FormatMessageA(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM,
                                        nullptr,
                                        static_cast<DWORD>(hr),
                                        neutralLanguage,
                                        reinterpret_cast<char*>(&allocated),
                                        0,
                                        nullptr);
    const std::unique_ptr<char, LocalFreeCloser> text(allocated);
    if (length != 0)
    {
        return text.get();
    }
    char digits[8];
    const auto end = std::to_chars(digits, digits + sizeof(digits), static_cast<std::uint32_t>(hr), 16).ptr;
    return "Unknown error 0x" + std::string(digits, end) + "\n";
}

HRESULT GetLastFailure() noexcept
{
    const HRESULT hr = HRESULT_FROM_WIN32(GetLastError());
    return FAILED(hr) ? hr : E_FAIL;
}

void ThrowIfFailed(HRESULT hr, SourceLocation where)
{
    if (FAILED(hr))
    {
        throw HresultError(hr, where.Path().c_str(), where.line);
    }
}
} // namespace base::exception
