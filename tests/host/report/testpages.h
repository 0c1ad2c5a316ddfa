#pragma once

#include "host/report/pagereport.h"

namespace host::report
{
inline constexpr base::xps::printschema::MediaSize kLetter{215'900, 279'400};
inline constexpr base::xps::printschema::MediaSize kA3{297'000, 420'000};

/// A page that was passed, upright on Letter.
inline PageReport PassedPage()
{
    PageReport page;
    page.number = 3;
    page.part = "/1.fpage";
    page.before = page.after = {816.0, 1056.5};
    static_cast<tickets::SheetFacts&>(page.asked) = {
        "Portrait", "NorthAmericaLetter", kLetter, "FitApplicationMediaSizeToPageMediaSize", {}};
    page.asked.limits = {{76'200, 127'000}, {215'900, 355'600}};
    return page;
}

/// One that was given Letter.
inline PageReport GivenPage()
{
    PageReport page = PassedPage();
    page.given = tickets::SheetFacts{"Portrait", "NorthAmericaLetter", kLetter, "Custom", {0, 0, 65, 65}};
    page.newTicket = "/new.xml";
    return page;
}
} // namespace host::report
