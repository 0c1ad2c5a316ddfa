#include "support/ticketplatform.h"

#include <algorithm>
#include <limits>

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
    int openProviders = 0;
};

State g_state;

template <typename Function>
Function* Offline(WORD ordinal)
{
    static const HMODULE library = LoadLibraryW(OFFLINE_TICKET_LIBRARY);
    return reinterpret_cast<Function*>(
        reinterpret_cast<void (*)()>(GetProcAddress(library, MAKEINTRESOURCEA(ordinal))));
}

/// Writes the call down; false when it is to fail.
bool Enter(std::string name)
{
    g_state.calls.push_back({std::move(name), IsThreadImpersonating()});
    return g_state.calls.size() - 1 != g_state.failing;
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

bool IsThreadImpersonating()
{
    HANDLE token = nullptr;
    const bool hasToken = OpenThreadToken(GetCurrentThread(), TOKEN_QUERY, TRUE, &token) != FALSE;
    if (hasToken)
    {
        CloseHandle(token);
    }
    return hasToken;
}

HANDLE UserToken()
{
    static const HANDLE token = [] {
        HANDLE primary = nullptr;
        HANDLE impersonation = nullptr;
        OpenProcessToken(GetCurrentProcess(), TOKEN_DUPLICATE | TOKEN_QUERY, &primary);
        DuplicateToken(primary, SecurityImpersonation, &impersonation);
        CloseHandle(primary);
        return impersonation;
    }();
    return token;
}
} // namespace support

using support::Enter;
using support::g_state;
using support::Offline;

STDAPI PTOpenProvider(PCWSTR printerName, DWORD version, HPTPROVIDER* provider)
{
    if (!Enter("PTOpenProvider"))
    {
        return g_state.failure;
    }
    const HRESULT hr = Offline<decltype(PTOpenProvider)>(2)(printerName, version, provider);
    g_state.openProviders += SUCCEEDED(hr) ? 1 : 0;
    return hr;
}

STDAPI PTCloseProvider(HPTPROVIDER provider)
{
    // A close that is to fail closes all the same, as the platform's would.
    const bool succeeds = Enter("PTCloseProvider");
    const HRESULT hr = Offline<decltype(PTCloseProvider)>(4)(provider);
    g_state.openProviders -= SUCCEEDED(hr) ? 1 : 0;
    return succeeds ? hr : g_state.failure;
}

STDAPI PTGetPrintCapabilities(HPTPROVIDER provider, IStream* ticket, IStream* capabilities, BSTR* message)
{
    return Enter("PTGetPrintCapabilities")
               ? Offline<decltype(PTGetPrintCapabilities)>(6)(provider, ticket, capabilities, message)
               : g_state.failure;
}

STDAPI PTMergeAndValidatePrintTicket(HPTPROVIDER provider,
                                     IStream* base,
                                     IStream* delta,
                                     EPrintTicketScope scope,
                                     IStream* result,
                                     BSTR* message)
{
    return Enter("PTMergeAndValidatePrintTicket " + std::to_string(scope))
               ? Offline<decltype(PTMergeAndValidatePrintTicket)>(7)(
                     provider, base, delta, scope, result, message)
               : g_state.failure;
}
