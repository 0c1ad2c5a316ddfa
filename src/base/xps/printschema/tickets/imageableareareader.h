#pragma once

#include <optional>

#include "base/xps/printschema/mediasizedata.h"
#include "base/xps/printschema/pageorientationdata.h"
#include "base/xps/printschema/tickets/imageableareacache.h"
#include "base/xps/printschema/tickets/printticketprovider.h"
#include "base/xps/printschema/vocabulary/imageablearea.h"
#include "base/xps/printschema/vocabulary/mediasizetable.h"

namespace base::xps::printschema
{
/// Reads imageable areas from the printer's capabilities (PageImageableSize) under the page's ticket. The
/// platform answers slowly, so answers are cached; one reader serves one job. The provider must outlive it.
class ImageableAreaReader
{
public:
    explicit ImageableAreaReader(PrintTicketProvider& provider) noexcept : m_provider(provider) {}

    /// The imageable area for the page's ticket with this sheet and this orientation, as seen in the
    /// orientation. If the printer answers for another sheet, because it does not offer turned sheets for
    /// example, it is asked for the upright sheet and the answer is turned. Nothing if the printer has no
    /// answer. Throws HresultError if the page has no ticket or memory runs out.
    std::optional<ImageableArea> Read(const MediaSizeEntry& media, const PageOrientationData& orientation);

private:
    using Area = ImageableAreaCache::Area;

    Area ReadUncached(IXMLDOMDocument2* pageTicket,
                      const MediaSizeEntry& media,
                      const PageOrientationData& orientation);
    Area ReadFor(IXMLDOMDocument2* pageTicket,
                 const MediaSizeData& media,
                 const PageOrientationData& orientation);
    Area ReadFromPrinter(IXMLDOMDocument2* ticket);

    PrintTicketProvider& m_provider;
    // By the ticket that is sent to the printer.
    ImageableAreaCache m_byTicket;
    // By the page's ticket, the sheet and the orientation, which saves making the ticket for the printer.
    ImageableAreaCache m_byPage;
};
} // namespace base::xps::printschema
