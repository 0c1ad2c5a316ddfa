#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace host::xps
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

/// What a page's markup says of the whole page.
struct PageMarkup
{
    PageSize size;
    /// Of a canvas that comes first on the page.
    std::optional<ContentTransform> transform;
    /// Why no consumer of XPS can be expected to take it, as "is not well-formed: line 3, column 14: ...";
    /// empty when there is nothing that shows here. Only what was read as a whole has one.
    std::string fault;
};

/// Of the start of a page, which may be cut off anywhere. COM must be initialised on the thread.
PageMarkup ReadPageStart(std::string_view markupStart);

/// Of a whole page, in one pass that keeps nothing of it: whether it is well-formed, and whether its root,
/// and a canvas that comes first in that, lie in a namespace of XPS. COM must be initialised on the thread.
PageMarkup ReadPage(std::string_view markup);
} // namespace host::xps
