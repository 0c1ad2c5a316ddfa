#include "host/report/pageview.h"

#include <algorithm>
#include <cmath>

namespace host::report
{
using base::xps::printschema::ImageableArea;
using base::xps::printschema::MediaSize;
using base::xps::printschema::MediaSizeLimits;
using base::xps::printschema::PageScale;
using xps::PageSize;

namespace
{
constexpr double kMillimetresPerInch = 25.4;
constexpr double kPixelsPerInch = 96.0;
constexpr double kMicrometresPerMillimetre = 1000.0;
constexpr double kPercent = 100.0;

double FromMicrometres(std::int32_t length)
{
    return length / kMicrometresPerMillimetre;
}

MillimetreBox FromOrigin(MediaSize size)
{
    return {0.0, 0.0, FromMicrometres(size.widthMicrometres), FromMicrometres(size.heightMicrometres)};
}

std::optional<MillimetreBox> ToBox(const std::optional<ImageableArea>& area)
{
    if (!area)
    {
        return std::nullopt;
    }
    return MillimetreBox{FromMicrometres(area->leftMicrometres),
                         FromMicrometres(area->topMicrometres),
                         FromMicrometres(area->widthMicrometres),
                         FromMicrometres(area->heightMicrometres)};
}

bool IsExtent(const std::optional<double>& value)
{
    return value && std::isfinite(*value) && *value > 0.0;
}

/// The offset is subtracted before scaling: so the filter aligns the corners of two imageable areas.
std::optional<MillimetreBox> PlacePage(const PageSize& size, const tickets::SheetFacts& ticket)
{
    if (!IsExtent(size.width) || !IsExtent(size.height))
    {
        return std::nullopt;
    }
    const MillimetreBox unscaled{0.0, 0.0, ToMillimetres(*size.width), ToMillimetres(*size.height)};
    const PageScale& scale = ticket.scale;
    if (scale.widthPercent <= 0 || scale.heightPercent <= 0)
    {
        return unscaled;
    }
    const double factorX = scale.widthPercent / kPercent;
    const double factorY = scale.heightPercent / kPercent;
    return MillimetreBox{-FromMicrometres(scale.offsetWidthMicrometres) * factorX,
                         -FromMicrometres(scale.offsetHeightMicrometres) * factorY,
                         unscaled.width * factorX,
                         unscaled.height * factorY};
}

MediaSize AsRead(const tickets::SheetFacts& ticket)
{
    return IsLandscape(ticket.orientation) ? Rotated(ticket.media) : ticket.media;
}
} // namespace

PageView ViewBefore(const PageReport& page)
{
    const MediaSizeLimits& limits = page.asked.limits;
    const bool liesAcross = page.isMarkupReplaced;
    return {FromOrigin(AsRead(page.asked)),
            FromOrigin(liesAcross ? Rotated(limits.minimum) : limits.minimum),
            FromOrigin(liesAcross ? Rotated(limits.maximum) : limits.maximum),
            page.details ? ToBox(page.details->areaBefore) : std::nullopt,
            PlacePage(page.before, page.asked)};
}

PageView ViewAfter(const PageReport& page)
{
    const tickets::SheetFacts& ticket = page.given ? *page.given : page.asked;
    return {FromOrigin(page.given ? AsRead(ticket) : AsPrinted(page)),
            FromOrigin(page.asked.limits.minimum),
            FromOrigin(page.asked.limits.maximum),
            page.details ? ToBox(page.details->areaAfter) : std::nullopt,
            PlacePage(page.after, ticket)};
}

MillimetreBox Enclose(const MillimetreBox& one, const MillimetreBox& other)
{
    const double left = std::min(one.left, other.left);
    const double top = std::min(one.top, other.top);
    return {left,
            top,
            std::max(one.left + one.width, other.left + other.width) - left,
            std::max(one.top + one.height, other.top + other.height) - top};
}

double ToMillimetres(double pixels)
{
    return pixels * kMillimetresPerInch / kPixelsPerInch;
}

double ToPixels(double millimetres)
{
    return millimetres * kPixelsPerInch / kMillimetresPerInch;
}
} // namespace host::report
