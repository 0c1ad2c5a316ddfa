#include "pagevalidatefilter/pagevalidatexpsfilter.h"

#include <chrono>
#include <future>
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
using support::Feature;
using support::MediaFeature;
using support::Ticket;

constexpr const char* kPage = R"(<FixedPage Width="1122.56" Height="1587.36"/>)";

/// Gives access to the part handlers of a filter, which the loop over the parts calls.
struct Handlers : base::xps::filterpipeline::XpsDocumentProviderFilterBase
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
    /// Parts of every kind, with these tickets.
    void AddJob(const std::string& documentTicket = {}, const std::string& pageTicket = {})
    {
        pipeline->Add<support::RootPart>();
        pipeline->Add<support::SequencePart>("sequence");
        pipeline->Add<support::DocumentPart>("document", documentTicket);
        pipeline->Add<support::PagePart>("page", kPage, pageTicket);
        pipeline->Add<support::OtherPart>();
    }

    ComPtr<PageValidateXpsFilter> Initialized()
    {
        auto filter = MakeCom<PageValidateXpsFilter>();
        EXPECT_EQ(pipeline->Initialize(*filter), S_OK);
        return filter;
    }
    HRESULT Start() { return Initialized()->StartOperation(); }
};

TEST_F(PageValidateXpsFilterTest, PassesEveryPartOnAfterItsTicketAndClosesOnce)
{
    AddJob();
    EXPECT_EQ(Start(), S_OK);
    EXPECT_EQ(CallsFrom("GetXpsPart"),
              "GetXpsPart, SendXpsDocument, "
              "GetXpsPart, GetPrintTicket sequence, PTMergeAndValidatePrintTicket 2, "
              "SendFixedDocumentSequence sequence, "
              "GetXpsPart, GetPrintTicket document, PTMergeAndValidatePrintTicket 1, "
              "SendFixedDocument document, "
              "GetXpsPart, GetPrintTicket page, PTMergeAndValidatePrintTicket 0, SendFixedPage page, "
              "GetXpsPart, SendXpsUnknown, "
              "GetXpsPart, PTCloseProvider, CloseSender");
    EXPECT_NE(CallsFrom("RequestWriter").find("PerUserPrintTicket"), std::string::npos);
}

TEST_F(PageValidateXpsFilterTest, RefusesNullParts)
{
    const auto filter = MakeCom<PageValidateXpsFilter>();
    const auto expect = [&](auto handler, const std::string& name) {
        EXPECT_EQ(support::MessageOf<std::invalid_argument>([&] { (filter.Get()->*handler)({}); }),
                  "pagevalidatefilter\\pagevalidatexpsfilter(...) : " + name + " is null.\n");
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

TEST_F(PageValidateXpsFilterTest, ActsInTheUsersNameOnlyForTheTickets)
{
    // The page must be turned, and its sheet is outside the limits.
    AddJob(Ticket(Feature("PageOrientation", "Portrait")),
           Ticket(MediaFeature("ISOA3Rotated", 420000, 297000) +
                  Feature("PageScaling", "FitApplicationMediaSizeToPageMediaSize")));
    EXPECT_EQ(Start(), S_OK);
    EXPECT_EQ(pipeline->record.Count("Close page"), 1);
    for (const auto& call : pipeline->record.Calls())
    {
        // The received ticket is loaded when the provider is opened.
        const bool isUsers = call.name.starts_with("PT") || call.name == "Seek user ticket" ||
                             call.name == "ReadBytes user ticket";
        EXPECT_EQ(call.isImpersonating, isUsers) << call.name;
    }
}

TEST_F(PageValidateXpsFilterTest, IsShutDownWhileThePartsAreWaitedFor)
{
    std::promise<void> isWaiting;
    std::promise<void> goesOn;
    pipeline->provider->beforePart = [&] {
        isWaiting.set_value();
        goesOn.get_future().wait();
        pipeline->provider->endResult = E_ABORT;
    };
    const auto filter = Initialized();
    EXPECT_EQ(filter->ShutdownOperation(), S_OK);
    EXPECT_EQ(pipeline->record.Count("CloseSender"), 0);

    auto operation = std::async(std::launch::async, [&] { return filter->StartOperation(); });
    ASSERT_EQ(isWaiting.get_future().wait_for(std::chrono::seconds(10)), std::future_status::ready);
    EXPECT_EQ(filter->ShutdownOperation(), S_OK);
    EXPECT_EQ(pipeline->record.Count("CloseSender"), 1);
    goesOn.set_value();
    EXPECT_EQ(operation.get(), E_ABORT);
    EXPECT_EQ(pipeline->control->reasons, std::vector<HRESULT>{E_ABORT});
    // The end of the operation closes it again.
    EXPECT_EQ(pipeline->record.Count("CloseSender"), 2);

    pipeline->record.FailCall("CloseSender", E_ACCESSDENIED);
    EXPECT_EQ(filter->ShutdownOperation(), E_FAIL);
    EXPECT_EQ(pipeline->record.Count("FilterFinished"), 3);
}
} // namespace
} // namespace pagevalidatefilter
