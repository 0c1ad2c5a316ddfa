#include "base/xps/printschema/tickets/printticketprovider.h"

#include <algorithm>
#include <utility>

#include "base/io/printreadstreamtoistream.h"
#include "base/logging/boundary.h"
#include "base/logging/errors.h"
#include "base/utility/bstr.h"
#include "base/utility/impersonation.h"
#include "base/utility/variant.h"
#include "base/xml/xmlmarger.h"
#include "base/xml/xmlutility.h"
#include "base/xps/printschema/document/domboundary.h"
#include "base/xps/printschema/printticketstructurecomparator.h"
#include "base/xps/printschema/tickets/ticketdocument.h"

namespace base::xps::printschema
{
using exception::AtBoundary;
using exception::ThrowIfFailed;
using utility::Bstr;
using utility::ComPtr;

namespace
{
constexpr DWORD kProviderVersion = 1;
constexpr std::size_t kReceived = 3;

std::size_t LevelIndex(EPrintTicketScope level)
{
    if (level < kPTPageScope || level > kPTJobScope)
    {
        ThrowIfFailed(E_INVALIDARG);
    }
    return static_cast<std::size_t>(level);
}

ComPtr<IStream> CreateMemoryStream()
{
    ComPtr<IStream> stream;
    ThrowIfFailed(CreateStreamOnHGlobal(nullptr, TRUE, stream.Receive()));
    return stream;
}

/// Completes a level's ticket from a document, which may be null.
void Complete(IXMLDOMDocument2* ticket, IXMLDOMDocument2* target)
{
    if (target != nullptr)
    {
        const PrintTicketStructureComparator comparator;
        xml::XmlMarger(comparator).Merge(ticket, target);
    }
}

/// The part's own ticket; empty if it has none.
template <typename Part>
ComPtr<IXMLDOMDocument2> LoadPartTicket(Part& part)
{
    ComPtr<IPartPrintTicket> ticketPart;
    const HRESULT found = part.GetPrintTicket(ticketPart.Receive());
    if (found == kNotFound)
    {
        return {};
    }
    ThrowIfFailed(found);
    if (!ticketPart)
    {
        return {};
    }
    ComPtr<IPrintReadStream> reader;
    ThrowIfFailed(ticketPart->GetStream(reader.Receive()));
    const auto stream = utility::MakeCom<io::PrintReadStreamToIStream>(reader.Get());
    return LoadTicketDocument(*stream);
}
} // namespace

PrintTicketProvider::~PrintTicketProvider()
{
    static_cast<void>(PrintTicketProvider::Close());
}

HRESULT PrintTicketProvider::Open(IPrintReadStream* ticketStream, BSTR printerName, HANDLE userToken)
{
    return AtBoundary([&] {
        m_userToken = userToken;
        static_cast<void>(Close());
        if (ticketStream == nullptr)
        {
            return E_POINTER;
        }
        if (SysStringLen(printerName) == 0)
        {
            return E_INVALIDARG;
        }
        const utility::Impersonation user(m_userToken);
        ThrowIfFailed(user.GetResult());
        // A failing call may set the handle too; that is ignored.
        HPTPROVIDER provider = nullptr;
        ThrowIfFailed(PTOpenProvider(printerName, kProviderVersion, &provider));
        m_provider = provider;
        const auto stream = utility::MakeCom<io::PrintReadStreamToIStream>(ticketStream);
        return LoadTicket(stream.Get());
    });
}

HRESULT PrintTicketProvider::Close()
{
    if (m_provider == nullptr)
    {
        return S_OK;
    }
    const utility::Impersonation user(m_userToken);
    if (FAILED(user.GetResult()))
    {
        return user.GetResult();
    }
    return PTCloseProvider(std::exchange(m_provider, nullptr));
}

void PrintTicketProvider::ReleaseTickets() noexcept
{
    m_tickets = {};
    m_emptyTicket = {};
}

HRESULT PrintTicketProvider::LoadTicket(IUnknown* object)
{
    return AtBoundary([&] {
        Drop(kPTJobScope);
        m_tickets[kReceived] = {};
        RequirePointers(object);
        ComPtr<IStream> stream;
        ThrowIfFailed(object->QueryInterface(__uuidof(IStream), stream.ReceiveUntyped()));
        m_tickets[kReceived] = LoadTicketDocument(*stream);
        return S_OK;
    });
}

HRESULT PrintTicketProvider::GetTicket(EPrintTicketScope level,
                                       IXMLDOMDocument2* target,
                                       IXMLDOMDocument2* secondTarget)
{
    return AtBoundary([&] {
        Drop(level);
        Derive(level);
        if (target != nullptr)
        {
            const Document ticket = TicketOf(level);
            ApplyTicket(level, ticket.Get(), target, secondTarget);
        }
        return S_OK;
    });
}

HRESULT PrintTicketProvider::ApplyPageTicket(IFixedPage* part, IXMLDOMDocument2* target)
{
    return AtBoundary([&] {
        ApplyPartTicket(kPTPageScope, part, target);
        return S_OK;
    });
}

HRESULT PrintTicketProvider::ApplyDocumentTicket(IFixedDocument* part, IXMLDOMDocument2* target)
{
    return AtBoundary([&] {
        ApplyPartTicket(kPTDocumentScope, part, target);
        return S_OK;
    });
}

HRESULT PrintTicketProvider::ApplyJobTicket(IFixedDocumentSequence* part, IXMLDOMDocument2* target)
{
    return AtBoundary([&] {
        ApplyPartTicket(kPTJobScope, part, target);
        return S_OK;
    });
}

HRESULT PrintTicketProvider::GetReceivedTicket(IXMLDOMDocument2** ticket)
{
    if (ticket == nullptr)
    {
        return E_POINTER;
    }
    *ticket = Document(m_tickets[kReceived]).Detach();
    return S_OK;
}

HRESULT PrintTicketProvider::GetLevelTicket(EPrintTicketScope level, IXMLDOMDocument2** ticket)
{
    return AtBoundary([&] {
        ClearResults(ticket);
        Derive(level);
        *ticket = Document(TicketOf(level)).Detach();
        return S_OK;
    });
}

HRESULT PrintTicketProvider::GetCapabilities(IXMLDOMDocument2* ticket, IXMLDOMDocument2** capabilities)
{
    return AtBoundary([&] {
        ClearResults(capabilities);
        RequireOpen();
        RequirePointers(ticket);
        const ComPtr<IStream> request = xml::XmlUtility::SaveDocument(ticket);
        const ComPtr<IStream> answer = CreateMemoryStream();
        {
            const utility::Impersonation user(m_userToken);
            ThrowIfFailed(user.GetResult());
            Bstr message;
            ThrowIfFailed(PTGetPrintCapabilities(m_provider, request.Get(), answer.Get(), message.Receive()));
        }
        *capabilities = LoadTicketDocument(*answer).Detach();
        return S_OK;
    });
}

template <typename Part>
void PrintTicketProvider::ApplyPartTicket(EPrintTicketScope level, Part* part, IXMLDOMDocument2* target)
{
    RequirePointers(part);
    const Document delta = LoadPartTicket(*part);
    if (!delta)
    {
        Drop(level);
        if (level != kPTJobScope)
        {
            Derive(static_cast<EPrintTicketScope>(level + 1));
        }
    }
    ApplyTicket(level, delta ? delta.Get() : EmptyTicket(), target, nullptr);
}

void PrintTicketProvider::ApplyTicket(EPrintTicketScope level,
                                      IXMLDOMDocument2* delta,
                                      IXMLDOMDocument2* target,
                                      IXMLDOMDocument2* secondTarget)
{
    RequirePointers(delta);
    const Document base = BaseOf(level);
    const Document merged = Merge(base.Get(), delta, level);
    Complete(merged.Get(), target);
    Complete(merged.Get(), secondTarget);
    Drop(level);
    TicketOf(level) = merged;
}

PrintTicketProvider::Document PrintTicketProvider::Merge(IXMLDOMDocument2* base,
                                                         IXMLDOMDocument2* delta,
                                                         EPrintTicketScope scope)
{
    RequireOpen();
    const ComPtr<IStream> baseStream = xml::XmlUtility::SaveDocument(base);
    const ComPtr<IStream> deltaStream = xml::XmlUtility::SaveDocument(delta);
    const ComPtr<IStream> result = CreateMemoryStream();
    const utility::Impersonation user(m_userToken);
    ThrowIfFailed(user.GetResult());
    // The error text is discarded; only the HRESULT is returned.
    Bstr message;
    ThrowIfFailed(PTMergeAndValidatePrintTicket(
        m_provider, baseStream.Get(), deltaStream.Get(), scope, result.Get(), message.Receive()));
    return LoadTicketDocument(*result);
}

void PrintTicketProvider::Drop(EPrintTicketScope highestLevel)
{
    std::fill_n(m_tickets.begin(), LevelIndex(highestLevel) + 1, Document());
}

void PrintTicketProvider::Derive(EPrintTicketScope level)
{
    // From the job down: each level is the base of the next.
    for (const EPrintTicketScope derived : {kPTJobScope, kPTDocumentScope, kPTPageScope})
    {
        if (derived < level || TicketOf(derived))
        {
            continue;
        }
        const Document base = BaseOf(derived);
        TicketOf(derived) = Merge(base.Get(), EmptyTicket(), derived);
    }
}

IXMLDOMDocument2* PrintTicketProvider::EmptyTicket()
{
    if (!m_emptyTicket)
    {
        m_emptyTicket = CreateEmptyTicket();
    }
    return m_emptyTicket.Get();
}

PrintTicketProvider::Document& PrintTicketProvider::TicketOf(EPrintTicketScope level)
{
    return m_tickets[LevelIndex(level)];
}

const PrintTicketProvider::Document& PrintTicketProvider::BaseOf(EPrintTicketScope level) const
{
    const Document& base = m_tickets[LevelIndex(level) + 1];
    if (!base)
    {
        ThrowIfFailed(E_PENDING);
    }
    return base;
}

void PrintTicketProvider::RequireOpen() const
{
    if (m_provider == nullptr)
    {
        ThrowIfFailed(E_PENDING);
    }
}
} // namespace base::xps::printschema
