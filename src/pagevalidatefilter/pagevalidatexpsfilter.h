#pragma once

#include "base/utility/lock.h"
#include "base/xps/filterpipeline/xpsdocumentproviderfilterbase.h"
#include "base/xps/printschema/inputbindata.h"
#include "base/xps/printschema/mediasizedata.h"
#include "base/xps/printschema/pageorientationdata.h"
#include "base/xps/printschema/printablemediasizedata.h"
#include "base/xps/printschema/scalingdata.h"
#include "base/xps/printschema/tickets/imageableareareader.h"
#include "pagevalidatefilter/module.h"

namespace pagevalidatefilter
{
/// The module's filter: sends every part on in order, and makes each fixed page agree with its print ticket
/// first. ModuleReference is the first base, so that the module stays loaded until the filter is destroyed.
class PageValidateXpsFilter final : ModuleReference,
                                    public base::xps::filterpipeline::XpsDocumentProviderFilterBase
{
public:
    PageValidateXpsFilter();

protected:
    void RunOperation() override;
    void EndOperation() override;
    void CancelOperation() override;

    // All throw std::invalid_argument for a null part, and HresultError if the consumer fails.
    void OnUnknownPart(const base::utility::ComPtr<IUnknown>& part) override;
    void OnFixedPage(const base::utility::ComPtr<IFixedPage>& page) override;
    void OnFixedDocument(const base::utility::ComPtr<IFixedDocument>& document) override;
    void OnFixedDocumentSequence(const base::utility::ComPtr<IFixedDocumentSequence>& sequence) override;
    void OnXpsDocument(const base::utility::ComPtr<IXpsDocument>& document) override;

private:
    void ReadTicket(EPrintTicketScope scope);
    void CloseWriter() const;

    // Guards m_pWriter only, which CancelOperation closes on another thread.
    mutable base::utility::Lock m_writerLock;
    base::utility::ComPtr<IXpsDocumentConsumer> m_pWriter;
    base::xps::printschema::ScalingData m_scalingData;
    base::xps::printschema::InputBinData m_inputBinData;
    base::xps::printschema::MediaSizeData m_mediaSizeData;
    base::xps::printschema::PageOrientationData m_orientationData;
    base::xps::printschema::PrintableMediaSizeData m_printableMediaSizeData;
    base::xps::printschema::ImageableAreaReader m_imageableAreas;
};
} // namespace pagevalidatefilter
