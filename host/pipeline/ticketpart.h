#pragma once

#include "base/utility/comptr.h"
#include "host/opc/partname.h"
#include "host/pipeline/part.h"
#include "host/pipeline/pipelinejob.h"
#include "host/pipeline/printstreams.h"
#include "host/xps/xpsdocument.h"
#include "platform/filterpipeline.h"

namespace host::pipeline
{
/// A print ticket as the pipeline hands it out, of the package or new.
class TicketPart final : public NamedPart<IPartPrintTicket>
{
public:
    /// A new ticket comes with the stream that takes its content.
    TicketPart(PipelineJobPtr job, opc::PartName name, base::utility::ComPtr<PartWriteStream> newContent = {})
        : NamedPart(std::move(job), std::move(name)), m_pNewContent(std::move(newContent))
    {
    }

    /// E_ACCESSDENIED for a new ticket, which can only be written.
    STDMETHODIMP GetStream(IPrintReadStream** stream) override;
    STDMETHODIMP GetPartCompression(EXpsCompressionOptions* compression) override;
    STDMETHODIMP SetPartCompression(EXpsCompressionOptions compression) override;

    /// Null for a ticket of the package.
    PartWriteStream* NewContent() const noexcept { return m_pNewContent.Get(); }

    /// Whether it can be stored: a new ticket once, when its stream was closed exactly once.
    bool IsComplete() const noexcept;

    /// Writes a new ticket into the package; one of the package stays there.
    void Store();

private:
    base::utility::ComPtr<PartWriteStream> m_pNewContent;
    bool m_isStored = false;
    EXpsCompressionOptions m_compression = Compression_Normal;
};

/// The print ticket of one part of the tree: its own, none, or a new one.
class TicketSlot
{
public:
    /// `owner` is the part as the document has it.
    TicketSlot(const PipelineJobPtr& job, const xps::JobPart& owner);

    /// Answers IXxx::GetPrintTicket.
    [[nodiscard]] HRESULT Get(IPartPrintTicket** ticket) const;

    /// Takes a ticket of this pipeline; E_INVALIDARG for any other, and what was there stays.
    [[nodiscard]] HRESULT Set(IPartPrintTicket* ticket);

    /// Drops the part's own ticket; false when it does not have this name.
    bool Detach(const opc::PartName& name);

    /// The part as the document has it.
    const xps::JobPart& Owner() const noexcept { return m_owner; }
    /// Null when the part keeps what it has.
    TicketPart* New() const noexcept { return m_pNew.Get(); }
    bool IsComplete() const noexcept { return !m_pNew || m_pNew->IsComplete(); }

    /// Writes the change of the ticket into the package.
    void Store();

private:
    PipelineJobPtr m_pJob;
    xps::JobPart m_owner;
    bool m_isDetached = false;
    base::utility::ComPtr<TicketPart> m_pNew;
};
} // namespace host::pipeline
