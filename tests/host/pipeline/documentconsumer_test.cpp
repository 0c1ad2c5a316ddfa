#include "host/pipeline/documentconsumer.h"

#include <memory>
#include <stdexcept>

#include <gtest/gtest.h>

#include "base/utility/bstr.h"
#include "base/utility/utf8.h"
#include "host/pipeline/documentprovider.h"
#include "host/pipeline/part.h"
#include "support/pipeline.h"
#include "tests/host/pipeline/sendpart.h"
#include "tests/host/testpackages.h"

namespace host::pipeline
{
namespace
{
using base::utility::Bstr;
using base::utility::ComPtr;
using base::utility::MakeCom;

/// A job over the package "mixed": the pages of its two documents have the places 3 to 6 and 8 to 11 in the
/// tree, and the pages at 5 and at 9 share the ticket /Metadata/shared.xml.
struct Job
{
    // New markup is nothing or a word here.
    Job() { state->acceptsMalformed = true; }

    /// The next part; null at the end.
    ComPtr<IUnknown> Pull()
    {
        ComPtr<IUnknown> part;
        EXPECT_EQ(provider->GetXpsPart(part.Receive()), S_OK);
        return part;
    }

    template <typename Interface>
    HRESULT Send(const ComPtr<Interface>& part)
    {
        return SendPart(*consumer, part.template TryQuery<IUnknown>());
    }

    /// The page at a place; all parts before it are passed on.
    ComPtr<IFixedPage> PageAt(std::size_t place)
    {
        for (std::size_t next = state->handedOut; next <= place; ++next)
        {
            if (state->sent < state->handedOut)
            {
                EXPECT_EQ(Send(held), S_OK);
            }
            held = Pull();
        }
        return held.TryQuery<IFixedPage>();
    }

    HRESULT MakePart(const wchar_t* name, REFIID iid, void** part)
    {
        stream = {};
        return consumer->GetNewEmptyPart(name, iid, part, stream.Receive());
    }

    /// A new ticket; its stream stays in `stream`.
    ComPtr<IPartPrintTicket> MakeTicket()
    {
        ComPtr<IPartPrintTicket> ticket;
        EXPECT_EQ(MakePart(L"new.xml", __uuidof(IPartPrintTicket), ticket.ReceiveUntyped()), S_OK);
        return ticket;
    }

    /// Passes the rest on and opens what was written.
    opc::Package Finish()
    {
        EXPECT_EQ(Send(PageAt(11)), S_OK);
        state->RemoveOrphanedTickets();
        writer.Commit();
        return opc::Package(folder / "out.xps");
    }

