#pragma once

#include <cstddef>
#include <string_view>
#include <utility>

#include "host/opc/partname.h"
#include "host/pipeline/ownpart.h"
#include "host/pipeline/pipelinejob.h"
#include "host/pipeline/ticketslot.h"
#include "host/xps/xpsdocument.h"
#include "platform/filterpipeline.h"

namespace host::pipeline
{
/// The root of an XPS document.
class DocumentRootPart final : public OwnPart<DocumentRootPart, IXpsDocument>
{
public:
    static constexpr IID kOwnId = {
        0x9D3B70C6, 0x2A58, 0x4F7E, {0xA5, 0x44, 0x18, 0x6C, 0xF0, 0x2B, 0x7D, 0x93}};

    explicit DocumentRootPart(PipelineJobPtr job) : m_pJob(std::move(job)), m_place(m_pJob->handedOut++) {}

    /// Thumbnails stay where they are and are not provided.
    STDMETHODIMP GetThumbnail(IPartThumbnail** thumbnail) override;
    STDMETHODIMP SetThumbnail(IPartThumbnail* thumbnail) override;

    /// Where the part stands in the order of the tree.
    std::size_t Place() const noexcept { return m_place; }
    std::string_view Name() const noexcept { return {}; }
    bool IsComplete() const noexcept { return true; }

private:
    PipelineJobPtr m_pJob;
    std::size_t m_place;
};

template <typename Interface>
struct TreePartTraits;

template <>
struct TreePartTraits<IFixedDocumentSequence>
{
    static constexpr const char* kName = "IFixedDocumentSequence::";
    static constexpr IID kId = {0x3A8C1D44, 0x9E27, 0x4B59, {0xB6, 0x1F, 0x70, 0x83, 0xD5, 0x2A, 0x96, 0xE0}};
};

template <>
struct TreePartTraits<IFixedDocument>
{
    static constexpr const char* kName = "IFixedDocument::";
    static constexpr IID kId = {0xC5E0927B, 0x1F63, 0x4A18, {0x84, 0xD2, 0x3B, 0x6E, 0x90, 0x57, 0xA1, 0xCC}};
};

/// The fixed document sequence or a fixed document.
template <typename Interface>
class TreePart final : public OwnPart<TreePart<Interface>, Interface>
{
public:
    static constexpr IID kOwnId = TreePartTraits<Interface>::kId;

    TreePart(PipelineJobPtr job, const xps::JobPart& part);

    STDMETHODIMP GetUri(BSTR* uri) override;
    STDMETHODIMP GetPrintTicket(IPartPrintTicket** ticket) override;
    STDMETHODIMP SetPrintTicket(IPartPrintTicket* ticket) override;

    TicketSlot& Ticket() noexcept { return m_ticket; }

    /// Where the part stands in the order of the tree.
    std::size_t Place() const noexcept { return m_place; }
    std::string_view Name() const noexcept { return m_name.Text(); }
    bool IsComplete() const noexcept { return m_ticket.IsComplete(); }

private:
    PipelineJobPtr m_pJob;
    opc::PartName m_name;
    std::size_t m_place;
    TicketSlot m_ticket;
};

using SequencePart = TreePart<IFixedDocumentSequence>;
using DocumentPart = TreePart<IFixedDocument>;
} // namespace host::pipeline
