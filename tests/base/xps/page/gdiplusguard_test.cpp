#include "base/xps/page/gdiplusguard.h"

#include <functional>
#include <future>
#include <memory>

#include <gtest/gtest.h>

namespace
{
std::function<void()> g_beforeStartup = [] {};
} // namespace

/// Replaces GDI+'s function with one that starts slowly.
extern "C" Gdiplus::Status WINAPI GdiplusStartup(ULONG_PTR* token,
                                                 const Gdiplus::GdiplusStartupInput* input,
                                                 Gdiplus::GdiplusStartupOutput* output)
{
    using Function = decltype(GdiplusStartup);
    static auto* const own = reinterpret_cast<Function*>(
        reinterpret_cast<void (*)()>(GetProcAddress(LoadLibraryW(L"gdiplus.dll"), "GdiplusStartup")));
    g_beforeStartup();
    return own(token, input, output);
}

namespace base::xps
{
namespace
{
TEST(GdiplusGuard, StartsWithTheFirstAndStopsWithTheLast)
{
    EXPECT_EQ(GdiplusGuard::GetStartupStatus(), Gdiplus::GdiplusNotInitialized);
    auto first = std::make_unique<GdiplusGuard>();
    EXPECT_EQ(GdiplusGuard::GetStartupStatus(), Gdiplus::Ok);
    auto second = std::make_unique<GdiplusGuard>();
    EXPECT_EQ(GdiplusGuard::GetUserCount(), 2U);
    first.reset();
    EXPECT_EQ(GdiplusGuard::GetStartupStatus(), Gdiplus::Ok);
    second.reset();
    EXPECT_EQ(GdiplusGuard::GetUserCount(), 0U);
    EXPECT_EQ(GdiplusGuard::GetStartupStatus(), Gdiplus::GdiplusNotInitialized);
}

// A page used to be turned before GDI+ had started for the first page of another job.
TEST(GdiplusGuard, WaitsForTheStartOnAnotherThread)
{
    std::promise<void> isStarting;
    g_beforeStartup = [&] {
        isStarting.set_value();
        Sleep(50);
    };
    auto first = std::async(std::launch::async, [] { return std::make_unique<GdiplusGuard>(); });
    isStarting.get_future().wait();
    const GdiplusGuard second;
    EXPECT_EQ(GdiplusGuard::GetStartupStatus(), Gdiplus::Ok);
    first.get().reset();
    EXPECT_EQ(GdiplusGuard::GetStartupStatus(), Gdiplus::Ok);
    g_beforeStartup = [] {};
}
} // namespace
} // namespace base::xps
