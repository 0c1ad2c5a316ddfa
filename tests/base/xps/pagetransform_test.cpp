#include "base/xps/pagetransform.h"

#include <cmath>
#include <functional>
#include <future>
#include <memory>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include "base/xps/gdiplusguard.h"

namespace
{
std::function<void()> g_beforeStartup = [] {};
} // namespace

/// In the place of GDI+'s own, which takes its time to start.
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
struct TransformCase
{
    const char* name;
    PageBox page;
    float angleDegrees;
    float scale;
    const wchar_t* expected;
};

class RenderTransform : public ::testing::TestWithParam<TransformCase>
{
};

TEST_P(RenderTransform, MovesTheTurnedPageToTheOrigin)
{
    const TransformCase& given = GetParam();
    GdiMatrix matrix;
    // What the matrix held does not matter.
    matrix.SetElements({9.0F, 8.0F, 7.0F, 6.0F, 5.0F, 4.0F});
    ComputePageTransform(given.page, given.angleDegrees, given.scale, matrix);
    EXPECT_EQ(FormatRenderTransform(matrix), L"RenderTransform=\"" + std::wstring(given.expected) + L"\"");
    EXPECT_EQ(matrix.GetLastStatus(), Gdiplus::Ok);
}

INSTANTIATE_TEST_SUITE_P(
    Pages,
    RenderTransform,
    ::testing::Values(
        TransformCase{"UprightTurnedBy270", {0, 0, 816, 1056}, 270, 1, L"0.00,-1.00,1.00,0.00,0.00,816.00"},
        TransformCase{"WideTurnedBy270", {0, 0, 1056, 816}, 270, 1, L"0.00,-1.00,1.00,0.00,0.00,1056.00"},
        TransformCase{"NotTurned", {0, 0, 816, 1056}, 0, 1, L"1.00,0.00,0.00,1.00,0.00,0.00"},
        TransformCase{"TurnedBy90", {0, 0, 816, 1056}, 90, 1, L"0.00,1.00,-1.00,0.00,1056.00,0.00"},
        TransformCase{"TurnedBy180", {0, 0, 816, 1056}, 180, 1, L"-1.00,0.00,0.00,-1.00,816.00,1056.00"},
        TransformCase{"ScaledToHalf", {0, 0, 816, 1056}, 270, 0.5F, L"0.00,-0.50,0.50,0.00,0.00,408.00"},
        TransformCase{"WithoutSize", {0, 0, 0, 0}, 270, 1, L"0.00,-1.00,1.00,0.00,0.00,0.00"},
        TransformCase{"WithFraction", {0, 0, 793.76F, 1122.56F}, 270, 1, L"0.00,-1.00,1.00,0.00,0.00,793.76"},
        // Only right and bottom count.
        TransformCase{"WithCorner", {10, 20, 816, 1056}, 270, 1, L"0.00,-1.00,1.00,0.00,0.00,816.00"}),
    [](const auto& given) { return std::string(given.param.name); });

TEST(RenderTransform, NeverPrintsASmallNegativeAsNegativeZero)
{
    GdiMatrix matrix;
    matrix.SetElements({-0.001F, -0.0F, 0.001F, -0.0009F, -0.5F, 0.0F});
    EXPECT_EQ(FormatRenderTransform(matrix), L"RenderTransform=\"0.00,0.00,0.00,0.00,-0.50,0.00\"");
    EXPECT_FALSE(std::signbit(SnapToZero(-0.0F)));
    EXPECT_EQ(SnapToZero(-0.0011F), -0.0011F);
}

TEST(AddTranslation, ComesAfterWhatTheMatrixDoes)
{
    GdiMatrix matrix;
    matrix.SetElements({2.0F, 0.0F, 0.0F, 2.0F, 10.0F, 20.0F});
    AddTranslation(1.0F, 2.0F, matrix);
    EXPECT_EQ(FormatRenderTransform(matrix), L"RenderTransform=\"2.00,0.00,0.00,2.00,11.00,22.00\"");
}

TEST(GdiMatrix, PrependsAndKeepsAFailureOnRecord)
{
    GdiMatrix matrix;
    matrix.SetElements({1.0F, 0.0F, 0.0F, 1.0F, 100.0F, 0.0F});
    matrix.Scale(3.0F, 2.0F, Gdiplus::MatrixOrderPrepend);
    std::array<Gdiplus::PointF, 1> points{Gdiplus::PointF(1.0F, 1.0F)};
    EXPECT_EQ(matrix.TransformPoints(points), Gdiplus::Ok);
    EXPECT_EQ(points[0].X, 103.0F);
    EXPECT_EQ(points[0].Y, 2.0F);

    EXPECT_EQ(matrix.TransformPoints({}), Gdiplus::InvalidParameter);
    EXPECT_EQ(matrix.TransformPoints(points), Gdiplus::Ok);
    EXPECT_EQ(matrix.GetLastStatus(), Gdiplus::InvalidParameter);
}

TEST(TransformBox, SpansTheTwoTransformedCorners)
{
    GdiMatrix matrix;
    ComputePageTransform({0, 0, 816, 1056}, 270, 1, matrix);
    const PageBox turned = TransformBox({10, 20, 110, 220}, matrix);
    EXPECT_EQ(turned, (PageBox{20, 706, 220, 806}));
}

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

// A page that was turned beside another job's first used to find GDI+ not yet started.
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
