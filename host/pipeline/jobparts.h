#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "base/utility/bstr.h"
#include "base/utility/comobject.h"
#include "base/utility/comptr.h"
#include "host/opc/partname.h"
#include "host/pipeline/pipelinejob.h"
#include "host/pipeline/printstreams.h"
#include "host/xps/xpsdocument.h"
#include "platform/filterpipeline.h"

namespace host::pipeline
{
/// What the pipeline answers when there is no such element.
inline constexpr HRESULT kElementNotFound = __HRESULT_FROM_WIN32(ERROR_NOT_FOUND);

/// An empty content for a part of this name; its closing shows in the job's trace.
base::utility::ComPtr<PartWriteStream> MakeWriteStream(const PipelineJobPtr& job, const opc::PartName& part);

/// A print ticket as the pipeline hands it out, of the package or new.
class TicketPart final : public base::utility::ComObject<IPartPrintTicket>
{
public:
    /// A ticket of the package.
    TicketPart(PipelineJobPtr job, opc::PartName name) : m_pJob(std::move(job)), m_name(std::move(name)) {}

    /// A new one, with the stream that takes its content.
    TicketPart(PipelineJobPtr job, opc::PartName name, base::utility::ComPtr<PartWriteStream> content)
        : m_pJob(std::move(job)), m_name(std::move(name)), m_pNewContent(std::move(content))
    {
    }

    STDMETHODIMP QueryInterface(REFIID iid, void** result) override;
    STDMETHODIMP GetUri(BSTR* uri) override;
    /// E_ACCESSDENIED for a new ticket, whose content goes the other way.
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

    /// The ticket behind an interface that a filter hands back; null for one that is not of this pipeline.
    static base::utility::ComPtr<TicketPart> Recognise(IUnknown* object);

private:
    PipelineJobPtr m_pJob;
    opc::PartName m_name;
    base::utility::ComPtr<PartWriteStream> m_pNewContent;
    bool m_isStored = false;
    EXpsCompressionOptions m_compression = Compression_Normal;
};

/// The print ticket of one part of the tree: the one that it came with, none, or a new one.
class TicketSlot
{
public:
    /// `owner` is the part as the document has it.
    TicketSlot(const PipelineJobPtr& job, const xps::JobPart& owner);

    /// Answers IXxx::GetPrintTicket.
    [[nodiscard]] HRESULT Get(IPartPrintTicket** ticket) const;

    /// Takes a ticket of this pipeline; E_INVALIDARG for any other, and what was there stays.
    [[nodiscard]] HRESULT Set(IPartPrintTicket* ticket);

    /// Lets go of the ticket of this name; false when it is not the one that the part came with.
    bool Detach(const opc::PartName& name);

    /// The part as it came.
    const xps::JobPart& Owner() const noexcept { return m_owner; }
    /// Null when the part keeps what it has.
    TicketPart* New() const noexcept { return m_pNew.Get(); }
    bool IsComplete() const noexcept { return !m_pNew || m_pNew->IsComplete(); }

    /// Writes what has become of the ticket into the package.
    void Store();

private:
    PipelineJobPtr m_pJob;
    xps::JobPart m_owner;
    bool m_isDetached = false;
    base::utility::ComPtr<TicketPart> m_pNew;
};

/// The root of an XPS document.
class DocumentRootPart final : public base::utility::ComObject<IXpsDocument>
{
public:
    explicit DocumentRootPart(PipelineJobPtr job) : m_pJob(std::move(job)), m_place(m_pJob->handedOut++) {}

    STDMETHODIMP QueryInterface(REFIID iid, void** result) override;
    /// Thumbnails stay where they are and are not handed out.
    STDMETHODIMP GetThumbnail(IPartThumbnail** thumbnail) override;
    STDMETHODIMP SetThumbnail(IPartThumbnail* thumbnail) override;

    /// Where the part stands in the order of the tree.
    std::size_t Place() const noexcept { return m_place; }
    std::string_view Name() const noexcept { return {}; }
    bool IsComplete() const noexcept { return true; }

    /// As TicketPart::Recognise.
    static base::utility::ComPtr<DocumentRootPart> Recognise(IUnknown* object);

private:
    PipelineJobPtr m_pJob;
    std::size_t m_place;
};

/// The fixed document sequence or a fixed document.
template <typename Interface>
class TreePart final : public base::utility::ComObject<Interface>
{
public:
    TreePart(PipelineJobPtr job, const xps::JobPart& part);

    STDMETHODIMP QueryInterface(REFIID iid, void** result) override;
    STDMETHODIMP GetUri(BSTR* uri) override;
    STDMETHODIMP GetPrintTicket(IPartPrintTicket** ticket) override;
    STDMETHODIMP SetPrintTicket(IPartPrintTicket* ticket) override;

    TicketSlot& Ticket() noexcept { return m_ticket; }

    /// Where the part stands in the order of the tree.
    std::size_t Place() const noexcept { return m_place; }
    std::string_view Name() const noexcept { return m_name.Text(); }
    bool IsComplete() const noexcept { return m_ticket.IsComplete(); }

    /// As TicketPart::Recognise.
    static base::utility::ComPtr<TreePart> Recognise(IUnknown* object);

private:
    PipelineJobPtr m_pJob;
    opc::PartName m_name;
    std::size_t m_place;
    TicketSlot m_ticket;
};

using SequencePart = TreePart<IFixedDocumentSequence>;
using DocumentPart = TreePart<IFixedDocument>;

/// A fixed page.
class PagePart final : public base::utility::ComObject<IFixedPage>
{
public:
    PagePart(PipelineJobPtr job, const xps::JobPart& part);

    STDMETHODIMP QueryInterface(REFIID iid, void** result) override;
    STDMETHODIMP GetUri(BSTR* uri) override;
    /// The markup that the page came with, each time from its start.
    STDMETHODIMP GetStream(IPrintReadStream** stream) override;
    STDMETHODIMP GetPartCompression(EXpsCompressionOptions* compression) override;
    STDMETHODIMP SetPartCompression(EXpsCompressionOptions compression) override;
    STDMETHODIMP GetPrintTicket(IPartPrintTicket** ticket) override;
    /// Gives the page's print ticket by its name; other resources are not handed out.
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

    /// As TicketPart::Recognise.
    static base::utility::ComPtr<PagePart> Recognise(IUnknown* object);

private:
    PipelineJobPtr m_pJob;
    opc::PartName m_name;
    std::size_t m_place;
    TicketSlot m_ticket;
    base::utility::ComPtr<PartWriteStream> m_pNewMarkup;
    EXpsCompressionOptions m_compression = Compression_Normal;
};
} // namespace host::pipeline
