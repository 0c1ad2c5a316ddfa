#include "base/xps/page/gdimatrix.h"

namespace base::xps
{
namespace flat = Gdiplus::DllExports;

GdiMatrix::GdiMatrix() noexcept : m_lastStatus(flat::GdipCreateMatrix(&m_matrix)) {}

GdiMatrix::~GdiMatrix()
{
    flat::GdipDeleteMatrix(m_matrix);
}

Gdiplus::Status GdiMatrix::GetElements(Elements& elements) noexcept
{
    return Record(flat::GdipGetMatrixElements(m_matrix, elements.data()));
}

Gdiplus::Status GdiMatrix::SetElements(const Elements& elements) noexcept
{
    const auto [m11, m12, m21, m22, dx, dy] = elements;
    return Record(flat::GdipSetMatrixElements(m_matrix, m11, m12, m21, m22, dx, dy));
}

Gdiplus::Status GdiMatrix::Scale(Gdiplus::REAL sx, Gdiplus::REAL sy, Gdiplus::MatrixOrder order) noexcept
{
    return Record(flat::GdipScaleMatrix(m_matrix, sx, sy, order));
}

Gdiplus::Status GdiMatrix::Rotate(Gdiplus::REAL angleDegrees, Gdiplus::MatrixOrder order) noexcept
{
    return Record(flat::GdipRotateMatrix(m_matrix, angleDegrees, order));
}

Gdiplus::Status GdiMatrix::TransformPoints(std::span<Gdiplus::PointF> points) noexcept
{
    const auto count = static_cast<int>(points.size());
    return Record(flat::GdipTransformMatrixPoints(m_matrix, points.data(), count));
}

Gdiplus::Status GdiMatrix::Record(Gdiplus::Status status) noexcept
{
    if (status != Gdiplus::Ok)
    {
        m_lastStatus = status;
    }
    return status;
}
} // namespace base::xps
