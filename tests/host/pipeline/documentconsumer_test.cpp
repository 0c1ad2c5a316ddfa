#include "host/pipeline/documentconsumer.h"

#include <memory>

#include <gtest/gtest.h>

#include "base/utility/bstr.h"
#include "base/utility/utf8.h"
#include "host/pipeline/documentprovider.h"
#include "tests/host/testpackages.h"

namespace host::pipeline
{
namespace
{
using base::utility::Bstr;
using base::utility::ComObject;
using base::utility::ComPtr;
using base::utility::MakeCom;

class ForeignDocument final : public ComObject<IFixedDocument>
{
public:
    STDMETHODIMP GetUri(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP GetPrintTicket(IPartPrintTicket**) override { return E_NOTIMPL; }
    STDMETHODIMP SetPrintTicket(IPartPrintTicket*) override { return E_NOTIMPL; }
};

class ForeignTicket final : public ComObject<IPartPrintTicket>
{
public:
    STDMETHODIMP GetUri(BSTR*) override { return E_NOTIMPL; }
    STDMETHODIMP GetStream(IPrintReadStream**) override { return E_NOTIMPL; }
    STDMETHODIMP GetPartCompression(EXpsCompressionOptions*) override { return E_NOTIMPL; }
    STDMETHODIMP SetPartCompression(EXpsCompressionOptions) override { return E_NOTIMPL; }
};

struct NewTicket
{
    ComPtr<IPartPrintTicket> part;
    ComPtr<IPrintWriteStream> stream;
};

std::string NameOf(IPartPrintTicket& ticket)
{
    Bstr name;
    EXPECT_EQ(ticket.GetUri(name.Receive()), S_OK);
    return base::utility::ToUtf8(std::wstring(name.View()));
}

constexpr const char* kSharedTicket = "Metadata/shared.xml";

/// The consumer and the provider of a job over the package "mixed": two documents of four pages each, of
/// which the third of the first and the second of the second one share a ticket.
class DocumentConsumerTest : public testing::Test
{
protected:
    /// The next part, which must be there.
    ComPtr<IUnknown> Pull()
    {
        ComPtr<IUnknown> part;
        EXPECT_EQ(m_provider->GetXpsPart(part.Receive()), S_OK);
        EXPECT_TRUE(part);
        return part;
    }

    HRESULT Send(const ComPtr<IUnknown>& part)
    {
        if (const auto page = part.TryQuery<IFixedPage>())
        {
            return m_consumer->SendFixedPage(page.Get());
        }
        if (const auto document = part.TryQuery<IFixedDocument>())
        {
            return m_consumer->SendFixedDocument(document.Get());
        }
        if (const auto sequence = part.TryQuery<IFixedDocumentSequence>())
        {
            return m_consumer->SendFixedDocumentSequence(sequence.Get());
        }
        return m_consumer->SendXpsDocument(part.TryQuery<IXpsDocument>().Get());
    }

    /// Passes `count` parts on: 3 to the first page, 6 to its document's fourth.
    void Pass(int count)
    {
        for (int passed = 0; passed < count; ++passed)
        {
            ASSERT_EQ(Send(Pull()), S_OK);
        }
    }

    ComPtr<IFixedPage> PullPage() { return Pull().TryQuery<IFixedPage>(); }

    NewTicket MakeTicket(const wchar_t* name = L"new.xml")
    {
        NewTicket ticket;
        EXPECT_EQ(
            m_consumer->GetNewEmptyPart(
                name, __uuidof(IPartPrintTicket), ticket.part.ReceiveUntyped(), ticket.stream.Receive()),
            S_OK);
        return ticket;
    }

    /// Ends the job and opens what it wrote.
    opc::Package Finish()
    {
        m_job->RemoveOrphanedTickets();
        m_writer.Commit();
        return opc::Package(m_folder / "out.xps");
    }

