#include "base/xps/page/gdimatrix.h"

#include <gtest/gtest.h>

namespace base::xps
{
namespace
{
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
} // namespace
} // namespace base::xps
