#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "base/utility/safecoinit.h"
#include "host/job/job.h"
#include "host/pipeline/pipelinejob.h"
#include "host/pipeline/printticketlibrary.h"

namespace host::job
{
/// The filter's DLL of a job.
std::filesystem::path FilterModuleOf(const Job& job);

/// The spooler's printer of a job; empty for an offline one.
std::optional<std::wstring> SpoolerPrinterOf(const Job& job);

/// What becomes of the document's own tickets; empty for nothing.
pipeline::TicketEdit TicketEditOf(const Job& job);

/// What a job needs before it starts: COM, the print ticket library and the user's ticket. One at a time.
class JobEnvironment
{
public:
    /// Throws std::runtime_error, naming the file or the option, for what cannot be used.
    explicit JobEnvironment(const Job& job);

    const std::string& UserTicket() const noexcept { return m_userTicket; }

private:
    void Describe(const std::filesystem::path& device) const;

    base::utility::SafeCoInit m_com;
    pipeline::PrintTicketLibrary m_library;
    std::string m_userTicket;
};
} // namespace host::job
