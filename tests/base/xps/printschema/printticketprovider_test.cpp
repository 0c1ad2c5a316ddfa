#include "base/xps/printschema/printticketprovider.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "base/utility/bstr.h"
#include "base/xml/xmlutility.h"
#include "base/xps/printschema/defaulttickets.h"
#include "base/xps/printschema/inputbindata.h"
#include "base/xps/printschema/mediasizedata.h"
#include "base/xps/printschema/pageorientationdata.h"
#include "base/xps/printschema/printablemediasizedata.h"
#include "base/xps/printschema/scalingdata.h"
#include "support/heap.h"
#include "support/ticketfacts.h"
#include "support/ticketparts.h"
#include "support/ticketplatform.h"

namespace base::xps::printschema
{
namespace
{
using support::DomDocument;
using support::FakeDocument;
using support::FakePage;
using support::FakeSequence;
using support::FeatureText;
using support::IsThreadImpersonating;
using support::MemoryReadStream;
using support::TicketFacts;
using support::TicketPart;
using support::TicketPlatform;
using support::TicketText;
using utility::Bstr;
using utility::ComPtr;
using utility::MakeCom;

constexpr EPrintTicketScope kNoLevel = static_cast<EPrintTicketScope>(3);
constexpr auto kNoDelta = static_cast<HRESULT>(E_DELTA_PRINTTICKET_FORMAT);
constexpr HRESULT kBadToken = __HRESULT_FROM_WIN32(ERROR_INVALID_HANDLE);

/// Every path leaves the thread with its own token, the provider closed and nothing behind, and made all of
/// its calls in the user's name.
class PrintTicketProviderTest : public testing::Test
{
protected:
    void SetUp() override { TicketPlatform::Reset(); }

    void TearDown() override
    {
        provider.reset();
        EXPECT_EQ(TicketPlatform::OpenProviders(), 0);
        EXPECT_FALSE(IsThreadImpersonating());
        for (const TicketPlatform::Call& call : TicketPlatform::Calls())
        {
            EXPECT_TRUE(call.isImpersonating) << call.name;
        }
        sequence = {};
        document = {};
        page = {};
        EXPECT_EQ(support::AliveParts(), 0);
    }

    HRESULT Open(const std::string& ticket = TicketText(""), HANDLE token = support::UserToken())
    {
        return provider->Open(MakeCom<MemoryReadStream>(ticket).Get(), Bstr(L"printer").Get(), token);
    }

    HRESULT ApplyJob(IXMLDOMDocument2* target = nullptr)
    {
        return provider->ApplyJobTicket(sequence.Get(), target);
    }
    HRESULT ApplyDocument(IXMLDOMDocument2* target = nullptr)
    {
        return provider->ApplyDocumentTicket(document.Get(), target);
    }
    HRESULT ApplyPage(IXMLDOMDocument2* target = nullptr)
    {
        return provider->ApplyPageTicket(page.Get(), target);
    }

    DomDocument LevelTicket(EPrintTicketScope level)
    {
        DomDocument ticket;
        EXPECT_EQ(provider->GetLevelTicket(level, ticket.Receive()), S_OK);
        return ticket;
    }

    /// The scopes of the merges since the last question, as "210" for job, document and page.
    std::string Merges()
    {
        std::string scopes;
        for (; m_seen < TicketPlatform::Calls().size(); ++m_seen)
        {
            const std::string& name = TicketPlatform::Calls()[m_seen].name;
            scopes += name.starts_with("PTMerge") ? name.substr(name.size() - 1) : "";
        }
        return scopes;
    }

    static ComPtr<TicketPart> TicketWith(const std::string& content)
    {
        return MakeCom<TicketPart>(TicketText(content));
    }

