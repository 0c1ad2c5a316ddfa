#include "host/job/filterjob.h"

#include <chrono>
#include <future>
#include <memory>
#include <stdexcept>
#include <utility>

#include "base/logging/boundary.h"
#include "base/utility/safecoinit.h"
#include "base/utility/utf8.h"
#include "host/opc/package.h"
#include "host/opc/packagewriter.h"
#include "host/pipeline/effectivetickets.h"
#include "host/pipeline/endpoints.h"
#include "host/pipeline/filtermodule.h"
#include "host/pipeline/printer.h"
#include "host/pipeline/propertybags.h"
#include "host/report/pagereporter.h"

namespace host::job
{
using base::exception::AtBoundary;
using base::utility::ComPtr;
using base::utility::MakeCom;

namespace
{
/// The bags that a filter is initialised with.
ComPtr<pipeline::PipelinePropertyBag> MakePropertyBag(const FilterJob& job,
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
    const auto userTicket = MakeCom<pipeline::TicketStreamFactory>(trace, job.userTicket);

    auto bag = MakeCom<pipeline::PipelinePropertyBag>(trace);
    bag->SetObject(L"DriverPropertyBag", driverBag.Get());
    bag->SetObject(L"PerUserPrintTicket", userTicket.Get());
    bag->SetText(L"PrinterName", printer.Name());
    bag->SetHandle(L"UserSecurityToken", printer.UserToken());
    bag->SetNumber(L"PrintJobId", 1);
    if (printer.Handle() != nullptr)
    {
        bag->SetHandle(L"PrinterHandle", printer.Handle());
    }
    return bag;
}

/// The filter at work: its answer comes from a thread of its own.
HRESULT Operate(IPrintPipelineFilter& filter,
                pipeline::PipelineJob& job,
                report::PageReporter& reporter,
                const std::function<bool()>& isCancelled)
{
    constexpr auto lookEvery = std::chrono::milliseconds(50);
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
    while (answer.wait_for(lookEvery) != std::future_status::ready)
    {
        if (isCancelled() && !std::exchange(isAskedToStop, true))
        {
            job.isCancelled = true;
            static_cast<void>(job.trace.Answer(
                "IPrintPipelineFilter::ShutdownOperation", "", [&] { return filter.ShutdownOperation(); }));
        }
    }
    return answer.get();
}

/// What the success that a filter claims is worth to the pipeline.
HRESULT Judge(const pipeline::PipelineJob& job, std::string& debt)
{
    if (FAILED(job.shutdownReason))
    {
        return job.shutdownReason;
    }
    if (job.refusal)
    {
        return E_INVALIDARG;
    }
    debt = job.FindDebt();
    return debt.empty() ? S_OK : E_UNEXPECTED;
}

/// Plays the pipeline around a filter of the module. When it returns, what still holds the shared job is held
/// by the filter.
FilterOutcome Play(const FilterJob& job,
                   const pipeline::Printer& printer,
                   const pipeline::FilterModule& module,
                   const pipeline::PipelineJobPtr& shared)
{
    pipeline::CallTrace& trace = shared->trace;
    const auto bag = MakePropertyBag(job, printer, trace);
    report::PageReporter reporter(
        shared->package,
        {job.userTicket, pipeline::DefaultTicketOf(job.tesselType), printer.Name(), printer.UserToken()},
        job.onPage,
        job.detail);
    const auto control = MakeCom<pipeline::ManagerControl>(shared);
    const auto communicator = MakeCom<pipeline::Communicator>(
        trace,
        MakeCom<pipeline::DocumentProvider>(shared),
        MakeCom<pipeline::DocumentConsumer>(shared,
                                            [&](const pipeline::SentPart& sent) { reporter.Take(sent); }));

    FilterOutcome outcome;
    const ComPtr<IPrintPipelineFilter> filter = module.CreateFilter(trace);
    outcome.result = trace.Answer("IPrintPipelineFilter::InitializeFilter", "", [&] {
        return filter->InitializeFilter(communicator.Get(), bag.Get(), control.Get());
    });
    if (SUCCEEDED(outcome.result))
    {
        outcome.result = Operate(*filter.Get(), *shared, reporter, job.isCancelled);
        trace.Tell("IPrintPipelineFilter::StartOperation", "", outcome.result);
    }
    if (SUCCEEDED(outcome.result))
    {
        outcome.result = Judge(*shared, outcome.debt);
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

/// Looks at what the filter left behind once it was let go of, and writes the output where all went well.
void Settle(const FilterJob& job,
            const pipeline::FilterModule& module,
            const pipeline::PipelineJobPtr& shared,
            FilterOutcome& outcome)
{
    outcome.keptObjects = static_cast<std::size_t>(shared.use_count()) - 1;
    outcome.isModuleInUse = !module.CanUnload();
    shared->trace.Tell("DllCanUnloadNow", "", outcome.isModuleInUse ? S_FALSE : S_OK);

    // Also where the filter made light of it.
    if (const auto failure = shared->trace.GetHostFailure())
    {
        std::rethrow_exception(failure);
    }
    if (SUCCEEDED(outcome.result) && job.output)
    {
        shared->RemoveOrphanedTickets();
        shared->writer->Commit(job.onWriting);
    }
}
} // namespace

FilterOutcome RunFilter(const FilterJob& job)
{
    const opc::Package package(job.input);
    opc::PackageWriter writer(package, job.output);
    const pipeline::Printer printer(job.printer);
    pipeline::CallTrace trace(job.onCall);
    const pipeline::FilterModule module(job.module);
    const auto shared = std::make_shared<pipeline::PipelineJob>(package, &writer, trace);
    shared->acceptsMalformed = job.acceptsMalformed;
    // A filter may hold documents of MSXML until it goes, when its own thread is done with COM.
    const base::utility::SafeCoInit com;
    FilterOutcome outcome = Play(job, printer, module, shared);
    Settle(job, module, shared, outcome);
    return outcome;
}
} // namespace host::job
