#include "base/xps/page/gdiplusguard.h"

#include <atomic>
#include <mutex>

#include "base/utility/lock.h"

namespace base::xps
{
namespace
{
// A user that is not the first waits until GDI+ has started, and a first one until it has shut down: the
// count alone would let the one compute without GDI+ and have the other's start shut down again.
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
    // Version 1, no debug callback, neither the background thread nor the codecs suppressed.
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
