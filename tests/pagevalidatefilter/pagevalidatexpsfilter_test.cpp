#include "pagevalidatefilter/pagevalidatexpsfilter.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstddef>
#include <future>
#include <set>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/pipelinetest.h"
#include "support/thrown.h"

namespace pagevalidatefilter
{
namespace
{
using base::utility::ComPtr;
using base::utility::MakeCom;
using base::xps::filterpipeline::XpsDocumentProviderFilterBase;
using support::Feature;
using support::MediaFeature;
using support::Pipeline;
using support::Ticket;

constexpr const char* kPage = R"(<FixedPage xmlns="http://schemas.microsoft.com/xps/2005/06" xml:lang="en" )"
                              R"(Width="1122.56" Height="1587.36"><Path Data="M 0,0 L 9,9"/></FixedPage>)";

/// The part handlers of a filter, as the part loop calls them.
struct Handlers : XpsDocumentProviderFilterBase
{
    using XpsDocumentProviderFilterBase::OnFixedDocument;
    using XpsDocumentProviderFilterBase::OnFixedDocumentSequence;
    using XpsDocumentProviderFilterBase::OnFixedPage;
    using XpsDocumentProviderFilterBase::OnUnknownPart;
    using XpsDocumentProviderFilterBase::OnXpsDocument;
};

class PageValidateXpsFilterTest : public support::PipelineTest
{
protected:
    PageValidateXpsFilterTest() { Renew(); }

    void Renew()
    {
        PipelineTest::Renew(
            Ticket(MediaFeature("ISOA4", 210000, 297000) + Feature("PageOrientation", "Portrait")));
    }

    /// A sequence, and a document with so many pages.
    void AddPlainJob(int pages)
    {
        pipeline->Add<support::SequencePart>("sequence");
        pipeline->Add<support::DocumentPart>("document");
        for (int page = 1; page <= pages; ++page)
        {
            pipeline->Add<support::PagePart>("page" + std::to_string(page), kPage);
        }
    }

    /// Parts of every kind, and a page that must be turned and is of a sheet beyond the limits.
    void AddWholeJob()
    {
        pipeline->Add<support::RootPart>();
        pipeline->Add<support::SequencePart>("sequence", Ticket(MediaFeature("ISOA4", 210000, 297000)));
        pipeline->Add<support::DocumentPart>("document", Ticket(Feature("PageOrientation", "Portrait")));
        pipeline->Add<support::OtherPart>();
        pipeline->Add<support::PagePart>(
            "page",
            kPage,
            Ticket(MediaFeature("ISOA3Rotated", 420000, 297000) +
                   Feature("PageScaling", "FitApplicationMediaSizeToPageMediaSize")));
    }

