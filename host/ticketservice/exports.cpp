#include "host/ticketservice/ticketservice.h"

#include <algorithm>
#include <array>
#include <memory>
#include <string>
#include <utility>

#include <prntvpt.h>

#include "base/logging/boundary.h"
#include "base/logging/errors.h"
#include "base/utility/bstr.h"
#include "host/tickets/ticketdocument.h"
#include "host/ticketservice/operations.h"
#include "host/ticketservice/providers.h"

namespace host::ticketservice
{
namespace
{
using base::exception::AtBoundary;
using base::exception::SourceLocation;
using base::exception::ThrowIfFailed;

constexpr DWORD kSchemaVersion = 1;

// MinGW's constants of the failing codes are unsigned.
constexpr auto kTicketFormat = static_cast<HRESULT>(E_PRINTTICKET_FORMAT);
constexpr auto kDeltaFormat = static_cast<HRESULT>(E_DELTA_PRINTTICKET_FORMAT);
constexpr auto kCapabilitiesFormat = static_cast<HRESULT>(E_PRINTCAPABILITIES_FORMAT);

/// A document of the caller is not valid: the code to return, and the reason in place of the code's text.
class RefusedInput : public base::exception::HresultError
{
public:
    RefusedInput(HRESULT hr, std::string reason, SourceLocation where = SourceLocation::Current())
        : HresultError(hr, where.Path().c_str(), where.line), m_reason(std::move(reason))
    {
    }
    const char* what() const noexcept override { return m_reason.c_str(); }

private:
    std::string m_reason;
};

/// The bytes of a stream from its current position to its end. A read that gives less than it was asked for
/// is followed by another one. Throws xml::MarkupError beyond 16 MB, which no print ticket comes near.
std::string ReadToEnd(IStream& stream)
{
    constexpr std::size_t limit = 16U << 20U;
    std::string bytes;
    std::array<char, 16384> piece;
    for (;;)
    {
        ULONG count = 0;
        ThrowIfFailed(stream.Read(piece.data(), static_cast<ULONG>(piece.size()), &count));
        if (count == 0)
        {
            return bytes;
        }
        bytes.append(piece.data(), std::min<std::size_t>(count, piece.size()));
        if (bytes.size() > limit)
        {
            throw xml::MarkupError("the document is larger than 16 MB");
        }
    }
}

/// Writes all bytes at the current position.
void WriteAll(IStream& stream, std::string_view bytes)
{
    constexpr std::size_t largestPiece = 1U << 20U;
    while (!bytes.empty())
    {
        ULONG count = 0;
        ThrowIfFailed(
            stream.Write(bytes.data(), static_cast<ULONG>(std::min(bytes.size(), largestPiece)), &count));
        if (count == 0)
        {
            ThrowIfFailed(STG_E_MEDIUMFULL);
        }
        bytes.remove_prefix(std::min<std::size_t>(count, bytes.size()));
    }
}

/// Reads a document of the caller; a fault in it has a code of its own.
template <typename Read>
auto ReadOrRefuse(HRESULT formatFault, Read&& read)
{
    try
    {
        return read();
    }
    catch (const xml::MarkupError& error)
    {
        throw RefusedInput(formatFault, error.what());
    }
}

/// The boundary of the functions that explain a refusal. The text is null in every other case.
template <typename Body>
[[nodiscard]] HRESULT AtExplainingBoundary(BSTR* reason, Body&& body) noexcept
{
    if (reason != nullptr)
    {
        *reason = nullptr;
    }
    const auto explain = [&]() -> HRESULT {
        try
        {
            return body();
        }
        catch (const RefusedInput& refused)
        {
            if (reason != nullptr)
            {
                *reason = base::utility::Bstr(refused.what()).Detach();
            }
            throw;
        }
    };
    return AtBoundary(explain);
}

/// Without a stream, a ticket without settings.
Document ReadTicket(IStream* stream, HRESULT formatFault)
{
    if (stream == nullptr)
    {
        return {};
    }
    return ReadOrRefuse(formatFault,
                        [&] { return tickets::ReadDocument(ReadToEnd(*stream), Kind::PrintTicket); });
}

// Global, because any thread may open a provider.
Providers g_providers;

HRESULT OpenProvider(PCWSTR printerName, DWORD version, HPTPROVIDER* provider)
{
    if (provider == nullptr)
    {
        return E_INVALIDARG;
    }
    *provider = nullptr;
    if (printerName == nullptr || *printerName == L'\0' || version != kSchemaVersion)
    {
        return E_INVALIDARG;
    }
    *provider = g_providers.Open();
    return S_OK;
}

HRESULT GetPrintCapabilities(HPTPROVIDER provider, IStream* ticket, IStream* capabilities)
{
    const std::shared_ptr<const Device> device = g_providers.GetDevice(provider);
    if (capabilities == nullptr)
    {
        return E_INVALIDARG;
    }
    const Document requested = ReadTicket(ticket, kTicketFormat);
    WriteAll(*capabilities, tickets::WriteDocument(DescribeFor(*device, requested.root)));
    return S_OK;
}

HRESULT MergeAndValidate(
    HPTPROVIDER provider, IStream* base, IStream* delta, EPrintTicketScope scope, IStream* result)
{
    const std::shared_ptr<const Device> device = g_providers.GetDevice(provider);
    const bool isScope = scope == kPTPageScope || scope == kPTDocumentScope || scope == kPTJobScope;
    if (base == nullptr || result == nullptr || !isScope)
    {
        return E_INVALIDARG;
    }
    Document baseTicket = ReadTicket(base, kTicketFormat);
    Document deltaTicket = ReadTicket(delta, kDeltaFormat);
    Document merged = Merge(std::move(baseTicket), std::move(deltaTicket), scope);
    const bool hasReplaced = ResolveConflicts(merged.root, *device);
    WriteAll(*result, tickets::WriteDocument(merged));
    return hasReplaced ? S_PT_CONFLICT_RESOLVED : S_PT_NO_CONFLICT;
}

HRESULT DescribeDevice(const void* xml, ULONG byteCount)
{
    if (xml == nullptr)
    {
        g_providers.SetDevice(nullptr);
        return S_OK;
    }
    const std::string_view bytes(static_cast<const char*>(xml), byteCount);
    g_providers.SetDevice(
        ReadOrRefuse(kCapabilitiesFormat, [&] { return std::make_shared<const Device>(bytes); }));
    return S_OK;
}
} // namespace
} // namespace host::ticketservice

