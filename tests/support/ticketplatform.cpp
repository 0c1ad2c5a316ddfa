#include "support/ticketplatform.h"

#include <atomic>
#include <mutex>
#include <utility>

#include <prntvpt.h>

namespace support
{
namespace
{
using Gate = std::function<HRESULT(const std::string&)>;

Gate g_gate;
std::mutex g_gateLock;
std::atomic<int> g_openProviders{0};

template <typename Function>
Function* Offline(WORD ordinal)
{
    static const HMODULE library = LoadLibraryW(OFFLINE_TICKET_LIBRARY);
    return reinterpret_cast<Function*>(
        reinterpret_cast<void (*)()>(GetProcAddress(library, MAKEINTRESOURCEA(ordinal))));
}

/// Fails when the call is to fail.
HRESULT Enter(const std::string& name)
{
    Gate gate;
    {
        const std::lock_guard lock(g_gateLock);
        gate = g_gate;
    }
    return gate ? gate(name) : S_OK;
}
} // namespace

void TicketPlatform::Reset()
{
    SetGate({});
    g_openProviders = 0;
}

void TicketPlatform::SetGate(Gate gate)
{
    const std::lock_guard lock(g_gateLock);
    g_gate = std::move(gate);
}

int TicketPlatform::OpenProviders()
{
    return g_openProviders;
}
} // namespace support

using support::Enter;
using support::g_openProviders;
using support::Offline;

STDAPI PTOpenProvider(PCWSTR printerName, DWORD version, HPTPROVIDER* provider)
{
    HRESULT hr = Enter("PTOpenProvider");
    if (SUCCEEDED(hr))
    {
        hr = Offline<decltype(PTOpenProvider)>(2)(printerName, version, provider);
        g_openProviders += SUCCEEDED(hr) ? 1 : 0;
    }
    return hr;
}

STDAPI PTCloseProvider(HPTPROVIDER provider)
{
    // A close that is to fail closes all the same, as the platform's would.
    const HRESULT entered = Enter("PTCloseProvider");
    const HRESULT hr = Offline<decltype(PTCloseProvider)>(4)(provider);
    g_openProviders -= SUCCEEDED(hr) ? 1 : 0;
    return FAILED(entered) ? entered : hr;
}

STDAPI PTGetPrintCapabilities(HPTPROVIDER provider, IStream* ticket, IStream* capabilities, BSTR* message)
{
    const HRESULT hr = Enter("PTGetPrintCapabilities");
    return FAILED(hr) ? hr
                      : Offline<decltype(PTGetPrintCapabilities)>(6)(provider, ticket, capabilities, message);
}

STDAPI PTMergeAndValidatePrintTicket(HPTPROVIDER provider,
                                     IStream* base,
                                     IStream* delta,
                                     EPrintTicketScope scope,
                                     IStream* result,
                                     BSTR* message)
{
    const HRESULT hr = Enter("PTMergeAndValidatePrintTicket " + std::to_string(scope));
    return FAILED(hr) ? hr
                      : Offline<decltype(PTMergeAndValidatePrintTicket)>(7)(
                            provider, base, delta, scope, result, message);
}
