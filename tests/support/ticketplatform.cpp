#include "support/ticketplatform.h"

#include <atomic>
#include <fstream>
#include <iterator>
#include <mutex>
#include <stdexcept>
#include <utility>

#include <prntvpt.h>

#include "host/ticketservice/ticketservice.h"

namespace support
{
namespace
{
using Gate = std::function<HRESULT(const std::string&)>;

Gate g_gate;
std::mutex g_gateLock;
std::atomic<int> g_openProviders{0};

template <typename Function>
Function* Offline(const char* name)
{
    static const HMODULE library = LoadLibraryW(OFFLINE_TICKET_LIBRARY);
    return reinterpret_cast<Function*>(reinterpret_cast<void (*)()>(GetProcAddress(library, name)));
}

template <typename Function>
Function* Offline(WORD ordinal)
{
    return Offline<Function>(MAKEINTRESOURCEA(ordinal));
}

/// Returns the failure of a call that is to fail.
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
    SetDevice({});
    g_openProviders = 0;
}

void TicketPlatform::SetDevice(const std::string& file)
{
    std::ifstream opened(file, std::ios::binary);
    const std::string description{std::istreambuf_iterator<char>(opened), {}};
    const HRESULT hr = Offline<decltype(SetDeviceDescription)>("SetDeviceDescription")(
        file.empty() ? nullptr : description.data(), static_cast<ULONG>(description.size()), nullptr);
    if (FAILED(hr))
    {
        throw std::runtime_error(file + ": no device");
    }
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
    if (FAILED(hr))
    {
        // A failing platform may set the handle too.
        *provider = reinterpret_cast<HPTPROVIDER>(1);
    }
    else
    {
        hr = Offline<decltype(PTOpenProvider)>(2)(printerName, version, provider);
        g_openProviders += SUCCEEDED(hr) ? 1 : 0;
    }
    return hr;
}

STDAPI PTCloseProvider(HPTPROVIDER provider)
{
    // A failing close still closes, as the platform's does.
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
