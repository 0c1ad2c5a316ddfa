#pragma once

#include "base/xps/printschema/imageablearea.h"
#include "base/xps/printschema/mediasizetable.h"
#include "base/xps/printschema/printticketprovider.h"
#include "base/xps/printschema/rememberedareas.h"

namespace base::xps::printschema
{
/// Reads imageable areas from the printer's capabilities (PageImageableSize) under the page's ticket. Answers
/// are remembered, as the platform is slow to give them; so a reader serves one job. Borrows the provider.
class ImageableAreaReader
{
public:
    explicit ImageableAreaReader(PrintTicketProvider& provider) noexcept : m_provider(provider) {}

    /// For the page's ticket with this sheet in the place of its own. A printer that does not tell prints on
    /// the whole sheet. Throws HresultError where the page has no ticket or memory runs out.
    ImageableArea Read(const MediaSizeEntry& media);

private:
    ImageableArea ReadUnder(IXMLDOMDocument2* pageTicket, const MediaSizeEntry& media);
    ImageableArea Ask(IXMLDOMDocument2* ticket, MediaSize sheet);

    PrintTicketProvider& m_provider;
    // By the ticket that the printer was asked about.
    RememberedAreas m_byTicket;
    // By the page's ticket and the sheet: pages with equal tickets need not even have theirs changed.
    RememberedAreas m_byPage;
};
} // namespace base::xps::printschema
