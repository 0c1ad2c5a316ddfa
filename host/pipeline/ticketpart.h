#pragma once

#include <utility>

#include "base/utility/comptr.h"
#include "host/opc/partname.h"
#include "host/pipeline/ownpart.h"
#include "host/pipeline/pipelinejob.h"
#include "host/pipeline/printstreams.h"
#include "platform/filterpipeline.h"

namespace host::pipeline
{
/// A print ticket as the pipeline hands it out, of the package or new.
class TicketPart final : public OwnPart<TicketPart, IPartPrintTicket>
{
public:
    static constexpr IID kOwnId = {
        0x6B1F0C52, 0x0D0A, 0x4C55, {0x9E, 0x0B, 0x51, 0x1C, 0x2F, 0x6D, 0x83, 0xA4}};

    /// A ticket of the package.
    TicketPart(PipelineJobPtr job, opc::PartName name) : m_pJob(std::move(job)), m_name(std::move(name)) {}

    /// A new one, with the stream that takes its content.
    TicketPart(PipelineJobPtr job, opc::PartName name, base::utility::ComPtr<PartWriteStream> content)
        : m_pJob(std::move(job)), m_name(std::move(name)), m_pNewContent(std::move(content))
    {
    }

    STDMETHODIMP GetUri(BSTR* uri) override;
    /// E_ACCESSDENIED for a new ticket, which can only be written.
    STDMETHODIMP GetStream(IPrintReadStream** stream) override;
    STDMETHODIMP GetPartCompression(EXpsCompressionOptions* compression) override;
    STDMETHODIMP SetPartCompression(EXpsCompressionOptions compression) override;

    const opc::PartName& Name() const noexcept { return m_name; }

    /// Null for a ticket of the package.
    PartWriteStream* NewContent() const noexcept { return m_pNewContent.Get(); }

    /// Whether it can be stored: a new ticket once, when its stream was closed exactly once.
    bool IsComplete() const noexcept;

    /// Writes a new ticket into the package; one of the package stays there.
    void Store();

private:
    PipelineJobPtr m_pJob;
    opc::PartName m_name;
    base::utility::ComPtr<PartWriteStream> m_pNewContent;
    bool m_isStored = false;
    EXpsCompressionOptions m_compression = Compression_Normal;
};
} // namespace host::pipeline
