#pragma once

#include <ostream>

#include "base/utility/comptr.h"
#include "base/xps/printschema/inputbindata.h"
#include "base/xps/printschema/mediasizedata.h"
#include "base/xps/printschema/pageorientationdata.h"
#include "base/xps/printschema/printablemediasizedata.h"
#include "base/xps/printschema/scalingdata.h"
#include "base/xps/printschema/tickets/imageableareareader.h"
#include "base/xps/printschema/tickets/printticketprovider.h"
#include "platform/filterpipeline.h"
#include "platform/msxml6.h"

namespace base::xps
{
/// Makes one fixed page agree with its print ticket: turns it a quarter turn when the ticket's orientation
/// and its sheet disagree, refits it when the sheet lies outside the printer's limits, and then gives the
/// page a new ticket. A page that needs neither is left alone.
///
/// Lives for one page, on the operation's thread. A failure is thrown and leaves the page as far as it got; a
/// page that failed must not be sent.
class FixedPageValidator
{
public:
    /// The accessors are copied. The provider and the reader outlive the validator. Throws
    /// std::invalid_argument without consumer or page, and what reading the tickets fails with.
    FixedPageValidator(printschema::PrintTicketProvider& provider,
                       IXpsDocumentConsumer* consumer,
                       IFixedPage* page,
                       const printschema::InputBinData& inputBin,
                       const printschema::MediaSizeData& mediaSize,
                       const printschema::PageOrientationData& orientation,
                       const printschema::ScalingData& scaling,
                       const printschema::PrintableMediaSizeData& printableMediaSize,
                       printschema::ImageableAreaReader& imageableAreas);
    FixedPageValidator(const FixedPageValidator&) = delete;
    FixedPageValidator& operator=(const FixedPageValidator&) = delete;

    virtual void Process();

    /// Gives the page a new ticket part: its old ticket, or an empty one, with the accessors written into it.
    virtual void ReplacePrintTicket();

    /// Streams the page's markup through the content handler back into the page.
    virtual void RewriteMarkup();

    /// The handler that rewrites the page's markup into `output`.
    virtual utility::ComPtr<ISAXContentHandler> CreateContentHandler(std::ostream& output);

    /// Throws std::invalid_argument for null, HresultError for what cannot be loaded.
    static utility::ComPtr<IXMLDOMDocument2> LoadTicket(IPrintReadStream* reader);

    /// Leaves the stream open. Throws std::invalid_argument for null, HresultError for a failing write.
    static void SaveTicket(IXMLDOMDocument2* document, IPrintWriteStream* writer);

private:
    void NormaliseOrientation();
    void FitToTarget();
    void WriteAccessors(const utility::ComPtr<IXMLDOMDocument2>& ticket) const;

    printschema::PrintTicketProvider& m_provider;
    utility::ComPtr<IFixedPage> m_pPage;
    utility::ComPtr<IXpsDocumentConsumer> m_pConsumer;
    printschema::MediaSizeData m_mediaSize;
    printschema::PageOrientationData m_orientation;
    printschema::ScalingData m_scaling;
    printschema::InputBinData m_inputBin;
    printschema::MediaSizeLimits m_limits;
    // The sheet within the limits that the tickets above the page lead to.
    printschema::MediaSizeEntry m_targetMedia;
    printschema::ImageableAreaReader& m_imageableAreas;
};
} // namespace base::xps
