#pragma once

#include <optional>

#include "base/xps/printschema/mediasizedata.h"
#include "base/xps/printschema/pageorientationdata.h"
#include "base/xps/printschema/tickets/printticketprovider.h"
#include "base/xps/printschema/tickets/rememberedareas.h"
#include "base/xps/printschema/vocabulary/imageablearea.h"
#include "base/xps/printschema/vocabulary/mediasizetable.h"

namespace base::xps::printschema
{
/// Reads imageable areas from the printer's capabilities (PageImageableSize) under the page's ticket. Answers
/// are remembered, as the platform is slow to give them; so a reader serves one job. Borrows the provider.
class ImageableAreaReader
{
public:
    explicit ImageableAreaReader(PrintTicketProvider& provider) noexcept : m_provider(provider) {}

    /// For the page's ticket with this sheet and this orientation in the place of its own, in the frame of
    /// the orientation. A printer that answers for another sheet, as it does not offer turned ones for
    /// example, is asked about the upright sheet, and its answer is turned. Nothing when it does not tell.
    /// Throws HresultError where the page has no ticket or memory runs out.
    std::optional<ImageableArea> Read(const MediaSizeEntry& media, const PageOrientationData& orientation);

private:
    using Answer = RememberedAreas::Answer;

    Answer ReadUnder(IXMLDOMDocument2* pageTicket,
                     const MediaSizeEntry& media,
                     const PageOrientationData& orientation);
    Answer AskFor(IXMLDOMDocument2* pageTicket,
                  const MediaSizeData& media,
                  const PageOrientationData& orientation);
    Answer Ask(IXMLDOMDocument2* ticket);

    PrintTicketProvider& m_provider;
    // By the ticket that the printer was asked about.
    RememberedAreas m_byTicket;
    // By the page's ticket, the sheet and the orientation: pages with equal tickets need not even have theirs
    // changed.
    RememberedAreas m_byPage;
};
} // namespace base::xps::printschema
