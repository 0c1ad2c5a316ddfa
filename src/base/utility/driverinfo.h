#pragma once

#include <vector>

#include "platform/win32.h"

#include <winspool.h>

namespace base::utility
{
/// The spooler's information on a printer's driver, read on construction.
class DriverInfo
{
public:
    /// Calls the spooler. Throws std::runtime_error when that fails. The caller keeps the handle.
    explicit DriverInfo(HANDLE printer);
    DriverInfo(const DriverInfo&) = delete;
    DriverInfo& operator=(const DriverInfo&) = delete;

    /// Valid while this object lives, as are the strings that it points to.
    const DRIVER_INFO_3W& GetInfo() const noexcept;

private:
    // The structure, followed by its strings.
    std::vector<BYTE> m_buffer;
};
} // namespace base::utility
