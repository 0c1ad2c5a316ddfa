#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "base/utility/bstr.h"
#include "host/tickets/ticketdocument.h"
#include "tests/host/ticketservice/offlineservice.h"

namespace host::ticketservice
{
namespace
{
using base::utility::Bstr;
using base::utility::MakeCom;

constexpr auto kTicketFormat = static_cast<HRESULT>(E_PRINTTICKET_FORMAT);
constexpr auto kDeltaFormat = static_cast<HRESULT>(E_DELTA_PRINTTICKET_FORMAT);

const std::string kPsf = "xmlns:psf='" + std::string(tickets::kFrameworkNamespace) + "'";
const std::string kOpen = "<psf:PrintTicket version='1' " + kPsf + ">";
const std::string kClose = "</psf:PrintTicket>";

class Exports : public testing::Test
{
protected:
    const OfflineService& service = OfflineService::Get();
    const std::string base = ReadData("merge/base.xml");
};

TEST_F(Exports, OpenProvidersForAnyNameAndVersionOneOnly)
{
    int anything = 0;
    for (const auto& [name, version] : std::initializer_list<std::pair<const wchar_t*, DWORD>>{
             {nullptr, 1}, {L"", 1}, {L"a", 0}, {L"a", 2}})
    {
        auto handle = reinterpret_cast<HPTPROVIDER>(&anything);
        EXPECT_EQ(PTOpenProvider(name, version, &handle), E_INVALIDARG);
        EXPECT_EQ(handle, nullptr);
    }
    EXPECT_EQ(PTOpenProvider(L"printer", 1, nullptr), E_INVALIDARG);
    EXPECT_EQ(service.countOpen(), 0U);

    HPTPROVIDER first = nullptr;
    HPTPROVIDER second = nullptr;
    EXPECT_EQ(PTOpenProvider(L"\\\\server\\a printer", 1, &first), S_OK);
    EXPECT_EQ(PTCloseProvider(first), S_OK);
    EXPECT_EQ(PTOpenProvider(L"p", 1, &second), S_OK);
    EXPECT_EQ(service.countOpen(), 1U);
    EXPECT_EQ(PTCloseProvider(first), E_HANDLE);
    EXPECT_EQ(PTCloseProvider(nullptr), E_HANDLE);
    EXPECT_EQ(PTCloseProvider(second), S_OK);
    EXPECT_EQ(service.countOpen(), 0U);
}

TEST_F(Exports, KeepAProviderToTheThreadThatOpenedIt)
{
    const auto use = [&](HPTPROVIDER provider) {
        const auto ticket = MakeCom<ShortStream>(base);
        const auto result = MakeCom<ShortStream>();
        return std::vector<HRESULT>{PTMergeAndValidatePrintTicket(
                                        provider, ticket.Get(), nullptr, kPTJobScope, result.Get(), nullptr),
                                    PTGetPrintCapabilities(provider, nullptr, result.Get(), nullptr)};
    };
    const OpenProvider provider;
    std::vector<HRESULT> foreign;
    std::thread([&] {
        foreign = use(provider.handle);
        foreign.push_back(PTCloseProvider(provider.handle));
    }).join();
    EXPECT_EQ(foreign, std::vector<HRESULT>(3, E_INVALIDARG));
    EXPECT_EQ(use(provider.handle), std::vector<HRESULT>({S_PT_NO_CONFLICT, S_OK}));
    EXPECT_EQ(use(nullptr), std::vector<HRESULT>({E_HANDLE, E_HANDLE}));
}

TEST_F(Exports, ReadAndWriteStreamsFromWhereTheyStandAndLeaveThemBehindTheTicket)
{
    const auto at = [](const std::string& bytes) {
        auto stream = MakeCom<ShortStream>("before" + bytes);
        stream->position = 6;
        return stream;
    };
    const OpenProvider provider;
    const auto ticket = at(base);
    const auto delta = at(ReadData("merge/levels.xml"));
    const auto merged = at("");
    EXPECT_EQ(PTMergeAndValidatePrintTicket(
                  provider.handle, ticket.Get(), delta.Get(), kPTJobScope, merged.Get(), nullptr),
              S_PT_NO_CONFLICT);
    const auto asked = at(base);
    const auto capabilities = at("");
    EXPECT_EQ(PTGetPrintCapabilities(provider.handle, asked.Get(), capabilities.Get(), nullptr), S_OK);
    for (const auto& stream : {ticket, delta, merged, asked, capabilities})
    {
        EXPECT_EQ(stream->position, stream->content.size());
        EXPECT_TRUE(stream->content.starts_with("before<?xml version=\"1.0\"")) << stream->content;
    }
}

TEST_F(Exports, RefuseArgumentsAndGiveTheFailuresOfStreams)
{
    {
        const OpenProvider provider;
        const auto good = MakeCom<ShortStream>(base);
        const auto result = MakeCom<ShortStream>();
        const auto unreadable = MakeCom<ShortStream>();
        unreadable->result = STG_E_READFAULT;
        const auto unwritable = MakeCom<ShortStream>();
        unwritable->result = STG_E_MEDIUMFULL;
        const struct
        {
            IStream* ticket;
            int scope;
            IStream* merged;
            HRESULT hr;
        } refusals[] = {{nullptr, kPTJobScope, result.Get(), E_INVALIDARG},
                        {good.Get(), kPTJobScope, nullptr, E_INVALIDARG},
                        {good.Get(), -1, result.Get(), E_INVALIDARG},
                        {good.Get(), 3, result.Get(), E_INVALIDARG},
                        {unreadable.Get(), kPTJobScope, result.Get(), STG_E_READFAULT},
                        {good.Get(), kPTJobScope, unwritable.Get(), STG_E_MEDIUMFULL}};
        for (const auto& [ticket, scope, merged, hr] : refusals)
        {
            BSTR text = Bstr(L"old").Detach();
            EXPECT_EQ(
                PTMergeAndValidatePrintTicket(
                    provider.handle, ticket, nullptr, static_cast<EPrintTicketScope>(scope), merged, &text),
                hr);
            EXPECT_EQ(text, nullptr);
        }
        EXPECT_EQ(PTGetPrintCapabilities(provider.handle, nullptr, nullptr, nullptr), E_INVALIDARG);
        EXPECT_EQ(result->content, "");
    }
    EXPECT_EQ(ShortStream::alive, 0);
}

TEST_F(Exports, RefuseABadTicketWithItsReason)
{
    std::string nested;
    for (int depth = 0; depth < 200; ++depth)
    {
        nested = "<psf:Feature name='a'>" + nested + "</psf:Feature>";
    }
    auto cases = ReadTable("badtickets.txt");
    cases.push_back({"the elements are nested too deeply", kOpen + nested + kClose});
    cases.push_back({"the document is larger than 16 MB", std::string((16U << 20U) + 1, ' ')});
    for (const auto& row : cases)
    {
        const std::string& reason = row.at(0);
        const std::string& ticket = row.at(1);
        for (const auto& [answer, code] : {std::pair(Merge(ticket, &base, kPTJobScope), kTicketFormat),
                                           std::pair(Merge(base, &ticket, kPTJobScope), kDeltaFormat),
                                           std::pair(GetCapabilities(&ticket), kTicketFormat)})
        {
            EXPECT_EQ(answer.hr, code) << reason;
            EXPECT_NE(answer.message.find(reason), std::string::npos) << answer.message << ", not " << reason;
            EXPECT_EQ(answer.document, "") << reason;
        }
    }
}

TEST_F(Exports, TakeNoCutOffTicketAndOutliveDamagedOnes)
{
    for (std::size_t position = 0; position <= base.rfind('>'); position += 13)
    {
        EXPECT_EQ(Merge(base.substr(0, position), nullptr, kPTJobScope).hr, kTicketFormat) << position;
        std::string damaged = base;
        damaged[position] = "<\"x:"[position % 4];
        const HRESULT hr = Merge(damaged, &base, kPTJobScope).hr;
        EXPECT_TRUE(SUCCEEDED(hr) || hr == kTicketFormat) << position << ": " << hr;
    }
}

TEST_F(Exports, TakeTicketsWithCarelessTypes)
{
    const std::string careless =
        "<psf:PrintTicket " + kPsf + " xmlns:i='" + std::string(tickets::kSchemaInstanceNamespace) +
        "'><psf:Property name='Mark'><psf:Value i:type='nowhere:string'>&#xE9;\r\n\t</psf:Value>"
        "</psf:Property></psf:PrintTicket>";
    const Answer answer = Merge(careless, nullptr, kPTPageScope);
    EXPECT_EQ(answer.hr, S_PT_NO_CONFLICT) << answer.message;
    EXPECT_NE(answer.document.find(" xsi:type=\"nowhere:string\">\xC3\xA9&#10;&#9;</psf:Value>"),
              std::string::npos)
        << answer.document;
}
} // namespace
} // namespace host::ticketservice
