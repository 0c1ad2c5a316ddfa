#include "base/utility/driverinfo.h"

#include <stdexcept>

#include "base/logging/failure.h"

namespace base::utility
{
namespace
{
constexpr DWORD kLevel = 3;
constexpr const char* kFailed = "GetPrinterDriver was failed.";
} // namespace

DriverInfo::DriverInfo(HANDLE printer)
{
    DWORD needed = 0;
    GetPrinterDriverW(printer, nullptr, kLevel, nullptr, 0, &needed);
    if (needed == 0)
    {
        exception::Throw<std::runtime_error>(kFailed);
    }
    m_buffer.resize(needed);
    if (!GetPrinterDriverW(printer, nullptr, kLevel, m_buffer.data(), needed, &needed))
    {
        exception::Throw<std::runtime_error>(kFailed);
    }
}

const DRIVER_INFO_3W& DriverInfo::GetInfo() const noexcept
{
    return *reinterpret_cast<const DRIVER_INFO_3W*>(m_buffer.data());
}
} // namespace base::utility
