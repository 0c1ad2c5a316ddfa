#pragma once

#include <cstddef>

#include "host/job/job.h"
#include "host/job/joboutcome.h"
#include "host/pipeline/calltrace.h"
#include "host/report/pagereport.h"

namespace host::job
{
/// Watches a job. Pages and calls are reported on any thread, the rest on that of RunJob.
class JobListener
{
public:
    virtual ~JobListener() = default;

    /// Whether the pages' reports need their details.
    virtual bool WantsDetails() const { return false; }

    /// The job begins; the document has that many pages, or 0 if they cannot be counted.
    virtual void OnStart(std::size_t /*pages*/) {}
    /// The filter has sent a page.
    virtual void OnPage(const report::PageReport& /*page*/) {}
    /// A call of the pipeline has ended.
    virtual void OnCall(const pipeline::TracedCall& /*call*/) {}
    /// That fraction of the output is written. An exception stops the writing.
    virtual void OnWriting(double /*fraction*/) {}

    /// Polled: once true, the filter is asked to shut down.
    virtual bool IsCancelled() { return false; }
};

/// Runs the filter over a document: on a thread of its own, under the current user's token. The output is
/// written only if the filter succeeds. The job's JobEnvironment must exist; `userTicket` is its user ticket.
///
/// Throws opc::PackageError when the document cannot be used, opc::FileError when the output cannot be
/// written, which is found out before the filter starts as far as possible, and std::runtime_error for a
/// module or a printer that cannot be used.
JobOutcome RunJob(const Job& job, const std::string& userTicket, JobListener& listener);
} // namespace host::job
