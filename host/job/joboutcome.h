#pragma once

#include <cstddef>
#include <filesystem>
#include <string>

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
    /// What is wrong with the ticket of the part that the filter was at, with the ticket's name; empty for
    /// nothing.
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

/// Throws opc::PackageError if the part at which a filter failed cannot be read: the filter itself answers
/// with an HRESULT only.
void ThrowPackageFault(const std::filesystem::path& document, const JobOutcome& outcome);

/// The fault of a part's ticket; empty for none. Throws opc::PackageError for relationships that cannot be
/// read.
std::string FindTicketFault(const opc::Package& package, const std::string& part);

/// Where and how the filter failed, on one line.
std::string DescribeFailure(const JobOutcome& outcome);

/// What the filter did not release, on one line; empty for nothing.
std::string DescribeLeaks(const JobOutcome& outcome);
} // namespace host::job
