#include <map>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "base/utility/bstr.h"
#include "offlineservice.h"
#include "ticketservice/printschema.h"

namespace host::ticketservice
{
namespace
{
using base::utility::Bstr;
using base::utility::MakeCom;

constexpr auto kTicketFormat = static_cast<HRESULT>(E_PRINTTICKET_FORMAT);
constexpr auto kDeltaFormat = static_cast<HRESULT>(E_DELTA_PRINTTICKET_FORMAT);

TEST(Exports, AreThePlatformsOrdinalsAndTheHostsNames)
{
    const auto* const image = reinterpret_cast<const BYTE*>(OfflineService::Get().library);
    const auto* const dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(image);
    const auto* const nt = reinterpret_cast<const IMAGE_NT_HEADERS*>(image + dos->e_lfanew);
    const DWORD directory = nt->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_EXPORT].VirtualAddress;
    const auto* const exports = reinterpret_cast<const IMAGE_EXPORT_DIRECTORY*>(image + directory);
    const auto* const functions = reinterpret_cast<const DWORD*>(image + exports->AddressOfFunctions);
    const auto* const names = reinterpret_cast<const DWORD*>(image + exports->AddressOfNames);
    const auto* const indexes = reinterpret_cast<const WORD*>(image + exports->AddressOfNameOrdinals);

