#include "base/xps/gdiplusguard.h"

#include <atomic>

namespace base::xps
{
namespace
{
std::atomic<std::uint32_t> g_userCount{0};
std::atomic<ULONG_PTR> g_token{0};
std::atomic<Gdiplus::Status> g_startupStatus{Gdiplus::GdiplusNotInitialized};
} // namespace

GdiplusGuard::GdiplusGuard() noexcept
{
    if (++g_userCount != 1)
    {
        return;
    }
    // Version 1, no debug callback, neither the background thread nor the codecs suppressed.
    const Gdiplus::GdiplusStartupInput input(nullptr, FALSE, FALSE);
    ULONG_PTR token = 0;
    const Gdiplus::Status status = Gdiplus::GdiplusStartup(&token, &input, nullptr);
    g_token = token;
    g_startupStatus = status;
}

GdiplusGuard::~GdiplusGuard()
{
    if (--g_userCount != 0)
    {
        return;
    }
    Gdiplus::GdiplusShutdown(g_token);
    g_token = 0;
    g_startupStatus = Gdiplus::GdiplusNotInitialized;
}

std::uint32_t GdiplusGuard::GetUserCount() noexcept
{
    return g_userCount;
}

Gdiplus::Status GdiplusGuard::GetStartupStatus() noexcept
{
    return g_startupStatus;
}
} // namespace base::xps
