#include "host/job/runjob.h"

#include <chrono>
#include <future>
#include <memory>
#include <stdexcept>
#include <utility>

#include "base/logging/boundary.h"
#include "base/utility/safecoinit.h"
#include "base/utility/utf8.h"
#include "host/job/jobenvironment.h"
#include "host/opc/files.h"
#include "host/opc/package.h"
#include "host/opc/packagewriter.h"
#include "host/pipeline/effectivetickets.h"
#include "host/pipeline/endpoints.h"
#include "host/pipeline/filtermodule.h"
#include "host/pipeline/printer.h"
#include "host/pipeline/propertybags.h"
#include "host/report/pagereporter.h"
#include "host/xps/xpsdocument.h"

namespace host::job
{
using base::exception::AtBoundary;
using base::utility::ComPtr;
using base::utility::MakeCom;

namespace
{
/// The property bag that a filter is initialised with.
ComPtr<pipeline::PipelinePropertyBag> MakePropertyBag(const Job& job,
                                                      const std::string& userTicket,
                                                      const pipeline::Printer& printer,
                                                      pipeline::CallTrace& trace)
{
    auto driverBag = MakeCom<pipeline::DriverPropertyBag>(trace);
    if (job.privatePrefix)
    {
        driverBag->SetText(L"QuellmarkNsPrefix", base::utility::FromUtf8(*job.privatePrefix));
    }
    if (job.tesselType)
    {
        driverBag->SetNumber(L"QuellmarkTesselType", *job.tesselType);
    }
    const auto ticketStreams = MakeCom<pipeline::TicketStreamFactory>(trace, userTicket);

    auto bag = MakeCom<pipeline::PipelinePropertyBag>(trace);
    bag->SetObject(L"DriverPropertyBag", driverBag.Get());
    bag->SetObject(L"PerUserPrintTicket", ticketStreams.Get());
    bag->SetText(L"PrinterName", printer.Name());
    bag->SetHandle(L"UserSecurityToken", printer.UserToken());
    bag->SetNumber(L"PrintJobId", 1);
    if (printer.Handle() != nullptr)
    {
        bag->SetHandle(L"PrinterHandle", printer.Handle());
    }
    return bag;
}

/// Runs the filter on a thread of its own and waits for its result.
HRESULT StartAndWait(IPrintPipelineFilter& filter,
                     pipeline::PipelineJob& job,
                     report::PageReporter& reporter,
                     JobListener& listener)
{
    constexpr auto pollInterval = std::chrono::milliseconds(50);
    std::future<HRESULT> answer = std::async(std::launch::async, [&] {
        return AtBoundary([&] {
            const base::utility::SafeCoInit com;
            const HRESULT result = filter.StartOperation();
            // Its provider belongs to this thread.
            reporter.Finish();
            return result;
        });
    });
    bool isAskedToStop = false;
    while (answer.wait_for(pollInterval) != std::future_status::ready)
    {
        if (listener.IsCancelled() && !std::exchange(isAskedToStop, true))
        {
            job.isCancelled = true;
            static_cast<void>(job.trace.Answer(
                "IPrintPipelineFilter::ShutdownOperation", "", [&] { return filter.ShutdownOperation(); }));
        }
    }
    return answer.get();
}

/// Checks whether a filter that reported success really finished its work.
HRESULT CheckComplete(const pipeline::PipelineJob& job, std::string& unfinishedWork)
{
    if (FAILED(job.shutdownReason))
    {
        return job.shutdownReason;
    }
    if (job.refusal)
    {
        return E_INVALIDARG;
    }
    unfinishedWork = job.FindUnfinishedWork();
    return unfinishedWork.empty() ? S_OK : E_UNEXPECTED;
}

/// Creates a filter of the module and runs it. When this returns, only the filter can still hold the shared
/// job.
JobOutcome RunInPipeline(const Job& job,
                         const std::string& userTicket,
                         JobListener& listener,
                         const pipeline::Printer& printer,
                         const pipeline::FilterModule& module,
                         const pipeline::PipelineJobPtr& shared)
{
    pipeline::CallTrace& trace = shared->trace;
    const auto bag = MakePropertyBag(job, userTicket, printer, trace);
    report::PageReporter reporter(
        shared->package,
        {userTicket,
         pipeline::DefaultTicketOf(job.tesselType),
         printer.Name(),
         printer.UserToken(),
         shared->editTicket},
        [&](const report::PageReport& page) { listener.OnPage(page); },
        listener.WantsDetails());
    const auto control = MakeCom<pipeline::ManagerControl>(shared);
    const auto communicator = MakeCom<pipeline::Communicator>(
        trace,
        MakeCom<pipeline::DocumentProvider>(shared),
        MakeCom<pipeline::DocumentConsumer>(shared,
                                            [&](const pipeline::SentPart& sent) { reporter.Take(sent); }));

    JobOutcome outcome;
    const ComPtr<IPrintPipelineFilter> filter = module.CreateFilter(trace);
    outcome.result = trace.Answer(
        "IPrintPipelineFilter::InitializeFilter",
        "",
        [&] { return filter->InitializeFilter(communicator.Get(), bag.Get(), control.Get()); },
        pipeline::CallRole::RunsFilter);
    if (SUCCEEDED(outcome.result))
    {
        outcome.result = StartAndWait(*filter.Get(), *shared, reporter, listener);
        trace.Record(
            "IPrintPipelineFilter::StartOperation", "", outcome.result, pipeline::CallRole::RunsFilter);
    }
    if (SUCCEEDED(outcome.result))
    {
        outcome.result = CheckComplete(*shared, outcome.unfinishedWork);
    }
    outcome.part = shared->currentPart;
    if (const auto& refusal = shared->refusal)
    {
        outcome.part = refusal->page;
        outcome.markupFault = refusal->fault;
    }
    outcome.documents = reporter.Documents();
    outcome.pages = reporter.Pages();
    return outcome;
}

/// 0 for a document whose tree cannot be read: the walk will say so when it is there.
std::size_t CountPages(const opc::Package& package)
{
    try
    {
        return xps::XpsDocument(package).CountPages();
    }
    catch (const opc::PackageError&)
    {
        return 0;
    }
}

/// Checks what the released filter left behind, and writes the output if all went well.
void CommitOutput(const Job& job,
                  JobListener& listener,
                  const pipeline::FilterModule& module,
                  const pipeline::PipelineJobPtr& shared,
                  JobOutcome& outcome)
{
    outcome.keptObjects = static_cast<std::size_t>(shared.use_count()) - 1;
    outcome.isModuleInUse = !module.CanUnload();
    shared->trace.Record("DllCanUnloadNow", "", outcome.isModuleInUse ? S_FALSE : S_OK);

    // Even if the filter reported success.
    if (const auto failure = shared->trace.GetHostFailure())
    {
        std::rethrow_exception(failure);
    }
    if (SUCCEEDED(outcome.result) && job.output)
    {
        shared->RemoveOrphanedTickets();
        shared->writer->Commit([&](double fraction) { listener.OnWriting(fraction); });
    }
}
} // namespace

JobOutcome RunJob(const Job& job, const std::string& userTicket, JobListener& listener)
{
    const opc::Package package(job.document);
    opc::PackageWriter writer(package, job.output, job.compression);
    listener.OnStart(CountPages(package));
    const pipeline::Printer printer(SpoolerPrinterOf(job));
    pipeline::CallTrace trace([&](const pipeline::TracedCall& call) { listener.OnCall(call); });
    const pipeline::FilterModule module(FilterModuleOf(job));
    module.SetUserPaper(job.paper);
    const auto shared = std::make_shared<pipeline::PipelineJob>(package, &writer, trace);
    shared->acceptsMalformed = job.acceptsMalformed;
    shared->editTicket = TicketEditOf(job);
    // A filter may hold MSXML documents until it is released, when its own thread has left COM.
    const base::utility::SafeCoInit com;
    JobOutcome outcome = RunInPipeline(job, userTicket, listener, printer, module, shared);
    if (FAILED(outcome.result))
    {
        FindDocumentFault(package, outcome);
    }
    CommitOutput(job, listener, module, shared, outcome);
    return outcome;
}
} // namespace host::job
