#include "base/xps/printschema/tickets/printticketprovider.h"

#include <functional>
#include <memory>
#include <string>
#include <tuple>
#include <utility>

#include <gtest/gtest.h>

#include "base/utility/bstr.h"
#include "base/xml/xmlutility.h"
#include "base/xps/printschema/printablemediasizedata.h"
#include "base/xps/printschema/tickets/defaulttickets.h"
#include "support/heap.h"
#include "support/pipelinetest.h"
#include "support/tickets.h"

namespace base::xps::printschema
{
namespace
{
using support::Document;
using support::Feature;
using support::MemoryReadStream;
using support::Ticket;
using utility::Bstr;
using utility::ComPtr;
using utility::MakeCom;
using TicketPart = ComPtr<IPartPrintTicket>;

constexpr EPrintTicketScope kNoLevel = static_cast<EPrintTicketScope>(3);
constexpr auto kNoDelta = static_cast<HRESULT>(E_DELTA_PRINTTICKET_FORMAT);
constexpr HRESULT kBadToken = __HRESULT_FROM_WIN32(ERROR_INVALID_HANDLE);

/// Checks after every test that the thread does not impersonate, the provider is closed and nothing leaked,
/// and that the platform was called as the user.
class PrintTicketProviderTest : public support::PipelineTest
{
protected:
    void TearDown() override
    {
        provider.reset();
        for (const auto& call : pipeline->record.Calls())
        {
            EXPECT_TRUE(call.isImpersonating || !call.name.starts_with("PT")) << call.name;
        }
        sequence = {};
        document = {};
        page = {};
        PipelineTest::TearDown();
    }

    HRESULT Open(const std::string& content = {}, HANDLE token = support::UserToken())
    {
        const auto stream = MakeCom<MemoryReadStream>(Ticket(content));
        return provider->Open(stream.Get(), Bstr(L"printer").Get(), token);
    }

    HRESULT Apply(EPrintTicketScope level, IXMLDOMDocument2* target = nullptr)
    {
        return level == kPTJobScope        ? provider->ApplyJobTicket(sequence.Get(), target)
               : level == kPTDocumentScope ? provider->ApplyDocumentTicket(document.Get(), target)
                                           : provider->ApplyPageTicket(page.Get(), target);
    }

    void OpenAndApplyAll(const std::string& content = {}, IXMLDOMDocument2* target = nullptr)
    {
        ASSERT_EQ(Open(content), S_OK);
        for (const EPrintTicketScope level : {kPTJobScope, kPTDocumentScope, kPTPageScope})
        {
            ASSERT_EQ(Apply(level, target), S_OK) << level;
        }
    }

    HRESULT TryGet(EPrintTicketScope level)
    {
        Document ticket;
        return provider->GetLevelTicket(level, ticket.Receive());
    }

    Document LevelTicket(EPrintTicketScope level)
    {
        Document ticket;
        EXPECT_EQ(provider->GetLevelTicket(level, ticket.Receive()), S_OK);
        return ticket;
    }

    std::string OptionOf(EPrintTicketScope level, const std::string& feature)
    {
        return support::OptionOf(LevelTicket(level), feature);
    }

    /// The scopes of the merges since the last call, such as "210" for job, document and page.
    std::string Merges()
    {
        std::string scopes;
        for (const std::string& name : pipeline->record.Names())
        {
            scopes += name.starts_with("PTMerge") ? name.substr(name.size() - 1) : "";
        }
        return scopes.substr(std::exchange(m_seen, scopes.size()));
    }

    TicketPart PartOver(const std::string& ticket)
    {
        return TicketPart(MakeCom<support::TicketPart>(pipeline->record, "ticket", ticket).Get());
    }
    TicketPart PartWith(const std::string& content) { return PartOver(Ticket(content)); }

