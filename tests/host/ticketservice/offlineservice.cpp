#include "offlineservice.h"

#include <algorithm>
#include <cstring>
#include <fstream>
#include <iterator>

#include <gtest/gtest.h>

#include "base/logging/errors.h"
#include "base/utility/bstr.h"
#include "base/utility/utf8.h"

namespace host::ticketservice
{
namespace
{
using base::exception::ThrowIfFailed;
using base::utility::Bstr;
using base::utility::ComPtr;
using base::utility::FromUtf8;
using base::utility::MakeCom;
using base::utility::ToUtf8;

class ComEnvironment : public testing::Environment
{
public:
    void SetUp() override { ThrowIfFailed(CoInitializeEx(nullptr, COINIT_MULTITHREADED)); }
    void TearDown() override { CoUninitialize(); }
};
const testing::Environment* const g_com = testing::AddGlobalTestEnvironment(new ComEnvironment);

template <typename Function>
Function Import(HMODULE library, const char* name)
{
    const FARPROC found = GetProcAddress(library, name);
    ThrowIfFailed(found != nullptr ? S_OK : HRESULT_FROM_WIN32(GetLastError()));
    return reinterpret_cast<Function>(reinterpret_cast<void*>(found));
}

OfflineService Load()
{
    const HMODULE library = LoadLibraryW(FromUtf8(OFFLINE_SERVICE_PATH).c_str());
    ThrowIfFailed(library != nullptr ? S_OK : HRESULT_FROM_WIN32(GetLastError()));
    return {library,
            Import<decltype(&PTOpenProvider)>(library, MAKEINTRESOURCEA(2)),
            Import<decltype(&PTCloseProvider)>(library, MAKEINTRESOURCEA(4)),
            Import<decltype(&PTGetPrintCapabilities)>(library, MAKEINTRESOURCEA(6)),
            Import<decltype(&PTMergeAndValidatePrintTicket)>(library, MAKEINTRESOURCEA(7)),
            Import<SetDeviceDescriptionFunction>(library, "SetDeviceDescription"),
            Import<GetOpenProviderCountFunction>(library, "GetOpenProviderCount")};
}

std::string Narrow(const Bstr& text)
{
    return ToUtf8(std::wstring(text.View()));
}

ComPtr<ShortStream> ToStream(const std::string* bytes)
{
    return bytes == nullptr ? ComPtr<ShortStream>() : MakeCom<ShortStream>(*bytes);
}
} // namespace

const OfflineService& OfflineService::Get()
{
    static const OfflineService service = Load();
    return service;
}

OpenProvider::OpenProvider()
{
    ThrowIfFailed(OfflineService::Get().open(L"Any printer", 1, &m_handle));
}

OpenProvider::~OpenProvider()
{
    EXPECT_EQ(OfflineService::Get().close(m_handle), S_OK);
}

HRESULT ShortStream::Read(void* buffer, ULONG size, ULONG* count)
{
    constexpr std::size_t mostAtOnce = 100;
    const std::size_t taken = std::min({content.size() - position, std::size_t{size}, mostAtOnce});
    std::memcpy(buffer, content.data() + position, taken);
    position += taken;
    *count = static_cast<ULONG>(taken);
    return readResult;
}

HRESULT ShortStream::Write(const void* buffer, ULONG size, ULONG* count)
{
    constexpr ULONG mostAtOnce = 70;
    *count = std::min(size, mostAtOnce);
    content.replace(position, *count, static_cast<const char*>(buffer), *count);
    position += *count;
    return writeResult;
}

Answer Merge(const std::string& base, const std::string* delta, EPrintTicketScope scope)
{
    const OpenProvider provider;
    const auto result = MakeCom<ShortStream>();
    Bstr message;
    const HRESULT hr = OfflineService::Get().merge(
        provider.Get(), ToStream(&base).Get(), ToStream(delta).Get(), scope, result.Get(), message.Receive());
    return {hr, Narrow(message), result->content};
}

Answer GetCapabilities(const std::string* ticket)
{
    const OpenProvider provider;
    const auto capabilities = MakeCom<ShortStream>();
    Bstr message;
    const HRESULT hr = OfflineService::Get().getCapabilities(
        provider.Get(), ToStream(ticket).Get(), capabilities.Get(), message.Receive());
    return {hr, Narrow(message), capabilities->content};
}

Answer Describe(const std::string& description)
{
    Bstr reason;
    const HRESULT hr = OfflineService::Get().setDescription(
        description.data(), static_cast<ULONG>(description.size()), reason.Receive());
    return {hr, Narrow(reason), {}};
}

std::string ReadData(const std::string& name)
{
    std::ifstream file(TEST_DATA_PATH "/" + name, std::ios::binary);
    EXPECT_TRUE(file) << name;
    return {std::istreambuf_iterator<char>(file), {}};
}

QueriedDocument::QueriedDocument(const std::string& xml)
{
    ThrowIfFailed(CoCreateInstance(platform::kDomDocument60,
                                   nullptr,
                                   CLSCTX_INPROC_SERVER,
                                   __uuidof(IXMLDOMDocument2),
                                   m_pDocument.ReceiveUntyped()));
    ThrowIfFailed(m_pDocument->put_preserveWhiteSpace(VARIANT_TRUE));
    VARIANT_BOOL loaded = VARIANT_FALSE;
    // The declaration speaks of UTF-8, which wide text is not.
    const Bstr text(FromUtf8(xml.substr(std::min(xml.find("?>"), xml.size() - 2) + 2)).c_str());
    EXPECT_EQ(m_pDocument->loadXML(text.Get(), &loaded), S_OK) << xml;
    const Bstr namespaces(
        "xmlns:psf='http://schemas.microsoft.com/windows/2003/08/printing/printschemaframework' "
        "xmlns:psk='http://schemas.microsoft.com/windows/2003/08/printing/printschemakeywords' "
        "xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance' xmlns:xsd='http://www.w3.org/2001/XMLSchema'");
    const Bstr name("SelectionNamespaces");
    VARIANT value;
    VariantInit(&value);
    V_VT(&value) = VT_BSTR;
    V_BSTR(&value) = namespaces.Get();
    ThrowIfFailed(m_pDocument->setProperty(name.Get(), value));
}

ComPtr<IXMLDOMNodeList> QueriedDocument::Select(const std::string& xpath) const
{
    ComPtr<IXMLDOMNodeList> selected;
    const Bstr query(xpath.c_str());
    ThrowIfFailed(m_pDocument->selectNodes(query.Get(), selected.Receive()));
    return selected;
}

int QueriedDocument::Count(const std::string& xpath) const
{
    LONG count = 0;
    ThrowIfFailed(Select(xpath)->get_length(&count));
    return count;
}

std::string QueriedDocument::Text(const std::string& xpath) const
{
    ComPtr<IXMLDOMNode> node;
    if (Select(xpath)->get_item(0, node.Receive()) != S_OK)
    {
        return "(nothing is at " + xpath + ")";
    }
    Bstr text;
    ThrowIfFailed(node->get_text(text.Receive()));
    return Narrow(text);
}
} // namespace host::ticketservice
