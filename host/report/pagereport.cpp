#include "host/report/pagereport.h"

namespace host::report
{
using base::xps::printschema::MediaSize;

namespace
{
/// Whether the new ticket is about more than the turn.
bool HasOtherSheet(const PageReport& page)
{
    return page.given && (page.given->media != AsPrinted(page) || page.given->scaling != page.asked.scaling);
}
} // namespace

Decision Decide(const PageReport& page)
{
    if (page.isMarkupReplaced)
    {
        return IsRefitted(page) ? Decision::TurnedAndRefitted : Decision::Turned;
    }
    return IsRefitted(page) ? Decision::Refitted : Decision::Passed;
}

bool IsRefitted(const PageReport& page)
{
    return IsOutOfLimits(page) && HasOtherSheet(page);
}

bool IsOutOfLimits(const PageReport& page)
{
    return !page.asked.limits.Contains(AsPrinted(page));
}

bool IsLandscape(const std::string& orientation)
{
    return orientation == "Landscape" || orientation == "ReverseLandscape";
}

MediaSize Rotated(MediaSize sheet)
{
    return {sheet.heightMicrometres, sheet.widthMicrometres};
}

MediaSize AsPrinted(const PageReport& page)
{
    const bool lies = IsLandscape(page.asked.orientation) != page.isMarkupReplaced;
    return lies ? Rotated(page.asked.media) : page.asked.media;
}
} // namespace host::report
