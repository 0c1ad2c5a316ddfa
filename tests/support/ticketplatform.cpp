#include "support/ticketplatform.h"

#include <algorithm>
#include <limits>
#include <mutex>
#include <utility>

#include <prntvpt.h>

namespace support
{
namespace
{
struct State
{
    std::vector<TicketPlatform::Call> calls;
    std::size_t failing = std::numeric_limits<std::size_t>::max();
    HRESULT failure = E_FAIL;
    std::function<HRESULT(const std::string&)> gate;
    int openProviders = 0;
};

State g_state;
std::mutex g_mutex;

template <typename Function>
Function* Offline(WORD ordinal)
{
    static const HMODULE library = LoadLibraryW(OFFLINE_TICKET_LIBRARY);
    return reinterpret_cast<Function*>(
        reinterpret_cast<void (*)()>(GetProcAddress(library, MAKEINTRESOURCEA(ordinal))));
}

/// Writes the call down; fails when it is to fail.
HRESULT Enter(const std::string& name)
{
    std::function<HRESULT(const std::string&)> gate;
    {
        const std::lock_guard lock(g_mutex);
        g_state.calls.push_back({name, IsThreadImpersonating()});
        if (g_state.calls.size() - 1 == g_state.failing)
        {
            return g_state.failure;
        }
        gate = g_state.gate;
    }
    return gate ? gate(name) : S_OK;
}

void CountProviders(int change)
{
    const std::lock_guard lock(g_mutex);
    g_state.openProviders += change;
}
} // namespace

void TicketPlatform::Reset()
{
    g_state = {};
}

void TicketPlatform::FailCall(std::size_t index, HRESULT result)
{
    g_state.failing = index;
    g_state.failure = result;
}

void TicketPlatform::SetGate(std::function<HRESULT(const std::string& name)> gate)
{
    g_state.gate = std::move(gate);
}

const std::vector<TicketPlatform::Call>& TicketPlatform::Calls()
{
    return g_state.calls;
}

std::vector<std::string> TicketPlatform::CallNames()
{
    std::vector<std::string> names;
    std::transform(g_state.calls.begin(),
                   g_state.calls.end(),
                   std::back_inserter(names),
                   [](const Call& call) { return call.name; });
    return names;
}

int TicketPlatform::OpenProviders()
{
    return g_state.openProviders;
}
} // namespace support

using support::CountProviders;
using support::Enter;
using support::Offline;

STDAPI PTOpenProvider(PCWSTR printerName, DWORD version, HPTPROVIDER* provider)
{
    HRESULT hr = Enter("PTOpenProvider");
    if (SUCCEEDED(hr))
    {
        hr = Offline<decltype(PTOpenProvider)>(2)(printerName, version, provider);
        CountProviders(SUCCEEDED(hr) ? 1 : 0);
    }
    return hr;
}

STDAPI PTCloseProvider(HPTPROVIDER provider)
{
    // A close that is to fail closes all the same, as the platform's would.
    const HRESULT entered = Enter("PTCloseProvider");
    const HRESULT hr = Offline<decltype(PTCloseProvider)>(4)(provider);
    CountProviders(SUCCEEDED(hr) ? -1 : 0);
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
