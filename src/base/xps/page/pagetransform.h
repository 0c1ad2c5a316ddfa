#pragma once

#include <string>

#include "base/xps/page/gdimatrix.h"
#include "base/xps/page/pagebox.h"

namespace base::xps
{
/// Overwrites `matrix` with the transform that turns and scales a page as large as the right and bottom edges
/// of `page` and shifts the result so that no part of it lies left of or above the origin. Statuses of GDI+
/// are recorded in the matrix.
void ComputePageTransform(const PageBox& page, float angleDegrees, float scale, GdiMatrix& matrix);

/// Appends a translation, after all that the matrix does already.
void AddTranslation(float dx, float dy, GdiMatrix& matrix);

/// The whole attribute, name and quoted value, with two decimals. Throws std::logic_error when the matrix
/// cannot be read.
std::wstring FormatRenderTransform(GdiMatrix& matrix);

/// 0 for values of up to 0.001 either way: GDI+ leaves the cosine of a quarter turn a little off zero, which
/// would print as "-0.00".
float SnapToZero(float value) noexcept;

/// The box around the transformed top-left and bottom-right corners: exact for quarter turns.
PageBox TransformBox(const PageBox& box, GdiMatrix& matrix);
} // namespace base::xps
