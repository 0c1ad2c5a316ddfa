#include "host/job/jobenvironment.h"

#include <stdexcept>

#include "base/utility/utf8.h"
#include "host/opc/files.h"
#include "host/tickets/userticket.h"

namespace host::job
{
namespace
{
std::filesystem::path ProgramFolder()
{
    std::wstring path(MAX_PATH, L'\0');
    while (GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size())) == path.size())
    {
        path.resize(path.size() * 2);
    }
    return std::filesystem::path(path.c_str()).parent_path();
}
} // namespace

std::filesystem::path FilterModuleOf(const Job& job)
{
    return job.module.value_or(ProgramFolder() / "pagevalidatefilter.dll");
}

std::optional<std::wstring> SpoolerPrinterOf(const Job& job)
{
    return job.printer ? std::optional(base::utility::FromUtf8(*job.printer)) : std::nullopt;
}

pipeline::TicketEdit TicketEditOf(const Job& job)
{
    if (!job.overridesDocument)
    {
        return {};
    }
    return [overrides = job.overrides](const std::string& ticket) {
        return tickets::OverrideTicket(ticket, overrides);
    };
}

JobEnvironment::JobEnvironment(const Job& job)
    : m_library(job.printer ? std::nullopt : std::optional(ProgramFolder() / "offline" / "prntvpt.dll")),
      m_userTicket(tickets::MakeUserTicket(
          job.userTicket, job.overrides, job.privatePrefix.value_or(tickets::kUsualPrivatePrefix)))
{
    if (job.device)
    {
        Describe(*job.device);
    }
    else if (!job.printer)
    {
        // The filter of an earlier job may have kept the library in the process, and with it that job's
        // device.
        m_library.DescribeDevice({});
    }
}

void JobEnvironment::Describe(const std::filesystem::path& device) const
{
    const std::string description = opc::ReadFileBytes(device);
    try
    {
        m_library.DescribeDevice(description);
    }
    catch (const std::runtime_error& fault)
    {
        throw std::runtime_error(opc::ToUtf8Path(device) + ": " + fault.what());
    }
}
} // namespace host::job
