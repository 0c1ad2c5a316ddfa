#include "sweep/job.h"

#include <algorithm>
#include <cstdio>

#include "support/pipeline.h"
#include "support/tickettext.h"

namespace sweep
{
namespace
{
using base::utility::ComPtr;
using support::Feature;
using support::MediaFeature;
using support::Pipeline;
using support::Ticket;

constexpr CLSID kFilter = {0xD79DCE9B, 0x5F31, 0x4A6C, {0xA1, 0x60, 0xA3, 0x4B, 0x2A, 0x81, 0x2B, 0xF8}};

constexpr const char* kPage =
    R"(<FixedPage xmlns="http://schemas.microsoft.com/xps/2005/06" Width="10" Height="20" )"
    R"(ContentBox="0,0,10,20" BleedBox="0,0,10,20"><FixedPage.Resources/>)"
    R"(<Glyphs UnicodeString="a&amp;b"/></FixedPage>)";

template <typename Function>
Function* FindFunction(HMODULE module, const char* name)
{
    return reinterpret_cast<Function*>(reinterpret_cast<void (*)()>(GetProcAddress(module, name)));
}

ULONG CountProviders()
{
    static const auto count =
        FindFunction<ULONG WINAPI()>(GetModuleHandleW(L"prntvpt.dll"), "GetOpenProviderCount");
    return count();
}

/// The module, watched from its first instruction to its last.
class Module
{
public:
    Module() : m_handle(LoadLibraryW(FILTER_MODULE)) {}
    Module(const Module&) = delete;
    Module& operator=(const Module&) = delete;
    ~Module() { FreeLibrary(m_handle); }

    [[nodiscard]] HRESULT CreateFilter(IPrintPipelineFilter** filter) const
    {
        ComPtr<IClassFactory> factory;
        const auto getClassObject = FindFunction<decltype(DllGetClassObject)>(m_handle, "DllGetClassObject");
        const HRESULT hr = getClassObject(kFilter, __uuidof(IClassFactory), factory.ReceiveUntyped());
        return FAILED(hr) ? hr
                          : factory->CreateInstance(
                                nullptr, __uuidof(IPrintPipelineFilter), reinterpret_cast<void**>(filter));
    }

