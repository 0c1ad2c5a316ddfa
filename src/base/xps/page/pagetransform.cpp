#include "base/xps/page/pagetransform.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

#include "base/logging/failure.h"
#include "base/logging/log.h"

namespace base::xps
{
void ComputePageTransform(const PageBox& page, float angleDegrees, float scale, GdiMatrix& matrix)
{
    matrix.SetElements({1.0F, 0.0F, 0.0F, 1.0F, 0.0F, 0.0F});
    matrix.Rotate(angleDegrees, Gdiplus::MatrixOrderPrepend);
    matrix.Scale(scale, scale, Gdiplus::MatrixOrderPrepend);

    std::array<Gdiplus::PointF, 4> corners{Gdiplus::PointF(0.0F, 0.0F),
                                           Gdiplus::PointF(page.Right, 0.0F),
                                           Gdiplus::PointF(0.0F, page.Bottom),
                                           Gdiplus::PointF(page.Right, page.Bottom)};
    matrix.TransformPoints(corners);

    // The origin is included, so the page is never moved left or up.
    float minimumX = 0.0F;
    float minimumY = 0.0F;
    for (const Gdiplus::PointF& corner : corners)
    {
        minimumX = std::min(corner.X, minimumX);
        minimumY = std::min(corner.Y, minimumY);
    }
    AddTranslation(-minimumX, -minimumY, matrix);
}

void AddTranslation(float dx, float dy, GdiMatrix& matrix)
{
    GdiMatrix::Elements elements{};
    matrix.GetElements(elements);
    elements[4] += dx;
    elements[5] += dy;
    matrix.SetElements(elements);
}

std::wstring FormatRenderTransform(GdiMatrix& matrix)
{
    GdiMatrix::Elements elements{};
    if (matrix.GetElements(elements) != Gdiplus::Ok)
    {
        exception::Throw<std::logic_error>("Matrix.GetElements failed.");
    }
    std::array<double, 6> printed{};
    std::transform(elements.begin(), elements.end(), printed.begin(), SnapToZero);
    const auto [m11, m12, m21, m22, dx, dy] = printed;
    return logging::FormatWString(
        L"RenderTransform=\"%.2f,%.2f,%.2f,%.2f,%.2f,%.2f\"", m11, m12, m21, m22, dx, dy);
}

float SnapToZero(float value) noexcept
{
    constexpr float tolerance = 0.001F;
    return std::fabs(value - 0.0F) > tolerance ? value : 0.0F;
}

PageBox TransformBox(const PageBox& box, GdiMatrix& matrix)
{
    std::array<Gdiplus::PointF, 2> corners{Gdiplus::PointF(box.Left, box.Top),
                                           Gdiplus::PointF(box.Right, box.Bottom)};
    matrix.TransformPoints(corners);
    // If the values are equal the second point's is used, which matters for 0 and -0.
    const auto [first, second] = corners;
    return {std::min(second.X, first.X),
            std::min(second.Y, first.Y),
            std::max(second.X, first.X),
            std::max(second.Y, first.Y)};
}
} // namespace base::xps
