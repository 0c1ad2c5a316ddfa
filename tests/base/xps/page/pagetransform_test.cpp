#include "base/xps/page/pagetransform.h"

#include <cmath>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

namespace base::xps
{
namespace
{
TEST(RenderTransform, MovesTheTurnedPageToTheOrigin)
{
    const struct
    {
        const char* name;
        PageBox page;
        float angleDegrees;
        float scale;
        const wchar_t* expected;
    } cases[] = {
        {"upright", {0, 0, 816, 1056}, 270, 1, L"0.00,-1.00,1.00,0.00,0.00,816.00"},
        {"wide", {0, 0, 1056, 816}, 270, 1, L"0.00,-1.00,1.00,0.00,0.00,1056.00"},
        {"not turned", {0, 0, 816, 1056}, 0, 1, L"1.00,0.00,0.00,1.00,0.00,0.00"},
        {"turned by 90", {0, 0, 816, 1056}, 90, 1, L"0.00,1.00,-1.00,0.00,1056.00,0.00"},
        {"turned by 180", {0, 0, 816, 1056}, 180, 1, L"-1.00,0.00,0.00,-1.00,816.00,1056.00"},
        {"scaled to half", {0, 0, 816, 1056}, 270, 0.5F, L"0.00,-0.50,0.50,0.00,0.00,408.00"},
        {"without size", {0, 0, 0, 0}, 270, 1, L"0.00,-1.00,1.00,0.00,0.00,0.00"},
        {"with fraction", {0, 0, 793.76F, 1122.56F}, 270, 1, L"0.00,-1.00,1.00,0.00,0.00,793.76"},
        // Only the right and bottom edges are used.
        {"with corner", {10, 20, 816, 1056}, 270, 1, L"0.00,-1.00,1.00,0.00,0.00,816.00"},
    };
    for (const auto& [name, page, angleDegrees, scale, expected] : cases)
    {
        GdiMatrix matrix;
        // The previous value of the matrix is ignored.
        matrix.SetElements({9.0F, 8.0F, 7.0F, 6.0F, 5.0F, 4.0F});
        ComputePageTransform(page, angleDegrees, scale, matrix);
        EXPECT_EQ(FormatRenderTransform(matrix), L"RenderTransform=\"" + std::wstring(expected) + L"\"")
            << name;
        EXPECT_EQ(matrix.GetLastStatus(), Gdiplus::Ok) << name;
    }
}

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

TEST(TransformBox, SpansTheTwoTransformedCorners)
{
    GdiMatrix matrix;
    ComputePageTransform({0, 0, 816, 1056}, 270, 1, matrix);
    const PageBox turned = TransformBox({10, 20, 110, 220}, matrix);
    EXPECT_EQ(turned, (PageBox{20, 706, 220, 806}));
}
} // namespace
} // namespace base::xps
