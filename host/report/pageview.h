#pragma once

#include <optional>

#include "host/report/pagereport.h"

namespace host::report
{
/// In millimetres, from the top left corner of the sheet.
struct MillimetreBox
{
    double left = 0.0;
    double top = 0.0;
    double width = 0.0;
    double height = 0.0;

    bool operator==(const MillimetreBox&) const = default;
};

/// A page on its sheet, as someone sees it who holds the page so that it can be read.
struct PageView
{
    MillimetreBox sheet;
    /// The smallest and the largest sheet that the limits allow.
    MillimetreBox smallest;
    MillimetreBox largest;
    /// Empty where the printer does not tell.
    std::optional<MillimetreBox> imageable;
    /// Where the page's markup comes to lie when the ticket's own scale is applied; empty without a size.
    std::optional<MillimetreBox> page;
};

/// What was asked for. A page that the filter turns lies across its sheet, and across the limits with it.
PageView ViewBefore(const PageReport& page);

/// What came of it: the same for a page that was passed.
PageView ViewAfter(const PageReport& page);

/// The smallest box that holds both.
MillimetreBox Enclose(const MillimetreBox& one, const MillimetreBox& other);

double ToMillimetres(double pixels);
double ToPixels(double millimetres);
} // namespace host::report
