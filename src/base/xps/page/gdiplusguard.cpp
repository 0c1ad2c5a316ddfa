#include "base/xps/page/gdiplusguard.h"

#include <atomic>
#include <mutex>

#include "base/utility/lock.h"

namespace base::xps
{
namespace
{
// Held during startup and shutdown. With the count alone, a second user could compute before GDI+ has
// started, and a shutdown could overtake the startup of the next user.
utility::Lock g_lock;
std::atomic<std::uint32_t> g_userCount{0};
ULONG_PTR g_token = 0;
std::atomic<Gdiplus::Status> g_startupStatus{Gdiplus::GdiplusNotInitialized};
} // namespace

GdiplusGuard::GdiplusGuard() noexcept
{
    const std::lock_guard lock(g_lock);
    if (++g_userCount != 1)
    {
        return;
    }
    // Version 1, no debug callback; background thread and codecs as usual.
    const Gdiplus::GdiplusStartupInput input(nullptr, FALSE, FALSE);
    g_startupStatus = Gdiplus::GdiplusStartup(&g_token, &input, nullptr);
}

GdiplusGuard::~GdiplusGuard()
{
    const std::lock_guard lock(g_lock);
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
