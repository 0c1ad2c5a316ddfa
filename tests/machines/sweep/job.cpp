#include "machines/sweep/job.h"

#include <algorithm>
#include <cstdio>
#include <limits>

#include "host/pipeline/filtermodule.h"
#include "machines/sweep/calls.h"
#include "support/filtermodule.h"
#include "support/wholejob.h"

namespace sweep
{
namespace
{
using base::utility::ComPtr;
using host::pipeline::LoadedLibrary;
using support::Feature;
using support::MediaFeature;
using support::Pipeline;
using support::Ticket;

constexpr CLSID kFilter = {0xD79DCE9B, 0x5F31, 0x4A6C, {0xA1, 0x60, 0xA3, 0x4B, 0x2A, 0x81, 0x2B, 0xF8}};

constexpr const char* kPage =
    R"(<FixedPage xmlns="http://schemas.microsoft.com/xps/2005/06" Width="10" Height="20" )"
    R"(ContentBox="0,0,10,20" BleedBox="0,0,10,20"><FixedPage.Resources/>)"
    R"(<Glyphs UnicodeString="a&amp;b"/></FixedPage>)";

ULONG CountProviders()
{
    static const LoadedLibrary tickets(OFFLINE_TICKET_LIBRARY);
    static auto* const count = tickets.Find<ULONG WINAPI()>("GetOpenProviderCount");
    return count();
}

[[nodiscard]] HRESULT CreateFilter(const LoadedLibrary& module, ComPtr<IPrintPipelineFilter>& filter)
{
    ComPtr<IClassFactory> factory;
    const HRESULT hr = module.Find<decltype(DllGetClassObject)>("DllGetClassObject")(
        kFilter, __uuidof(IClassFactory), factory.ReceiveUntyped());
    return FAILED(hr)
               ? hr
               : factory->CreateInstance(nullptr, __uuidof(IPrintPipelineFilter), filter.ReceiveUntyped());
}

std::vector<std::string> SentParts(const Pipeline& pipeline)
{
    auto names = pipeline.record.Names();
    std::erase_if(names, [](const std::string& name) { return !name.starts_with("Send"); });
    return names;
}

std::string A4(const std::string& further)
{
    return Ticket(MediaFeature("ISOA4", 210000, 297000) + further);
}

/// A ticket with a sheet outside the printer's limits.
std::string UserTicket()
{
    return Ticket(MediaFeature("ISOA3", 297000, 420000) + Feature("PageOrientation", "Portrait"));
}

void Expect(bool holds, const char* fault, Outcome& outcome)
{
    if (!holds)
    {
        outcome.faults.emplace_back(fault);
    }
}

/// Checks what must be true after every job, failed or not.
void CheckEnd(const Pipeline& pipeline, Outcome& outcome)
{
    const auto& record = pipeline.record;
    const auto& reasons = pipeline.control->reasons;
    outcome.isProviderClosed = CountProviders() == 0;
    outcome.isReported = !reasons.empty();
    Expect(!support::IsThreadImpersonating(), "the thread acts in the user's name", outcome);
    Expect(record.Count("CloseSender") == record.Count("RequestWriter"),
           "the sender is not closed, or more than once",
           outcome);
    Expect(std::ranges::all_of(record.writeStreams, [](const auto& stream) { return stream->closes == 1; }),
           "a write stream is not closed, or more than once",
           outcome);
    Expect(reasons.empty() || reasons == std::vector{outcome.result},
           "the pipeline hears of another failure than the caller",
           outcome);
}

void RunWholeJob(const LoadedLibrary& module, const Fault& fault, Outcome& outcome)
{
    // A prime number, so that short reads end at no other boundary.
    constexpr ULONG kShort = 61;
    Watch& watch = Watch::Get();
    Pipeline pipeline(UserTicket(), fault.areStreamsShort ? kShort : std::numeric_limits<ULONG>::max());
    pipeline.SetDriver(L"ns0000", 7);
    support::AddWholeJob(pipeline, A4(Feature("PageOrientation", "Landscape")), kPage);
    watch.Adopt(pipeline.communicator.Get(), FindInterface(__uuidof(IInterFilterCommunicator)));
    watch.Adopt(pipeline.bag.Get(), FindInterface(__uuidof(IPrintPipelinePropertyBag)));
    watch.Adopt(pipeline.control.Get(), FindInterface(__uuidof(IPrintPipelineManagerControl)));
    const auto step = [&](const char* name, auto&& call) {
        if (SUCCEEDED(outcome.result))
        {
            outcome.result = call();
            outcome.method = name;
        }
    };
    {
        ComPtr<IPrintPipelineFilter> filter;
        watch.Arm(fault.point, fault.isForGood);
        step("CreateInstance", [&] { return CreateFilter(module, filter); });
        step("InitializeFilter", [&] { return pipeline.Initialize(*filter); });
        if (filter && FAILED(outcome.result) && filter->StartOperation() != E_FAIL)
        {
            outcome.faults.emplace_back("a filter that could not be set up starts");
        }
        step("StartOperation", [&] { return filter->StartOperation(); });
        CheckEnd(pipeline, outcome);
        outcome.sent = SentParts(pipeline);
        for (const auto& stream : pipeline.record.writeStreams)
        {
            outcome.written.push_back(stream->bytes);
        }
        step("ShutdownOperation", [&] { return filter->ShutdownOperation(); });
    }
    watch.Disarm();
    outcome.points = watch.Points();
}

/// The next job, which must run whatever happened before. Its shutdown fails.
void RunNextJob(const LoadedLibrary& module, Outcome& outcome)
{
    Pipeline pipeline(A4(""));
    pipeline.Add<support::DocumentPart>("document");
    pipeline.Add<support::PagePart>("page", kPage);
    ComPtr<IPrintPipelineFilter> filter;
    const bool isRun = SUCCEEDED(CreateFilter(module, filter)) && SUCCEEDED(pipeline.Initialize(*filter)) &&
                       SUCCEEDED(filter->StartOperation()) && SentParts(pipeline).size() == 2;
    Expect(isRun, "the next job does not run", outcome);
    pipeline.record.FailCall("CloseSender", E_FAIL);
    Expect(filter && filter->ShutdownOperation() == E_FAIL, "the next job cannot be shut down", outcome);
}
} // namespace

Outcome RunJob(const Fault& fault)
{
    Watch& watch = Watch::Get();
    Outcome outcome;
    {
        const LoadedLibrary module(support::FilterModulePath());
        RunWholeJob(module, fault, outcome);
        Expect(CountProviders() == 0, "a ticket provider stays open", outcome);
        Expect(Pipeline::CountObjects() == 0, "objects of the pipeline are held", outcome);
        RunNextJob(module, outcome);
        Expect(module.Find<decltype(DllCanUnloadNow)>("DllCanUnloadNow")() == S_OK,
               "the module counts objects that are gone",
               outcome);
    }
    for (const auto& [what, count] : watch.held)
    {
        outcome.left[what.first] += count;
    }
    outcome.faults.insert(outcome.faults.end(), watch.complaints.begin(), watch.complaints.end());
    watch.complaints.clear();
    watch.Forget();
    return outcome;
}
} // namespace sweep
