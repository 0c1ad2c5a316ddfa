#pragma once

#include <functional>

#include "base/utility/comobject.h"
#include "host/pipeline/jobparts.h"
#include "host/pipeline/pipelinejob.h"
#include "platform/filterpipeline.h"

namespace host::pipeline
{
/// What a filter did to a part of the tree, told when it sends the part.
struct SentPart
{
    const xps::JobPart& part;
    /// Of a page; null for markup that stays as it is.
    PartWriteStream* newMarkup;
    /// Null for a ticket that stays as it is, or none.
    TicketPart* newTicket;
};

/// Takes the parts that a filter sends and writes what it changed into the new package. Used on the job's
/// thread, but for CloseSender, which a cancelled job calls from another one.
class DocumentConsumer final : public base::utility::ComObject<IXpsDocumentConsumer>
{
public:
    /// May read new contents, which the package takes afterwards.
    using Listener = std::function<void(const SentPart&)>;

    DocumentConsumer(PipelineJobPtr job, Listener onSent)
        : m_pJob(std::move(job)), m_onSent(std::move(onSent))
    {
    }

    // Parts must be of this pipeline, and all streams to a part's new content closed exactly once before it
    // is sent: E_INVALIDARG and E_UNEXPECTED otherwise. Nothing can be sent after CloseSender.

    STDMETHODIMP SendXpsUnknown(IUnknown* part) override;
    STDMETHODIMP SendXpsDocument(IXpsDocument* document) override;
    STDMETHODIMP SendFixedDocumentSequence(IFixedDocumentSequence* sequence) override;
    STDMETHODIMP SendFixedDocument(IFixedDocument* document) override;
    STDMETHODIMP SendFixedPage(IFixedPage* page) override;
    STDMETHODIMP CloseSender() override;

    /// Makes print tickets only. Any name that can be read as a part's becomes a valid one of this package;
    /// one that is taken gets a number.
    STDMETHODIMP GetNewEmptyPart(const wchar_t* uri,
                                 REFIID iid,
                                 void** newPart,
                                 IPrintWriteStream** stream) override;

private:
    template <typename Body>
    HRESULT Send(const char* method, Body&& body);
    template <typename Part, typename Interface>
    HRESULT SendTreePart(const char* method, Interface* part);
    HRESULT TakePage(IFixedPage* page);
    opc::PartName ReserveName(const std::string& wanted);

    PipelineJobPtr m_pJob;
    Listener m_onSent;
    bool m_rootSent = false;
    bool m_sequenceSent = false;
};
} // namespace host::pipeline
