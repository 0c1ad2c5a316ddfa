#pragma once

#include <functional>

#include "base/utility/comobject.h"
#include "host/pipeline/pipelinejob.h"
#include "host/pipeline/ticketpart.h"
#include "host/xps/pagemarkup.h"
#include "host/xps/xpsdocument.h"
#include "platform/filterpipeline.h"

namespace host::pipeline
{
/// What a filter did to a part of the tree, reported when it sends the part.
struct SentPart
{
    const xps::JobPart& part;
    /// Null for a page whose markup stays, and for other parts.
    const xps::PageMarkup* newMarkup;
    /// Null for a ticket that stays, or none.
    TicketPart* newTicket;
    /// Whether the part is refused because of a fault in its new markup.
    bool isRefused;
};

/// Takes the parts that a filter sends and writes what it changed into the new package. Used on the job's
/// thread, but for CloseSender, which a cancelled job calls from another one.
class DocumentConsumer final : public base::utility::ComObject<IXpsDocumentConsumer>
{
public:
    /// May read a new ticket, which the package takes afterwards.
    using Listener = std::function<void(const SentPart&)>;

    DocumentConsumer(PipelineJobPtr job, Listener onSent)
        : m_pJob(std::move(job)), m_onSent(std::move(onSent))
    {
    }

    // Parts of the tree must be of this pipeline: E_INVALIDARG otherwise. They must come in the order in
    // which the filter got them, all streams to a part's new contents closed exactly once before it is sent,
    // a new ticket with one part only, and nothing after CloseSender: E_UNEXPECTED otherwise. A page's new
    // markup must be a page's, as far as ReadPage tells, unless the job takes any: E_INVALIDARG otherwise.

    /// Takes no part of the tree: one that is sent as unknown is not sent.
    STDMETHODIMP SendXpsUnknown(IUnknown* part) override;

    STDMETHODIMP SendXpsDocument(IXpsDocument* document) override;
    STDMETHODIMP SendFixedDocumentSequence(IFixedDocumentSequence* sequence) override;
    STDMETHODIMP SendFixedDocument(IFixedDocument* document) override;
    STDMETHODIMP SendFixedPage(IFixedPage* page) override;
    STDMETHODIMP CloseSender() override;

    /// Makes print tickets only: E_NOINTERFACE otherwise. Any name that can be read as a part's becomes a
    /// valid one of this package, and one that is taken gets a number. E_INVALIDARG for any other name, and
    /// for those that the package keeps for relationships.
    STDMETHODIMP GetNewEmptyPart(const wchar_t* uri,
                                 REFIID iid,
                                 void** newPart,
                                 IPrintWriteStream** stream) override;

private:
    template <typename Part, typename Store>
    HRESULT Send(const char* method, IUnknown* object, Store&& store);
    template <typename Part>
    HRESULT SendTreePart(const char* method, IUnknown* object);
    opc::PartName Reserve(opc::PartName name);

    PipelineJobPtr m_pJob;
    Listener m_onSent;
};
} // namespace host::pipeline
