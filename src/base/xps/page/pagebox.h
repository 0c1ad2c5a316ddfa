#pragma once

#include <string>

namespace base::xps
{
/// A rectangle in page markup, in units of 1/96 inch.
struct PageBox
{
    float Left = 0.0F;
    float Top = 0.0F;
    float Right = 0.0F;
    float Bottom = 0.0F;

    float Width() const noexcept { return Right - Left; }
    float Height() const noexcept { return Bottom - Top; }

    bool operator==(const PageBox&) const = default;
};

/// Reads a box attribute: x, y, width and height, separated by commas; several commas count as one. Throws
/// std::invalid_argument for empty text and if there are not four numbers.
PageBox ParseBox(const std::wstring& text);

/// Formats four numbers with two decimals each, separated by commas.
std::wstring FormatBox(float first, float second, float third, float fourth);

/// The box of the same size whose top-left corner is (x, y).
PageBox MoveBox(const PageBox& box, float x, float y) noexcept;
} // namespace base::xps
