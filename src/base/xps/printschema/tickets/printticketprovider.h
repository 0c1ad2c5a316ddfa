#pragma once

#include <array>

#include "base/utility/comptr.h"
#include "platform/filterpipeline.h"
#include "platform/msxml6.h"

#include <prntvpt.h>

namespace base::xps::printschema
{
/// The print tickets of a job, one for each level, from the platform's print ticket provider. The ticket as
/// received is the base of the job level, each level the base of the one below; a level whose part brings a
/// ticket of its own has that merged in and validated, and each is then completed by a default ticket.
///
/// Every call of the platform is made in the name of the user who submitted the job. Provider handles belong
/// to the thread that opened them: an object is used on one thread, from Open to Close.
///
/// All operations answer with an HRESULT and throw nothing. Success is any code that does not fail: the
/// platform has several.
class PrintTicketProvider
{
public:
    PrintTicketProvider() = default;
    PrintTicketProvider(const PrintTicketProvider&) = delete;
    PrintTicketProvider& operator=(const PrintTicketProvider&) = delete;
    virtual ~PrintTicketProvider();

    /// Opens the platform's provider for a printer and takes the received ticket from the stream. The token
    /// stays the caller's and is used until Close. E_POINTER without a stream, E_INVALIDARG without a name.
    [[nodiscard]] virtual HRESULT Open(IPrintReadStream* ticketStream, BSTR printerName, HANDLE userToken);

    /// Does nothing when the provider is not open.
    [[nodiscard]] virtual HRESULT Close();

    /// Releases the ticket documents, while COM still runs on the thread that made them.
    void ReleaseTickets() noexcept;

    /// Takes the received ticket from an object that is an IStream, and drops all that was derived.
    [[nodiscard]] virtual HRESULT LoadTicket(IUnknown* object);

    /// Derives the level and all above it anew where they were dropped, the level itself in any case, and,
    /// given a document, applies the level's ticket again with one or two documents to complete it by.
    [[nodiscard]] virtual HRESULT GetTicket(EPrintTicketScope level,
                                            IXMLDOMDocument2* target,
                                            IXMLDOMDocument2* secondTarget);

    /// Takes in the ticket of a page, or of a document or the job, as far as the part has one, and completes
    /// the level's ticket by `target`, which may be null and is not changed. E_POINTER without a part.
    [[nodiscard]] virtual HRESULT ApplyPageTicket(IFixedPage* part, IXMLDOMDocument2* target);
    [[nodiscard]] virtual HRESULT ApplyDocumentTicket(IFixedDocument* part, IXMLDOMDocument2* target);
    [[nodiscard]] virtual HRESULT ApplyJobTicket(IFixedDocumentSequence* part, IXMLDOMDocument2* target);

    [[nodiscard]] virtual HRESULT GetReceivedTicket(IXMLDOMDocument2** ticket);

    /// The ticket that holds at a level; the document is shared. E_POINTER without an address, E_INVALIDARG
    /// for an unknown level, E_PENDING while there is no ticket to derive it from.
    [[nodiscard]] virtual HRESULT GetLevelTicket(EPrintTicketScope level, IXMLDOMDocument2** ticket);

    /// What the printer can do under a ticket. E_PENDING when the provider is not open.
    [[nodiscard]] virtual HRESULT GetCapabilities(IXMLDOMDocument2* ticket, IXMLDOMDocument2** capabilities);

private:
    using Document = utility::ComPtr<IXMLDOMDocument2>;

    // The inner steps throw.
    template <typename Part>
    void ApplyPartTicket(EPrintTicketScope level, Part* part, IXMLDOMDocument2* target);
    void ApplyTicket(EPrintTicketScope level,
                     IXMLDOMDocument2* delta,
                     IXMLDOMDocument2* target,
                     IXMLDOMDocument2* secondTarget);
    Document Merge(IXMLDOMDocument2* base, IXMLDOMDocument2* delta, EPrintTicketScope scope);
    void Drop(EPrintTicketScope highestLevel);
    void Derive(EPrintTicketScope level);
    IXMLDOMDocument2* EmptyTicket();
    Document& TicketOf(EPrintTicketScope level);
    const Document& BaseOf(EPrintTicketScope level) const;
    void RequireOpen() const;

    // By level, page, document, job, each below its base; the last is the ticket as received.
    std::array<Document, 4> m_tickets;
    // The delta of levels without a ticket, loaded when it is first needed; never changed.
    Document m_emptyTicket;
    HPTPROVIDER m_provider = nullptr;
    HANDLE m_userToken = INVALID_HANDLE_VALUE;
};
} // namespace base::xps::printschema
