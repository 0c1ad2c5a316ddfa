#pragma once

#include <string>

#include "base/utility/comptr.h"
#include "base/xps/printschema/mediasize.h"
#include "base/xps/printschema/scalingdata.h"
#include "platform/msxml6.h"

namespace host::tickets
{
/// What a ticket says of the page's sheet. Names are options of the Print Schema, lengths micrometres.
struct SheetFacts
{
    std::string orientation;
    std::string mediaName;
    base::xps::printschema::MediaSize media;
    std::string scaling;
    base::xps::printschema::PageScale scale;
};

/// What an effective ticket says, the printable sheets among it.
struct TicketFacts : SheetFacts
{
    base::xps::printschema::MediaSizeLimits limits;
};

/// Throws what the module's accessors throw for a ticket that they cannot read.
TicketFacts ReadFacts(const base::utility::ComPtr<IXMLDOMDocument2>& effectiveTicket);

/// The same from the bytes of a page's own ticket, which may have no limits.
SheetFacts ReadSheetFacts(const std::string& ticket);

/// In millimetres, as they are typed: "210x297".
std::string FormatSheet(base::xps::printschema::MediaSize size);

/// The same: "76.2x127-215.9x355.6".
std::string FormatLimits(const base::xps::printschema::MediaSizeLimits& limits);
} // namespace host::tickets
