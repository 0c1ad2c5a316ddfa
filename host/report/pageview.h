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

/// A page on its sheet, in the frame of the page as it is read.
struct PageView
{
    MillimetreBox sheet;
    /// The smallest and the largest sheet that the limits allow.
    MillimetreBox smallest;
    MillimetreBox largest;
    /// Empty if the printer gives none.
    std::optional<MillimetreBox> imageable;
    /// The page's place after the ticket's scale is applied; empty without a size.
    std::optional<MillimetreBox> page;
};

/// The page before the filter. A page that the filter turns lies across its sheet, and so do the limits.
PageView ViewBefore(const PageReport& page);

/// The page after the filter; the same view for a page that was passed.
PageView ViewAfter(const PageReport& page);

/// The smallest box that holds both.
MillimetreBox Enclose(const MillimetreBox& one, const MillimetreBox& other);

double ToMillimetres(double pixels);
double ToPixels(double millimetres);
} // namespace host::report
