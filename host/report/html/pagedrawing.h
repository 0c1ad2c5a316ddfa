#pragma once

#include <string>

#include "host/report/pageview.h"

namespace host::report::html
{
/// The two views of a page as SVG elements of the same scale, with lengths in millimetres. A page that was
/// passed has only `before`.
struct PageDrawings
{
    std::string before;
    std::string after;
};

PageDrawings DrawPage(const PageReport& page);

/// "0, -1, 1, 0, 0, 816".
std::string FormatMatrix(const xps::ContentTransform& transform);

/// What a transform does to the page, in words: "a quarter turn anticlockwise: (x, y) comes to (y, 816 - x)".
std::string DescribeTransform(const xps::ContentTransform& transform);
} // namespace host::report::html
