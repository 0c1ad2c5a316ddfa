#include "base/xps/filterpipeline/xpsdocumentproviderfilterbase.h"

#include <functional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "base/utility/bstr.h"
#include "base/utility/safecoinit.h"
#include "support/pipelinetest.h"
#include "support/thrown.h"

namespace base::xps::filterpipeline
{
namespace
{
using support::Pipeline;
using utility::ComPtr;
using utility::MakeCom;

/// Writes down which handler got a part, and keeps the ticket that holds for it.
class ListingFilter final : public XpsDocumentProviderFilterBase
{
public:
    explicit ListingFilter(support::PipelineRecord& record) : m_record(record) {}
    using XpsDocumentProviderFilterBase::RunOperation;

    std::wstring lastTicket;

protected:
    void OnUnknownPart(const ComPtr<IUnknown>&) override { m_record.Enter("OnUnknownPart"); }
    void OnXpsDocument(const ComPtr<IXpsDocument>&) override { m_record.Enter("OnXpsDocument"); }
    void OnFixedPage(const ComPtr<IFixedPage>&) override { Note("OnFixedPage", kPTPageScope); }
    void OnFixedDocument(const ComPtr<IFixedDocument>&) override
    {
        Note("OnFixedDocument", kPTDocumentScope);
    }
    void OnFixedDocumentSequence(const ComPtr<IFixedDocumentSequence>&) override
    {
        Note("OnFixedDocumentSequence", kPTJobScope);
    }

private:
    void Note(const char* handler, EPrintTicketScope level)
    {
        m_record.Enter(handler);
        ComPtr<IXMLDOMDocument2> ticket;
        EXPECT_EQ(GetPrintTicketProvider().GetLevelTicket(level, ticket.Receive()), S_OK);
        utility::Bstr text;
        EXPECT_EQ(ticket->get_xml(text.Receive()), S_OK);
        lastTicket = text.View();
    }

