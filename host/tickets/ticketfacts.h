#pragma once

#include <string>
#include <vector>

#include "base/utility/comptr.h"
#include "base/xps/printschema/mediasizedata.h"
#include "base/xps/printschema/pageorientationdata.h"
#include "base/xps/printschema/printablemediasizedata.h"
#include "base/xps/printschema/scalingdata.h"
#include "base/xps/printschema/vocabulary/mediasize.h"
#include "platform/msxml6.h"

namespace host::tickets
{
/// Throws HresultError when the bytes are no well-formed XML.
base::utility::ComPtr<IXMLDOMDocument2> LoadBytes(const std::string& bytes);

/// The document as UTF-8.
std::string SaveBytes(IXMLDOMDocument2* document);

/// What a ticket says of the page's sheet. Names are options of the Print Schema, lengths micrometres.
struct SheetFacts
{
    std::string orientation;
    std::string mediaName;
    base::xps::printschema::MediaSize media;
    std::string scaling;
    base::xps::printschema::PageScale scale;
};

/// What holds for a part by its effective ticket.
struct TicketFacts : SheetFacts
{
    base::xps::printschema::MediaSizeLimits limits;
    /// The features whose value the ticket does not give: that of the part before holds.
    std::vector<std::string> keptFeatures;
    /// The driver's prefix, if no limits are under it: those of 0x0 hold, which no sheet meets.
    std::string prefixWithoutLimits;
};

/// Reads effective tickets as the filter does: with the module's accessors, which keep the value of a feature
/// that a ticket lacks or selects an unknown option of.
class TicketFactsReader
{
public:
    /// To be called for each part in the order of the job. Throws what the accessors throw for a ticket that
    /// they cannot read.
    TicketFacts Read(const base::utility::ComPtr<IXMLDOMDocument2>& effectiveTicket);

private:
    struct Features
    {
        base::xps::printschema::ScalingData scaling;
        base::xps::printschema::MediaSizeData media;
        base::xps::printschema::PageOrientationData orientation;
        base::xps::printschema::PrintableMediaSizeData limits;
    };

    static TicketFacts ReadInto(Features& features, const base::xps::printschema::PrintSchemaHandler& ticket);

    Features m_features;
};

/// The facts of a page's own ticket by itself, from its bytes. Throws as the reader does.
SheetFacts ReadSheetFacts(const std::string& ticket);

/// In millimetres, as they are typed: "210x297".
std::string FormatSheet(base::xps::printschema::MediaSize size);

/// The same: "76.2x127-215.9x355.6".
std::string FormatLimits(const base::xps::printschema::MediaSizeLimits& limits);
} // namespace host::tickets