    bool CanUnload() const { return FindFunction<HRESULT WINAPI()>(m_handle, "DllCanUnloadNow")() == S_OK; }

private:
    HMODULE m_handle;
};

std::vector<std::string> SentParts(const Pipeline& pipeline)
{
    auto names = pipeline.record.Names();
    std::erase_if(names, [](const std::string& name) { return !name.starts_with("Send"); });
    return names;
}

std::string Media(const char* option, int width, int height, const std::string& further)
{
    return Ticket(MediaFeature(option, width, height) + further);
}

/// A scaling whose numbers stand beside it, each as "psk:PageScaling..." of a ScoredProperty.
std::string CustomScaling()
{
    std::string properties;
    std::string parameters;
    for (const std::string name : {"OffsetWidth", "OffsetHeight", "ScaleWidth", "ScaleHeight"})
    {
        properties += "<psf:ScoredProperty name=\"psk:" + name +
                      "\"><psf:ParameterRef name=\"psk:PageScaling" + name + "\"/></psf:ScoredProperty>";
        parameters += "<psf:ParameterInit name=\"psk:PageScaling" + name +
                      "\"><psf:Value xsi:type=\"xsd:integer\">100</psf:Value></psf:ParameterInit>";
    }
    return Feature("PageScaling", "Custom", properties) + parameters;
}

/// A job that takes every way through the module: parts of every kind, pages that are turned, by their own
/// ticket and without, refitted, and passed.
void AddWholeJob(Pipeline& pipeline)
{
    const std::string landscape = Media("ISOA4", 210000, 297000, Feature("PageOrientation", "Landscape"));
    pipeline.driverBag->prefix = base::utility::Bstr(L"ns0000");
    pipeline.Add<support::RootPart>();
    pipeline.Add<support::SequencePart>("sequence");
    pipeline.Add<support::DocumentPart>("document", landscape);
    pipeline.Add<support::PagePart>("turned by its document", kPage);
    pipeline.Add<support::OtherPart>();
    pipeline.Add<support::PagePart>(
        "turned by itself",
        kPage,
        Media("ISOA4", 210000, 297000, Feature("PageOrientation", "Landscape") + CustomScaling()));
    pipeline.Add<support::DocumentPart>("document without ticket");
    pipeline.Add<support::PagePart>(
        "refitted", kPage, Ticket(Feature("PageScaling", "FitApplicationMediaSizeToPageMediaSize")));
    pipeline.Add<support::PagePart>(
        "passed",
        kPage,
        Media(
            "ISOA4",
            210000,
            297000,
            Feature(
                "PageInputBin",
                "AutoSelect",
                R"(<psf:Property name="psk:FeedDirection"><psf:Value>psk:LongEdgeFirst</psf:Value></psf:Property>)")));
}

/// Of a sheet beyond the printer's limits.
std::string UserTicket()
{
    return Media("ISOA3", 297000, 420000, Feature("PageOrientation", "Portrait"));
}

/// What must hold when a job has ended, however it did.
void CheckEnd(const Pipeline& pipeline, Outcome& outcome)
{
    const auto expect = [&](bool holds, const char* fault) {
        if (!holds)
        {
            outcome.faults.emplace_back(fault);
        }
    };
    const auto& record = pipeline.record;
    expect(!support::IsThreadImpersonating(), "the thread acts in the user's name");
    outcome.isProviderClosed = CountProviders() == 0;
    expect(record.Count("CloseSender") == record.Count("RequestWriter"),
           "the sender is not closed, or more than once");
    expect(std::all_of(record.writeStreams.begin(),
                       record.writeStreams.end(),
                       [](const auto& stream) { return stream->closes == 1; }),
           "a write stream is not closed, or more than once");
    const auto& reasons = pipeline.control->reasons;
    outcome.isReported = !reasons.empty();
    expect(reasons.empty() || reasons == std::vector<HRESULT>{outcome.result},
           "the pipeline hears of another failure than the caller");
}

void RunWholeJob(const Module& module, const Fault& fault, Outcome& outcome)
{
    Watch& watch = Watch::Get();
    Pipeline pipeline(UserTicket());
    AddWholeJob(pipeline);
    watch.Adopt(pipeline.communicator.Get(), __uuidof(IInterFilterCommunicator));
    watch.Adopt(pipeline.bag.Get(), __uuidof(IPrintPipelinePropertyBag));
    watch.Adopt(pipeline.control.Get(), __uuidof(IPrintPipelineManagerControl));
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
        step("CreateInstance", [&] { return module.CreateFilter(filter.Receive()); });
        step("InitializeFilter", [&] { return pipeline.Initialize(*filter); });
        step("StartOperation", [&] { return filter->StartOperation(); });
        CheckEnd(pipeline, outcome);
        outcome.sent = SentParts(pipeline);
        step("ShutdownOperation", [&] { return filter->ShutdownOperation(); });
    }
    watch.Disarm();
    outcome.points = watch.Points();
}

/// The job after that, which must run whatever happened. Its shutdown fails: so the runtime library has made
/// by now, in every run, what it keeps for a thread that has seen an exception.
void RunNextJob(const Module& module, Outcome& outcome)
{
    Pipeline pipeline(Media("ISOA4", 210000, 297000, ""));
    pipeline.Add<support::DocumentPart>("document");
    pipeline.Add<support::PagePart>("page", kPage);
    ComPtr<IPrintPipelineFilter> filter;
    if (FAILED(module.CreateFilter(filter.Receive())) || FAILED(pipeline.Initialize(*filter)) ||
        FAILED(filter->StartOperation()) || SentParts(pipeline).size() != 2)
    {
        outcome.faults.emplace_back("the next job does not run");
    }
    pipeline.record.FailCall("CloseSender", E_FAIL);
    if (!filter || filter->ShutdownOperation() != E_FAIL)
    {
        outcome.faults.emplace_back("the next job cannot be shut down");
    }
}
} // namespace

Outcome RunJob(const Fault& fault)
{
    Watch& watch = Watch::Get();
    Outcome outcome;
    {
        const Module module;
        RunWholeJob(module, fault, outcome);
        if (CountProviders() != 0)
        {
            outcome.faults.emplace_back("a ticket provider stays open");
        }
        if (Pipeline::CountObjects() != 0)
        {
            outcome.faults.emplace_back("objects of the pipeline are held");
        }
        RunNextJob(module, outcome);
        if (!module.CanUnload())
        {
            outcome.faults.emplace_back("the module counts objects that are gone");
        }
    }
    for (const auto& [what, count] : watch.ledger.Held())
    {
        outcome.left[what.first] += count;
    }
    outcome.faults.insert(outcome.faults.end(), watch.complaints.begin(), watch.complaints.end());
    watch.complaints.clear();
    watch.Forget();
    return outcome;
}
} // namespace sweep
