#pragma once

#include <cstdint>

#include "platform/gdiplus.h"

namespace base::xps
{
/// Keeps GDI+ started while any guard of the process lives. The status of GdiplusStartup is recorded and not
/// checked: if it failed, the calls of the matrices fail too.
///
/// Guards can be created and destroyed on any thread. The constructor returns after GDI+ has started or
/// failed to start.
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
