#pragma once

#include <cstddef>
#include <string_view>
#include <utility>

#include "base/utility/comptr.h"
#include "host/pipeline/part.h"
#include "host/pipeline/pipelinejob.h"
#include "host/pipeline/printstreams.h"
#include "host/pipeline/ticketpart.h"
#include "host/xps/xpsdocument.h"
#include "platform/filterpipeline.h"

namespace host::pipeline
{
/// The root of an XPS document.
class DocumentRootPart final : public OwnObject<IXpsDocument>
{
public:
    explicit DocumentRootPart(PipelineJobPtr job) : m_pJob(std::move(job)), m_place(m_pJob->handedOut++) {}

    /// Thumbnails stay where they are and are not provided.
    STDMETHODIMP GetThumbnail(IPartThumbnail** thumbnail) override;
    STDMETHODIMP SetThumbnail(IPartThumbnail* thumbnail) override;

    /// Where the part stands in the order of the tree.
    std::size_t Place() const noexcept { return m_place; }
    std::string_view Subject() const noexcept { return {}; }
    bool IsComplete() const noexcept { return true; }

private:
    PipelineJobPtr m_pJob;
    std::size_t m_place;
};

/// The fixed document sequence, a fixed document, or what a fixed page has in common with them.
template <typename Interface>
class TreePart : public NamedPart<Interface>
{
public:
    TreePart(const PipelineJobPtr& job, const xps::JobPart& part)
        : NamedPart<Interface>(job, part.name), m_place(job->handedOut++), m_ticket(job, part)
    {
    }

    STDMETHODIMP GetPrintTicket(IPartPrintTicket** ticket) override
    {
        return this->Answer("GetPrintTicket", [&] { return m_ticket.Get(ticket); });
    }

    STDMETHODIMP SetPrintTicket(IPartPrintTicket* ticket) override
    {
        return this->Answer("SetPrintTicket", [&] { return m_ticket.Set(ticket); });
    }

    TicketSlot& Ticket() noexcept { return m_ticket; }

    /// Where the part stands in the order of the tree.
    std::size_t Place() const noexcept { return m_place; }
    std::string_view Subject() const noexcept { return this->m_name.Text(); }
    /// Whether the streams to its new contents were closed exactly once.
    bool IsComplete() const noexcept { return m_ticket.IsComplete(); }

protected:
    std::size_t m_place;
    TicketSlot m_ticket;
};

using SequencePart = TreePart<IFixedDocumentSequence>;
using DocumentPart = TreePart<IFixedDocument>;

/// A fixed page.
class PagePart final : public TreePart<IFixedPage>
{
public:
    using TreePart::TreePart;

    /// The markup that the page came with, each time from its start.
    STDMETHODIMP GetStream(IPrintReadStream** stream) override;
    STDMETHODIMP GetPartCompression(EXpsCompressionOptions* compression) override;
    STDMETHODIMP SetPartCompression(EXpsCompressionOptions compression) override;
    /// Gives the page's print ticket by its name; other resources are not provided.
    STDMETHODIMP GetPagePart(const wchar_t* uri, IUnknown** part) override;
    /// E_UNEXPECTED for a second time.
    STDMETHODIMP GetWriteStream(IPrintWriteStream** stream) override;
    STDMETHODIMP SetPagePart(IUnknown* part) override;
    STDMETHODIMP DeleteResource(const wchar_t* uri) override;
    STDMETHODIMP GetXpsPartIterator(IXpsPartIterator** iterator) override;

    /// Null when nobody asked to replace the markup.
    PartWriteStream* NewMarkup() const noexcept { return m_pNewMarkup.Get(); }

    bool IsComplete() const noexcept;

private:
    base::utility::ComPtr<PartWriteStream> m_pNewMarkup;
    EXpsCompressionOptions m_compression = Compression_Normal;
};
} // namespace host::pipeline
