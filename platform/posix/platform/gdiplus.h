#pragma once

// Stands in for GDI+ where the page transform is built for the build machine: the flat functions of matrices,
// on single precision as theirs are.
#include <algorithm>
#include <cmath>
#include <iterator>
#include <memory>

namespace Gdiplus
{
using REAL = float;

enum Status
{
    Ok,
    InvalidParameter = 2
};

enum MatrixOrder
{
    MatrixOrderPrepend
};

struct PointF
{
    PointF(REAL x, REAL y) : X(x), Y(y) {}

    REAL X;
    REAL Y;
};

struct GpMatrix
{
    REAL elements[6] = {1, 0, 0, 1, 0, 0};
};

namespace DllExports
{
inline Status GdipCreateMatrix(GpMatrix** matrix)
{
    *matrix = std::make_unique<GpMatrix>().release();
    return Ok;
}

inline Status GdipDeleteMatrix(GpMatrix* matrix)
{
    std::unique_ptr<GpMatrix>(matrix).reset();
    return Ok;
}

inline Status GdipGetMatrixElements(const GpMatrix* matrix, REAL* elements)
{
    std::copy(std::begin(matrix->elements), std::end(matrix->elements), elements);
    return Ok;
}

inline Status GdipSetMatrixElements(
    GpMatrix* matrix, REAL m11, REAL m12, REAL m21, REAL m22, REAL dx, REAL dy)
{
    *matrix = {{m11, m12, m21, m22, dx, dy}};
    return Ok;
}

/// Puts a linear map before what the matrix does.
inline Status Prepend(GpMatrix* matrix, REAL a11, REAL a12, REAL a21, REAL a22)
{
    const auto [m11, m12, m21, m22, dx, dy] = matrix->elements;
    *matrix = {
        {a11 * m11 + a12 * m21, a11 * m12 + a12 * m22, a21 * m11 + a22 * m21, a21 * m12 + a22 * m22, dx, dy}};
    return Ok;
}

inline Status GdipScaleMatrix(GpMatrix* matrix, REAL sx, REAL sy, MatrixOrder)
{
    return Prepend(matrix, sx, 0, 0, sy);
}

inline Status GdipRotateMatrix(GpMatrix* matrix, REAL degrees, MatrixOrder)
{
    const REAL radians = degrees * 3.14159265F / 180;
    return Prepend(matrix, std::cos(radians), std::sin(radians), -std::sin(radians), std::cos(radians));
}

inline Status GdipTransformMatrixPoints(const GpMatrix* matrix, PointF* points, int count)
{
    const auto [m11, m12, m21, m22, dx, dy] = matrix->elements;
    for (PointF* point = points; point != points + count; ++point)
    {
        *point = {point->X * m11 + point->Y * m21 + dx, point->X * m12 + point->Y * m22 + dy};
    }
    return count > 0 ? Ok : InvalidParameter;
}
} // namespace DllExports
} // namespace Gdiplus
