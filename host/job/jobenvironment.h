#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "base/utility/safecoinit.h"
#include "host/job/filterjob.h"
#include "host/job/joboptions.h"
#include "host/pipeline/printticketlibrary.h"

namespace host::job
{
/// Where this program and what belongs to it lies.
std::filesystem::path ProgramFolder();

/// The filter's DLL of a job.
std::filesystem::path ModuleOf(const JobSetting& setting);

/// The spooler's printer of a job; empty for one that there is only offline.
std::optional<std::wstring> PrinterOf(const JobSetting& setting);

/// What every job needs before it starts: COM, the print ticket library and the user's ticket. One at a time.
class JobEnvironment
{
public:
    /// Throws std::runtime_error, naming the file or the option, for a setting that cannot be used.
    explicit JobEnvironment(const JobSetting& setting);

    const std::string& UserTicket() const noexcept { return m_userTicket; }

    /// A run of the filter over a document, which nobody listens to yet and which writes nothing.
    FilterJob MakeJob(const std::filesystem::path& input, const JobSetting& setting) const;

private:
    void Describe(const std::filesystem::path& device) const;

    base::utility::SafeCoInit m_com;
    pipeline::PrintTicketLibrary m_library;
    std::string m_userTicket;
};
} // namespace host::job