namespace service = host::ticketservice;

extern "C"
{
    HRESULT WINAPI PTOpenProvider(PCWSTR printerName, DWORD version, HPTPROVIDER* provider)
    {
        return service::AtBoundary([&] { return service::OpenProvider(printerName, version, provider); });
    }

    HRESULT WINAPI PTCloseProvider(HPTPROVIDER provider)
    {
        return service::AtBoundary([&] { return service::g_providers.Close(provider); });
    }

    HRESULT WINAPI PTGetPrintCapabilities(HPTPROVIDER provider,
                                          IStream* ticket,
                                          IStream* capabilities,
                                          BSTR* errorMessage)
    {
        return service::AtExplainingBoundary(
            errorMessage, [&] { return service::GetPrintCapabilities(provider, ticket, capabilities); });
    }

    HRESULT WINAPI PTMergeAndValidatePrintTicket(HPTPROVIDER provider,
                                                 IStream* base,
                                                 IStream* delta,
                                                 EPrintTicketScope scope,
                                                 IStream* result,
                                                 BSTR* errorMessage)
    {
        return service::AtExplainingBoundary(
            errorMessage, [&] { return service::MergeAndValidate(provider, base, delta, scope, result); });
    }

    HRESULT WINAPI SetDeviceDescription(const void* xml, ULONG byteCount, BSTR* reason)
    {
        return service::AtExplainingBoundary(reason, [&] { return service::DescribeDevice(xml, byteCount); });
    }

    ULONG WINAPI GetOpenProviderCount()
    {
        return service::g_providers.Count();
    }
}
