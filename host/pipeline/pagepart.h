#pragma once

#include <cstddef>
#include <string_view>

#include "base/utility/comptr.h"
#include "host/opc/partname.h"
#include "host/pipeline/ownpart.h"
#include "host/pipeline/pipelinejob.h"
#include "host/pipeline/printstreams.h"
#include "host/pipeline/ticketslot.h"
#include "host/xps/xpsdocument.h"
#include "platform/filterpipeline.h"

namespace host::pipeline
{
/// A fixed page.
class PagePart final : public OwnPart<PagePart, IFixedPage>
{
public:
    static constexpr IID kOwnId = {
        0x0F6D7B8E, 0x64B1, 0x4E0C, {0x8A, 0x3D, 0x2E, 0x92, 0x57, 0xC1, 0x4F, 0x1B}};

    PagePart(PipelineJobPtr job, const xps::JobPart& part);

    STDMETHODIMP GetUri(BSTR* uri) override;
    /// The markup that the page came with, each time from its start.
    STDMETHODIMP GetStream(IPrintReadStream** stream) override;
    STDMETHODIMP GetPartCompression(EXpsCompressionOptions* compression) override;
    STDMETHODIMP SetPartCompression(EXpsCompressionOptions compression) override;
    STDMETHODIMP GetPrintTicket(IPartPrintTicket** ticket) override;
    /// Gives the page's print ticket by its name; other resources are not provided.
    STDMETHODIMP GetPagePart(const wchar_t* uri, IUnknown** part) override;
    /// E_UNEXPECTED for a second time.
    STDMETHODIMP GetWriteStream(IPrintWriteStream** stream) override;
    STDMETHODIMP SetPrintTicket(IPartPrintTicket* ticket) override;
    STDMETHODIMP SetPagePart(IUnknown* part) override;
    STDMETHODIMP DeleteResource(const wchar_t* uri) override;
    STDMETHODIMP GetXpsPartIterator(IXpsPartIterator** iterator) override;

    TicketSlot& Ticket() noexcept { return m_ticket; }

    /// Null when nobody asked to replace the markup.
    PartWriteStream* NewMarkup() const noexcept { return m_pNewMarkup.Get(); }

    /// Where the part stands in the order of the tree.
    std::size_t Place() const noexcept { return m_place; }
    std::string_view Name() const noexcept { return m_name.Text(); }
    /// Whether the streams to its new contents were closed exactly once.
    bool IsComplete() const noexcept;

private:
    PipelineJobPtr m_pJob;
    opc::PartName m_name;
    std::size_t m_place;
    TicketSlot m_ticket;
    base::utility::ComPtr<PartWriteStream> m_pNewMarkup;
    EXpsCompressionOptions m_compression = Compression_Normal;
};
} // namespace host::pipeline