    OutputFolder folder;
    opc::Package package{TestPackage("mixed")};
    opc::PackageWriter writer{package, folder / "out.xps"};
    CallTrace trace;
    PipelineJobPtr state = std::make_shared<PipelineJob>(package, &writer, trace);
    ComPtr<DocumentProvider> provider = MakeCom<DocumentProvider>(state);
    ComPtr<DocumentConsumer> consumer = MakeCom<DocumentConsumer>(state, [](const SentPart&) {});
    ComPtr<IUnknown> held;
    ComPtr<IPrintWriteStream> stream;
};

std::string NameOf(IPartPrintTicket& ticket)
{
    Bstr name;
    EXPECT_EQ(ticket.GetUri(name.Receive()), S_OK);
    return base::utility::ToUtf8(std::wstring(name.View()));
}

TEST(DocumentConsumer, WantsEveryStreamClosedOnceBeforeThePartIsSent)
{
    const auto close = [](IPrintWriteStream& stream, int times) {
        while (times-- > 0)
        {
            stream.Close();
        }
    };
    for (int closings = 0; closings < 9; ++closings)
    {
        Job job;
        const auto page = job.PageAt(3);
        ComPtr<IPrintWriteStream> markup;
        ASSERT_EQ(page->GetWriteStream(markup.Receive()), S_OK);
        ASSERT_EQ(page->SetPrintTicket(job.MakeTicket().Get()), S_OK);
        close(*markup, closings / 3);
        close(*job.stream, closings % 3);
        EXPECT_EQ(job.Send(page), closings == 4 ? S_OK : E_UNEXPECTED) << closings;
    }
}

TEST(DocumentConsumer, TakesPartsOfThisPipelineOnlyAndInTheirOrder)
{
    Job job;
    EXPECT_EQ(job.consumer->SendXpsDocument(nullptr), E_POINTER);
    EXPECT_EQ(job.consumer->SendXpsUnknown(nullptr), E_POINTER);
    support::PipelineRecord ofAnotherPipeline;
    EXPECT_EQ(
        job.consumer->SendFixedDocument(MakeCom<support::DocumentPart>(ofAnotherPipeline, "document").Get()),
        E_INVALIDARG);
    const auto root = job.Pull();
    const auto sequence = job.Pull();
    EXPECT_EQ(job.Send(sequence), E_UNEXPECTED) << "before the root";
    EXPECT_EQ(job.Send(root), S_OK);
    EXPECT_EQ(job.Send(sequence), S_OK);
    const auto first = job.PageAt(3);
    const auto second = job.Pull();
    EXPECT_EQ(job.Send(second), E_UNEXPECTED) << "a page left out";
    EXPECT_EQ(job.consumer->SendXpsUnknown(second.Get()), S_OK);
    EXPECT_EQ(job.Send(first), S_OK);
    EXPECT_EQ(job.Send(first), E_UNEXPECTED) << "a page twice";
    EXPECT_EQ(job.consumer->CloseSender(), S_OK);
    EXPECT_EQ(job.Send(second), E_UNEXPECTED) << "after the end";
    EXPECT_EQ(job.consumer->SendXpsUnknown(second.Get()), E_UNEXPECTED);
    EXPECT_EQ(job.consumer->CloseSender(), S_OK);
}

TEST(DocumentConsumer, MakesValidPartNamesOfWhatAFilterAsksFor)
{
    Job job;
    for (const auto& row : ReadTable("partnames.txt"))
    {
        const std::wstring wanted = base::utility::FromUtf8(row.at(0));
        ComPtr<IPartPrintTicket> ticket;
        const HRESULT made =
            job.MakePart(wanted.c_str(), __uuidof(IPartPrintTicket), ticket.ReceiveUntyped());
        EXPECT_EQ(made, row.at(1) == "none" ? E_INVALIDARG : S_OK) << row.at(0);
        EXPECT_EQ(ticket ? NameOf(*ticket) : "none", row.at(1));
    }
    void* image = &job;
    EXPECT_EQ(job.MakePart(L"a.png", __uuidof(IPartImage), &image), E_NOINTERFACE);
    EXPECT_EQ(image, nullptr);
}

TEST(DocumentConsumer, KeepsATicketOfThePackageThatAPartIsGiven)
{
    Job job;
    const auto owner = job.PageAt(5);
    ComPtr<IPartPrintTicket> shared;
    ASSERT_EQ(owner->GetPrintTicket(shared.Receive()), S_OK);
    ASSERT_EQ(owner->SetPrintTicket(shared.Get()), S_OK) << "its own one again";
    ASSERT_EQ(job.PageAt(6)->SetPrintTicket(shared.Get()), S_OK);
    ASSERT_EQ(job.PageAt(9)->DeleteResource(L"../../../Metadata\\SHARED.xml"), S_OK);
    const opc::Package written = job.Finish();
    const opc::PartName name = Part("Metadata/shared.xml");
    EXPECT_EQ(written.Read(name), job.package.Read(name));
    for (const char* page : {"Documents/1/Pages/3.fpage", "Documents/1/Pages/4.fpage"})
    {
        EXPECT_EQ(xps::FindPrintTicket(written, Part(page)), name);
    }
    EXPECT_FALSE(xps::FindPrintTicket(written, Part("Documents/2/Pages/2.fpage")));
    EXPECT_FALSE(written.Has(Part("Documents/1/Pages/4.xml"))) << "the one that was replaced";
}

TEST(DocumentConsumer, RefusesTicketsThatItCannotStore)
{
    Job job;
    const auto page = job.PageAt(3);
    const auto ticket = job.MakeTicket();
    job.stream->Close();
    ComPtr<IPrintReadStream> content;
    EXPECT_EQ(ticket->GetStream(content.Receive()), E_ACCESSDENIED);
    ASSERT_EQ(page->SetPrintTicket(ticket.Get()), S_OK);
    EXPECT_EQ(page->SetPrintTicket(nullptr), E_INVALIDARG);
    support::PipelineRecord ofAnotherPipeline;
    EXPECT_EQ(page->SetPrintTicket(MakeCom<support::TicketPart>(ofAnotherPipeline, "ticket", "").Get()),
              E_INVALIDARG);
    ComPtr<IPartPrintTicket> kept;
    EXPECT_EQ(page->GetPrintTicket(kept.Receive()), S_OK);
    EXPECT_EQ(kept.Get(), ticket.Get());
    const auto next = job.PageAt(4);
    ASSERT_EQ(next->SetPrintTicket(ticket.Get()), S_OK);
    EXPECT_EQ(job.Send(next), E_UNEXPECTED) << "one part only";
}

TEST(DocumentConsumer, FindsAndLetsGoOfWhatHangsOnAPage)
{
    Job job;
    const auto first = job.PageAt(3);
    ComPtr<IPartPrintTicket> ticket;
    EXPECT_EQ(first->GetPrintTicket(ticket.Receive()), kElementNotFound);
    EXPECT_EQ(first->DeleteResource(L"none.xml"), kElementNotFound);
    EXPECT_EQ(first->DeleteResource(L"/Resources/mark.png"), S_OK);
    EXPECT_EQ(first->DeleteResource(nullptr), E_POINTER);
    ComPtr<IPrintWriteStream> stream;
    ASSERT_EQ(first->GetWriteStream(stream.Receive()), S_OK);
    stream->Close();
    IPrintWriteStream* another = stream.Get();
    EXPECT_EQ(first->GetWriteStream(&another), E_UNEXPECTED);
    EXPECT_EQ(another, nullptr);

    const auto page = job.PageAt(4);
    for (const wchar_t* name : {L"2.xml", L"/documents/1/pages/2.XML"})
    {
        ComPtr<IUnknown> part;
        ASSERT_EQ(page->GetPagePart(name, part.Receive()), S_OK);
        EXPECT_EQ(NameOf(*part.TryQuery<IPartPrintTicket>()), "/Documents/1/Pages/2.xml");
    }
    ComPtr<IUnknown> none;
    EXPECT_EQ(page->GetPagePart(L"/Metadata/shared.xml", none.Receive()), kElementNotFound);
    EXPECT_EQ(page->DeleteResource(L"2.xml"), S_OK);
    EXPECT_EQ(page->DeleteResource(L"2.xml"), kElementNotFound);
    EXPECT_EQ(page->GetPrintTicket(ticket.Receive()), kElementNotFound);
    const opc::Package written = job.Finish();
    EXPECT_TRUE(written.RelationshipsOf(Part("Documents/1/Pages/1.fpage")).All().empty());
    EXPECT_EQ(written.Read(Part("Documents/1/Pages/1.fpage")), "");
    EXPECT_FALSE(written.Has(Part("Documents/1/Pages/2.xml")));
    EXPECT_TRUE(written.Has(Part("Resources/mark.png")));
}

TEST(DocumentConsumer, KeepsTheHostsOwnFailure)
{
    Job job;
    const auto page = job.PageAt(3);
    job.consumer =
        MakeCom<DocumentConsumer>(job.state, [](const SentPart&) { throw std::runtime_error("at fault"); });
    EXPECT_EQ(job.Send(page), E_FAIL);
    EXPECT_EQ(FaultOf<std::runtime_error>([&] { std::rethrow_exception(job.trace.GetHostFailure()); }),
              "at fault");
}
} // namespace
} // namespace host::pipeline
