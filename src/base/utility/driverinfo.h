#pragma once

#include <vector>

#include "platform/win32.h"

#include <winspool.h>

namespace base::utility
{
/// What the spooler knows of a printer's driver, as of construction.
class DriverInfo
{
public:
    /// Asks the spooler. Throws std::runtime_error when it does not answer. The handle stays the caller's.
    explicit DriverInfo(HANDLE printer);
    DriverInfo(const DriverInfo&) = delete;
    DriverInfo& operator=(const DriverInfo&) = delete;

    /// Lives as long as this object; the strings point into it.
    const DRIVER_INFO_3W& GetInfo() const noexcept;

private:
    // The block and, behind it, its strings.
    std::vector<BYTE> m_buffer;
};
} // namespace base::utility