    support::PipelineRecord& m_record;
};

class PartLoop : public support::PipelineTest
{
protected:
    ComPtr<ListingFilter> Initialized()
    {
        auto filter = MakeCom<ListingFilter>(pipeline->record);
        EXPECT_EQ(pipeline->Initialize(*filter), S_OK);
        return filter;
    }
    HRESULT Start() { return Initialized()->StartOperation(); }
};

TEST_F(PartLoop, OpensTheTicketsBeforeTheReaderAndEndsAtOnceWithoutParts)
{
    for (const HRESULT end : {S_OK, S_FALSE})
    {
        Renew();
        pipeline->provider->endResult = end;
        EXPECT_EQ(Start(), S_OK);
        EXPECT_EQ(CallsFrom("GetProperty DriverPropertyBag"),
                  "GetProperty DriverPropertyBag, GetString QuellmarkNsPrefix, "
                  "GetProperty PerUserPrintTicket, GetProperty PrinterName, GetProperty UserSecurityToken, "
                  "GetStream user ticket, PTOpenProvider, RequestReader, "
                  "GetProperty DriverPropertyBag, GetInt32 QuellmarkTesselType, "
                  "GetXpsPart, PTCloseProvider");
        EXPECT_TRUE(pipeline->control->reasons.empty());
    }
}

TEST_F(PartLoop, TakesInTheTicketOfAPartBeforeItsHandlerRuns)
{
    const std::string ticket = support::Ticket(support::Feature("PageOrientation", "Landscape"));
    pipeline->Add<support::RootPart>();
    pipeline->Add<support::SequencePart>("sequence", ticket);
    pipeline->Add<support::DocumentPart>("document", ticket);
    pipeline->Add<support::PagePart>("page", "<FixedPage/>", ticket);
    pipeline->Add<support::OtherPart>();
    EXPECT_EQ(Start(), S_OK);
    EXPECT_EQ(CallsFrom("GetXpsPart"),
              "GetXpsPart, OnXpsDocument, "
              "GetXpsPart, GetPrintTicket sequence, GetStream ticket, PTMergeAndValidatePrintTicket 2, "
              "OnFixedDocumentSequence, "
              "GetXpsPart, GetPrintTicket document, GetStream ticket, PTMergeAndValidatePrintTicket 1, "
              "OnFixedDocument, "
              "GetXpsPart, GetPrintTicket page, GetStream ticket, PTMergeAndValidatePrintTicket 0, "
              "OnFixedPage, "
              "GetXpsPart, OnUnknownPart, "
              "GetXpsPart, PTCloseProvider");
}

TEST_F(PartLoop, TakesAPartForTheFirstKindThatItAnswersTo)
{
    std::vector<ComPtr<IUnknown>> kinds = {
        ComPtr<IUnknown>(MakeCom<support::PagePart>(pipeline->record, "page", "").Get()),
        ComPtr<IUnknown>(MakeCom<support::DocumentPart>(pipeline->record, "document").Get()),
        ComPtr<IUnknown>(MakeCom<support::SequencePart>(pipeline->record, "sequence").Get()),
        ComPtr<IUnknown>(MakeCom<support::RootPart>(pipeline->record).Get())};
    for (; !kinds.empty(); kinds.pop_back())
    {
        pipeline->Add<support::OtherPart>(kinds);
    }
    EXPECT_EQ(Start(), S_OK);
    // Nor does anybody ask for the ticket of another kind.
    EXPECT_EQ(
        CallsFrom("GetXpsPart"),
        "GetXpsPart, OnXpsDocument, "
        "GetXpsPart, GetPrintTicket sequence, PTMergeAndValidatePrintTicket 2, OnFixedDocumentSequence, "
        "GetXpsPart, GetPrintTicket document, PTMergeAndValidatePrintTicket 1, OnFixedDocument, "
        "GetXpsPart, GetPrintTicket page, PTMergeAndValidatePrintTicket 0, OnFixedPage, "
        "GetXpsPart, PTCloseProvider");
}

TEST_F(PartLoop, CompletesTheTicketOfEveryKindByTheOneOfTheDriver)
{
    const std::function<void()> kinds[] = {[&] { pipeline->Add<support::SequencePart>("sequence"); },
                                           [&] { pipeline->Add<support::DocumentPart>("document"); },
                                           [&] { pipeline->Add<support::PagePart>("page", ""); }};
    for (const auto& add : kinds)
    {
        SCOPED_TRACE(&add - &kinds[0]);
        Renew();
        pipeline->driverBag->tesselType = 'L';
        add();
        const auto filter = Initialized();
        EXPECT_EQ(filter->StartOperation(), S_OK);
        EXPECT_NE(filter->lastTicket.find(L"ns0000:TypeL"), std::wstring::npos);
    }
}

TEST_F(PartLoop, DoesNotStartWithoutWhatTheTicketsAreOpenedWith)
{
    const HRESULT noHandle = HRESULT_FROM_WIN32(ERROR_INVALID_HANDLE);
    const wchar_t* const ticket = L"PerUserPrintTicket";
    const std::pair<std::function<void(Pipeline&)>, HRESULT> cases[] = {
        {[&](Pipeline& given) { given.bag->SetText(ticket, L"ticket"); }, E_NOINTERFACE},
        {[&](Pipeline& given) { given.bag->SetObject(ticket, {}); }, E_NOINTERFACE},
        {[&](Pipeline& given) { given.bag->SetObject(ticket, ComPtr<IUnknown>(given.control.Get())); },
         E_NOINTERFACE},
        {[](Pipeline& given) { given.bag->SetHandle(L"PrinterName", nullptr); }, E_INVALIDARG},
        {[](Pipeline& given) { given.bag->SetText(L"PrinterName", L""); }, E_INVALIDARG},
        {[](Pipeline& given) { given.bag->SetText(L"UserSecurityToken", L"token"); }, noHandle},
        {[](Pipeline& given) { given.bag->SetHandle(L"UserSecurityToken", nullptr); }, noHandle},
    };
    for (const auto& [change, result] : cases)
    {
        SCOPED_TRACE(&result - &cases[0].second);
        Renew();
        change(*pipeline);
        EXPECT_EQ(Start(), result);
        EXPECT_EQ(pipeline->record.Count("RequestReader"), 0);
        EXPECT_EQ(pipeline->control->reasons, std::vector<HRESULT>{result});
    }
}

TEST_F(PartLoop, NeedsAReader)
{
    pipeline->communicator->reader = {};
    const auto filter = Initialized();
    const utility::SafeCoInit com;
    EXPECT_EQ(support::MessageOf<std::logic_error>([&] { filter->RunOperation(); }),
              "m_pReader could not get.");
    EXPECT_EQ(filter->StartOperation(), E_FAIL);
}
} // namespace
} // namespace base::xps::filterpipeline
