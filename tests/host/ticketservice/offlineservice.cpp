#include "tests/host/ticketservice/offlineservice.h"

#include <regex>

#include "base/utility/bstr.h"
#include "base/utility/utf8.h"

namespace host::ticketservice
{
namespace
{
using base::utility::Bstr;
using base::utility::ComPtr;
using base::utility::MakeCom;

std::string Narrow(const Bstr& text)
{
    return base::utility::ToUtf8(std::wstring(text.View()));
}

ComPtr<ShortStream> ToStream(const std::string* bytes)
{
    return bytes == nullptr ? ComPtr<ShortStream>() : MakeCom<ShortStream>(*bytes);
}
} // namespace

const OfflineService& OfflineService::Get()
{
    static const OfflineService service;
    return service;
}

Answer Merge(const std::string& base, const std::string* delta, EPrintTicketScope scope)
{
    const OpenProvider provider;
    const auto result = MakeCom<ShortStream>();
    Bstr message;
    const HRESULT hr = PTMergeAndValidatePrintTicket(provider.handle,
                                                     ToStream(&base).Get(),
                                                     ToStream(delta).Get(),
                                                     scope,
                                                     result.Get(),
                                                     message.Receive());
    return {hr, Narrow(message), result->content};
}

Answer GetCapabilities(const std::string* ticket)
{
    const OpenProvider provider;
    const auto capabilities = MakeCom<ShortStream>();
    Bstr message;
    const HRESULT hr = PTGetPrintCapabilities(
        provider.handle, ToStream(ticket).Get(), capabilities.Get(), message.Receive());
    return {hr, Narrow(message), capabilities->content};
}

Answer Describe(const std::string& description)
{
    Bstr reason;
    const auto size = static_cast<ULONG>(description.size());
    const HRESULT hr = OfflineService::Get().describe(description.data(), size, reason.Receive());
    return {hr, Narrow(reason), {}};
}

std::string ReadJoined(const std::string& name)
{
    const std::string joined = std::regex_replace(ReadData(name), std::regex("\n *(<|$)"), "$1");
    const std::string spaced = std::regex_replace(joined, std::regex("\n +"), " ");
    return std::regex_replace(spaced, std::regex("\\?><"), "?>\n<");
}
} // namespace host::ticketservice
