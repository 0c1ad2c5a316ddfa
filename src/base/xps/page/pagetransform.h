#pragma once

#include <string>

#include "base/xps/page/gdimatrix.h"
#include "base/xps/page/pagebox.h"

namespace base::xps
{
/// Sets `matrix` to the transform that turns and scales a page and moves it so that no part lies left of or
/// above the origin. The page reaches from the origin to the right and bottom edges of `page`. Failures of
/// GDI+ are recorded in the matrix.
void ComputePageTransform(const PageBox& page, float angleDegrees, float scale, GdiMatrix& matrix);

/// Appends a translation to the matrix.
void AddTranslation(float dx, float dy, GdiMatrix& matrix);

/// Formats the attribute RenderTransform, name and quoted value, with two decimals. Throws std::logic_error
/// when the matrix cannot be read.
std::wstring FormatRenderTransform(GdiMatrix& matrix);

/// Returns 0 for values between -0.001 and 0.001: GDI+ computes the cosine of 90 degrees as slightly below
/// zero, which would be written as "-0.00".
float SnapToZero(float value) noexcept;

/// The box around the transformed top left and bottom right corners, which is exact for turns by 90 degrees.
PageBox TransformBox(const PageBox& box, GdiMatrix& matrix);
} // namespace base::xps
