#pragma once

#include <cstdint>

#include "platform/gdiplus.h"

namespace base::xps
{
/// Keeps GDI+ started for as long as any guard of the process lives. The status of the start is kept and not
/// examined: where GDI+ did not start, the statuses of the matrices tell.
///
/// Guards may come and go on any thread: each finds GDI+ started, or failed to start.
class GdiplusGuard
{
public:
    GdiplusGuard() noexcept;
    GdiplusGuard(const GdiplusGuard&) = delete;
    GdiplusGuard& operator=(const GdiplusGuard&) = delete;
    ~GdiplusGuard();

    static std::uint32_t GetUserCount() noexcept;

    /// GdiplusNotInitialized while no guard lives.
    static Gdiplus::Status GetStartupStatus() noexcept;
};
} // namespace base::xps
