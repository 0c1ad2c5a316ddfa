#pragma once

#include <array>
#include <span>

#include "platform/gdiplus.h"

namespace base::xps
{
/// An affine transform of GDI+'s flat API: (x, y) maps to (x*m11 + y*m21 + dx, x*m12 + y*m22 + dy). Initially
/// the identity.
///
/// Nothing throws. A failing status is returned and recorded; a later success does not clear it. If the
/// matrix could not be created, every call fails.
class GdiMatrix
{
public:
    /// m11, m12, m21, m22, dx, dy.
    using Elements = std::array<Gdiplus::REAL, 6>;

    GdiMatrix() noexcept;
    GdiMatrix(const GdiMatrix&) = delete;
    GdiMatrix& operator=(const GdiMatrix&) = delete;
    ~GdiMatrix();

    Gdiplus::Status GetElements(Elements& elements) noexcept;
    Gdiplus::Status SetElements(const Elements& elements) noexcept;
    Gdiplus::Status Scale(Gdiplus::REAL sx, Gdiplus::REAL sy, Gdiplus::MatrixOrder order) noexcept;
    Gdiplus::Status Rotate(Gdiplus::REAL angleDegrees, Gdiplus::MatrixOrder order) noexcept;
    Gdiplus::Status TransformPoints(std::span<Gdiplus::PointF> points) noexcept;

    Gdiplus::Status GetLastStatus() const noexcept { return m_lastStatus; }

private:
    Gdiplus::Status Record(Gdiplus::Status status) noexcept;

    Gdiplus::GpMatrix* m_matrix = nullptr;
    Gdiplus::Status m_lastStatus;
};
} // namespace base::xps