    OutputFolder m_folder;
    opc::Package m_package{TestPackage("mixed")};
    opc::PackageWriter m_writer{m_package, m_folder / "out.xps"};
    std::vector<std::string> m_calls;
    CallTrace m_trace{
        [this](const TracedCall& call) { m_calls.push_back(std::string(call.method) + " " + call.subject); }};
    PipelineJobPtr m_job = std::make_shared<PipelineJob>(m_package, &m_writer, m_trace);
    std::vector<std::string> m_sent;
    ComPtr<DocumentProvider> m_provider = MakeCom<DocumentProvider>(m_job);
    ComPtr<DocumentConsumer> m_consumer = MakeCom<DocumentConsumer>(
        m_job, [this](const SentPart& sent) { m_sent.push_back(sent.part.name.Text()); });
};

TEST_F(DocumentConsumerTest, WantsEveryStreamClosedOnceBeforeThePartIsSent)
{
    Pass(3);
    auto page = PullPage();
    ComPtr<IPrintWriteStream> markup;
    ASSERT_EQ(page->GetWriteStream(markup.Receive()), S_OK);
    const NewTicket ticket = MakeTicket();
    ASSERT_EQ(page->SetPrintTicket(ticket.part.Get()), S_OK);
    EXPECT_EQ(m_consumer->SendFixedPage(page.Get()), E_UNEXPECTED);
    markup->Close();
    EXPECT_EQ(m_calls.back(), "IPrintWriteStream::Close /Documents/1/Pages/1.fpage");
    EXPECT_EQ(m_consumer->SendFixedPage(page.Get()), E_UNEXPECTED);
    ticket.stream->Close();
    EXPECT_EQ(m_calls.back(), "IPrintWriteStream::Close /new.xml");
    EXPECT_EQ(m_consumer->SendFixedPage(page.Get()), S_OK);

    page = PullPage();
    ComPtr<IPrintWriteStream> again;
    ASSERT_EQ(page->GetWriteStream(again.Receive()), S_OK);
    again->Close();
    again->Close();
    EXPECT_EQ(m_consumer->SendFixedPage(page.Get()), E_UNEXPECTED);
    EXPECT_EQ(m_sent.back(), "/Documents/1/Pages/1.fpage");
}

TEST_F(DocumentConsumerTest, TakesPartsOfThisPipelineOnlyAndInTheirOrder)
{
    EXPECT_EQ(m_consumer->SendXpsDocument(nullptr), E_POINTER);
    EXPECT_EQ(m_consumer->SendXpsUnknown(nullptr), E_POINTER);
    EXPECT_EQ(m_consumer->SendFixedPage(nullptr), E_POINTER);
    EXPECT_EQ(m_consumer->SendFixedDocument(MakeCom<ForeignDocument>().Get()), E_INVALIDARG);
    const auto root = Pull();
    const auto sequence = Pull();
    EXPECT_EQ(Send(sequence), E_UNEXPECTED) << "before the root";
    EXPECT_EQ(Send(root), S_OK);
    EXPECT_EQ(Send(root), E_UNEXPECTED) << "a second root";
    EXPECT_EQ(Send(sequence), S_OK);
    EXPECT_EQ(Send(sequence), E_UNEXPECTED) << "a second sequence";
    Pass(1);
    const auto first = Pull();
    const auto second = Pull();
    EXPECT_EQ(Send(second), E_UNEXPECTED) << "a page left out";
    EXPECT_EQ(m_consumer->SendXpsUnknown(second.Get()), S_OK);
    EXPECT_EQ(Send(first), S_OK);
    EXPECT_EQ(Send(first), E_UNEXPECTED) << "a page twice";
    EXPECT_EQ(Send(second), S_OK);
    const auto third = Pull();
    EXPECT_EQ(m_consumer->CloseSender(), S_OK);
    EXPECT_EQ(Send(third), E_UNEXPECTED) << "after the end";
    EXPECT_EQ(m_consumer->SendXpsUnknown(third.Get()), E_UNEXPECTED);
    EXPECT_EQ(m_consumer->CloseSender(), S_OK);
}

TEST_F(DocumentConsumerTest, KnowsWhatAFilterLeftUndone)
{
    Pass(11);
    EXPECT_EQ(m_job->FindDebt(), "did not send every part on") << "one page is still to come";
    const auto last = Pull();
    ComPtr<IUnknown> end;
    EXPECT_EQ(m_provider->GetXpsPart(end.Receive()), S_OK);
    EXPECT_FALSE(end);
    EXPECT_EQ(m_job->FindDebt(), "did not send every part on") << "the last page is held back";
    EXPECT_EQ(Send(last), S_OK);
    EXPECT_EQ(m_job->FindDebt(), "did not close its sender");
    EXPECT_EQ(m_consumer->CloseSender(), S_OK);
    EXPECT_EQ(m_job->FindDebt(), "");
}

TEST_F(DocumentConsumerTest, MakesValidPartNamesOfWhatAFilterAsksFor)
{
    const struct
    {
        const wchar_t* wanted;
        const char* name;
    } table[] = {
        {L"new.xml", "/new.xml"},
        {L"/NEW.xml", "/NEW-2.xml"},
        {L"\\Documents\\1\\Pages\\t.xml", "/Documents/1/Pages/t.xml"},
        {L"/metadata/SHARED.xml", "/metadata/SHARED-2.xml"},
        {L"Metadata/shared.xml", "/Metadata/shared-3.xml"},
        {L".xml\\pagevalidator_1_.xml", "/.xml/pagevalidator_1_.xml"},
        {L"a b\u00e9%41.xml", "/a%20b%C3%A9A.xml"},
        {L"no.ending/ticket", "/no.ending/ticket"},
        {L"no.ending/ticket", "/no.ending/ticket-2"},
        {L"[Content_Types].xml", "/%5BContent_Types%5D.xml"},
        {L"_rels/no.xml", "/_rels/no.xml"},
    };
    for (const auto& row : table)
    {
        EXPECT_EQ(NameOf(*MakeTicket(row.wanted).part), row.name);
    }
    for (const wchar_t* const wanted : {L"",
                                        L"/",
                                        L"folder/",
                                        L"a//b",
                                        L"a/../b",
                                        L"a./b",
                                        L"a%2Fb",
                                        L"_rels/.rels",
                                        L"x/_RELS/new.xml.Rels"})
    {
        void* part = this;
        ComPtr<IPrintWriteStream> stream;
        EXPECT_EQ(m_consumer->GetNewEmptyPart(wanted, __uuidof(IPartPrintTicket), &part, stream.Receive()),
                  E_INVALIDARG)
            << base::utility::ToUtf8(wanted);
        EXPECT_EQ(part, nullptr);
    }
    NewTicket none;
    EXPECT_EQ(m_consumer->GetNewEmptyPart(
                  L"a.png", __uuidof(IPartImage), none.part.ReceiveUntyped(), none.stream.Receive()),
              E_NOINTERFACE);
}

TEST_F(DocumentConsumerTest, ReplacesATicketAndKeepsItWhileAnotherPartNamesIt)
{
    for (const bool isSecondDetached : {false, true})
    {
        SCOPED_TRACE(isSecondDetached);
        opc::PackageWriter writer(m_package, m_folder / "two.xps");
        m_job = std::make_shared<PipelineJob>(m_package, &writer, m_trace);
        m_provider = MakeCom<DocumentProvider>(m_job);
        m_consumer = MakeCom<DocumentConsumer>(m_job, [](const SentPart&) {});
        Pass(5);
        auto page = PullPage();
        ASSERT_EQ(page->DeleteResource(Bstr(L"../../../Metadata\\SHARED.xml").Get()), S_OK);
        const NewTicket ticket = MakeTicket();
        ticket.stream->Close();
        ASSERT_EQ(page->SetPrintTicket(ticket.part.Get()), S_OK);
        ASSERT_EQ(m_consumer->SendFixedPage(page.Get()), S_OK);
        Pass(3);
        page = PullPage();
        if (isSecondDetached)
        {
            ASSERT_EQ(page->DeleteResource(Bstr(L"/Metadata/shared.xml").Get()), S_OK);
        }
        ASSERT_EQ(m_consumer->SendFixedPage(page.Get()), S_OK);
        Pass(2);
        m_job->RemoveOrphanedTickets();
        writer.Commit();

        const opc::Package written(m_folder / "two.xps");
        EXPECT_EQ(xps::FindPrintTicket(written, Part("Documents/1/Pages/3.fpage")), Part("new.xml"));
        EXPECT_EQ(written.Has(Part(kSharedTicket)), !isSecondDetached);
        EXPECT_EQ(xps::FindPrintTicket(written, Part("Documents/2/Pages/2.fpage")).has_value(),
                  !isSecondDetached);
    }
}

TEST_F(DocumentConsumerTest, KeepsATicketOfThePackageThatAPartIsGiven)
{
    Pass(5);
    const auto owner = PullPage();
    ComPtr<IPartPrintTicket> shared;
    ASSERT_EQ(owner->GetPrintTicket(shared.Receive()), S_OK);
    ASSERT_EQ(owner->SetPrintTicket(shared.Get()), S_OK) << "its own one again";
    ASSERT_EQ(m_consumer->SendFixedPage(owner.Get()), S_OK);
    const auto other = PullPage();
    ASSERT_EQ(other->SetPrintTicket(shared.Get()), S_OK);
    ASSERT_EQ(m_consumer->SendFixedPage(other.Get()), S_OK);
    Pass(2);
    const auto last = PullPage();
    ASSERT_EQ(last->DeleteResource(Bstr(L"/Metadata/shared.xml").Get()), S_OK);
    ASSERT_EQ(m_consumer->SendFixedPage(last.Get()), S_OK);
    Pass(2);
    const opc::Package written = Finish();
    EXPECT_EQ(written.Read(Part(kSharedTicket)), m_package.Read(Part(kSharedTicket)));
    for (const char* page : {"Documents/1/Pages/3.fpage", "Documents/1/Pages/4.fpage"})
    {
        EXPECT_EQ(xps::FindPrintTicket(written, Part(page)), Part(kSharedTicket));
    }
    EXPECT_FALSE(written.Has(Part("Documents/1/Pages/4.xml"))) << "the one that was replaced";
}

TEST_F(DocumentConsumerTest, RefusesTicketsThatItCannotStore)
{
    Pass(3);
    const auto page = PullPage();
    const NewTicket ticket = MakeTicket();
    ticket.stream->Close();
    ComPtr<IPrintReadStream> content;
    EXPECT_EQ(ticket.part->GetStream(content.Receive()), E_ACCESSDENIED);
    ASSERT_EQ(page->SetPrintTicket(ticket.part.Get()), S_OK);
    EXPECT_EQ(page->SetPrintTicket(nullptr), E_INVALIDARG);
    EXPECT_EQ(page->SetPrintTicket(MakeCom<ForeignTicket>().Get()), E_INVALIDARG);
    ComPtr<IPartPrintTicket> kept;
    EXPECT_EQ(page->GetPrintTicket(kept.Receive()), S_OK);
    EXPECT_EQ(kept.Get(), ticket.part.Get());
    ASSERT_EQ(m_consumer->SendFixedPage(page.Get()), S_OK);
    const auto next = PullPage();
    ASSERT_EQ(next->SetPrintTicket(ticket.part.Get()), S_OK);
    EXPECT_EQ(m_consumer->SendFixedPage(next.Get()), E_UNEXPECTED) << "one part only";
}

TEST_F(DocumentConsumerTest, FindsAndLetsGoOfWhatHangsOnAPage)
{
    Pass(3);
    const auto first = PullPage();
    ComPtr<IPartPrintTicket> ticket;
    EXPECT_EQ(first->GetPrintTicket(ticket.Receive()), kElementNotFound);
    EXPECT_EQ(first->DeleteResource(Bstr(L"none.xml").Get()), kElementNotFound);
    EXPECT_EQ(first->DeleteResource(Bstr(L"/Resources/mark.png").Get()), S_OK);
    EXPECT_EQ(first->DeleteResource(nullptr), E_POINTER);
    ComPtr<IPrintWriteStream> stream;
    ASSERT_EQ(first->GetWriteStream(stream.Receive()), S_OK);
    stream->Close();
    IPrintWriteStream* second = stream.Get();
    EXPECT_EQ(first->GetWriteStream(&second), E_UNEXPECTED);
    EXPECT_EQ(second, nullptr);
    ASSERT_EQ(m_consumer->SendFixedPage(first.Get()), S_OK);

    const auto page = PullPage();
    for (const wchar_t* name : {L"2.xml", L"/documents/1/pages/2.XML"})
    {
        ComPtr<IUnknown> part;
        EXPECT_EQ(page->GetPagePart(name, part.Receive()), S_OK);
        EXPECT_EQ(NameOf(*part.TryQuery<IPartPrintTicket>()), "/Documents/1/Pages/2.xml");
    }
    ComPtr<IUnknown> none;
    EXPECT_EQ(page->GetPagePart(L"/Metadata/shared.xml", none.Receive()), kElementNotFound);
    EXPECT_EQ(page->DeleteResource(Bstr(L"2.xml").Get()), S_OK);
    EXPECT_EQ(page->DeleteResource(Bstr(L"2.xml").Get()), kElementNotFound);
    EXPECT_EQ(page->GetPrintTicket(ticket.Receive()), kElementNotFound);
    ASSERT_EQ(m_consumer->SendFixedPage(page.Get()), S_OK);
    Pass(7);
    const opc::Package written = Finish();
    EXPECT_TRUE(written.RelationshipsOf(Part("Documents/1/Pages/1.fpage")).All().empty());
    EXPECT_EQ(written.Read(Part("Documents/1/Pages/1.fpage")), "");
    EXPECT_FALSE(written.Has(Part("Documents/1/Pages/2.xml")));
    EXPECT_TRUE(written.Has(Part("Resources/mark.png")));
}

TEST_F(DocumentConsumerTest, EndsACancelledJobAndKeepsTheHostsOwnFailure)
{
    Pass(2);
    m_job->isCancelled = true;
    ComPtr<IUnknown> part;
    EXPECT_EQ(m_provider->GetXpsPart(part.Receive()), E_ABORT);
    EXPECT_FALSE(part);
    EXPECT_FALSE(m_trace.GetHostFailure());

    m_consumer =
        MakeCom<DocumentConsumer>(m_job, [](const SentPart&) { throw opc::PackageError("at fault"); });
    m_job->isCancelled = false;
    EXPECT_EQ(Send(Pull()), E_FAIL);
    EXPECT_EQ(FaultOf([&] { std::rethrow_exception(m_trace.GetHostFailure()); }), "at fault");
}
} // namespace
} // namespace host::pipeline
