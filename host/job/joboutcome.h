#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "host/opc/files.h"
#include "host/opc/package.h"
#include "platform/win32.h"

namespace host::job
{
/// The result of a job.
struct JobOutcome
{
    /// The filter's own result, or the reason for which it asked the pipeline to shut down, or E_UNEXPECTED
    /// when it left work unfinished, or E_INVALIDARG when it wrote a page that cannot be taken.
    HRESULT result = S_OK;
    /// The work that it left unfinished; empty for none.
    std::string unfinishedWork;
    /// What is wrong with the new markup of the page that was refused; empty for none.
    std::string markupFault;
    /// What is wrong with the part that the filter was at when it failed, or with its ticket, if
    /// it cannot be read. The filter itself answers with an HRESULT only.
    std::optional<opc::PackageError> documentFault;
    /// What else is wrong with that ticket, with its name; empty for nothing.
    std::string ticketFault;
    /// That page, or the part that the filter was at when it failed; empty before the first part.
    std::string part;
    std::size_t documents = 0;
    std::size_t pages = 0;
    /// Leaks of the filter: the pipeline's objects that it did not release, and whether its module is still
    /// in use.
    std::size_t keptObjects = 0;
    bool isModuleInUse = false;
};

/// Finds out what is wrong with the part at which a filter failed.
void FindDocumentFault(const opc::Package& package, JobOutcome& outcome);

/// Where and how the filter failed, on one line.
std::string DescribeFailure(const JobOutcome& outcome);

/// What the filter did not release, on one line; empty for nothing.
std::string DescribeLeaks(const JobOutcome& outcome);
} // namespace host::job
