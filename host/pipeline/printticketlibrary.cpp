#include "host/pipeline/printticketlibrary.h"

#include <stdexcept>

#include "base/utility/bstr.h"
#include "base/utility/utf8.h"
#include "host/ticketservice/ticketservice.h"

#include <prntvpt.h>

namespace host::pipeline
{
namespace
{
/// The platform's functions as they are exported, by ordinal.
struct Functions
{
    decltype(PTOpenProvider)* open = nullptr;
    decltype(PTCloseProvider)* close = nullptr;
    decltype(PTGetPrintCapabilities)* getCapabilities = nullptr;
    decltype(PTMergeAndValidatePrintTicket)* merge = nullptr;
};

// The functions of the loaded library.
Functions g_functions;
} // namespace

PrintTicketLibrary::PrintTicketLibrary(const std::optional<std::filesystem::path>& offline)
    : m_library(offline.value_or(L"prntvpt.dll"))
{
    constexpr WORD openOrdinal = 2;
    constexpr WORD closeOrdinal = 4;
    constexpr WORD capabilitiesOrdinal = 6;
    constexpr WORD mergeOrdinal = 7;
    g_functions = {m_library.Find<decltype(PTOpenProvider)>(openOrdinal),
                   m_library.Find<decltype(PTCloseProvider)>(closeOrdinal),
                   m_library.Find<decltype(PTGetPrintCapabilities)>(capabilitiesOrdinal),
                   m_library.Find<decltype(PTMergeAndValidatePrintTicket)>(mergeOrdinal)};
}

PrintTicketLibrary::~PrintTicketLibrary()
{
    g_functions = {};
}

void PrintTicketLibrary::DescribeDevice(std::string_view capabilities) const
{
    auto* const describe = m_library.Find<decltype(SetDeviceDescription)>("SetDeviceDescription");
    base::utility::Bstr reason;
    if (FAILED(describe(capabilities.data(), static_cast<ULONG>(capabilities.size()), reason.Receive())))
    {
        throw std::runtime_error(base::utility::ToUtf8(std::wstring(reason.View())));
    }
}
} // namespace host::pipeline

// The module's ticket code calls these functions. In the host they forward to the library that was loaded: a
// host that imported them would load the platform's library first.
STDAPI PTOpenProvider(PCWSTR printerName, DWORD version, HPTPROVIDER* provider)
{
    return host::pipeline::g_functions.open(printerName, version, provider);
}

STDAPI PTCloseProvider(HPTPROVIDER provider)
{
    return host::pipeline::g_functions.close(provider);
}

STDAPI PTGetPrintCapabilities(HPTPROVIDER provider, IStream* ticket, IStream* capabilities, BSTR* message)
{
    return host::pipeline::g_functions.getCapabilities(provider, ticket, capabilities, message);
}

STDAPI PTMergeAndValidatePrintTicket(HPTPROVIDER provider,
                                     IStream* base,
                                     IStream* delta,
                                     EPrintTicketScope scope,
                                     IStream* result,
                                     BSTR* message)
{
    return host::pipeline::g_functions.merge(provider, base, delta, scope, result, message);
}
