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

using utility::ComPtr;
using utility::MakeCom;

/// Records which handler was called, and whether the ticket of its level is complete.
class ListingFilter final : public XpsDocumentProviderFilterBase
{
public:
    explicit ListingFilter(support::PipelineRecord& record) : m_record(record) {}
    using XpsDocumentProviderFilterBase::GetPrintTicketProvider;
    using XpsDocumentProviderFilterBase::RunOperation;

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
        Note("OnSequence", kPTJobScope);
    }

private:
    void Note(const char* handler, EPrintTicketScope level)
    {
        m_record.Enter(handler);
        ComPtr<IXMLDOMDocument2> ticket;
        EXPECT_EQ(GetPrintTicketProvider().GetLevelTicket(level, ticket.Receive()), S_OK);
        utility::Bstr text;
        EXPECT_EQ(ticket->get_xml(text.Receive()), S_OK);
        EXPECT_NE(text.View().find(L"ns0000:TypeL"), std::wstring::npos);
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
    pipeline->provider->endResult = S_FALSE;
    EXPECT_EQ(Start(), S_OK);
    EXPECT_EQ(CallsFrom("GetProperty DriverPropertyBag"),
              "GetProperty DriverPropertyBag, GetString QuellmarkNsPrefix, "
              "GetProperty PerUserPrintTicket, GetProperty PrinterName, GetProperty UserSecurityToken, "
              "GetStream user ticket, PTOpenProvider, RequestReader, "
              "GetProperty DriverPropertyBag, GetInt32 QuellmarkTesselType, "
              "GetXpsPart, PTCloseProvider");
    EXPECT_TRUE(pipeline->control->reasons.empty());
}

TEST_F(PartLoop, TakesAPartForTheFirstKindThatItAnswersToAndCompletesItsTicketByTheOneOfTheDriver)
{
    pipeline->SetDriver(L"", 'L');
    // Bottom up, so that no ticket is completed because of the one above it.
    std::vector<ComPtr<IUnknown>> kinds;
    const auto addWith = [&](IUnknown* kind) {
        kinds.emplace_back(kind);
        pipeline->Add<support::OtherPart>(kinds);
    };
    addWith(MakeCom<support::PagePart>(pipeline->record, "page", "").Get());
    addWith(MakeCom<support::DocumentPart>(pipeline->record, "document").Get());
    addWith(MakeCom<support::SequencePart>(pipeline->record, "sequence").Get());
    addWith(MakeCom<support::RootPart>(pipeline->record).Get());
    pipeline->Add<support::OtherPart>();
    EXPECT_EQ(Start(), S_OK);
    // The ticket of another kind is not read.
    EXPECT_EQ(CallsFrom("GetXpsPart"),
              "GetXpsPart, GetPrintTicket page, PTMergeAndValidatePrintTicket 2, "
              "PTMergeAndValidatePrintTicket 1, PTMergeAndValidatePrintTicket 0, OnFixedPage, "
              "GetXpsPart, GetPrintTicket document, PTMergeAndValidatePrintTicket 1, OnFixedDocument, "
              "GetXpsPart, GetPrintTicket sequence, PTMergeAndValidatePrintTicket 2, OnSequence, "
              "GetXpsPart, OnXpsDocument, GetXpsPart, OnUnknownPart, GetXpsPart, PTCloseProvider");
}

TEST_F(PartLoop, DoesNotStartWithoutWhatTheTicketsAreOpenedWith)
{
    const HRESULT noHandle = HRESULT_FROM_WIN32(ERROR_INVALID_HANDLE);
    const struct
    {
        const wchar_t* property;
        std::function<void(host::pipeline::PipelinePropertyBag&, const wchar_t*)> set;
        HRESULT result;
    } cases[] = {
        {L"PerUserPrintTicket", [](auto& bag, auto name) { bag.SetText(name, L"ticket"); }, E_NOINTERFACE},
        {L"PerUserPrintTicket", [](auto& bag, auto name) { bag.SetObject(name, nullptr); }, E_NOINTERFACE},
        {L"PerUserPrintTicket", [](auto& bag, auto name) { bag.SetObject(name, &bag); }, E_NOINTERFACE},
        {L"PrinterName", [](auto& bag, auto name) { bag.SetHandle(name, nullptr); }, E_INVALIDARG},
        {L"PrinterName", [](auto& bag, auto name) { bag.SetText(name, L""); }, E_INVALIDARG},
        {L"UserSecurityToken", [](auto& bag, auto name) { bag.SetText(name, L"token"); }, noHandle},
        {L"UserSecurityToken", [](auto& bag, auto name) { bag.SetHandle(name, nullptr); }, noHandle},
    };
    for (const auto& [property, set, result] : cases)
    {
        SCOPED_TRACE(&result - &cases[0].result);
        Renew();
        pipeline->bag->DeleteProperty(property);
        set(*pipeline->bag, property);
        EXPECT_EQ(Start(), result);
        EXPECT_EQ(pipeline->record.Count("RequestReader"), 0);
    }
}

TEST_F(PartLoop, NeedsAReader)
{
    pipeline->communicator->reader = {};
    const auto filter = Initialized();
    const utility::SafeCoInit com;
    EXPECT_EQ(support::MessageOf<std::logic_error>([&] { filter->RunOperation(); }),
              "m_pReader could not get.");
}
} // namespace
} // namespace base::xps::filterpipeline
