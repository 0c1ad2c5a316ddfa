#pragma once

#include <string>

namespace base::xps
{
/// A rectangle of a page's markup, in its unit of 1/96 inch.
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

/// Reads the value of a box attribute: x, y, width and height between commas; runs of commas count as one.
/// Throws std::invalid_argument for empty text and for any other count of numbers.
PageBox ParseBox(const std::wstring& text);

/// The four numbers between commas, each with two decimals.
std::wstring FormatBox(float first, float second, float third, float fourth);

/// The box of the same size whose top-left corner is (x, y).
PageBox MoveBox(const PageBox& box, float x, float y) noexcept;
} // namespace base::xps
