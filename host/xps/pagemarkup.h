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

/// What a page's markup says about the whole page.
struct PageMarkup
{
    PageSize size;
    /// The transform of a canvas that is the first element of the page.
    std::optional<ContentTransform> transform;
    /// Why a consumer of XPS may refuse the page, as "is not well-formed: line 3, column 14: ..."; empty if
    /// nothing was found, and after ReadPageStart.
    std::string fault;
};

/// Reads the start of a page, which may be cut off anywhere.
PageMarkup ReadPageStart(std::string_view markupStart);

/// Reads a whole page in one pass that keeps nothing of it, and checks that it is well-formed and that its
/// root, and a canvas that is the root's first element, are in a namespace of XPS.
PageMarkup ReadPage(std::string_view markup);
} // namespace host::xps
