#pragma once

#include <string>

#include "host/report/pageview.h"

namespace host::report::html
{
/// The two views of a page as SVG elements of one scale, with lengths in millimetres. `before` is all there
/// is to draw of a page that was passed.
struct PageDrawings
{
    std::string before;
    std::string after;
};

PageDrawings DrawPage(const PageReport& page);

/// What a transform does to the page, in words: "a quarter turn anticlockwise: (x, y) comes to (y, 816 - x)".
std::string DescribeTransform(const xps::ContentTransform& transform);
} // namespace host::report::html