    const DomDocument defaultTicket = xml::XmlUtility::LoadDocumentFromString(DefaultPrintTicketOf(7));
    std::unique_ptr<PrintTicketProvider> provider = std::make_unique<PrintTicketProvider>();
    ComPtr<FakeSequence> sequence = MakeCom<FakeSequence>();
    ComPtr<FakeDocument> document = MakeCom<FakeDocument>();
    ComPtr<FakePage> page = MakeCom<FakePage>();

private:
    std::size_t m_seen = 0;
};

template <typename Accessor>
Accessor ReadFrom(const DomDocument& ticket)
{
    Accessor accessor;
    accessor.Read(PrintSchemaDocumentHandler::ForPrintTicket(ticket));
    return accessor;
}

std::wstring OptionOf(const PrintTicketFunctionOption& accessor)
{
    return accessor.GetOptionQname().localName;
}

TEST_F(PrintTicketProviderTest, GivesThePageWhatEachLevelAskedForAndTheDriversLimits)
{
    // What is the page's may be asked for at every level, and the lowest one has the last word.
    const std::string portrait = FeatureText("psk:PageOrientation", "psk:ReversePortrait");
    const std::string landscape = FeatureText("psk:PageOrientation", "psk:Landscape");
    sequence->ticket = TicketWith(FeatureText("psk:JobInputBin", "psk:Manual") +
                                  FeatureText("psk:PageScaling", "psk:None") + portrait);
    document->ticket = TicketWith(FeatureText("psk:DocumentCollate", "psk:Uncollated") +
                                  FeatureText("psk:JobInputBin", "psk:Cassette") +
                                  FeatureText("psk:PageInputBin", "psk:Cassette"));
    page->ticket = TicketWith(FeatureText("psk:DocumentCollate", "psk:Collated") + landscape);
    ASSERT_EQ(Open(TicketText(FeatureText("psk:PageMediaSize", "psk:ISOA5"))), S_OK);
    ASSERT_EQ(ApplyJob(defaultTicket.Get()), S_OK);
    ASSERT_EQ(ApplyDocument(defaultTicket.Get()), S_OK);
    ASSERT_EQ(ApplyPage(defaultTicket.Get()), S_OK);

    const DomDocument ticket = LevelTicket(kPTPageScope);
    EXPECT_EQ(ReadFrom<MediaSizeData>(ticket).GetSize(), (MediaSize{148000, 210000}));
    EXPECT_EQ(OptionOf(ReadFrom<InputBinData>(ticket)), L"Cassette");
    EXPECT_EQ(OptionOf(ReadFrom<PageOrientationData>(ticket)), L"Landscape");
    EXPECT_EQ(OptionOf(ReadFrom<ScalingData>(ticket)), L"None");
    EXPECT_EQ(ReadFrom<PrintableMediaSizeData>(ticket).GetLimits(),
              (MediaSizeLimits{{76200, 127000}, {215900, 355600}}));
    const TicketFacts facts(ticket.Get());
    EXPECT_EQ(facts.OptionOf("psk:PageScaling"), "psk:None");
    EXPECT_EQ(facts.OptionOf("ns0000:JobCompress"), "ns0000:Type2");
    EXPECT_EQ(facts.OptionOf("ns0000:JobBitsPerPixel"), "ns0000:Bits8");

    // The levels above have their own settings and none of those below.
    const DomDocument ofDocument = LevelTicket(kPTDocumentScope);
    EXPECT_EQ(OptionOf(ReadFrom<PageOrientationData>(ofDocument)), L"ReversePortrait");
    EXPECT_EQ(TicketFacts(ofDocument.Get()).OptionOf("psk:DocumentCollate"), "psk:Uncollated");
    EXPECT_EQ(OptionOf(ReadFrom<InputBinData>(LevelTicket(kPTJobScope))), L"Manual");
    // The default ticket, which all levels are completed by, stays as it is.
    EXPECT_EQ(TicketFacts(defaultTicket.Get()).Count("//f:Feature"), 8);
}

TEST_F(PrintTicketProviderTest, MergesOnceALevelAndAnewBelowALevelThatChanged)
{
    ASSERT_EQ(Open(), S_OK);
    EXPECT_EQ(Merges(), "");
    const ComPtr<TicketPart> ticket = TicketWith("");
    const auto apply = [&](EPrintTicketScope level, const ComPtr<TicketPart>& own) {
        sequence->ticket = document->ticket = page->ticket = own;
        return level == kPTJobScope ? ApplyJob() : level == kPTDocumentScope ? ApplyDocument() : ApplyPage();
    };
    const auto get = [&](EPrintTicketScope level) {
        DomDocument found;
        return provider->GetLevelTicket(level, found.Receive());
    };
    const struct
    {
        const char* step;
        std::function<HRESULT()> act;
        const char* merges;
    } steps[] = {
        {"derive all", [&] { return get(kPTPageScope); }, "210"},
        {"nothing to derive", [&] { return get(kPTJobScope); }, ""},
        {"job without ticket", [&] { return apply(kPTJobScope, {}); }, "2"},
        {"page, the document left out", [&] { return apply(kPTPageScope, {}); }, "10"},
        {"job with ticket", [&] { return apply(kPTJobScope, ticket); }, "2"},
        {"document below it", [&] { return get(kPTDocumentScope); }, "1"},
        {"document with ticket", [&] { return apply(kPTDocumentScope, ticket); }, "1"},
        {"page with ticket", [&] { return apply(kPTPageScope, ticket); }, "0"},
        {"next page", [&] { return apply(kPTPageScope, {}); }, "0"},
        {"held", [&] { return get(kPTPageScope); }, ""},
        {"second document", [&] { return apply(kPTDocumentScope, {}); }, "1"},
        {"its page is derived anew", [&] { return get(kPTPageScope); }, "0"},
        {"document anew", [&] { return provider->GetTicket(kPTDocumentScope, nullptr, nullptr); }, "1"},
        {"page below it", [&] { return get(kPTPageScope); }, "0"},
        {"job anew and applied again",
         [&] { return provider->GetTicket(kPTJobScope, defaultTicket.Get(), nullptr); },
         "22"},
        {"page below that", [&] { return get(kPTPageScope); }, "10"},
    };
    for (const auto& [step, act, merges] : steps)
    {
        EXPECT_EQ(act(), S_OK) << step;
        EXPECT_EQ(Merges(), merges) << step;
    }
}

TEST_F(PrintTicketProviderTest, ForgetsTheFirstDocumentWithTheSecond)
{
    ASSERT_EQ(Open(), S_OK);
    ASSERT_EQ(ApplyJob(), S_OK);
    document->ticket = TicketWith(FeatureText("psk:PageOrientation", "psk:Landscape"));
    ASSERT_EQ(ApplyDocument(), S_OK);
    ASSERT_EQ(ApplyPage(), S_OK);
    EXPECT_EQ(TicketFacts(LevelTicket(kPTPageScope).Get()).OptionOf("psk:PageOrientation"), "psk:Landscape");
    document->ticket = TicketWith(FeatureText("psk:PageMediaSize", "psk:ISOA5"));
    ASSERT_EQ(ApplyDocument(), S_OK);
    const TicketFacts facts(LevelTicket(kPTPageScope).Get());
    EXPECT_NE(facts.OptionOf("psk:PageOrientation"), "psk:Landscape");
    EXPECT_EQ(facts.OptionOf("psk:PageMediaSize"), "psk:ISOA5");
}

TEST_F(PrintTicketProviderTest, CompletesALevelByBothTargets)
{
    const DomDocument second = support::LoadDocument(TicketText(
        FeatureText("ns0000:JobSeal", "ns0000:On") + FeatureText("ns0000:JobCompress", "ns0000:Type9")));
    ASSERT_EQ(Open(), S_OK);
    // Without a first target the second counts for nothing.
    ASSERT_EQ(provider->GetTicket(kPTJobScope, nullptr, second.Get()), S_OK);
    EXPECT_EQ(TicketFacts(LevelTicket(kPTJobScope).Get()).OptionOf("ns0000:JobSeal"), "");
    ASSERT_EQ(provider->GetTicket(kPTJobScope, defaultTicket.Get(), second.Get()), S_OK);
    const TicketFacts facts(LevelTicket(kPTJobScope).Get());
    EXPECT_EQ(facts.OptionOf("ns0000:JobCompress"), "ns0000:Type2");
    EXPECT_EQ(facts.OptionOf("ns0000:JobSeal"), "ns0000:On");
}

TEST_F(PrintTicketProviderTest, ChecksItsArguments)
{
    const auto stream = MakeCom<MemoryReadStream>(TicketText(""));
    const Bstr name(L"printer");
    EXPECT_EQ(provider->Open(nullptr, name.Get(), support::UserToken()), E_POINTER);
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
    EXPECT_EQ(TicketPlatform::CallNames(), std::vector<std::string>());

    ASSERT_EQ(Open(), S_OK);
    auto* unknown = defaultTicket.Get();
    EXPECT_EQ(provider->GetLevelTicket(kNoLevel, &unknown), E_INVALIDARG);
    EXPECT_EQ(unknown, nullptr);
    EXPECT_EQ(provider->GetTicket(kNoLevel, nullptr, nullptr), E_INVALIDARG);
    DomDocument capabilities;
    EXPECT_EQ(provider->GetCapabilities(nullptr, capabilities.Receive()), E_POINTER);
}

TEST_F(PrintTicketProviderTest, IsPendingWhileThereIsNothingToDeriveFrom)
{
    const auto expectPending = [this] {
        DomDocument ticket;
        EXPECT_EQ(provider->GetLevelTicket(kPTPageScope, ticket.Receive()), E_PENDING);
        EXPECT_EQ(provider->GetTicket(kPTJobScope, defaultTicket.Get(), nullptr), E_PENDING);
        EXPECT_EQ(ApplyJob(), E_PENDING);
        sequence->ticket = TicketWith("");
        EXPECT_EQ(ApplyJob(), E_PENDING);
        sequence->ticket = {};
    };
    DomDocument none;
    EXPECT_EQ(provider->GetReceivedTicket(none.Receive()), S_OK);
    EXPECT_FALSE(none);
    EXPECT_EQ(provider->GetCapabilities(defaultTicket.Get(), none.Receive()), E_PENDING);
    expectPending();
    // A ticket without a provider, then a provider without a ticket.
    ASSERT_EQ(provider->LoadTicket(xml::XmlUtility::SaveDocument(defaultTicket.Get()).Get()), S_OK);
    expectPending();
    ASSERT_EQ(Open("no ticket"), E_FAIL);
    expectPending();
    // A page's own ticket wants its document's.
    ASSERT_EQ(Open(), S_OK);
    page->ticket = TicketWith("");
    EXPECT_EQ(ApplyPage(), E_PENDING);
    EXPECT_EQ(Merges(), "");
}

TEST_F(PrintTicketProviderTest, TakesTheReceivedTicketFromTheStartOfItsStream)
{
    const ComPtr<IStream> stream =
        xml::XmlUtility::SaveDocument(support::LoadDocument(TicketText(FeatureText("psk:A", "psk:B"))).Get());
    ASSERT_EQ(stream->Seek(LARGE_INTEGER{.QuadPart = 20}, STREAM_SEEK_SET, nullptr), S_OK);
    ASSERT_EQ(Open(TicketText(FeatureText("psk:PageOrientation", "psk:Landscape"))), S_OK);
    EXPECT_EQ(TicketFacts(LevelTicket(kPTPageScope).Get()).OptionOf("psk:PageOrientation"), "psk:Landscape");
    ASSERT_EQ(provider->LoadTicket(stream.Get()), S_OK);
    DomDocument received;
    ASSERT_EQ(provider->GetReceivedTicket(received.Receive()), S_OK);
    EXPECT_EQ(TicketFacts(received.Get()).OptionOf("psk:A"), "psk:B");
    // What was derived from the ticket before is gone.
    EXPECT_NE(TicketFacts(LevelTicket(kPTPageScope).Get()).OptionOf("psk:PageOrientation"), "psk:Landscape");
    // One that cannot be loaded leaves nothing to derive from.
    EXPECT_EQ(provider->LoadTicket(page.Get()), E_NOINTERFACE);
    DomDocument ticket;
    EXPECT_EQ(provider->GetLevelTicket(kPTJobScope, ticket.Receive()), E_PENDING);
}

TEST_F(PrintTicketProviderTest, TakesAPartWithoutTicketAsOneThatAsksForNothing)
{
    ASSERT_EQ(Open(TicketText(FeatureText("psk:PageOrientation", "psk:Landscape"))), S_OK);
    ASSERT_EQ(ApplyJob(), S_OK);
    ASSERT_EQ(ApplyDocument(), S_OK);
    for (const HRESULT answer : {support::kNoTicket, S_OK, S_FALSE})
    {
        page->withoutTicket = answer;
        EXPECT_EQ(ApplyPage(defaultTicket.Get()), S_OK) << answer;
        const TicketFacts facts(LevelTicket(kPTPageScope).Get());
        EXPECT_EQ(facts.OptionOf("psk:PageOrientation"), "psk:Landscape");
        EXPECT_EQ(facts.OptionOf("ns0000:JobTesselType"), "ns0000:Type7");
    }
    page->withoutTicket = E_ACCESSDENIED;
    EXPECT_EQ(ApplyPage(), E_ACCESSDENIED);
}

TEST_F(PrintTicketProviderTest, PassesOnWhatIsWrongWithAPartsTicketAndKeepsTheLevels)
{
    ASSERT_EQ(Open(), S_OK);
    page->ticket = TicketWith(FeatureText("psk:PageOrientation", "psk:Landscape"));
    ASSERT_EQ(ApplyJob(), S_OK);
    ASSERT_EQ(ApplyDocument(), S_OK);
    ASSERT_EQ(ApplyPage(), S_OK);
    Merges();
    const auto failing = [](HRESULT TicketPart::*step, HRESULT result) {
        auto part = TicketWith("");
        (*part).*step = result;
        return part;
    };
    const struct
    {
        ComPtr<TicketPart> part;
        HRESULT result;
        const char* merges;
    } cases[] = {
        {failing(&TicketPart::streamResult, E_ACCESSDENIED), E_ACCESSDENIED, ""},
        {failing(&TicketPart::seekResult, STG_E_SEEKERROR), STG_E_SEEKERROR, ""},
        {failing(&TicketPart::readResult, STG_E_READFAULT), E_FAIL, ""},
        {MakeCom<TicketPart>(""), E_FAIL, ""},
        {MakeCom<TicketPart>("<psf:PrintTicket"), E_FAIL, ""},
        // Well-formed, but no ticket to the platform.
        {MakeCom<TicketPart>("<a/>"), kNoDelta, "2"},
    };
    for (const auto& [part, result, merges] : cases)
    {
        sequence->ticket = part;
        EXPECT_EQ(ApplyJob(), result);
        EXPECT_EQ(Merges(), merges);
        EXPECT_FALSE(IsThreadImpersonating());
    }
    EXPECT_EQ(TicketFacts(LevelTicket(kPTPageScope).Get()).OptionOf("psk:PageOrientation"), "psk:Landscape");
    EXPECT_EQ(Merges(), "");
}

TEST_F(PrintTicketProviderTest, GivesThePrintersCapabilitiesUnderATicket)
{
    ASSERT_EQ(Open(), S_OK);
    DomDocument capabilities;
    ASSERT_EQ(provider->GetCapabilities(LevelTicket(kPTPageScope).Get(), capabilities.Receive()), S_OK);
    const TicketFacts facts(capabilities.Get());
    EXPECT_EQ(facts.Count("/f:PrintCapabilities"), 1);
    EXPECT_EQ(facts.Count("//f:Property[@name='psk:PageImageableSize']"), 1);
    EXPECT_EQ(TicketPlatform::CallNames().back(), "PTGetPrintCapabilities");
    EXPECT_FALSE(IsThreadImpersonating());
}

/// A whole job; the first failure ends it.
TEST_F(PrintTicketProviderTest, PassesOnAFailureOfAnyPlatformCall)
{
    page->ticket = TicketWith(FeatureText("psk:PageOrientation", "psk:Landscape"));
    const std::function<HRESULT()> steps[] = {
        [this] { return Open(); },
        [this] { return ApplyJob(defaultTicket.Get()); },
        [this] { return ApplyDocument(defaultTicket.Get()); },
        [this] { return ApplyPage(defaultTicket.Get()); },
        [this] { return provider->GetTicket(kPTPageScope, defaultTicket.Get(), nullptr); },
        [this] {
            DomDocument capabilities;
            return provider->GetCapabilities(defaultTicket.Get(), capabilities.Receive());
        },
        [this] { return provider->Close(); },
    };
    constexpr std::size_t kCalls = 8;
    for (std::size_t failing = 0; failing <= kCalls; ++failing)
    {
        TicketPlatform::Reset();
        TicketPlatform::FailCall(failing, HRESULT_FROM_WIN32(ERROR_PRINTER_NOT_FOUND));
        HRESULT hr = S_OK;
        for (const auto& step : steps)
        {
            hr = SUCCEEDED(hr) ? step() : hr;
            EXPECT_FALSE(IsThreadImpersonating()) << failing;
        }
        EXPECT_EQ(hr, failing < kCalls ? HRESULT_FROM_WIN32(ERROR_PRINTER_NOT_FOUND) : S_OK) << failing;
        provider = std::make_unique<PrintTicketProvider>();
        EXPECT_EQ(TicketPlatform::OpenProviders(), 0) << failing;
        EXPECT_EQ(TicketPlatform::CallNames().back(), failing == 0 ? "PTOpenProvider" : "PTCloseProvider");
        for (const TicketPlatform::Call& call : TicketPlatform::Calls())
        {
            EXPECT_TRUE(call.isImpersonating) << call.name << ", " << failing;
        }
    }
    EXPECT_EQ(TicketPlatform::Calls().size(), kCalls);
}

TEST_F(PrintTicketProviderTest, CallsNothingInAnybodysNameButTheUsers)
{
    for (HANDLE token : {HANDLE{nullptr}, INVALID_HANDLE_VALUE})
    {
        EXPECT_EQ(Open(TicketText(""), token), kBadToken);
    }
    EXPECT_EQ(TicketPlatform::CallNames(), std::vector<std::string>());

    // The user's token goes away during the job.
    HANDLE token = support::OpenUserToken();
    ASSERT_EQ(Open(TicketText(""), token), S_OK);
    ASSERT_TRUE(CloseHandle(token));
    DomDocument result;
    EXPECT_EQ(ApplyJob(), kBadToken);
    EXPECT_EQ(provider->GetCapabilities(defaultTicket.Get(), result.Receive()), kBadToken);
    EXPECT_EQ(provider->Close(), kBadToken);
    EXPECT_EQ(TicketPlatform::CallNames(), std::vector<std::string>({"PTOpenProvider"}));
    // The provider is closed with a token that is good.
    EXPECT_EQ(Open(), S_OK);
    EXPECT_EQ(TicketPlatform::OpenProviders(), 1);
}

TEST_F(PrintTicketProviderTest, ClosesOnceAndIsOpenedAnew)
{
    EXPECT_EQ(provider->Close(), S_OK);
    ASSERT_EQ(Open(), S_OK);
    EXPECT_EQ(provider->Open(nullptr, nullptr, support::UserToken()), E_POINTER);
    EXPECT_EQ(TicketPlatform::OpenProviders(), 0);
    ASSERT_EQ(Open(), S_OK);
    ASSERT_EQ(Open(), S_OK);
    EXPECT_EQ(provider->Close(), S_OK);
    EXPECT_EQ(provider->Close(), S_OK);
    EXPECT_EQ(TicketPlatform::CallNames(),
              std::vector<std::string>({"PTOpenProvider",
                                        "PTCloseProvider",
                                        "PTOpenProvider",
                                        "PTCloseProvider",
                                        "PTOpenProvider",
                                        "PTCloseProvider"}));
}

TEST_F(PrintTicketProviderTest, FreesThePlatformsMessages)
{
    // Longer than what the system keeps for the next string.
    const std::string longName(40'000, 'n');
    ASSERT_EQ(Open(), S_OK);
    sequence->ticket = TicketWith("<psf:Feature name=\"x:" + longName + "\"/>");
    const auto fail = [this] { EXPECT_EQ(ApplyJob(), kNoDelta); };
    fail();
    const std::size_t before = tests::CountHeapBlocks();
    constexpr std::size_t kRounds = 50;
    for (std::size_t round = 0; round < kRounds; ++round)
    {
        fail();
    }
    EXPECT_LT(tests::CountHeapBlocks(), before + kRounds / 2);
}
} // namespace
} // namespace base::xps::printschema
