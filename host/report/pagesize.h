#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

namespace host::report
{
/// How much of a page's markup is enough to find its size in.
inline constexpr std::size_t kMarkupStart = 65'536;

/// A page's size in its markup's unit, 1/96 inch; empty where the markup does not say.
struct PageSize
{
    std::optional<double> width;
    std::optional<double> height;
};

/// The matrix m11, m12, m21, m22, dx, dy brings (x, y) to (x m11 + y m21 + dx, x m12 + y m22 + dy).
using ContentTransform = std::array<double, 6>;

/// What the start of a page's markup says of the whole page.
struct PageStart
{
    PageSize size;
    /// Of a canvas that comes first on the page.
    std::optional<ContentTransform> transform;
};

/// COM must be initialised on the thread.
PageStart ReadPageStart(std::string_view markupStart);
} // namespace host::report