    const Document defaultTicket = xml::XmlUtility::LoadDocumentFromString(DefaultPrintTicketOf(7));
    std::unique_ptr<PrintTicketProvider> provider = std::make_unique<PrintTicketProvider>();
    ComPtr<support::SequencePart> sequence = MakeCom<support::SequencePart>(pipeline->record, "sequence");
    ComPtr<support::DocumentPart> document = MakeCom<support::DocumentPart>(pipeline->record, "document");
    ComPtr<support::PagePart> page = MakeCom<support::PagePart>(pipeline->record, "page", "");

private:
    std::size_t m_seen = 0;
};

TEST_F(PrintTicketProviderTest, GivesThePageWhatEachLevelAskedForAndTheDriversLimits)
{
    // Every level can set a feature of the page; the lowest one wins.
    sequence->ticket = PartWith(Feature("JobInputBin", "Manual") + Feature("PageScaling", "None") +
                                Feature("PageOrientation", "ReversePortrait"));
    document->ticket = PartWith(Feature("DocumentCollate", "Uncollated") +
                                Feature("JobInputBin", "Cassette") + Feature("PageInputBin", "Cassette"));
    page->ticket = PartWith(Feature("DocumentCollate", "Collated") + Feature("PageOrientation", "Landscape"));
    OpenAndApplyAll(support::MediaFeature("ISOA5"), defaultTicket.Get());

    // The levels above have their own settings and none from below.
    const std::tuple<EPrintTicketScope, const char*, const char*> options[] = {
        {kPTPageScope, "psk:PageMediaSize", "psk:ISOA5"},
        {kPTPageScope, "psk:PageInputBin", "psk:Cassette"},
        {kPTPageScope, "psk:PageOrientation", "psk:Landscape"},
        {kPTPageScope, "psk:PageScaling", "psk:None"},
        {kPTPageScope, "ns0000:JobCompress", "ns0000:Type2"},
        {kPTPageScope, "ns0000:JobBitsPerPixel", "ns0000:Bits8"},
        {kPTDocumentScope, "psk:PageOrientation", "psk:ReversePortrait"},
        {kPTDocumentScope, "psk:DocumentCollate", "psk:Uncollated"},
        {kPTJobScope, "psk:JobInputBin", "psk:Manual"},
    };
    for (const auto& [level, feature, option] : options)
    {
        EXPECT_EQ(OptionOf(level, feature), option) << level;
    }
    PrintableMediaSizeData printable;
    printable.Read(PrintSchemaDocumentHandler::ForPrintTicket(LevelTicket(kPTPageScope)));
    EXPECT_EQ(printable.GetLimits(), (MediaSizeLimits{{76200, 127000}, {215900, 355600}}));
    // The default ticket, which completes all levels, is not changed.
    EXPECT_EQ(support::Count(defaultTicket, "//f:Feature"), 8);
}

TEST_F(PrintTicketProviderTest, MergesOnceALevelAndAnewBelowALevelThatChanged)
{
    ASSERT_EQ(Open(), S_OK);
    EXPECT_EQ(Merges(), "");
    const TicketPart ticket = PartWith("");
    const auto apply = [&](EPrintTicketScope level, const TicketPart& own) {
        sequence->ticket = document->ticket = page->ticket = own;
        return Apply(level);
    };
    const std::pair<std::function<HRESULT()>, const char*> steps[] = {
        {[&] { return TryGet(kPTPageScope); }, "210"},
        {[&] { return TryGet(kPTJobScope); }, ""},
        {[&] { return apply(kPTJobScope, {}); }, "2"},
        // Without the document.
        {[&] { return apply(kPTPageScope, {}); }, "10"},
        {[&] { return apply(kPTJobScope, ticket); }, "2"},
        {[&] { return TryGet(kPTDocumentScope); }, "1"},
        {[&] { return apply(kPTDocumentScope, ticket); }, "1"},
        {[&] { return apply(kPTPageScope, ticket); }, "0"},
        {[&] { return apply(kPTPageScope, {}); }, "0"},
        {[&] { return TryGet(kPTPageScope); }, ""},
        // A second document.
        {[&] { return apply(kPTDocumentScope, {}); }, "1"},
        {[&] { return TryGet(kPTPageScope); }, "0"},
        {[&] { return provider->GetTicket(kPTDocumentScope, nullptr, nullptr); }, "1"},
        {[&] { return TryGet(kPTPageScope); }, "0"},
        // Derived, and then applied again.
        {[&] { return provider->GetTicket(kPTJobScope, defaultTicket.Get(), nullptr); }, "22"},
        {[&] { return TryGet(kPTPageScope); }, "10"},
    };
    for (const auto& [act, merges] : steps)
    {
        EXPECT_EQ(act(), S_OK) << &act - &steps[0].first;
        EXPECT_EQ(Merges(), merges) << &act - &steps[0].first;
    }
}

TEST_F(PrintTicketProviderTest, CompletesALevelByBothTargets)
{
    const Document second = support::LoadDocument(
        Ticket(Feature("ns0000:JobSeal", "ns0000:On") + Feature("ns0000:JobCompress", "ns0000:Type9")));
    ASSERT_EQ(Open(), S_OK);
    // Without a first target the second is ignored.
    ASSERT_EQ(provider->GetTicket(kPTJobScope, nullptr, second.Get()), S_OK);
    EXPECT_EQ(OptionOf(kPTJobScope, "ns0000:JobSeal"), "");
    ASSERT_EQ(provider->GetTicket(kPTJobScope, defaultTicket.Get(), second.Get()), S_OK);
    EXPECT_EQ(OptionOf(kPTJobScope, "ns0000:JobCompress"), "ns0000:Type2");
    EXPECT_EQ(OptionOf(kPTJobScope, "ns0000:JobSeal"), "ns0000:On");
}

TEST_F(PrintTicketProviderTest, ChecksItsArguments)
{
    const auto stream = MakeCom<MemoryReadStream>(Ticket(""));
    EXPECT_EQ(provider->Open(nullptr, Bstr(L"printer").Get(), support::UserToken()), E_POINTER);
    EXPECT_EQ(provider->Open(stream.Get(), nullptr, support::UserToken()), E_INVALIDARG);
    EXPECT_EQ(provider->Open(stream.Get(), Bstr(L"").Get(), support::UserToken()), E_INVALIDARG);
    EXPECT_EQ(provider->LoadTicket(nullptr), E_POINTER);
    EXPECT_EQ(provider->LoadTicket(page.Get()), E_NOINTERFACE);
    EXPECT_EQ(provider->ApplyJobTicket(nullptr, nullptr), E_POINTER);
    EXPECT_EQ(provider->ApplyDocumentTicket(nullptr, nullptr), E_POINTER);
    EXPECT_EQ(provider->ApplyPageTicket(nullptr, nullptr), E_POINTER);
    EXPECT_EQ(provider->GetReceivedTicket(nullptr), E_POINTER);
    EXPECT_EQ(provider->GetLevelTicket(kPTPageScope, nullptr), E_POINTER);
    EXPECT_EQ(provider->GetCapabilities(defaultTicket.Get(), nullptr), E_POINTER);
    EXPECT_EQ(pipeline->record.Size(), 0U);

    ASSERT_EQ(Open(), S_OK);
    auto* unknown = defaultTicket.Get();
    EXPECT_EQ(provider->GetLevelTicket(kNoLevel, &unknown), E_INVALIDARG);
    EXPECT_EQ(unknown, nullptr);
    EXPECT_EQ(provider->GetTicket(kNoLevel, nullptr, nullptr), E_INVALIDARG);
    EXPECT_EQ(provider->GetCapabilities(nullptr, Document().Receive()), E_POINTER);
}

TEST_F(PrintTicketProviderTest, IsPendingWhileThereIsNothingToDeriveFrom)
{
    const auto expectPending = [this] {
        EXPECT_EQ(TryGet(kPTPageScope), E_PENDING);
        EXPECT_EQ(provider->GetTicket(kPTJobScope, defaultTicket.Get(), nullptr), E_PENDING);
        for (const TicketPart& ticket : {TicketPart(), PartWith("")})
        {
            sequence->ticket = ticket;
            EXPECT_EQ(Apply(kPTJobScope), E_PENDING);
        }
    };
    Document none;
    EXPECT_EQ(provider->GetReceivedTicket(none.Receive()), S_OK);
    EXPECT_FALSE(none);
    EXPECT_EQ(provider->GetCapabilities(defaultTicket.Get(), none.Receive()), E_PENDING);
    expectPending();
    // A ticket without a provider, then a provider without a ticket.
    ASSERT_EQ(provider->LoadTicket(xml::XmlUtility::SaveDocument(defaultTicket.Get()).Get()), S_OK);
    expectPending();
    ASSERT_EQ(Open("<"), E_FAIL);
    expectPending();
    // A page's own ticket needs that of its document.
    ASSERT_EQ(Open(), S_OK);
    page->ticket = PartWith("");
    EXPECT_EQ(Apply(kPTPageScope), E_PENDING);
    EXPECT_EQ(Merges(), "");
}

TEST_F(PrintTicketProviderTest, TakesTheReceivedTicketFromTheStartOfItsStream)
{
    const auto stream = xml::XmlUtility::SaveDocument(support::LoadDocument(Ticket(Feature("A", "B"))).Get());
    ASSERT_EQ(stream->Seek(LARGE_INTEGER{.QuadPart = 20}, STREAM_SEEK_SET, nullptr), S_OK);
    ASSERT_EQ(Open(Feature("PageOrientation", "Landscape")), S_OK);
    EXPECT_EQ(OptionOf(kPTPageScope, "psk:PageOrientation"), "psk:Landscape");
    ASSERT_EQ(provider->LoadTicket(stream.Get()), S_OK);
    Document received;
    ASSERT_EQ(provider->GetReceivedTicket(received.Receive()), S_OK);
    EXPECT_EQ(support::OptionOf(received, "psk:A"), "psk:B");
    // The tickets derived from the previous one are dropped.
    EXPECT_NE(OptionOf(kPTPageScope, "psk:PageOrientation"), "psk:Landscape");
    // After a ticket that cannot be loaded nothing can be derived.
    EXPECT_EQ(provider->LoadTicket(page.Get()), E_NOINTERFACE);
    EXPECT_EQ(TryGet(kPTJobScope), E_PENDING);
}

TEST_F(PrintTicketProviderTest, TakesAPartWithoutTicketAsOneThatAsksForNothing)
{
    OpenAndApplyAll(Feature("PageOrientation", "Landscape"));
    // The settings of the page before it are dropped.
    page->ticket = PartWith(Feature("PageOrientation", "Portrait"));
    EXPECT_EQ(Apply(kPTPageScope, defaultTicket.Get()), S_OK);
    EXPECT_EQ(OptionOf(kPTPageScope, "psk:PageOrientation"), "psk:Portrait");
    page->ticket = {};
    for (const HRESULT answer : {support::kElementNotFound, S_OK, S_FALSE})
    {
        page->withoutTicket = answer;
        EXPECT_EQ(Apply(kPTPageScope, defaultTicket.Get()), S_OK) << answer;
        EXPECT_EQ(OptionOf(kPTPageScope, "psk:PageOrientation"), "psk:Landscape");
        EXPECT_EQ(OptionOf(kPTPageScope, "ns0000:JobTesselType"), "ns0000:Type7");
    }
    page->withoutTicket = E_ACCESSDENIED;
    EXPECT_EQ(Apply(kPTPageScope), E_ACCESSDENIED);
}

TEST_F(PrintTicketProviderTest, PassesOnWhatIsWrongWithAPartsTicketAndKeepsTheLevels)
{
    page->ticket = PartWith(Feature("PageOrientation", "Landscape"));
    OpenAndApplyAll();
    // The last is well-formed, but the platform does not accept it as a ticket.
    for (const auto& [ticket, result] : {std::pair("<psf:PrintTicket", E_FAIL), std::pair("<a/>", kNoDelta)})
    {
        sequence->ticket = PartOver(ticket);
        EXPECT_EQ(Apply(kPTJobScope), result) << ticket;
    }
    Merges();
    EXPECT_EQ(OptionOf(kPTPageScope, "psk:PageOrientation"), "psk:Landscape");
    EXPECT_EQ(Merges(), "");
}

TEST_F(PrintTicketProviderTest, CallsNothingInAnybodysNameButTheUsers)
{
    for (HANDLE token : {HANDLE{nullptr}, INVALID_HANDLE_VALUE})
    {
        EXPECT_EQ(Open("", token), kBadToken);
    }
    // The user's token is closed during the job.
    HANDLE token = support::OpenUserToken();
    ASSERT_EQ(Open("", token), S_OK);
    ASSERT_TRUE(CloseHandle(token));
    EXPECT_EQ(Apply(kPTJobScope), kBadToken);
    EXPECT_EQ(provider->GetCapabilities(defaultTicket.Get(), Document().Receive()), kBadToken);
    EXPECT_EQ(provider->Close(), kBadToken);
    EXPECT_EQ(pipeline->record.Count("PTCloseProvider"), 0);
    EXPECT_EQ(Merges(), "");
    // A valid token is needed to close the provider.
    EXPECT_EQ(Open(), S_OK);
    EXPECT_EQ(support::TicketPlatform::OpenProviders(), 1);
}

TEST_F(PrintTicketProviderTest, ClosesOnceAndIsOpenedAnew)
{
    EXPECT_EQ(provider->Close(), S_OK);
    ASSERT_EQ(Open(), S_OK);
    EXPECT_EQ(provider->Open(nullptr, nullptr, support::UserToken()), E_POINTER);
    EXPECT_EQ(support::TicketPlatform::OpenProviders(), 0);
    ASSERT_EQ(Open(), S_OK);
    ASSERT_EQ(Open(), S_OK);
    EXPECT_EQ(provider->Close(), S_OK);
    EXPECT_EQ(provider->Close(), S_OK);
    EXPECT_EQ(
        CallsFrom("PTOpenProvider"),
        "PTOpenProvider, PTCloseProvider, PTOpenProvider, PTCloseProvider, PTOpenProvider, PTCloseProvider");
}

TEST_F(PrintTicketProviderTest, KeepsNoTicketThatCouldNotBeCompleted)
{
    OpenAndApplyAll();
    // A document whose get_documentElement fails; nothing else is called.
    void* table[46] = {};
    table[45] = reinterpret_cast<void*>(+[](void*, IXMLDOMElement**) -> HRESULT { return E_ACCESSDENIED; });
    void** unreadable = table;
    Merges();
    EXPECT_EQ(Apply(kPTPageScope, reinterpret_cast<IXMLDOMDocument2*>(&unreadable)), E_ACCESSDENIED);
    EXPECT_EQ(Merges(), "0");
    // It is derived again.
    EXPECT_EQ(TryGet(kPTPageScope), S_OK);
    EXPECT_EQ(Merges(), "0");
}

TEST_F(PrintTicketProviderTest, HoldsNothingAfterAFailingOpen)
{
    std::string calls;
    support::TicketPlatform::SetGate([&](const std::string& name) {
        calls += name + " ";
        return E_ACCESSDENIED;
    });
    EXPECT_EQ(Open(), E_ACCESSDENIED);
    EXPECT_EQ(provider->GetCapabilities(defaultTicket.Get(), Document().Receive()), E_PENDING);
    EXPECT_EQ(provider->Close(), S_OK);
    EXPECT_EQ(calls, "PTOpenProvider ");
}

TEST_F(PrintTicketProviderTest, FreesThePlatformsMessages)
{
    // Longer than the strings that the system caches.
    constexpr std::size_t kLength = 40'000;
    ASSERT_EQ(Open(), S_OK);
    sequence->ticket = PartWith("<psf:Feature name=\"x:" + std::string(kLength, 'n') + "\"/>");
    constexpr std::size_t kRounds = 50;
    std::size_t before = 0;
    for (std::size_t round = 0; round <= kRounds; ++round)
    {
        EXPECT_EQ(Apply(kPTJobScope), kNoDelta);
        before = round == 0 ? tests::CountHeapBlocks(kLength) : before;
    }
    EXPECT_LT(tests::CountHeapBlocks(kLength), before + kRounds / 2);
}
} // namespace
} // namespace base::xps::printschema
