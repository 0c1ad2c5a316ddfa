#include "host/job/jobenvironment.h"

#include <stdexcept>

#include "base/utility/utf8.h"
#include "host/opc/files.h"
#include "host/tickets/userticket.h"

namespace host::job
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

std::filesystem::path ModuleOf(const JobSetting& setting)
{
    return setting.module.value_or(ProgramFolder() / "pagevalidatefilter.dll");
}

std::optional<std::wstring> PrinterOf(const JobSetting& setting)
{
    return setting.printer ? std::optional(base::utility::FromUtf8(*setting.printer)) : std::nullopt;
}

JobEnvironment::JobEnvironment(const JobSetting& setting)
    : m_library(setting.printer ? std::nullopt : std::optional(ProgramFolder() / "offline" / "prntvpt.dll")),
      m_userTicket(tickets::MakeUserTicket(setting.userTicket,
                                           setting.overrides,
                                           setting.privatePrefix.value_or(tickets::kUsualPrivatePrefix)))
{
    if (setting.device)
    {
        Describe(*setting.device);
    }
    else if (!setting.printer)
    {
        // A filter of a job before may keep the library in the process, and with it that job's device.
        m_library.DescribeDevice({});
    }
}

FilterJob JobEnvironment::MakeJob(const std::filesystem::path& input, const JobSetting& setting) const
{
    FilterJob job;
    job.input = input;
    job.module = ModuleOf(setting);
    job.userTicket = m_userTicket;
    job.printer = PrinterOf(setting);
    job.tesselType = setting.tesselType;
    job.privatePrefix = setting.privatePrefix;
    job.acceptsMalformed = setting.acceptsMalformed;
    return job;
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
