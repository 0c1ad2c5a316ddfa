#pragma once

#include <array>

#include "base/utility/comptr.h"
#include "platform/filterpipeline.h"
#include "platform/msxml6.h"

#include <prntvpt.h>

namespace base::xps::printschema
{
/// The print tickets of a job, one for each level: job, document, page. The ticket of each level is based on
/// the one above it, that of the job on the received ticket. The platform's print ticket provider merges a
/// part's own ticket into the base and validates the result. Default tickets then complete it.
///
/// The platform is called as the user who submitted the job. A provider handle belongs to the thread that
/// opened it: use an object on one thread from Open to Close.
///
/// All operations return an HRESULT and throw nothing; the platform has several success codes. The order of
/// virtual functions is fixed: docs/surface.md.
class PrintTicketProvider
{
public:
    PrintTicketProvider() = default;
    PrintTicketProvider(const PrintTicketProvider&) = delete;
    PrintTicketProvider& operator=(const PrintTicketProvider&) = delete;
    virtual ~PrintTicketProvider();

    /// Opens the platform's provider for a printer and loads the received ticket. The caller keeps the token,
    /// which is used until Close. E_POINTER without a stream, E_INVALIDARG without a name.
    [[nodiscard]] virtual HRESULT Open(IPrintReadStream* ticketStream, BSTR printerName, HANDLE userToken);

    /// Does nothing if the provider is not open.
    [[nodiscard]] virtual HRESULT Close();

    /// Releases the ticket documents. Call it while COM is initialised on the thread that created them.
    void ReleaseTickets() noexcept;

    /// Loads the received ticket from an object with IStream, and drops the tickets of all levels.
    [[nodiscard]] virtual HRESULT LoadTicket(IUnknown* object);

    /// Derives the level's ticket again, and those of the levels above if they were dropped. With `target`,
    /// applies the ticket again and completes it from one or two documents.
    [[nodiscard]] virtual HRESULT GetTicket(EPrintTicketScope level,
                                            IXMLDOMDocument2* target,
                                            IXMLDOMDocument2* secondTarget);

    /// Applies the ticket of a page, a document or the job, if the part has one, and completes the level's
    /// ticket from `target`, which may be null and is not changed. E_POINTER without a part.
    [[nodiscard]] virtual HRESULT ApplyPageTicket(IFixedPage* part, IXMLDOMDocument2* target);
    [[nodiscard]] virtual HRESULT ApplyDocumentTicket(IFixedDocument* part, IXMLDOMDocument2* target);
    [[nodiscard]] virtual HRESULT ApplyJobTicket(IFixedDocumentSequence* part, IXMLDOMDocument2* target);

    [[nodiscard]] virtual HRESULT GetReceivedTicket(IXMLDOMDocument2** ticket);

    /// The ticket of a level; the document is shared. E_POINTER without an address, E_INVALIDARG for an
    /// unknown level, E_PENDING if there is no ticket to derive it from.
    [[nodiscard]] virtual HRESULT GetLevelTicket(EPrintTicketScope level, IXMLDOMDocument2** ticket);

    /// The printer's capabilities under a ticket. E_PENDING if the provider is not open.
    [[nodiscard]] virtual HRESULT GetCapabilities(IXMLDOMDocument2* ticket, IXMLDOMDocument2** capabilities);

private:
    using Document = utility::ComPtr<IXMLDOMDocument2>;

    // These throw.
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

    // By level: page, document, job, each before its base; the last is the received ticket.
    std::array<Document, 4> m_tickets;
    // The delta for parts without a ticket, loaded on first use and never changed.
    Document m_emptyTicket;
    HPTPROVIDER m_provider = nullptr;
    HANDLE m_userToken = INVALID_HANDLE_VALUE;
};
} // namespace base::xps::printschema