    std::map<DWORD, std::string> found;
    for (DWORD index = 0; index < exports->NumberOfFunctions; ++index)
    {
        if (functions[index] != 0)
        {
            found[exports->Base + index] = "";
        }
    }
    for (DWORD index = 0; index < exports->NumberOfNames; ++index)
    {
        found[exports->Base + indexes[index]] = reinterpret_cast<const char*>(image + names[index]);
    }
    const std::map<DWORD, std::string> expected = {{2, "PTOpenProvider"},
                                                   {4, "PTCloseProvider"},
                                                   {6, "PTGetPrintCapabilities"},
                                                   {7, "PTMergeAndValidatePrintTicket"},
                                                   {100, "SetDeviceDescription"},
                                                   {101, "GetOpenProviderCount"}};
    EXPECT_EQ(found, expected);
}

TEST(Provider, IsOpenedForAnyNameAndVersionOneOnly)
{
    const OfflineService& service = OfflineService::Get();
    const struct
    {
        const wchar_t* name;
        DWORD version;
    } refused[] = {{nullptr, 1}, {L"", 1}, {L"printer", 0}, {L"printer", 2}};
    for (const auto& [name, version] : refused)
    {
        int anything = 0;
        auto handle = reinterpret_cast<HPTPROVIDER>(&anything);
        EXPECT_EQ(service.open(name, version, &handle), E_INVALIDARG);
        EXPECT_EQ(handle, nullptr);
    }
    EXPECT_EQ(service.open(L"printer", 1, nullptr), E_INVALIDARG);
    EXPECT_EQ(service.countOpen(), 0U);

    HPTPROVIDER first = nullptr;
    HPTPROVIDER second = nullptr;
    EXPECT_EQ(service.open(L"\\\\server\\a printer", 1, &first), S_OK);
    EXPECT_EQ(service.close(first), S_OK);
    EXPECT_EQ(service.open(L"p", 1, &second), S_OK);
    EXPECT_EQ(service.countOpen(), 1U);
    EXPECT_EQ(service.close(first), E_HANDLE);
    EXPECT_EQ(service.close(nullptr), E_HANDLE);
    EXPECT_EQ(service.close(second), S_OK);
    EXPECT_EQ(service.countOpen(), 0U);
}

/// Calls both ticket functions with streams that are all right.
std::vector<HRESULT> UseProvider(HPTPROVIDER provider)
{
    const OfflineService& service = OfflineService::Get();
    const auto base = MakeCom<ShortStream>(ReadData("merge/base.xml"));
    const auto result = MakeCom<ShortStream>();
    return {service.merge(provider, base.Get(), nullptr, kPTJobScope, result.Get(), nullptr),
            service.getCapabilities(provider, nullptr, result.Get(), nullptr)};
}

TEST(Provider, BelongsToTheThreadThatOpenedIt)
{
    const OpenProvider provider;
    std::vector<HRESULT> foreign;
    HRESULT closed = S_OK;
    std::thread([&] {
        foreign = UseProvider(provider.Get());
        closed = OfflineService::Get().close(provider.Get());
    }).join();
    EXPECT_EQ(foreign, std::vector<HRESULT>({E_INVALIDARG, E_INVALIDARG}));
    EXPECT_EQ(closed, E_INVALIDARG);
    EXPECT_EQ(UseProvider(provider.Get()), std::vector<HRESULT>({S_PT_NO_CONFLICT, S_OK}));
    EXPECT_EQ(UseProvider(nullptr), std::vector<HRESULT>({E_HANDLE, E_HANDLE}));
}

TEST(Provider, ServesSeveralThreadsAtOnce)
{
    const std::string expected = Merge(ReadData("merge/base.xml"), nullptr, kPTJobScope).document;
    std::vector<int> agreed(4);
    std::vector<std::thread> threads;
    for (int& count : agreed)
    {
        threads.emplace_back([&] {
            for (int round = 0; round < 10; ++round)
            {
                count += Merge(ReadData("merge/base.xml"), nullptr, kPTJobScope).document == expected;
            }
        });
    }
    for (std::thread& thread : threads)
    {
        thread.join();
    }
    EXPECT_EQ(agreed, std::vector<int>(4, 10));
    EXPECT_EQ(OfflineService::Get().countOpen(), 0U);
}

TEST(Streams, AreReadAndWrittenFromWhereTheyStandAndLeftBehindTheTicket)
{
    const OfflineService& service = OfflineService::Get();
    const OpenProvider provider;
    const auto at = [](const std::string& bytes) {
        auto stream = MakeCom<ShortStream>("before" + bytes);
        stream->position = 6;
        return stream;
    };
    const auto base = at(ReadData("merge/base.xml"));
    const auto delta = at(ReadData("merge/levels.xml"));
    const auto result = at("");
    EXPECT_EQ(service.merge(provider.Get(), base.Get(), delta.Get(), kPTJobScope, result.Get(), nullptr),
              S_PT_NO_CONFLICT);
    EXPECT_EQ(base->position, base->content.size());
    EXPECT_EQ(delta->position, delta->content.size());
    EXPECT_EQ(result->position, result->content.size());
    EXPECT_TRUE(
        result->content.starts_with("before<?xml version=\"1.0\" encoding=\"UTF-8\"?><psf:PrintTicket "));

    const auto ticket = at(ReadData("merge/base.xml"));
    const auto capabilities = at("");
    EXPECT_EQ(service.getCapabilities(provider.Get(), ticket.Get(), capabilities.Get(), nullptr), S_OK);
    EXPECT_EQ(ticket->position, ticket->content.size());
    EXPECT_EQ(capabilities->position, capabilities->content.size());
    EXPECT_TRUE(capabilities->content.starts_with("before<?xml "));
}

TEST(Streams, GiveTheirOwnFailures)
{
    const OfflineService& service = OfflineService::Get();
    {
        const OpenProvider provider;
        const auto good = MakeCom<ShortStream>(ReadData("merge/base.xml"));
        const auto unreadable = MakeCom<ShortStream>();
        unreadable->readResult = STG_E_READFAULT;
        const auto unwritable = MakeCom<ShortStream>();
        unwritable->writeResult = STG_E_MEDIUMFULL;
        Bstr message;
        EXPECT_EQ(service.merge(
                      provider.Get(), unreadable.Get(), nullptr, kPTJobScope, good.Get(), message.Receive()),
                  STG_E_READFAULT);
        EXPECT_EQ(service.merge(
                      provider.Get(), good.Get(), nullptr, kPTJobScope, unwritable.Get(), message.Receive()),
                  STG_E_MEDIUMFULL);
        EXPECT_EQ(message.Get(), nullptr);
    }
    EXPECT_EQ(ShortStream::liveCount, 0);
}

TEST(BadInput, OfArgumentsIsRefused)
{
    const OfflineService& service = OfflineService::Get();
    const OpenProvider provider;
    const auto base = MakeCom<ShortStream>(ReadData("merge/base.xml"));
    const auto result = MakeCom<ShortStream>();
    Bstr message;
    EXPECT_EQ(service.merge(provider.Get(), nullptr, nullptr, kPTJobScope, result.Get(), message.Receive()),
              E_INVALIDARG);
    EXPECT_EQ(service.merge(provider.Get(), base.Get(), nullptr, kPTJobScope, nullptr, message.Receive()),
              E_INVALIDARG);
    for (const int scope : {-1, 3})
    {
        const auto unknown = static_cast<EPrintTicketScope>(scope);
        EXPECT_EQ(
            service.merge(provider.Get(), base.Get(), nullptr, unknown, result.Get(), message.Receive()),
            E_INVALIDARG);
    }
    EXPECT_EQ(service.getCapabilities(provider.Get(), nullptr, nullptr, message.Receive()), E_INVALIDARG);
    EXPECT_EQ(message.Get(), nullptr);
    EXPECT_EQ(result->content, "");
}

TEST(BadInput, IsRefusedWithItsReason)
{
    const std::string psf = "xmlns:psf='" + std::string(kFrameworkNamespace) + "'";
    const std::string open = "<psf:PrintTicket version='1' " + psf + ">";
    const std::string close = "</psf:PrintTicket>";
    const struct
    {
        std::string ticket;
        std::string reason;
    } cases[] = {
        {"", "line "},
        {"no markup", "line "},
        {std::string("\0\0\0\0", 4), "line "},
        {open, "line "},
        {open + close + close, "line "},
        {open + "\xFF\xFE" + close, "line "},
        {"<PrintTicket version='1'/>", "the root is not the Print Schema's PrintTicket"},
        {"<psf:PrintCapabilities version='1' " + psf + "/>",
         "the root is not the Print Schema's PrintTicket"},
        {"<psf:PrintTicket xmlns:psf='https" + std::string(kFrameworkNamespace.substr(4)) + "'/>",
         "the root is not the Print Schema's PrintTicket"},
        {"<psf:PrintTicket version='2' " + psf + "/>", "the version is not 1"},
        {"<!DOCTYPE r [<!ENTITY e 'x'>]>" + open + "&e;" + close, "line "},
        {open + "<psf:Feature/>" + close, "a Feature has no name"},
        {open + "<psf:Feature name='x:PageFold'/>" + close, "\"x:PageFold\" is no name"},
        {open + "<psf:ParameterInit name='psf:'/>" + close, "\"psf:\" is no name"},
        {open + "<psf:Feature name='a'><psf:Option><psf:Property/></psf:Option></psf:Feature>" + close,
         "a Property has no name"},
        {open +
             [] {
                 std::string nested;
                 for (int depth = 0; depth < 200; ++depth)
                 {
                     nested = "<psf:Feature name='a'>" + nested + "</psf:Feature>";
                 }
                 return nested;
             }() +
             close,
         "the elements are nested too deeply"},
        {std::string((16U << 20U) + 1, ' '), "the document is larger than 16 MB"},
    };
    const std::string good = ReadData("merge/base.xml");
    for (const auto& [ticket, reason] : cases)
    {
        const Answer answers[] = {
            Merge(ticket, &good, kPTJobScope), Merge(good, &ticket, kPTJobScope), GetCapabilities(&ticket)};
        EXPECT_EQ(answers[0].hr, kTicketFormat) << reason;
        EXPECT_EQ(answers[1].hr, kDeltaFormat) << reason;
        EXPECT_EQ(answers[2].hr, kTicketFormat) << reason;
        for (const Answer& answer : answers)
        {
            EXPECT_NE(answer.message.find(reason), std::string::npos) << answer.message << ", not " << reason;
            EXPECT_EQ(answer.document, "") << reason;
        }
    }
}

TEST(BadInput, IsRefusedWhereverATicketIsCutOff)
{
    const std::string whole = ReadData("merge/base.xml");
    const std::size_t end = whole.rfind('>');
    for (std::size_t length = 0; length <= end; length += 17)
    {
        EXPECT_EQ(Merge(whole.substr(0, length), nullptr, kPTJobScope).hr, kTicketFormat) << length;
    }
}

TEST(BadInput, OfDamagedBytesNeverBringsTheServiceDown)
{
    const std::string whole = ReadData("merge/base.xml");
    for (std::size_t position = 0; position < whole.size(); position += 13)
    {
        std::string damaged = whole;
        damaged[position] = "<\"x:"[position % 4];
        const HRESULT hr = Merge(damaged, &whole, kPTJobScope).hr;
        EXPECT_TRUE(SUCCEEDED(hr) || hr == kTicketFormat) << position << ": " << hr;
    }
}

TEST(Tickets, AreTakenInEveryEncodingAndWithCarelessTypes)
{
    const std::string careless =
        "<psf:PrintTicket xmlns:psf='" + std::string(kFrameworkNamespace) + "' xmlns:i='" +
        std::string(kSchemaInstanceNamespace) +
        "'><psf:Property name='Mark'><psf:Value i:type='nowhere:string'>&#xE9;\r\n\t</psf:Value>"
        "</psf:Property></psf:PrintTicket>";
    std::string utf16 = "\xFF\xFE";
    for (const char each : careless)
    {
        utf16 += {each, '\0'};
    }
    for (const std::string& ticket : {careless, "\xEF\xBB\xBF" + careless, utf16})
    {
        const Answer answer = Merge(ticket, nullptr, kPTPageScope);
        EXPECT_EQ(answer.hr, S_PT_NO_CONFLICT) << answer.message;
        EXPECT_NE(answer.document.find(" xsi:type=\"nowhere:string\">\xC3\xA9\n\t</psf:Value>"),
                  std::string::npos)
            << answer.document;
    }
}
} // namespace
} // namespace host::ticketservice
