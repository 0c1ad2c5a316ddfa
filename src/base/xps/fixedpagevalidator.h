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
/// Makes one fixed page agree with its print ticket. It turns the page by 90 degrees if the orientation and
/// the sheet disagree, and refits it if the sheet is outside the printer's limits; then the page gets a new
/// ticket. Otherwise the page stays as it is.
///
/// One object serves one page, on the operation's thread. A failure is thrown and may leave the page half
/// changed: such a page must not be sent. Names of new parts and the slots of virtual functions are fixed:
/// docs/surface.md.
class FixedPageValidator
{
public:
    /// The accessors are copied; the input bin is kept and not written (docs/surface.md). The provider and
    /// the reader must outlive the validator. Throws std::invalid_argument without consumer or page, and if
    /// reading the tickets fails.
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

    /// Decides and does what the page needs.
    virtual void Process();

    /// Sets a new ticket part: the page's old ticket, or an empty one, with the features of the accessors.
    virtual void ReplacePrintTicket();

    /// Parses the page's markup with the content handler and writes the result into the page.
    virtual void RewriteMarkup();

    /// Creates the handler that writes the new markup into `output`.
    virtual utility::ComPtr<ISAXContentHandler> CreateContentHandler(std::ostream& output);

    /// Throws std::invalid_argument for null, HresultError if loading fails.
    static utility::ComPtr<IXMLDOMDocument2> LoadTicket(IPrintReadStream* reader);

    /// Does not close the stream. Throws std::invalid_argument for null, HresultError if a write fails.
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
    // The sheet to print on if the page's own is outside the limits.
    printschema::MediaSizeEntry m_targetMedia;
    printschema::ImageableAreaReader& m_imageableAreas;
};
} // namespace base::xps