    static HRESULT Start(Pipeline& given)
    {
        const auto filter = MakeCom<PageValidateXpsFilter>();
        EXPECT_EQ(given.Initialize(*filter), S_OK);
        return filter->StartOperation();
    }
    HRESULT Start() { return Start(*pipeline); }
};

TEST_F(PageValidateXpsFilterTest, PassesEveryPartOnAfterItsTicketAndClosesOnce)
{
    pipeline->Add<support::RootPart>();
    AddPlainJob(2);
    pipeline->provider->parts.insert(pipeline->provider->parts.begin() + 4,
                                     ComPtr<IUnknown>(MakeCom<support::OtherPart>(pipeline->record).Get()));
    EXPECT_EQ(Start(), S_OK);
    EXPECT_EQ(CallsFrom("GetXpsPart"),
              "GetXpsPart, SendXpsDocument, "
              "GetXpsPart, GetPrintTicket sequence, PTMergeAndValidatePrintTicket 2, "
              "SendFixedDocumentSequence sequence, "
              "GetXpsPart, GetPrintTicket document, PTMergeAndValidatePrintTicket 1, "
              "SendFixedDocument document, "
              "GetXpsPart, GetPrintTicket page1, PTMergeAndValidatePrintTicket 0, SendFixedPage page1, "
              "GetXpsPart, SendXpsUnknown, "
              "GetXpsPart, GetPrintTicket page2, PTMergeAndValidatePrintTicket 0, SendFixedPage page2, "
              "GetXpsPart, PTCloseProvider, CloseSender");
    EXPECT_NE(CallsFrom("RequestWriter").find("PerUserPrintTicket"), std::string::npos);
    EXPECT_NE(CallsFrom("PTOpenProvider").find("RequestReader"), std::string::npos);
    EXPECT_TRUE(pipeline->record.writeStreams.empty());
}

TEST_F(PageValidateXpsFilterTest, TurnsThePagesOfTheTicketThatHoldsForThem)
{
    const std::string landscape = Ticket(Feature("PageOrientation", "Landscape"));
    const std::string portrait = Ticket(Feature("PageOrientation", "Portrait"));
    pipeline->Add<support::SequencePart>("sequence");
    pipeline->Add<support::DocumentPart>("document1", landscape);
    pipeline->Add<support::PagePart>("turned by its document", kPage);
    pipeline->Add<support::OtherPart>();
    pipeline->Add<support::PagePart>("turned as well", kPage);
    pipeline->Add<support::PagePart>("upright by itself", kPage, portrait);
    pipeline->Add<support::DocumentPart>("document2");
    pipeline->Add<support::PagePart>("upright", kPage);
    pipeline->Add<support::PagePart>("turned by itself", kPage, landscape);
    pipeline->Add<support::PagePart>("upright again", kPage);
    EXPECT_EQ(Start(), S_OK);
    std::string turned;
    for (const std::string& name : pipeline->record.Names())
    {
        turned += name.starts_with("GetWriteStream") ? name.substr(15) + ". " : "";
    }
    EXPECT_EQ(turned, "turned by its document. turned as well. turned by itself. ");
}

TEST_F(PageValidateXpsFilterTest, RefusesNullParts)
{
    const auto filter = MakeCom<PageValidateXpsFilter>();
    const auto expect = [&](auto handler, const std::string& text) {
        const auto message = support::MessageOf<std::invalid_argument>([&] { (filter.Get()->*handler)({}); });
        EXPECT_TRUE(message.ends_with(text + " is null.\n")) << message;
    };
    expect(&Handlers::OnXpsDocument, "pXpsDocument");
    expect(&Handlers::OnFixedDocumentSequence, "pFixedDocSequence");
    expect(&Handlers::OnFixedDocument, "pFixedDoc");
    expect(&Handlers::OnFixedPage, "pFixedPage");
    expect(&Handlers::OnUnknownPart, "pUnknown");
}

TEST_F(PageValidateXpsFilterTest, NeedsAWriter)
{
    pipeline->communicator->writer = {};
    EXPECT_EQ(Start(), E_FAIL);
    EXPECT_EQ(pipeline->record.Count("PTOpenProvider"), 0);
    EXPECT_EQ(pipeline->control->reasons, std::vector<HRESULT>{E_FAIL});
}

TEST_F(PageValidateXpsFilterTest, DoesNotSendAPageThatCannotBeTurned)
{
    pipeline->Add<support::SequencePart>("sequence", Ticket(Feature("PageOrientation", "Landscape")));
    pipeline->Add<support::DocumentPart>("document");
    pipeline->Add<support::PagePart>("page", R"(<FixedPage Width="10" Height="20"><Path></FixedPage>)");
    pipeline->Add<support::PagePart>("next page", kPage);
    const HRESULT hr = Start();
    EXPECT_TRUE(FAILED(hr));
    EXPECT_EQ(pipeline->control->reasons, std::vector<HRESULT>{hr});
    EXPECT_EQ(pipeline->record.Count("Close page"), 1);
    EXPECT_EQ(pipeline->record.Count("SendFixedPage page"), 0);
    EXPECT_EQ(pipeline->record.Count("SendFixedPage next page"), 0);
}

TEST_F(PageValidateXpsFilterTest, ActsInTheUsersNameOnlyForTheTickets)
{
    AddWholeJob();
    EXPECT_EQ(Start(), S_OK);
    for (const auto& call : pipeline->record.Calls())
    {
        // The received ticket is loaded where it was opened.
        const bool isUsers = call.name.starts_with("PT") || call.name == "Seek user ticket" ||
                             call.name == "ReadBytes user ticket";
        EXPECT_EQ(call.isImpersonating, isUsers) << call.name;
    }
}

class Shutdown : public PageValidateXpsFilterTest, public ::testing::WithParamInterface<int>
{
};

TEST_P(Shutdown, ClosesTheSenderWhileThePartsAreWaitedFor)
{
    AddPlainJob(1);
    std::promise<void> isWaiting;
    std::promise<void> goesOn;
    pipeline->provider->beforePart = [&, left = GetParam()]() mutable {
        if (left-- == 0)
        {
            isWaiting.set_value();
            goesOn.get_future().wait();
            pipeline->provider->parts.clear();
            pipeline->provider->endResult = E_ABORT;
        }
    };
    const auto filter = MakeCom<PageValidateXpsFilter>();
    ASSERT_EQ(pipeline->Initialize(*filter), S_OK);
    EXPECT_EQ(filter->ShutdownOperation(), S_OK);
    EXPECT_EQ(pipeline->record.Count("CloseSender"), 0);

    auto operation = std::async(std::launch::async, [&] { return filter->StartOperation(); });
    ASSERT_EQ(isWaiting.get_future().wait_for(std::chrono::seconds(10)), std::future_status::ready);
    EXPECT_EQ(filter->ShutdownOperation(), S_OK);
    EXPECT_EQ(pipeline->record.Count("CloseSender"), 1);
    goesOn.set_value();
    EXPECT_EQ(operation.get(), E_ABORT);
    EXPECT_EQ(pipeline->control->reasons, std::vector<HRESULT>{E_ABORT});
    // The end of the operation closes once more.
    EXPECT_EQ(pipeline->record.Count("CloseSender"), 2);

    pipeline->record.FailCall("CloseSender", E_ACCESSDENIED);
    EXPECT_EQ(filter->ShutdownOperation(), E_FAIL);
    EXPECT_EQ(pipeline->record.Count("CloseSender"), 3);
    EXPECT_EQ(pipeline->record.Count("FilterFinished"), 3);
}

INSTANTIATE_TEST_SUITE_P(BeforePart, Shutdown, ::testing::Values(0, 2, 3));

TEST_F(PageValidateXpsFilterTest, ServesTwoPipelinesAtOnce)
{
    support::TicketPlatform::Reset();
    const std::string ticket =
        Ticket(MediaFeature("ISOA4", 210000, 297000) + Feature("PageOrientation", "Landscape"));
    std::array<Pipeline, 2> pipelines = {Pipeline(ticket), Pipeline(ticket)};
    std::vector<std::future<HRESULT>> results;
    for (Pipeline& given : pipelines)
    {
        for (int page = 0; page < 8; ++page)
        {
            given.Add<support::PagePart>("page", kPage);
        }
        results.push_back(std::async(std::launch::async, [&] { return Start(given); }));
    }
    std::set<std::string> partNames;
    for (std::size_t i = 0; i < pipelines.size(); ++i)
    {
        EXPECT_EQ(results[i].get(), S_OK);
        EXPECT_EQ(pipelines[i].record.Count("SendFixedPage page"), 8);
        partNames.insert(pipelines[i].consumer->newPartNames.begin(),
                         pipelines[i].consumer->newPartNames.end());
    }
    EXPECT_EQ(partNames.size(), 16U);
}
} // namespace
} // namespace pagevalidatefilter
